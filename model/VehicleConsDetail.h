#pragma once

/// The share of one vehicle type in a composition.
struct VehicleConsDetail {
    long vehicleConsCode = 0;
    long vehicleTypeCode = 0;
    double proportion = 0; ///< percent; those of one composition are meant to add up to 100
};
