#include "tools/sumo/routing/TripRouter.h"
#include "tests/tools/CompanionFile.h"
#include "tools/sumo/import/CompanionPlan.h"
#include "tools/sumo/reader/NetReader.h"

using namespace moratools;

namespace {

/// From a to d lead two ways: over b 300 m at 30 m/s, and 4 s on the junction before it; over c 150 m at 10 m/s.
/// From e nothing leads on.
constexpr const char *kNet = R"(<net>
<edge id=":j_0" function="internal"><lane id=":j_0_0" index="0" speed="10" length="20" shape="0,0 1,0"/>
 <lane id=":j_0_1" index="1" speed="10" length="40" shape="0,0 1,0"/></edge>
<edge id=":j_1" function="internal"><lane id=":j_1_0" index="0" INSIDE speed="10" length="20" shape="0,0 1,0"/></edge>
<edge id="a" from="i" to="j"><lane id="a_0" index="0" speed="10" length="10" shape="0,0 1,0"/></edge>
<edge id="b" from="j" to="k">
 <lane id="b_0" index="0" ALLOWED speed="5" length="300" shape="0,0 1,0"/>
 <lane id="b_1" index="1" ALLOWED speed="30" length="300" shape="0,0 1,0"/></edge>
<edge id="c" from="j" to="k"><lane id="c_0" index="0" speed="10" length="150" shape="0,0 1,0"/></edge>
<edge id="d" from="k" to="l"><lane id="d_0" index="0" speed="10" length="10" shape="0,0 1,0"/></edge>
<edge id="e" from="k" to="m"><lane id="e_0" index="0" speed="10" length="10" shape="0,0 1,0"/></edge>
<connection from="a" to="b" fromLane="0" toLane="1" via=":j_0_0" dir="s" state="STATE"/>
<connection from=":j_0" to="b" fromLane="0" toLane="1" via=":j_1_0" dir="s" state="M"/>
<connection from=":j_1" to="b" fromLane="0" toLane="1" dir="s" state="M"/>
<connection from="a" to="c" fromLane="0" toLane="0" dir="r" state="M"/>
<connection from="b" to="d" fromLane="1" toLane="0" dir="s" state="M"/>
<connection from="c" to="d" fromLane="0" toLane="0" dir="s" state="M"/>
<connection from="c" to="e" fromLane="0" toLane="0" dir="s" state="M"/>
</net>)";

