#include "tools/sumo/import/VehicleIds.h"

#include "tools/sumo/import/Departures.h"

namespace moratools {

VehicleIds::VehicleIds(const std::vector<SumoVehicle> &vehicles) {
    for (const SumoVehicle &vehicle : vehicles) {
        if (vehicle.isFlow && !mDeparturesOf.contains(vehicle.id))
            mDeparturesOf.insert(vehicle.id, departuresOf(vehicle));
    }
}

QString VehicleIds::faultOf(const SumoVehicle &vehicle) {
    QSet<QString> &seen = vehicle.isFlow ? mFlows : mVehicles;
    if (seen.contains(vehicle.id))
        return QStringLiteral("it occurs a second time");
    seen.insert(vehicle.id);
    const QString flow = vehicle.isFlow ? QString() : flowThatHas(vehicle.id);
    return flow.isNull() ? QString() : QStringLiteral("a vehicle of flow \"%1\" is called so").arg(flow);
}

QString VehicleIds::flowThatHas(const QString &vehicle) const {
    const int dot = vehicle.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || mDeparturesOf.isEmpty())
        return {};
    const QString flow = vehicle.left(dot);
    bool isNumber = false;
    const int number = vehicle.midRef(dot + 1).toInt(&isNumber);
    const bool isOfFlow = isNumber && number >= 0 && QString::number(number) == vehicle.midRef(dot + 1) &&
                          number < mDeparturesOf.value(flow, 0);
    return isOfFlow ? flow : QString();
}

} // namespace moratools
