#pragma once

#include "tools/checks/Checked.h"
#include "tools/checks/ObjectRules.h"

#include <QPointF>
#include <QString>

#include <optional>
#include <vector>

namespace moratools {

/// A device or a zone, or one of the two ends of a device, on a road.
struct Placed {
    const char *table;
    long id;
    QString called;   ///< `queue counter 4 "north"`, of a device with two ends with the end
    const Link *link; ///< one of the two, or none where there is no such road
    const Connector *connector;
    int lane;                  ///< below 1: all lanes
    int toLane;                ///< on a connector
    double start;              ///< metres from the start of the road
    double end;                ///< the same where it has no length
    std::optional<QPointF> at; ///< where it says that it stands

    /// Metres; nothing where there is no road.
    std::optional<double> roadLength() const;
    QString calledRoad() const;
    /// A place on the road, for a mark.
    std::optional<QPointF> mark() const;
};

/// A time in which a device measures, in seconds.
struct Period {
    const char *table;
    long id;
    QString called;
    int start;
    int end;
    int interval; ///< over which it adds up
};

/// All devices and zones of a network, whatever their kind.
class Places {
public:
    explicit Places(const Checked &checked);

    const std::vector<Placed> &placed() const { return mPlaced; }
    const std::vector<Period> &periods() const { return mPeriods; }

private:
    class Maker;

    std::vector<Placed> mPlaced;
    std::vector<Period> mPeriods;
};

} // namespace moratools
