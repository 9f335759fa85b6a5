#include "tools/sumo/import/CompanionPlan.h"
#include "tests/support/Places.h"
#include "tests/tools/CompanionFile.h"
#include "tools/sumo/import/Departures.h"
#include "tools/sumo/reader/NetReader.h"

#include <algorithm>
#include <numeric>

using namespace moratools;

namespace {

class Plan : public CompanionFile {
protected:
    CompanionPlan plan(const QByteArray &content) { return planCompanions(mNet, read(content)); }
    static QString allLines(const CompanionPlan &plan) {
        return plan.leftOut.lines().join(QLatin1Char('\n'));
    }

    const SumoNet mNet = readSumoNet(sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml"));
};

int sum(const std::map<int, int> &counts) {
    return std::accumulate(counts.begin(), counts.end(), 0,
                           [](int all, const auto &entry) { return all + entry.second; });
}

SumoVehicle flow(double begin, double end, double period, int number) {
    SumoVehicle vehicle;
    vehicle.isFlow = true;
    vehicle.begin = begin;
    vehicle.end = end;
    vehicle.period = period;
    vehicle.number = number;
    return vehicle;
}

} // namespace

TEST(Departures, AFlowIsDividedAmongItsQuartersOfAnHour) {
    using Counts = std::map<int, int>;
    const struct {
        SumoVehicle flow;
        Counts expected;
    } table[] = {
        {flow(0, 3600, 0, 4), {{0, 1}, {1, 1}, {2, 1}, {3, 1}}},
        {flow(0, 3600, 3600.0 / 7, -1), {{0, 2}, {1, 2}, {2, 2}, {3, 1}}},
        {flow(899, 903, 1, -1), {{0, 1}, {1, 3}}},
        {flow(50300, 54100, 15, -1), {{55, 7}, {56, 60}, {57, 60}, {58, 60}, {59, 60}, {60, 7}}},
        {flow(0, 1e6, 2, 20), {{0, 20}}},
        {flow(100, 100, 0, 5), {{0, 5}}},
        {flow(0, 100, 0, 0), {}},
    };
    for (const auto &entry : table) {
        EXPECT_EQ(departuresBySlice(entry.flow), entry.expected) << entry.flow.begin;
        EXPECT_EQ(departuresOf(entry.flow), sum(entry.expected));
    }
}

TEST_F(Plan, WhatLeadsNowhereIsNamedByKindAndTheRestStays) {
    const CompanionPlan plan = this->plan(
        "<vType id=\"t\"/><vType id=\"t\"/>"
        "<vTypeDistribution id=\"d\" vTypes=\"t gone\"/><vTypeDistribution id=\"none\" vTypes=\"gone\"/>"
        "<route id=\"good\" edges=\"west_in approach_market\"/><route id=\"bad\" edges=\"west_in gone\"/>"
        "<vehicle id=\"1\" type=\"t\" depart=\"0\" route=\"good\"/>"
        "<vehicle id=\"2\" type=\"t\" depart=\"0\" route=\"bad\"/>"
        "<vehicle id=\"3\" type=\"gone\" depart=\"0\" route=\"good\"/>"
        "<vehicle id=\"4\" depart=\"triggered\" route=\"good\"/>"
        "<vehicle id=\"5\" depart=\"0\" route=\"missing\"/>"
        "<flow id=\"6\" end=\"60\" number=\"9\" from=\"west_in\" to=\"gone\"/>"
        "<inductionLoop id=\"l\" lane=\"west_in_9\"/><inductionLoop id=\"k\" lane=\"west_in_0\"/>"
        "<busStop id=\"s\" lane=\":market_0_0\"/>"
        "<variableSpeedSign id=\"v\" lanes=\"west_in_0\"/>"
        "<rerouter id=\"r\" edges=\"\"><interval><closingReroute id=\"gone\"/></interval></rerouter>"
        "<interval><edgeRelation from=\"west_in\" to=\"north_out\" ratio=\"1\"/></interval>"
        "<include href=\"more.xml\"/><poi id=\"p\"/>");
    const char *kinds[] = {"vehicle types",
                           "members of distributions",
                           "vehicle type distributions",
                           "routes",
                           "flows",
                           "loops",
                           "bus stops",
                           "speed signs",
                           "closures",
                           "turn ratios",
                           "included files"};
    for (const char *kind : kinds)
        EXPECT_GE(plan.leftOut.count(QLatin1String(kind)), 1) << kind << allLines(plan).toStdString();
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("vehicles")), 4);
    EXPECT_EQ(plan.leftOut.vehicles, 13);
    EXPECT_EQ(plan.demand.vehicles, 1);
    EXPECT_EQ(plan.companions->loops.size(), 1u);
    EXPECT_TRUE(
        allLines(plan).contains(QStringLiteral("\"2\" (some.xml, line 2: route \"bad\": no edge \"gone\")")))
        << allLines(plan).toStdString();
    const auto &elements = plan.leftOut.elements();
    const auto second = std::find_if(elements.begin(), elements.end(), [](const LeftOut::Element &element) {
        return element.reason == QLatin1String("route \"bad\": no edge \"gone\"");
    });
    ASSERT_NE(second, elements.end());
    EXPECT_EQ(second->source.file, 0);
    EXPECT_EQ(second->source.element, 8) << "types 1 to 4, routes 5 and 6, the first vehicle 7";
}

