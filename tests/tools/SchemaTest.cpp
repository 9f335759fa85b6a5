#include "tools/sumo/schema/Schema.h"
#include "tests/support/Manual.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace moratools::schema;

namespace {

constexpr auto kNetwork = FileKind::Network;
constexpr auto kCompanion = FileKind::Companion;

} // namespace

TEST(Schema, SaysWhereEverythingGoes) {
    const struct {
        const char *path;
        const char *attribute;
        const char *where;
        FileKind kind;
        Target target;
        bool isListed;
    } table[] = {
        {"edge", "", "Link", kNetwork, Target::Column, true},
        {"edge", "id", "Link.linkName", kNetwork, Target::Column, true},
        {"edge", "spreadType", "Link.otherAttrsJson sumo", kNetwork, Target::Attributes, true},
        {"edge:inside", "id", "Link.otherAttrsJson sumo.junction", kNetwork, Target::Attributes, true},
        {"edge/lane", "width", "Lane.width", kNetwork, Target::Column, true},
        {"edge/lane/param", "key", "Link.otherAttrsJson sumo", kNetwork, Target::Attributes, true},
        {"tlLogic/param", "value", "Net.otherAttrsJson sumo.programmes", kNetwork, Target::Attributes, true},
        {".", "xsi:noNamespaceSchemaLocation", "Net.otherAttrsJson sumo.net", kNetwork, Target::Attributes,
         true},
        {"connection", "state", "Connector.otherAttrsJson sumo.connections", kNetwork, Target::Attributes,
         true},
        {"connection/paint", "", "Link.otherAttrsJson sumo.junction", kNetwork, Target::Attributes, false},
        {".", "version", "Net.otherAttrsJson sumo.net", kNetwork, Target::Attributes, true},
        // What SUMO does not know is kept where its surroundings are.
        {"edge/lane", "paint", "Link.otherAttrsJson sumo", kNetwork, Target::Attributes, false},
        {"edge/paint", "colour", "Link.otherAttrsJson sumo", kNetwork, Target::Attributes, false},
        {"paint", "", "Net.otherAttrsJson sumo.elements", kNetwork, Target::Attributes, false},
        {"include", "href", "", kCompanion, Target::LeftOut, true},
        {"paint", "", "Net.otherAttrsJson sumo.files", kCompanion, Target::Attributes, false},
        {".", "paint", "", kCompanion, Target::LeftOut, false},
        {".", "xsi:noNamespaceSchemaLocation", "", kCompanion, Target::LeftOut, true},
        // The same name in other places.
        {"route", "id", "Routing.routingName", kCompanion, Target::Column, true},
        {"vehicle/route", "id", "Net.otherAttrsJson sumo.files", kCompanion, Target::Attributes, true},
        {"flow/routeDistribution/route/stop", "busStop", "BusStationLine.busStationID", kCompanion,
         Target::Column, true},
        {"person/stop", "lane", "Net.otherAttrsJson sumo.files", kCompanion, Target::Attributes, true},
        {"vTypeDistribution/vType", "decel", "VehicleType.avgDece", kCompanion, Target::Column, true},
        {"vType/carFollowing-IDM", "tau", "Net.otherAttrsJson sumo.files", kCompanion, Target::Attributes,
         true},
        {"rerouter/interval/closingReroute", "id", "RoadWorkZone.roadID", kCompanion, Target::Column, true},
    };
    for (const auto &row : table) {
        const Fate fate = fateOf(row.kind, QLatin1String(row.path), QLatin1String(row.attribute));
        EXPECT_EQ(fate.target, row.target) << row.path << " " << row.attribute;
        EXPECT_EQ(fate.where, QLatin1String(row.where)) << row.path << " " << row.attribute;
        EXPECT_EQ(fate.isListed, row.isListed) << row.path << " " << row.attribute;
        EXPECT_EQ(fate.reason.isEmpty(), row.target != Target::LeftOut) << row.path << " " << row.attribute;
    }
}

TEST(Schema, TheManualHasTheListThatTheImportUses) {
    expectGenerated("import.md", "### Networks\n", asMarkdown());
}
