#include "tools/sumo/schema/Schema.h"
#include "tests/support/Places.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace moratools::schema;

namespace {

constexpr auto kNetwork = FileKind::Network;
constexpr auto kCompanion = FileKind::Companion;

} // namespace

TEST(Schema, SaysWhereEverythingGoes) {
    const struct {
        FileKind kind;
        const char *path;
        const char *attribute;
        Target target;
        const char *where;
        bool isListed;
    } table[] = {
        {kNetwork, "edge", "", Target::Column, "Link", true},
        {kNetwork, "edge", "id", Target::Column, "Link.linkName", true},
        {kNetwork, "edge", "spreadType", Target::Attributes, "Link.otherAttrsJson sumo", true},
        {kNetwork, "edge:inside", "id", Target::Attributes, "Link.otherAttrsJson sumo.junction", true},
        {kNetwork, "edge/lane", "width", Target::Column, "Lane.width", true},
        {kNetwork, "edge/lane/param", "key", Target::Attributes, "Link.otherAttrsJson sumo", true},
        {kNetwork, "tlLogic/param", "value", Target::Attributes, "Net.otherAttrsJson sumo.programmes", true},
        {kNetwork, ".", "xsi:noNamespaceSchemaLocation", Target::Attributes, "Net.otherAttrsJson sumo.net",
         true},
        {kNetwork, "connection", "state", Target::Attributes, "Connector.otherAttrsJson sumo.connections",
         true},
        {kNetwork, "connection/paint", "", Target::Attributes, "Link.otherAttrsJson sumo.junction", false},
        {kNetwork, ".", "version", Target::Attributes, "Net.otherAttrsJson sumo.net", true},
        // What SUMO does not know is kept where its surroundings are.
        {kNetwork, "edge/lane", "paint", Target::Attributes, "Link.otherAttrsJson sumo", false},
        {kNetwork, "edge/paint", "colour", Target::Attributes, "Link.otherAttrsJson sumo", false},
        {kNetwork, "paint", "", Target::Attributes, "Net.otherAttrsJson sumo.elements", false},
        {kCompanion, "paint", "", Target::Attributes, "Net.otherAttrsJson sumo.files", false},
        {kCompanion, ".", "paint", Target::LeftOut, "", false},
        {kCompanion, ".", "xsi:noNamespaceSchemaLocation", Target::LeftOut, "", true},
        // The same name in other places.
        {kCompanion, "route", "id", Target::Column, "Routing.routingName", true},
        {kCompanion, "vehicle/route", "id", Target::Attributes, "Net.otherAttrsJson sumo.files", true},
        {kCompanion, "flow/routeDistribution/route/stop", "busStop", Target::Column,
         "BusStationLine.busStationID", true},
        {kCompanion, "person/stop", "lane", Target::Attributes, "Net.otherAttrsJson sumo.files", true},
        {kCompanion, "vTypeDistribution/vType", "decel", Target::Column, "VehicleType.avgDece", true},
        {kCompanion, "vType/carFollowing-IDM", "tau", Target::Attributes, "Net.otherAttrsJson sumo.files",
         true},
        {kCompanion, "rerouter/interval/closingReroute", "id", Target::Column, "RoadWorkZone.roadID", true},
    };
    for (const auto &row : table) {
        const Fate fate = fateOf(row.kind, QLatin1String(row.path), QLatin1String(row.attribute));
        EXPECT_EQ(fate.target, row.target) << row.path << " " << row.attribute;
        EXPECT_EQ(fate.where, QLatin1String(row.where)) << row.path << " " << row.attribute;
        EXPECT_EQ(fate.isListed, row.isListed) << row.path << " " << row.attribute;
        EXPECT_EQ(fate.reason.isEmpty(), row.target != Target::LeftOut) << row.path << " " << row.attribute;
    }
}

// MORASTORE_WRITE_GOLDEN=1 writes the tables anew.
TEST(Schema, TheManualHasTheListThatTheImportUses) {
    QFile manual(sourceFolder() + QStringLiteral("/docs/import.md"));
    ASSERT_TRUE(manual.open(QIODevice::ReadWrite));
    const QString text = QString::fromUtf8(manual.readAll());
    const QString first = QStringLiteral("### Networks\n");
    const int start = text.indexOf(first);
    ASSERT_GE(start, 0);
    if (qEnvironmentVariableIsSet("MORASTORE_WRITE_GOLDEN")) {
        manual.resize(0);
        manual.write((text.left(start) + asMarkdown()).toUtf8());
        return;
    }
    EXPECT_TRUE(text.mid(start) == asMarkdown())
        << "docs/import.md has other tables; write them anew with MORASTORE_WRITE_GOLDEN=1";
}
