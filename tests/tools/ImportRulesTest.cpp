#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/CompanionReader.h"
#include "tools/sumo/reader/NetReader.h"

#include <QFile>

using namespace moratools;

// Rules of docs/import.md, each by a value that was worked out by hand for a network small enough for that.

namespace {

/// Traffic comes in from the west on lanes of 3 and 4 m, at y = 0 and 3.5, and goes out to the east or, on a bus
/// lane that climbs, to the north. The lanes to the east are drawn half as long as they are.
constexpr const char *kRoads = R"xml(<net>
<edge id="in" from="west" to="mid">
 <lane id="in_0" index="0" speed="10" length="100" width="3" shape="0,0 100,0"/>
 <lane id="in_1" index="1" speed="20" length="100" width="4" shape="0,3.5 100,3.5"/></edge>
<edge id="out" from="mid" to="east">
 <lane id="out_0" index="0" speed="15" length="200" width="3" shape="120,0 220,0"/>
 <lane id="out_1" index="1" speed="15" length="200" width="4" shape="120,3.5 220,3.5"/></edge>
<edge id="side" from="mid" to="north">
 <lane id="side_0" index="0" speed="5" length="50" allow="bus" shape="110,10,0 110,60,10"/></edge>
<junction id="west" type="dead_end" x="0" y="0" shape=""/><junction id="east" type="dead_end" x="220" y="0" shape=""/>
<junction id="mid" type="traffic_light" x="110" y="0" shape=""/><junction id="north" type="dead_end" x="110" y="60" shape=""/>
<junction id="rail" type="rail_signal" x="0" y="0" shape=""/>
<connection from="in" to="out" fromLane="0" toLane="0" tl="mid" linkIndex="0"/>
<connection from="in" to="out" fromLane="1" toLane="1" tl="mid" linkIndex="1"/>
<connection from="in" to="side" fromLane="1" toLane="0" tl="rail" linkIndex="0"/>
<connection from="out" to="in" fromLane="0" toLane="0"/>
<tlLogic id="mid" programID="0" offset="7.4">
 <phase duration="1.4" state="Go"/><phase duration="1.4" state="yO"/><phase duration="1.4" state="rg"/>
 <phase duration="30" state="uY"/><phase duration="10" state="sr"/></tlLogic>
</net>)xml";

constexpr const char *kCompanions = R"xml(<additional>
<e1Detector id="end" lane="in_1" pos="-10" freq="60"/><e1Detector id="slope" lane="side_0" pos="10"/>
<e2Detector id="queue" lanes="in_0 out_0" pos="10" endPos="50" speedThreshold="2.5" jamThreshold="8"/>
<e3Detector id="pass"><detEntry lane="in_0" pos="20"/><detExit lane="out_1" pos="150"/>
 <detExit lane="side_0" pos="10"/></e3Detector>
<busStop id="first" lane="in_0" startPos="20" endPos="40"/><busStop id="second" lane="out_0" startPos="100" endPos="120"/>
<vType id="van" vClass="delivery" length="6" decel="4" emergencyDecel="9" maxSpeed="25"/><vType id="car"/>
<vTypeDistribution id="mix" vTypes="van car" probabilities="1 3"/>
<variableSpeedSign id="sign" lanes="in_0"><step time="0" speed="10"/><step time="600" speed="5"/>
 <step time="1200" speed="-1"/></variableSpeedSign>
<rerouter id="works" edges="in"><interval begin="0" end="100"><closingLaneReroute id="out_1"/></interval></rerouter>
<route id="line" edges="in out"><stop busStop="first" duration="15"/><stop busStop="second"/></route>
<vehicle id="bus.0" type="car" line="5" depart="0" route="line"/><vehicle id="bus.1" type="car" line="5" depart="600" route="line"/>
<vehicle id="bus.2" type="car" line="5" depart="1200" route="line"/><vehicle id="bus.3" type="car" line="6" depart="0" route="line"/>
<person id="waits" depart="30"><stop busStop="first"/><ride lines="5 6"/></person>
<vehicle id="broken" type="car" depart="0"><route edges="side"/><stop lane="side_0" startPos="5" endPos="15"/></vehicle>
<flow id="steady" type="mix" begin="0" end="1800" period="100" route="there"/>
<flow id="random" type="car" begin="2700" end="3600" period="exp(0.1)" route="there"/>
<route id="there" edges="in out"/>
<vehicle id="circle" type="car" depart="3599"><route edges="out in out"/></vehicle>
<interval begin="0" end="600"><edgeRelation from="in" to="out" count="30"/><edgeRelation from="in" to="side" count="10"/>
</interval>
<vehicle id="short" type="car" depart="100"><route edges="in side"/></vehicle>
</additional>)xml";

