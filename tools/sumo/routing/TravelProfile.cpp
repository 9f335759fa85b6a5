#include "tools/sumo/routing/TravelProfile.h"
#include "tools/sumo/kept/SumoUnits.h"

#include <algorithm>
#include <limits>

namespace moratools {

namespace {

constexpr double kUsualSpeed = 200; // km/h, as the rest

struct ClassSpeeds {
    double highest = kUsualSpeed;
    double desired = std::numeric_limits<double>::infinity();
};

ClassSpeeds speedsOf(const QString &vClass) {
    static const QHash<QString, ClassSpeeds> speeds{
        {QStringLiteral("pedestrian"), {37.58, 5}},
        {QStringLiteral("bicycle"), {50, 20}},
        {QStringLiteral("moped"), {60}},
        {QStringLiteral("truck"), {130}},
        {QStringLiteral("trailer"), {130}},
        {QStringLiteral("bus"), {100}},
        {QStringLiteral("coach"), {100}},
        {QStringLiteral("tram"), {80}},
        {QStringLiteral("rail_urban"), {100}},
        {QStringLiteral("rail"), {160}},
        {QStringLiteral("rail_electric"), {220}},
        {QStringLiteral("rail_fast"), {330}},
        {QStringLiteral("ship"), {8 * 1.855}}, // eight knots
    };
    return speeds.value(vClass);
}

} // namespace

TravelProfile travelProfileOf(const SumoVehicleType &type) {
    const ClassSpeeds usual = speedsOf(type.vClass);
    const double factor = type.speedFactor.value_or(1);
    const double highest = type.maxSpeed.value_or(usual.highest / kKmhPerMs);
    const double desired = type.desiredMaxSpeed.value_or(
        type.maxSpeed ? std::numeric_limits<double>::infinity() : usual.desired / kKmhPerMs);
    return {type.vClass, std::min(highest, desired * factor), factor};
}

} // namespace moratools
