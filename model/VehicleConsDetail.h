#pragma once

#include <memory>

/// The share of one vehicle type in a composition.
struct VehicleConsDetail {
    long vehicleConsCode = 0;
    long vehicleTypeCode = 0;
    double proportion = 0; ///< percent; those of one composition are meant to add up to 100

    /// A copy that the caller owns.
    std::unique_ptr<VehicleConsDetail> clone() const { return std::make_unique<VehicleConsDetail>(*this); }
};
