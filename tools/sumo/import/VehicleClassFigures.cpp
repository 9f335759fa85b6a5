#include "tools/sumo/import/VehicleClassFigures.h"
#include "tools/sumo/kept/SumoUnits.h"

#include <algorithm>

namespace moratools {

namespace {

constexpr long kCar = 1;

// Codes of the standard catalogue, which every network starts with.
const QHash<QString, long> &standardTypes() {
    static const QHash<QString, long> types{
        {QStringLiteral("coach"), 2},      {QStringLiteral("bus"), 3},
        {QStringLiteral("tram"), 3},       {QStringLiteral("rail_urban"), 3},
        {QStringLiteral("rail"), 3},       {QStringLiteral("rail_electric"), 3},
        {QStringLiteral("rail_fast"), 3},  {QStringLiteral("subway"), 3},
        {QStringLiteral("cable_car"), 3},  {QStringLiteral("delivery"), 4},
        {QStringLiteral("truck"), 4},      {QStringLiteral("trailer"), 4},
        {QStringLiteral("container"), 4},  {QStringLiteral("moped"), 5},
        {QStringLiteral("scooter"), 5},    {QStringLiteral("motorcycle"), 5},
        {QStringLiteral("bicycle"), 6},    {QStringLiteral("pedestrian"), 7},
        {QStringLiteral("wheelchair"), 7}, {QStringLiteral("emergency"), 10},
        {QStringLiteral("aircraft"), 11},  {QStringLiteral("drone"), 12},
    };
    return types;
}

void take(const std::optional<double> &given, double &figure, double &deviation) {
    if (!given)
        return;
    figure = *given;
    deviation = 0;
}

} // namespace

long standardTypeOf(const QString &vClass) {
    return standardTypes().value(vClass, kCar);
}

VehicleType vehicleTypeOf(const SumoVehicleType &type, const VehicleType &standard, long code) {
    VehicleType vehicleType = standard;
    vehicleType.vehicleTypeCode = code;
    vehicleType.vehicleTypeName = type.id;
    take(type.length, vehicleType.length, vehicleType.lengthSD);
    take(type.width, vehicleType.width, vehicleType.widthSD);
    take(type.accel, vehicleType.avgAcce, vehicleType.acceSD);
    take(type.decel, vehicleType.avgDece, vehicleType.deceSD);
    if (type.accel)
        vehicleType.maxAcce = *type.accel;
    if (type.decel)
        vehicleType.maxDece = type.emergencyDecel.value_or(std::max(*type.decel, standard.maxDece));
    if (type.maxSpeed) {
        vehicleType.maxSpeed = *type.maxSpeed * kKmhPerMs;
        vehicleType.avgSpeed = std::min(standard.avgSpeed, vehicleType.maxSpeed);
    }
    if (type.speedDev)
        vehicleType.speedSD = *type.speedDev * vehicleType.avgSpeed;
    return vehicleType;
}

} // namespace moratools
