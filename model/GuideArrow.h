#pragma once

#include <memory>

/// An arrow painted on a lane.
struct GuideArrow {
    long guideArrowID = 0;
    long laneID = 0;
    double length = 0;         ///< metres
    double distToTerminal = 0; ///< metres from the arrow to the end of the lane
    int arrowType = 0;         ///< the host's code for the shape

    /// A copy that the caller owns.
    std::unique_ptr<GuideArrow> clone() const { return std::make_unique<GuideArrow>(*this); }
};
