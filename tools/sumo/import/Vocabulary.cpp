#include "tools/sumo/import/Vocabulary.h"

#include "model/Words.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace moratools {

namespace {

const QString kMotorLane = Words::MotorizedLane;
const QString kMixedLane = Words::MixedLane;
const QString kNonMotorLane = Words::NonMotorizedLane;
const QString kBusLane = Words::BusLane;
const QString kSidewalk = Words::Sidewalk;
const QString kMixedRoad = Words::MixedLaneSynonym;
const QString kFreeway = Words::FreewaySynonym;
const QString kExpressway = Words::Expressway;
const QString kRamp = Words::Ramp;
const QString kArterialRoad = Words::ArterialRoad;
const QString kSecondaryRoad = Words::SecondaryRoadSynonym;
const QString kAccessRoad = Words::AccessRoad;

/// Classes of OpenStreetMap (wiki page "Key:highway") for roads with motor vehicles, and the class in a store.
struct RoadClass {
    const char *name;
    const QString &kind;
};
const RoadClass kHighways[] = {
    {"motorway", kFreeway},
    {"trunk", kExpressway},
    {"motorway_link", kRamp},
    {"trunk_link", kRamp},
    {"primary_link", kRamp},
    {"secondary_link", kRamp},
    {"tertiary_link", kRamp},
    {"primary", kArterialRoad},
    {"secondary", kSecondaryRoad},
    {"tertiary", kAccessRoad},
    {"unclassified", kAccessRoad},
    {"residential", kAccessRoad},
    {"living_street", kAccessRoad},
    {"service", kAccessRoad},
    {"services", kAccessRoad},
    {"track", kAccessRoad},
    {"road", kAccessRoad},
    {"unsurfaced", kAccessRoad},
    // Ways for others, where motor vehicles may use them all the same.
    {"busway", kAccessRoad},
    {"bus_guideway", kAccessRoad},
    {"cycleway", kAccessRoad},
    {"footway", kAccessRoad},
    {"pedestrian", kAccessRoad},
    {"path", kAccessRoad},
    {"steps", kAccessRoad},
    {"step", kAccessRoad},
    {"bridleway", kAccessRoad},
};

QString highwayKind(const QString &type) {
    const QString prefix = QStringLiteral("highway.");
    for (const QString &part : type.split(QLatin1Char('|'))) {
        if (!part.startsWith(prefix))
            continue;
        const QString name = part.mid(prefix.size());
        const auto known =
            std::find_if(std::begin(kHighways), std::end(kHighways),
                         [&name](const RoadClass &road) { return name == QLatin1String(road.name); });
        if (known != std::end(kHighways))
            return known->kind;
    }
    return {};
}

} // namespace

namespace vocabulary {

bool isRoad(const SumoEdge &edge) {
    return std::any_of(edge.lanes.begin(), edge.lanes.end(),
                       [](const SumoLane &lane) { return lane.permissions.admitsRoadUsers(); });
}

QString laneKind(const VehicleClasses &permissions) {
    if (permissions.isAll())
        return kMotorLane;
    if (!permissions.admitsRoadUsers())
        return {};
    if (permissions.admitsCars())
        return permissions.admitsBicycles() ? kMixedLane : kMotorLane;
    if (permissions.admitsPublicTransport())
        return kBusLane;
    if (permissions.admitsTwoWheelers())
        return kNonMotorLane;
    return permissions.admitsPedestrians() && !permissions.admitsMotorVehicles() ? kSidewalk : kMotorLane;
}

QString linkKind(const SumoEdge &edge) {
    if (!isRoad(edge))
        return {};
    std::set<QString> kinds;
    bool admitsMotorVehicles = false;
    for (const SumoLane &lane : edge.lanes) {
        kinds.insert(laneKind(lane.permissions));
        admitsMotorVehicles = admitsMotorVehicles || lane.permissions.admitsMotorVehicles();
    }
    const bool isForAll = kinds.count(kMotorLane) || kinds.count(kMixedLane);
    if (!isForAll && kinds.count(kBusLane))
        return kBusLane;
    if (!admitsMotorVehicles)
        return kinds.count(kNonMotorLane) ? kNonMotorLane : kSidewalk;
    QString byType = highwayKind(edge.type);
    if (!byType.isEmpty())
        return byType;
    if (!isForAll)
        return kNonMotorLane;
    return kinds.size() == 1 && kinds.count(kMixedLane) ? kMixedRoad : kArterialRoad;
}

} // namespace vocabulary

} // namespace moratools