TEST_F(Plan, WhatOccursASecondTimeIsLeftOut) {
    const CompanionPlan plan = this->plan(
        "<route id=\"r\" edges=\"west_in approach_market\"/>"
        "<vehicle id=\"v\" depart=\"0\" route=\"r\"/><vehicle id=\"v\" depart=\"1\" route=\"r\"/>"
        "<flow id=\"v\" end=\"60\" number=\"3\" route=\"r\"/><flow id=\"v\" end=\"60\" number=\"5\" route=\"r\"/>"
        "<vehicle id=\"v.2\" depart=\"2\" route=\"r\"/><vehicle id=\"v.3\" depart=\"2\" route=\"r\"/>"
        "<vehicle id=\"w\" depart=\"2\" route=\"gone\"/><vehicle id=\"w\" depart=\"2\" route=\"r\"/>"
        "<e1Detector id=\"d\" lane=\"west_in_0\"/><e1Detector id=\"d\" lane=\"west_in_1\"/>"
        "<instantInductionLoop id=\"d\" lane=\"west_in_0\"/>"
        "<e2Detector id=\"d\" lane=\"west_in_0\"/><laneAreaDetector id=\"d\" lane=\"west_in_0\"/>"
        "<tlLogic id=\"market\" programID=\"0\"><phase duration=\"9\" state=\"r\"/></tlLogic>");
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("vehicles")), 3)
        << "v, v.2 (of the flow), and w with no route";
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("flows")), 1);
    EXPECT_EQ(plan.leftOut.vehicles, 8);
    EXPECT_EQ(plan.demand.vehicles, 6) << "v, three of the flow, v.3, and w";
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("loops")), 1);
    EXPECT_EQ(plan.companions->loops.size(), 2u);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("area detectors")), 1);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("signal programmes")), 1);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("signal lamps")), 0) << "the first programme runs";
}

TEST_F(Plan, ARouteIsDrivenFromConnectionToConnection) {
    const CompanionPlan plan =
        this->plan("<route id=\"jump\" edges=\"west_in approach_market market_west\"/>"
                   "<vehicle id=\"1\" depart=\"0\" route=\"jump\"/>"
                   "<vehicle id=\"2\" depart=\"0\"><route edges=\"north_in north_out\"/></vehicle>"
                   "<vehicle id=\"3\" depart=\"0\"><route edges=\" west_in  approach_market \"/></vehicle>"
                   "<trip id=\"4\" depart=\"0\" from=\"west_in \" to=\" north_out\"/>");
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("vehicles")), 2);
    EXPECT_TRUE(allLines(plan).contains(QStringLiteral(
        "\"jump\" (some.xml, line 2: no connection from edge \"approach_market\" to edge \"market_west\")")))
        << allLines(plan).toStdString();
    EXPECT_EQ(plan.demand.vehicles, 2) << "blanks around an id are not part of it";
}

