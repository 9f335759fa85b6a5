#pragma once

#include "MoraStoreExport.h"
#include "OwningList.h"
#include "ZoneLane.h"

#include <QString>

#include <memory>

/// A stretch of road blocked by an accident. It owns its lanes; a copy has copies of them.
class MORASTORE_EXPORT AccidentZone {
public:
    /// How long the accident blocks the road, seconds: fixedDuration when positive, else by level.
    /// A copy that the caller owns, with copies of its lanes.
    std::unique_ptr<AccidentZone> clone() const { return std::make_unique<AccidentZone>(*this); }
    long duration() const;
    /// Whether a rescue is due: rescueTime is not 0.
    bool needRescue() const { return rescueTime != 0; }
    bool isOnLink() const { return ZoneLane::allOnLink(mlLane); }

    long accidentZoneId = 0;
    QString name;
    float location = 0;   ///< metres from the road's start
    float zoneLength = 0; ///< metres
    long roadId = 0;
    QString roadType = QStringLiteral("link");
    OwningList<ZoneLane> mlLane;

    // For the host; not stored.
    int level = 0;
    int fixedDuration = 0; ///< seconds
    int rescueTime = -1;   ///< seconds
    int hostValue1 = 60;
    int hostValue2 = 60;
};
