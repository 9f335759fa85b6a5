#pragma once

#include <memory>

/// The speed of a vehicle type in a speed area, in all of its intervals.
struct ReduceSpeedVehiType {
    long reduceSpeedAreaID = 0;
    long vehicleTypeCode = 0;
    double avgSpeed = 0;
    double speedSD = 0;

    /// A copy that the caller owns.
    std::unique_ptr<ReduceSpeedVehiType> clone() const {
        return std::make_unique<ReduceSpeedVehiType>(*this);
    }
};
