#include "tools/sumo/import/Vocabulary.h"

#include "model/Words.h"

#include <algorithm>
#include <iterator>

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

/// Highway classes of OpenStreetMap (wiki page "Key:highway") and the class of road in a store.
struct RoadClass {
    const char *name;
    const QString &kind;
};
const RoadClass kHighways[] = {
    {"motorway", kFreeway},         {"trunk", kExpressway},        {"motorway_link", kRamp},
    {"trunk_link", kRamp},          {"primary_link", kRamp},       {"secondary_link", kRamp},
    {"tertiary_link", kRamp},       {"primary", kArterialRoad},    {"secondary", kSecondaryRoad},
    {"tertiary", kAccessRoad},      {"unclassified", kAccessRoad}, {"residential", kAccessRoad},
    {"living_street", kAccessRoad}, {"service", kAccessRoad},      {"services", kAccessRoad},
    {"track", kAccessRoad},         {"road", kAccessRoad},         {"unsurfaced", kAccessRoad},
    {"busway", kBusLane},           {"bus_guideway", kBusLane},    {"cycleway", kNonMotorLane},
    {"footway", kSidewalk},         {"pedestrian", kSidewalk},     {"path", kSidewalk},
    {"steps", kSidewalk},           {"bridleway", kSidewalk},      {"step", kSidewalk},
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

QString laneKind(const VehicleClasses &permissions) {
    if (permissions.isAll())
        return kMotorLane;
    if (permissions.admitsCars())
        return permissions.admitsBicycles() ? kMixedLane : kMotorLane;
    if (permissions.admitsPublicTransport())
        return kBusLane;
    if (permissions.admitsTwoWheelers())
        return kNonMotorLane;
    return permissions.admitsPedestrians() ? kSidewalk : kMotorLane;
}

QString linkKind(const SumoEdge &edge) {
    QString byType = highwayKind(edge.type);
    if (!byType.isEmpty())
        return byType;
    const QString kind = laneKind(edge.lanes.front().permissions);
    for (const SumoLane &lane : edge.lanes) {
        if (laneKind(lane.permissions) != kind)
            return kArterialRoad;
    }
    if (kind == kMixedLane)
        return kMixedRoad;
    return kind == kMotorLane ? kArterialRoad : kind;
}

} // namespace vocabulary

} // namespace moratools