class ImportRules : public StoreKindFixture {
protected:
    void prepare() override {
        execute(QStringLiteral("delete from Net"));
        const SumoNet net = readSumoNet(file("rules.net.xml", kRoads));
        SumoCompanions companions;
        readSumoCompanion(file("rules.add.xml", kCompanions), companions);
        const CompanionPlan plan = planCompanions(net, std::move(companions));
        EXPECT_TRUE(plan.leftOut.isEmpty()) << plan.leftOut.lines().join(QLatin1Char('\n')).toStdString();
        mWritten = importNetwork(StoreSession::ofProcess({}), net, plan, QStringLiteral("rules"));
    }

    QString file(const char *name, const char *content) const {
        QFile target(folder() + QLatin1Char('/') + QLatin1String(name));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly) && target.write(content) > 0);
        return target.fileName();
    }

    /// The heights (y) at which edges run.
    static QString edges(const char *table, const char *side, const char *condition) {
        return QStringLiteral(
                   "select p.value ->> 'y' from %1, json_each(cast(%2BreakPointsJson as text), '$.data') p where "
                   "%3 group by %1.rowid, 1 order by %1.rowid, 1")
            .arg(QLatin1String(table), QLatin1String(side), QLatin1String(condition));
    }

    struct Rule {
        QString sql;
        const char *rows; ///< joined by ";"
    };
    void expect(std::initializer_list<Rule> rules) {
        for (const Rule &rule : rules)
            EXPECT_EQ(rows(rule.sql).join(QLatin1Char(';')).toStdString(), rule.rows)
                << rule.sql.toStdString();
    }

    NetworkObjects mWritten;
};

TEST_P(ImportRules, WhatIsReadIsWhatWasMade) {
    reopen();
    gNet.loadRecord(NetRecord());
    const Comparison same =
        compareNetworks(mWritten, readNetwork(StoreSession::ofProcess({}), mWritten.record.netId), true);
    EXPECT_EQ(same.first.join(QLatin1Char('\n')).toStdString(), "");
}

TEST_P(ImportRules, RoadsHaveTheLimitsAndEdgesOfTheirLanes) {
    expect({
        {"select linkName, limitSpeed, desiredSpeed, length, laneNumber, laneWidth from Link order by linkID",
         "in|72|72|100|2|3.5;out|54|54|200|2|3.5;side|18|18|50|1|3.2"},
        {"select connName, limitSpeed, desiredSpeed, round(length, 3) from Connector order by connID",
         "in->out|54|54|20;in->side|18|18|11.927;out->in|54|54|220"},
        {"select linkName, group_concat(x || ' ' || y || ' ' || z) from (select k.linkName, v.* from Link k, LinkVertex l, "
         "Vertex v where l.linkID = k.linkID and v.vertexID = l.vertexID order by k.linkID, l.num) group by 1 order by 1",
         "in|0 2 0,100 2 0;out|120 2 0,220 2 0;side|110 10 0,110 60 10"},
        {"select linkName, a.nodeName, b.nodeName from Link, Node a, Node b where a.nodeID = startNodeID and b.nodeID = "
         "endNodeID order by linkID",
         "in|west|mid;out|mid|east;side|mid|north"},
        {edges("Link", "left", "linkName = 'in'"), "5.5"},
        {edges("Link", "right", "linkName = 'in'"), "-1.5"},
        {edges("Lane", "left", "1 = 1"), "1.5;5.5;1.5;5.5;10;60"},
        {edges("Lane", "right", "1 = 1"), "-1.5;1.5;-1.5;1.5;10;60"},
        {edges("Connector", "left", "connName = 'in->out'"), "5.5"},
        {edges("Connector", "right", "connName = 'in->out'"), "-1.5"},
        {"select name, centerX, centerY from Net", "rules|110|30"},
    });
}

TEST_P(ImportRules, SignalsShowEveryStateForItsWholeTime) {
    // The phases end after 1.4, 2.8, 4.2, 34.2 and 44.2 s.
    expect({
        {"select name, startTime, timeLength, endTime from SignalGroup", "mid|7|44|86400"},
        {"select p.name, c.color, c.timeLength from SignalPhase p, SignalColor c where c.signalPhaseID = "
         "p.signalPhaseID order by p.name, c.serialNumber",
         "0|Green|1;0|Yellow|2;0|Red|41;1|Grey|3;1|Green|1;1|Yellow|30;1|Red|10"},
        {"select a.name, a.x, a.y, k.linkName, l.serialNumber, t.linkName, m.serialNumber from SignalLamp a, Lane l, Link k, Lane "
         "m, Link t where l.laneID = a.laneID and k.linkID = l.linkID and m.laneID = a.toLaneID and t.linkID = m.linkID "
         "order by a.name",
         "mid:0|100|0|in|1|out|1;mid:1|100|3.5|in|2|out|2"},
    });
}

