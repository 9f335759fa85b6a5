#pragma once

#include "MoraStoreExport.h"
#include "OwningList.h"
#include "ReduceSpeedInterval.h"
#include "ReduceSpeedVehiType.h"

#include <QString>

#include <memory>

/// A stretch of one road where vehicles slow down at times. It owns its intervals and vehicle types; a copy
/// has copies of them.
class MORASTORE_EXPORT ReduceSpeedArea {
public:
    /// Whether toLaneNumber is below 1.
    bool isOnLink() const { return toLaneNumber < 1; }
    /// Deletes the intervals.
    void releaseSpeedInterval() { mlSpeedInterval.deleteAll(); }
    /// Deletes the vehicle types' entries.
    void releaseVehiType() { mlSpeedVehiType.deleteAll(); }
    /// A copy that the caller owns, with copies of its intervals and vehicle types.
    std::unique_ptr<ReduceSpeedArea> clone() const { return std::make_unique<ReduceSpeedArea>(*this); }

    long reduceSpeedAreaID = 0;
    QString name;
    double location = 0;   ///< metres from the road's start
    double areaLength = 0; ///< metres
    long roadID = 0;
    int laneNumber = 0;
    int toLaneNumber = 0;
    OwningList<ReduceSpeedInterval> mlSpeedInterval;
    OwningList<ReduceSpeedVehiType> mlSpeedVehiType;
};
