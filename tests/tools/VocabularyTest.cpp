#include "tools/sumo/import/Vocabulary.h"

#include <gtest/gtest.h>

using namespace moratools;

TEST(Vocabulary, LaneKindsFollowThePermissions) {
    const struct {
        const char *allow;
        const char *disallow;
        const char *kind;
    } table[] = {
        {"", "", "机动车道"},
        {"", "pedestrian tram rail", "机非共享车道"},
        {"", "pedestrian bicycle tram", "机动车道"},
        {"passenger bicycle", "", "机非共享车道"},
        {"private truck", "", "机动车道"},
        {"bus", "", "公交专用道"},
        {"bus bicycle taxi", "", "公交专用道"},
        {"bus tram", "", "公交专用道"},
        {"bicycle", "", "非机动车道"},
        {"pedestrian motorcycle moped bicycle", "", "非机动车道"},
        {"pedestrian delivery bicycle", "", "机非共享车道"},
        {"pedestrian", "", "人行道"},
        {"pedestrian delivery", "", "机动车道"},
        {"pedestrian taxi", "", "机动车道"},
        {"emergency tram", "", "公交专用道"},
        {"tram rail_urban", "", ""},
        {"ship", "", ""},
        {"", "all", ""},
    };
    for (const auto &row : table) {
        const VehicleClasses permissions =
            VehicleClasses::of(QLatin1String(row.allow), QLatin1String(row.disallow));
        EXPECT_EQ(vocabulary::laneKind(permissions), QString::fromUtf8(row.kind))
            << row.allow << "|" << row.disallow;
    }
}

TEST(Vocabulary, LinkKindsFollowTheTypeAndElseTheLanes) {
    const struct {
        const char *type;
        const char *allow;
        const char *secondAllow;
        const char *kind;
    } table[] = {
        {"highway.motorway", "", "", "高速公路"},
        {"highway.primary_link", "", "", "匝道"},
        {"cycleway.track|highway.secondary", "", "", "城市次干道"},
        {"highway.residential", "pedestrian", "passenger", "城市支路"},
        {"highway.residential", "pedestrian", "pedestrian", "人行道"},
        {"highway.residential", "bus", "bus", "公交专用道"},
        {"highway.service", "pedestrian delivery", "pedestrian delivery", "城市支路"},
        {"highway.track", "pedestrian motorcycle", "pedestrian motorcycle", "城市支路"},
        {"highway.footway", "pedestrian", "bicycle", "非机动车道"},
        {"highway.footway", "pedestrian", "pedestrian", "人行道"},
        {"highway.cycleway", "", "", "城市支路"},
        {"railway.tram", "tram", "bus tram", "公交专用道"},
        {"railway.tram", "tram", "tram", ""},
        {"waterway.river", "ship", "ship", ""},
        {"highway.unheard_of", "bicycle", "bicycle", "非机动车道"},
        {"", "passenger bicycle", "passenger bicycle", "机非共享"},
        {"", "passenger", "bus", "城市主干道"},
        {"", "pedestrian", "motorcycle", "非机动车道"},
        {"", "", "", "城市主干道"},
    };
    for (const auto &row : table) {
        SumoEdge edge;
        edge.type = QLatin1String(row.type);
        edge.lanes.resize(2);
        edge.lanes[0].permissions = VehicleClasses::of(QLatin1String(row.allow), {});
        edge.lanes[1].permissions = VehicleClasses::of(QLatin1String(row.secondAllow), {});
        EXPECT_EQ(vocabulary::linkKind(edge), QString::fromUtf8(row.kind)) << row.type << "|" << row.allow;
        EXPECT_EQ(vocabulary::isRoad(edge), *row.kind != 0) << row.type << "|" << row.allow;
    }
}
