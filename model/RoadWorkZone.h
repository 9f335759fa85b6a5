#pragma once

#include "MoraStoreExport.h"
#include "OwningList.h"
#include "ZoneLane.h"

#include <QString>

#include <memory>

class Net;

/// A stretch of road blocked by works. It owns its lanes; a copy has copies of them.
class MORASTORE_EXPORT RoadWorkZone {
public:
    /// Length and speed limit follow the scale of gNet at this moment, or that of `net`.
    RoadWorkZone();
    explicit RoadWorkZone(const Net &net);

    bool isOnLink() const { return ZoneLane::allOnLink(mlLane); }
    /// A copy that the caller owns, with copies of its lanes.
    std::unique_ptr<RoadWorkZone> clone() const { return std::make_unique<RoadWorkZone>(*this); }

    long roadWorkZoneId = 0;
    QString name;
    double location = 0; ///< metres from the road's start
    double zoneLength;   ///< at first 100 metres in scene units
    double limitSpeed;   ///< at first 60 km/h in scene units
    long roadID = 0;
    QString roadName;
    QString roadType = QStringLiteral("link");
    OwningList<ZoneLane> mlLane;
    qint64 hostValue = 0; ///< for the host; not stored
};
