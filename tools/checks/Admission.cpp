#include "tools/checks/Admission.h"

#include "model/Words.h"

#include <algorithm>

namespace moratools {

namespace {

// What is as wide is neither walked nor cycled: the widest cargo tricycles have 1.1 m, the narrowest cars 1.3 m. The
// names of types are the host's own and do not tell.
constexpr double kWidestCycle = 1.2; // metres

bool isForCyclesAlone(const Lane &lane) {
    return Words::NonMotorizedLane.names(lane.actionType) || Words::Sidewalk.names(lane.actionType);
}

bool isClosedTo(const Lane &lane, const VehicleType &type) {
    const bool isListed = std::any_of(
        lane.mlLimitVehicle.begin(), lane.mlLimitVehicle.end(),
        [&type](const QPair<long, QString> &limited) { return limited.first == type.vehicleTypeCode; });
    return isListed || (type.width > kWidestCycle && isForCyclesAlone(lane));
}

} // namespace

Admission::Admission(const Checked &checked) {
    for (const auto &type : checked.network().traffic.vehicleTypes) {
        mTypes.insert(type->vehicleTypeCode, type.get());
        if (!mBus && Words::Bus.names(type->vehicleTypeName))
            mBus = type.get();
    }
}

bool Admission::isClosed(const Link &link, const VehicleType &type) const {
    return !link.mlLane.isEmpty() &&
           std::all_of(link.mlLane.begin(), link.mlLane.end(),
                       [&type](const Lane *lane) { return isClosedTo(*lane, type); });
}

} // namespace moratools
