#pragma once

#include "BusStationLine.h"
#include "MoraStoreExport.h"
#include "OwningList.h"

#include <QList>
#include <QString>

#include <memory>

class Link;
class Net;

/// A bus line. It owns its stops and never its links: a copy has copies of the stops and runs on the same
/// links.
class MORASTORE_EXPORT BusLine {
public:
    /// The speed follows the scale of gNet at this moment, or that of `net`.
    BusLine();
    explicit BusLine(const Net &net);

    /// Back to the state of a new line; deletes the stops.
    void init();
    /// A copy that the caller owns, with copies of its stops, along the same links.
    std::unique_ptr<BusLine> clone() const { return std::make_unique<BusLine>(*this); }

    long busLineID = 0;
    QString name = QStringLiteral("0");
    double length = 0;           ///< metres
    int dischargeFreq = 300;     ///< seconds between departures
    int dischargeStartTime = 1;  ///< seconds
    int dischargeEndTime = 3600; ///< seconds
    double startX = 0;
    double startY = 0;
    double endX = 0;
    double endY = 0;
    double desirSpeed; ///< at first 50 km/h in scene units
    double speedSD = 10.0;
    int passCountAtStartTime = 10;
    QList<Link *> mlLink; ///< the route in driving order
    QList<long> mlRoadId; ///< ids of the route's links, as read
    OwningList<BusStationLine> mlStationLine;
    QString hostText; ///< for the host; not stored
};
