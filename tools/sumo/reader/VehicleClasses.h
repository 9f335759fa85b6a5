#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

#include <cstdint>

namespace moratools {

/// A set of the vehicle classes that a SUMO lane may admit.
class MORATOOLS_EXPORT VehicleClasses {
public:
    /// The set of a lane's exclusive attributes `allow` and `disallow`; without both every class may pass.
    static VehicleClasses of(const QString &allow, const QString &disallow);
    /// One class alone, by its name. Vehicles of the class "ignoring" may go everywhere.
    static VehicleClasses ofOne(const QString &name);
    static VehicleClasses all() { return VehicleClasses(~std::uint64_t(0)); }
    static VehicleClasses none() { return VehicleClasses(0); }

    bool isAll() const { return *this == all(); }
    bool admits(const char *vehicleClass) const;
    bool admitsAnyOf(VehicleClasses classes) const { return mBits & classes.mBits; }
    VehicleClasses with(VehicleClasses others) const { return VehicleClasses(mBits | others.mBits); }

    /// Whether any vehicle of the road may pass, or a bicycle or a pedestrian: not so on rails, on water, in the
    /// air, and where nothing may pass at all.
    bool admitsRoadUsers() const;
    /// Anything with a motor that drives on roads, mopeds and emergency vehicles included.
    bool admitsMotorVehicles() const;
    /// Cars, vans and lorries in general use.
    bool admitsCars() const;
    /// Buses and everything on rails.
    bool admitsPublicTransport() const;
    bool admitsBicycles() const { return admits("bicycle"); }
    bool admitsPedestrians() const { return admits("pedestrian"); }
    /// Bicycles and powered two-wheelers.
    bool admitsTwoWheelers() const;

    /// "all", or the classes by name with blanks between, as `allow` spells them.
    QString toText() const;

    friend bool operator==(VehicleClasses a, VehicleClasses b) { return a.mBits == b.mBits; }
    friend bool operator!=(VehicleClasses a, VehicleClasses b) { return a.mBits != b.mBits; }

private:
    explicit VehicleClasses(std::uint64_t bits) : mBits(bits) {}

    std::uint64_t mBits;
};

} // namespace moratools