TEST_P(ImportRules, DevicesStandWhereTheyMeasure) {
    expect({
        {"select name, laneNumber, distance, x, y, z from VehicleDrivInfoCollecter order by collecterID",
         "end|2|90|90|3.5|0;slope|1|10|110|20|2"},
        {"select dataInterval from VehicleDrivInfoCollecter where name = 'end'", "60"},
        {"select q.name, linkName, q.laneNumber, distance, x, maxQueueLength, speedLowLimit, maxDistInterval from "
         "VehicleQueueCounter q, Link where linkID = q.roadID",
         "queue|out|1|50|145|140|2.5|8"},
        {"select d.name, startDist, startX, teminalDist, teminalX, teminalY from VehicleTravelDetector d order by "
         "detectorId",
         "pass in->out|20|20|150|195|3.5;pass in->side|20|20|10|110|20"},
        {"select a.name, linkName, a.laneNumber, location, areaLength, startTime, endTime from ReduceSpeedArea a, "
         "ReduceSpeedInterval i, Link where i.reduceSpeedAreaID = a.reduceSpeedAreaID and linkID = a.roadID order by 1",
         "sign in_0 18 km/h|in|1|0|100|601|1200;sign in_0 36 km/h|in|1|0|100|1|600"},
        {"select avgSpeed, count(*) = (select count(*) from VehicleType) from ReduceSpeedVehiType group by 1",
         "18|1;36|1"},
        {"select z.name, roadName, l.laneNumber, l.toLaneNumber, zoneLength, limitSpeed from RoadWorkZone z, "
         "RoadWorkZoneWithLane l",
         "works|out|2|-1|200|0"},
        {"select z.name, linkName, l.laneNumber, location, zoneLength from AccidentZone z, AccidentZoneWithLane l, Link "
         "where linkID = z.roadId",
         "broken|side|1|5|10"},
    });
}

TEST_P(ImportRules, TypesTakeWhatIsGivenAndTheRestFromTheirClass) {
    expect({
        {"select n.vehicleTypeName, n.length, n.lengthSD, n.width = s.width, n.maxSpeed, n.avgSpeed = min(s.avgSpeed, "
         "90), n.avgDece, n.deceSD, n.maxDece from VehicleType n, VehicleType s where n.vehicleTypeName = 'van' and "
         "s.vehicleTypeCode = 4",
         "van|6|0|1|90|1|4|0|9"},
        {"select c.name, t.vehicleTypeName, d.proportion from VehicleConstitutent c, VehicleConsDetail d, VehicleType t "
         "where d.vehicleConsCode = c.vehicleConsCode and t.vehicleTypeCode = d.vehicleTypeCode and c.name in ('mix', "
         "'car') order by c.name, 2",
         "car|car|100;mix|car|75;mix|van|25"},
    });
}

TEST_P(ImportRules, TrafficDepartsAndTurnsByTheQuarterOfAnHour) {
    expect({
        // 9 in each of the first two quarters, and one more that is short; 90 at random.
        {"select p.name, i.interval, i.vehiCount, c.name from DeparturePoint p, DepartureInterval i, "
         "VehicleConstitutent c where i.departurePointID = p.departurePointID and c.vehicleConsCode = i.vehiCons order "
         "by 1, 2, 4",
         "in|900|1|car;in|900|9|mix;in|1800|9|mix;in|2700|0|car;in|3600|90|car;out|2700|0|car;out|3600|1|car"},
        {"select routingName, round(proportion, 6) from Routing order by routingID",
         "there|0.990826;in->side|0.009174;out->out|1;out|0.75;side|0.25"},
        {"select r.routingName, num1, num2, linkName from Routing r, RoutingLink l, Link k where l.routingID = "
         "r.routingID and k.linkID = l.linkID and routingName = 'out->out' order by num1, num2",
         "out->out|1|1|out;out->out|1|2|in;out->out|2|1|out"},
        {"select routingName, startDateTime, endDateTime, ratio from Routing r, RoutingFLowRatio f where f.routingID = "
         "r.routingID order by r.routingID, startDateTime",
         "there|1|900|0.9;there|901|1800|1;there|2701|3600|1;in->side|1|900|0.1;out->out|2701|3600|1;out|1|600|0.75;side|1|600|0.25"},
        {"select deciPointName, x, y from DecisionPoint order by 1", "in|0|2;in turns|0|2;out|120|2"},
    });
}

TEST_P(ImportRules, LinesRunAtTheirHeadwayAndPassengersTakeTheFirst) {
    expect({
        {"select name, dischargeFreq, dischargeStartTime, dischargeEndTime, length from BusLine where name = '5'",
         "5|600|0|1200|300"},
        {"select name, laneNumber, length, x, y from BusStation order by busStationID",
         "first|1|20|30|0;second|1|20|175|0"},
        {"select l.name, s.name, parkingTime from BusLine l, BusStationLine b, BusStation s where b.busLineID = "
         "l.busLineID and s.busStationID = b.busStationID and s.name = 'first' order by 1",
         "5|first|15;6|first|15"},
        {"select l.name, startTime, endTime, passengerCount from BusLine l, BusStationLine b, "
         "BusStationPassengerArriving p where b.busLineID = l.busLineID and p.stationLineID = b.stationLineID",
         "5|31|31|1"},
    });
}

INSTANTIATE_TEST_SUITE_P(Stores, ImportRules, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace
