#include "tests/support/PostgresDatabase.h"
#include "tests/tools/checks/SoundStore.h"

using namespace moratools;

namespace {

using Found = QMap<QString, int>;

class RoadChecks : public SoundStore {};

/// Faults of which the rows lie in several tables, for a store of any generation. Station 2 goes to a link that its line
/// does not pass, link 12 gets half its length, and a route loses the link in its middle.
const QStringList kFaults{
    QStringLiteral("update BusStation set linkID = 12, x = -2.62, y = -16.89 where busStationID = 2"),
    QStringLiteral("update Link set length = 80 where linkID = 12"),
    QStringLiteral("delete from RoutingLink where routingID = 1 and linkID = 5"),
};
const Found kFoundOfFaults{{QStringLiteral("link.length-far-off"), 1},
                           {QStringLiteral("route.broken"), 1},
                           {QStringLiteral("stop.off-line"), 1},
                           {QStringLiteral("bus-station.not-served"), 1}};
const QStringList kRulesOfFaults{QStringLiteral("link.length-far-off"), QStringLiteral("route.broken"),
                                 QStringLiteral("transit")};

} // namespace

TEST_F(RoadChecks, PathsCountWhereTheStoreKeepsThem) {
    // From lane 1 to lane 25, as the edges of connector 1 go.
    const auto path = [](const char *start, const char *end) {
        return QStringLiteral(
                   "update LaneConnector set centerLinePointsJson = '{\"data\":[{%1,\"z\":0},{%2,\"z\":0}]}' "
                   "where laneConnId = 1")
            .arg(QLatin1String(start), QLatin1String(end));
    };
    const char *start = "\"x\":-11.89,\"y\":-11.05";
    const char *end = "\"x\":-2.62,\"y\":-16.89";
    const QStringList rule{QStringLiteral("connector.ends-off-lanes")};
    const Found one{{rule.first(), 1}};
    EXPECT_EQ(findings(storeAfter({path(start, end)}), rule), Found());
    EXPECT_EQ(findings(storeAfter({path("\"x\":-11.89,\"y\":-7.7", end)}), rule), one); // of the lane beside
    EXPECT_EQ(findings(storeAfter({path(start, "\"x\":-2.62,\"y\":-18.9")}), rule), one);
    // Beside the middle of a lane is on it, and edges that lie elsewhere, those of connector 6, are not asked then.
    const QString edges =
        QStringLiteral("update Connector set (leftBreakPointsJson, rightBreakPointsJson) = (select "
                       "leftBreakPointsJson, rightBreakPointsJson from Connector where connID = 6) "
                       "where connID = 1");
    EXPECT_EQ(findings(storeAfter({edges}), rule), one);
    EXPECT_EQ(findings(storeAfter({edges, path("\"x\":-11.89,\"y\":-12.7", end)}), rule), Found());
}

TEST_F(RoadChecks, LinksAreClosedByRowsOfTheirOwn) {
    // Saloons, type 13, depart on links 2 and 3; a link that is closed to type 1 alone stays open to them.
    const auto close = [](const char *rows) {
        return QStringList{QStringLiteral("insert into LinkLimitVehicle values ") + QLatin1String(rows)};
    };
    const QStringList rule{QStringLiteral("departure-point.closed-road")};
    EXPECT_EQ(findings(storeAfter(close("(1, 3, 13), (1, 2, 13)")), rule), (Found{{rule.first(), 2}}));
    EXPECT_EQ(findings(storeAfter(close("(1, 3, 1), (1, 12, 13)")), rule), Found());
}

TEST_F(RoadChecks, FindTheSameOnAServer) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "no server";
    qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    const PostgresDatabase database;
    const Outcome copy = run({QStringLiteral("copy"), storeAfter(kFaults), database.connectionString()});
    ASSERT_EQ(copy.exitCode, 0) << copy.err.toStdString();
    EXPECT_EQ(findings(database.connectionString(), kRulesOfFaults), kFoundOfFaults);
}

TEST_F(RoadChecks, FindTheSameInAnOlderStore) {
    const QString store = file(QStringLiteral("older.db"));
    const QString example = sourceFolder() + QStringLiteral("/examples/crossing/crossing");
    ASSERT_EQ(
        run({QStringLiteral("new"), QStringLiteral("--template"), QStringLiteral("EmptyNet_V3.0.0"), store})
            .exitCode,
        0);
    const Outcome import = run({QStringLiteral("import"), store, example + QStringLiteral(".net.xml"),
                                QStringLiteral("--routes"), example + QStringLiteral(".rou.xml"),
                                QStringLiteral("--additional"), example + QStringLiteral(".add.xml")});
    ASSERT_EQ(import.exitCode, 0) << import.err.toStdString();
    alter(store, kFaults);
    EXPECT_EQ(findings(store, kRulesOfFaults), kFoundOfFaults);
}
