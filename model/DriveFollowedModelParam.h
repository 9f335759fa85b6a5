#pragma once

#include <memory>

/// A coefficient set of the car-following model. A new one is set 1, but for its acceleration of 1 where the
/// standard set has 5.
struct DriveFollowedModelParam {
    long modelParamID = 1;
    double maxAcce = 1;            ///< m/s²
    double safeTimeInterval = 1.5; ///< seconds
    double desireDece = 2;         ///< m/s²
    double spaceBetween = 2;       ///< metres at standstill
    double alfa = 4;
    double beit = 2;

    /// A copy that the caller owns.
    std::unique_ptr<DriveFollowedModelParam> clone() const {
        return std::make_unique<DriveFollowedModelParam>(*this);
    }
};