TEST_F(Plan, WhoDoesNotDepartFromAnEdgeAtATimeIsCountedAndKept) {
    const CompanionPlan plan = this->plan(
        "<route id=\"r\" edges=\"west_in\"/><vehicle id=\"v\" depart=\"triggered\" route=\"r\"/>"
        "<flow id=\"f\" begin=\"triggered\" end=\"9\" number=\"7\" route=\"r\"/>"
        "<trip id=\"t\" depart=\"0\" fromTaz=\"west\" toTaz=\"east\"/><trip id=\"u\" depart=\"0\"/>"
        "<flow id=\"g\" end=\"900\" number=\"2000000000\" route=\"r\"/><flow id=\"h\" end=\"900\" number=\"2000000000\" route=\"r\"/>");
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("flows")), 1);
    EXPECT_EQ(plan.demand.vehicles, 2147483647) << "what 32 bits hold";
    EXPECT_EQ(plan.leftOut.vehicles, 1 + 7 + 1 + 1 + (4000000000 - 2147483647));
    ASSERT_EQ(plan.leftOut.elements().size(), 1u) << "what leads nowhere is not kept";
    EXPECT_EQ(plan.leftOut.elements().front().source.element, 5) << "it has neither a route nor a first edge";
}

TEST_F(Plan, TypesTakeTheirOwnSharesOfADistribution) {
    const CompanionPlan plan = this->plan(
        "<vTypeDistribution id=\"d\" vTypes=\"a b c\"/><vTypeDistribution id=\"e\" vTypes=\"a b\" probabilities=\"1 1\"/>"
        "<vType id=\"a\" probability=\"0\"/><vType id=\"b\" probability=\"3\"/><vType id=\"c\"/>");
    ASSERT_EQ(plan.companions->typeDistributions.size(), 2u);
    const auto shares = [&](int place) {
        std::vector<double> all;
        for (const SumoChoice &member : plan.companions->typeDistributions[std::size_t(place)].members)
            all.push_back(member.probability);
        return all;
    };
    EXPECT_EQ(shares(0), std::vector<double>({0, 3, 1}));
    EXPECT_EQ(shares(1), std::vector<double>({1, 1})) << "shares that the distribution gives go first";
}

TEST_F(Plan, TenOfAKindAreNamed) {
    QByteArray loops;
    for (int i = 0; i < 14; ++i)
        loops += "<inductionLoop id=\"" + QByteArray::number(i) + "\" lane=\"gone_0\"/>";
    const QStringList lines = plan(loops).leftOut.lines();
    EXPECT_EQ(lines.size(), 12);
    EXPECT_EQ(lines.last().trimmed(), QStringLiteral("and 4 more"));
}

