#pragma once

#include "MoraStoreExport.h"

#include <memory>

struct _RoutingFLowRatio;

/// The share of one route in a time slice; times in the host's unit.
class MORASTORE_EXPORT RoutingFLowRatio {
public:
    RoutingFLowRatio() = default;
    RoutingFLowRatio &operator=(const _RoutingFLowRatio &record);
    /// A copy that the caller owns.
    std::unique_ptr<RoutingFLowRatio> clone() const { return std::make_unique<RoutingFLowRatio>(*this); }

    long routingFLowRatioID = 0;
    long routingID = 0;
    long startDateTime = 0;
    long endDateTime = 0;
    double ratio = 0;
};
