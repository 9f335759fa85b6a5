#pragma once

#include "OwningList.h"
#include "RoutingFLowRatio.h"

#include <memory>

/// The shares of a decision point's routes in one time slice. A copy has ratios of its own.
struct RoutingFlowByInterval {
    long endDateTime = 0;                     ///< end of the slice, in the host's time unit
    OwningList<RoutingFLowRatio> mlFlowRatio; ///< at most one per route

    /// A copy that the caller owns, with copies of its ratios.
    std::unique_ptr<RoutingFlowByInterval> clone() const {
        return std::make_unique<RoutingFlowByInterval>(*this);
    }
};
