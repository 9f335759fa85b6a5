#pragma once

#include <memory>

/// A time during which vehicles slow down in a speed area; seconds.
struct ReduceSpeedInterval {
    long intervalID = 0;
    long reduceSpeedAreaID = 0;
    long startTime = 0;
    long endTime = 0;

    /// A copy that the caller owns.
    std::unique_ptr<ReduceSpeedInterval> clone() const {
        return std::make_unique<ReduceSpeedInterval>(*this);
    }
};
