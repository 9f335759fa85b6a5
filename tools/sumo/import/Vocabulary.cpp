#include "tools/sumo/import/Vocabulary.h"

#include <algorithm>
#include <iterator>

namespace moratools {

namespace {

const QString kMotorLane = QStringLiteral("机动车道");
const QString kMixedLane = QStringLiteral("机非共享车道");
const QString kNonMotorLane = QStringLiteral("非机动车道");
const QString kBusLane = QStringLiteral("公交专用道");
const QString kSidewalk = QStringLiteral("人行道");
const QString kMixedRoad = QStringLiteral("机非共享");
const QString kFreeway = QStringLiteral("高速公路");
const QString kExpressway = QStringLiteral("城市快速路");
const QString kRamp = QStringLiteral("匝道");
const QString kArterialRoad = QStringLiteral("城市主干道");
const QString kSecondaryRoad = QStringLiteral("城市次干道");
const QString kAccessRoad = QStringLiteral("城市支路");

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
