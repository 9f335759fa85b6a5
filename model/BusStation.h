#pragma once

#include "MoraStoreExport.h"

#include <QString>

#include <memory>

class Link;
class Net;
class SpecialWords;

/// A place where buses stop.
class MORASTORE_EXPORT BusStation {
public:
    /// Length and kind follow the scale of gNet and gSpecialWords at this moment, or the scale of `net` and `words`. The
    /// link keeps its owner.
    explicit BusStation(Link *link = nullptr, int lane = 0);
    BusStation(const Net &net, const SpecialWords &words);
    /// A copy that the caller owns, on the same link.
    std::unique_ptr<BusStation> clone() const { return std::make_unique<BusStation>(*this); }

    long busStationID = 0;
    QString name = QStringLiteral("0");
    int laneNumber = 0;
    double x = 0;
    double y = 0;
    double length;          ///< at first 30 metres in scene units
    QString type;           ///< display word; at first the stop at the roadside
    Link *mpLink = nullptr; ///< not owned; must be set when the station is stored
};