class Trip : public CompanionFile {
protected:
    SumoNet net(const QByteArray &allowed = {}, const QByteArray &state = "M",
                const QByteArray &inside = {}) {
        QByteArray text = kNet;
        text.replace("ALLOWED", allowed).replace("STATE", state).replace("INSIDE", inside);
        QFile file(mFolder.filePath(QStringLiteral("some.net.xml")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        return readSumoNet(file.fileName());
    }
    /// What a trip drives.
    static QString wayOf(const SumoCompanions &companions, std::size_t vehicle) {
        const int route = companions.vehicles.at(vehicle).route;
        return route < 0 ? QString() : companions.routes.at(std::size_t(route)).edges.join(QLatin1Char(' '));
    }
};

} // namespace

TEST_F(Trip, DrivesTheFastestWayThatItsClassMay) {
    const struct {
        const char *type;
        const char *allowed; ///< of b
        const char *state;   ///< of the connection to b
        const char *inside;  ///< of the second lane on the way to b
        const char *way;
    } table[] = {
        {"", "", "M", "", "a b d"},
        {"", "", "m", "", "a c d"}, // gives way: 1.5 s make 15.5 of the 14
        {"", "disallow=\"passenger\"", "M", "", "a c d"},
        {"", "allow=\"bus\"", "M", "", "a c d"},
        {"vClass=\"bus\"", "allow=\"bus\"", "M", "", "a b d"}, // 27.8 m/s at most
        {"vClass=\"bicycle\"", "", "M", "", "a c d"},
        {"vClass=\"bicycle\" maxSpeed=\"40\"", "", "M", "", "a b d"},
        {"vClass=\"bicycle\" maxSpeed=\"40\" desiredMaxSpeed=\"10\"", "", "M", "", "a c d"},
        {"maxSpeed=\"10\"", "", "M", "", "a c d"},
        {"maxSpeed=\"30\" speedFactor=\"normc(2,0.1,1,3)\"", "", "M", "", "a c d"}, // 12 s against 7.5
        {"vClass=\"ignoring\"", "allow=\"tram\"", "M", "", "a b d"},
        {"", "", "M", "disallow=\"passenger\"", "a b d"}, // only the first edge in a junction counts
    };
    for (const auto &row : table) {
        SumoCompanions companions = read("<vType id=\"t\" " + QByteArray(row.type) +
                                         "/><trip id=\"x\" type=\"t\" depart=\"0\" from=\"a\" to=\"d\"/>");
        EXPECT_TRUE(routeTrips(net(row.allowed, row.state, row.inside), companions).empty());
        EXPECT_EQ(wayOf(companions, 0), QLatin1String(row.way))
            << row.type << row.allowed << row.state << row.inside;
    }
}

TEST_F(Trip, FindsItsWayWhereAJunctionHasLengthsThatCannotBe) {
    SumoNet roads = net();
    for (SumoInternalLane &lane : roads.internalLanes)
        lane.length = -1000;
    SumoCompanions companions = read("<trip id=\"x\" depart=\"0\" from=\"a\" to=\"d\"/>");
    EXPECT_TRUE(routeTrips(roads, companions).empty());
    EXPECT_EQ(wayOf(companions, 0), QStringLiteral("a b d"));
}

TEST_F(Trip, PassesWhatItWantsToAndSharesItsRoute) {
    SumoCompanions companions = read(
        "<busStop id=\"s\" lane=\"c_0\"/><vTypeDistribution id=\"mixed\"><vType id=\"fast\" probability=\"0.4\"/>"
        "<vType id=\"slow\" maxSpeed=\"9\" probability=\"0.6\"/></vTypeDistribution>"
        "<trip id=\"0\" depart=\"0\" from=\"a\" to=\"d\" via=\"c\"/>"
        "<trip id=\"1\" depart=\"0\" from=\"a\" to=\"d\"><stop busStop=\"s\" duration=\"1\"/></trip>"
        "<flow id=\"2\" number=\"5\" end=\"60\" type=\"mixed\" from=\"a\" to=\"d\"/>"
        "<trip id=\"3\" depart=\"0\" from=\"b\" to=\"b\"/>"
        "<trip id=\"4\" depart=\"0\" from=\"a\"/>"
        "<vehicle id=\"5\" depart=\"0\"><route edges=\"a c\"/></vehicle>");
    EXPECT_TRUE(routeTrips(net(), companions).empty());
    const char *ways[] = {"a c d", "a c d", "a c d", "b", "", "a c"};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(wayOf(companions, i), QLatin1String(ways[i])) << i;
    EXPECT_EQ(companions.vehicles[0].route, companions.vehicles[2].route);
}

TEST_F(Trip, WithoutAWayIsNamedAndLeftOut) {
    const QByteArray demand = "<vType id=\"t\" vClass=\"tram\"/>"
                              "<trip id=\"there\" depart=\"0\" from=\"a\" to=\"d\"/>"
                              "<flow id=\"back\" number=\"7\" end=\"60\" from=\"d\" to=\"a\"/>"
                              "<trip id=\"rails\" type=\"t\" depart=\"0\" from=\"a\" to=\"d\"/>"
                              "<trip id=\"lost\" depart=\"0\" from=\"a\" to=\"d\" via=\"gone\"/>"
                              "<trip id=\"again\" depart=\"0\" from=\"a\" to=\"d\"/>";
    const SumoNet roads = net("", "M", "");
    const SumoNet forCars = [this] {
        SumoNet net = this->net();
        for (SumoEdge &edge : net.edges) {
            for (SumoLane &lane : edge.lanes)
                lane.permissions = VehicleClasses::of(QStringLiteral("passenger"), QString());
        }
        return net;
    }();
    const CompanionPlan plan = planCompanions(forCars, read(demand), {}, Trips::Routed);
    EXPECT_EQ(plan.demand.vehicles, 2);
    EXPECT_EQ(plan.leftOut.vehicles, 9);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("flows")), 1);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("vehicles")), 2);
    const QString lines = plan.leftOut.lines().join(QLatin1Char('\n'));
    for (
        const char *line :
        {"\"back\" (some.xml, line 2: no way from edge \"d\" to \"a\" for the class \"passenger\"; 7 vehicles)",
         "\"rails\" (some.xml, line 2: no way from edge \"a\" to \"d\" for the class \"tram\")",
         "\"lost\" (some.xml, line 2: no edge \"gone\")"})
        EXPECT_TRUE(lines.contains(QLatin1String(line))) << line << "\n" << lines.toStdString();
    ASSERT_EQ(plan.demand.decisions.size(), 1u);
    EXPECT_EQ(plan.demand.decisions[0].routes.at(0).edges.join(QLatin1Char(' ')), QStringLiteral("a b d"));
    // Without the option they depart, and nobody asks for the way.
    const CompanionPlan asTheyAre = planCompanions(roads, read(demand));
    EXPECT_EQ(asTheyAre.demand.vehicles, 10);
    EXPECT_TRUE(asTheyAre.demand.decisions.empty());
}