TEST_F(Plan, VehiclesOfALineAreRunsOfIt) {
    const QByteArray stop = "<stop busStop=\"s\" duration=\"20\"/>";
    const CompanionPlan plan = this->plan(
        "<busStop id=\"s\" lane=\"west_in_0\"/><busStop id=\"off\" lane=\"north_in_1\"/>"
        "<route id=\"r\" edges=\"west_in approach_market\">" +
        stop +
        "<stop busStop=\"off\"/></route>"
        "<vehicle id=\"bus_11_0\" depart=\"60\" route=\"r\"/><vehicle id=\"bus_11_1\" depart=\"660\" route=\"r\"/>"
        "<vehicle id=\"x\" line=\"7\" depart=\"0\"><route edges=\"west_in\"/></vehicle>"
        "<flow id=\"y\" line=\"7\" begin=\"0\" end=\"1200\" period=\"600\" route=\"r\"/>"
        "<vehicle id=\"car\" depart=\"0\"><route edges=\"west_in approach_market\"/></vehicle>"
        "<person id=\"p\" depart=\"5\"><stop busStop=\"s\"/><ride lines=\"7\"/></person>"
        "<person id=\"q\" depart=\"5\"><stop busStop=\"s\"/><ride lines=\"8\"/></person>");
    ASSERT_EQ(plan.lines.size(), 3u);
    EXPECT_EQ(plan.lines[0].name, QStringLiteral("bus_11"));
    EXPECT_EQ(plan.lines[0].runs, 2);
    EXPECT_EQ(plan.lines[0].firstDeparture, 60);
    EXPECT_EQ(plan.lines[0].lastDeparture, 660);
    ASSERT_EQ(plan.lines[0].stops.size(), 1u) << "a stop off the route is left out";
    EXPECT_EQ(plan.lines[1].name, QStringLiteral("7"));
    EXPECT_EQ(plan.lines[2].name, QStringLiteral("7 (2)")) << "another route makes another line";
    EXPECT_EQ(plan.lines[2].runs, 2);
    EXPECT_EQ(plan.lines[2].stops.at(0).arrivals.size(), 1u);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("waiting passengers")), 1);
    EXPECT_GE(plan.leftOut.count(QStringLiteral("stops")), 1);
    EXPECT_EQ(plan.demand.vehicles, 1);
}

TEST_F(Plan, PassengersBoardWhereTheirWayHasLed) {
    const CompanionPlan plan = this->plan(
        "<busStop id=\"s\" lane=\"west_in_0\"/><busStop id=\"t\" lane=\"west_in_0\"/>"
        "<route id=\"r\" edges=\"west_in\"><stop busStop=\"s\"/><stop busStop=\"t\"/></route>"
        "<vehicle id=\"tram.7\" line=\"7\" depart=\"0\" route=\"r\"/><flow id=\"bus\" end=\"900\" number=\"3\" route=\"r\"/>"
        "<person id=\"walks\" depart=\"100\"><walk edges=\"north_in\" busStop=\"s\" duration=\"40\"/>"
        "<stop busStop=\"s\" duration=\"20\"/><ride busStop=\"t\" lines=\"7\"/><walk to=\"north_in\"/></person>"
        "<person id=\"shops\" depart=\"0\"><stop lane=\"west_in_0\" until=\"600\"/><walk busStop=\"t\"/>"
        "<ride lines=\"any name\" intended=\"bus.2\"/></person>"
        "<person id=\"means the vehicle\" depart=\"5\"><stop busStop=\"s\"/><ride lines=\"tram.7\"/></person>"
        "<person id=\"other flow\" depart=\"5\"><stop busStop=\"s\"/><ride lines=\"8\" intended=\"train.2\"/></person>"
        "<person id=\"called\" depart=\"triggered\"><ride lines=\"7\"/></person>");
    ASSERT_EQ(plan.lines.size(), 2u);
    const auto boarding = [&](std::size_t line, std::size_t stop) {
        QStringList all;
        for (const SumoPassengers *waiting : plan.lines[line].stops.at(stop).arrivals)
            all.append(QStringLiteral("%1 %2").arg(waiting->id, QString::number(waiting->begin)));
        return all.join(QLatin1Char(';')).toStdString();
    };
    EXPECT_EQ(boarding(0, 0), "walks 140;means the vehicle 5");
    EXPECT_EQ(boarding(1, 1), "shops 600");
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("waiting passengers")), 2) << allLines(plan).toStdString();
}

TEST_F(Plan, SharesAddUpAndRatiosStay) {
    const CompanionPlan plan = this->plan(
        "<routeDistribution id=\"d\"><route edges=\"south_in north_out\" probability=\"1\"/>"
        "<route edges=\"south_in market_west\" probability=\"2\"/></routeDistribution>"
        "<flow id=\"f\" begin=\"900\" end=\"1800\" number=\"10\" route=\"d\"/>"
        "<vehicle id=\"v\" depart=\"0\"><route edges=\"south_in north_out\"/></vehicle>"
        "<interval begin=\"10\" end=\"20\"><edgeRelation from=\"approach_market\" to=\"north_out\" ratio=\"0.8\"/>"
        "<edgeRelation from=\"approach_market\" to=\"market_quay\" ratio=\"0.2\"/></interval>"
        "<interval begin=\"20\" end=\"30\"><edgeRelation from=\"approach_market\" to=\"north_out\" count=\"3\"/>"
        "<edgeRelation from=\"approach_market\" to=\"market_quay\" count=\"1\"/></interval>");
    ASSERT_EQ(plan.demand.decisions.size(), 2u);
    const PlannedDecision &driven = plan.demand.decisions[0];
    ASSERT_EQ(driven.intervals.size(), 2u);
    EXPECT_EQ(driven.routes.size(), 2u) << "the vehicle drives a route of the distribution";
    EXPECT_EQ(driven.intervals[0].end, 900);
    EXPECT_EQ(driven.intervals[0].shares.size(), 1u);
    EXPECT_NEAR(driven.intervals[1].shares.at(0) + driven.intervals[1].shares.at(1), 1, 1e-12);
    const PlannedDecision &turns = plan.demand.decisions[1];
    EXPECT_EQ(turns.intervals.at(0).shares.at(0), 0.8);
    EXPECT_EQ(turns.intervals.at(1).shares.at(0), 0.75);
    EXPECT_EQ(plan.demand.vehicles, 11);
    EXPECT_EQ(plan.demand.departures.at(0).vehicles.at(1).at(QString()), 10);
}

TEST_F(Plan, ProgrammesThatShareAnIdAreToldApartAndTheLastOneRuns) {
    const CompanionPlan plan =
        this->plan("<tlLogic id=\"market\" programID=\"night\"><phase duration=\"9\" state=\"rr\"/></tlLogic>"
                   "<tlLogic id=\"elsewhere\"><phase duration=\"9\" state=\"r\"/></tlLogic>");
    ASSERT_EQ(plan.signalPlan.groups.size(), 3u);
    EXPECT_EQ(plan.signalPlan.groups[0].name, QStringLiteral("market/0"));
    EXPECT_EQ(plan.signalPlan.groups[1].name, QStringLiteral("market/night"));
    EXPECT_EQ(plan.signalPlan.groups[2].name, QStringLiteral("elsewhere"));
    ASSERT_EQ(plan.signalPlan.lamps.size(), 2u);
    EXPECT_EQ(plan.signalPlan.lamps[0].group, 1u);
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("signal lamps")), 14) << "the programme is shorter";
}

TEST_F(Plan, AVehicleThatStandsWhereItStartedIsAnObstacle) {
    const CompanionPlan plan = this->plan(
        "<vehicle id=\"stuck\" depart=\"0\"><route edges=\"west_in\"/><stop lane=\"west_in_1\" startPos=\"5\" "
        "endPos=\"9\"/></vehicle>"
        "<vehicle id=\"parked\" depart=\"0\"><route edges=\"west_in approach_market\"/>"
        "<stop lane=\"west_in_1\" endPos=\"9\"/><stop lane=\"gone_0\"/></vehicle>");
    EXPECT_EQ(plan.leftOut.count(QStringLiteral("stops")), 1);
    ASSERT_EQ(plan.obstacles.size(), 1u);
    EXPECT_EQ(plan.obstacles[0].name, QStringLiteral("stuck"));
    EXPECT_EQ(plan.demand.vehicles, 1);
}
