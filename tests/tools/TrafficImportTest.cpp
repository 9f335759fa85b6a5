#include "host/commands/CompanionFiles.h"
#include "tests/support/Places.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/CompanionReader.h"
#include "tools/sumo/reader/NetReader.h"

#include <QSqlQuery>
#include <QVariant>

using namespace moratools;

namespace {

/// The example network with all its companions, written into either kind of store.
class TrafficImport : public StoreKindFixture {
protected:
    NetworkObjects import() {
        const QString folder = sourceFolder() + QStringLiteral("/examples/crossing/");
        mNet = readSumoNet(folder + QStringLiteral("crossing.net.xml"));
        SumoCompanions companions;
        for (const char *file : {"crossing.add.xml", "crossing.rou.xml", "turns.xml"})
            readSumoCompanion(folder + QLatin1String(file), companions);
        if (!hasSeveralNets())
            execute(QStringLiteral("delete from Net"));
        const CompanionPlan plan = planCompanions(mNet, std::move(companions));
        EXPECT_TRUE(plan.leftOut.isEmpty()) << plan.leftOut.lines().join(QLatin1Char('\n')).toStdString();
        return importNetwork(mNet, plan, QStringLiteral("crossing"));
    }

    /// The one value that a query on the imported network gives; "@" stands for its condition.
    std::string value(const char *sql) {
        const QStringList all = rows(QString::fromUtf8(sql).replace(
            QStringLiteral("@"),
            hasSeveralNets() ? QStringLiteral("NetId = %1").arg(gNet.id()) : QStringLiteral("1 = 1")));
        return all.join(QLatin1Char(';')).toStdString();
    }

    SumoNet mNet;
};

INSTANTIATE_TEST_SUITE_P(Stores, TrafficImport, testing::ValuesIn(kFileKinds), storeKindName);

} // namespace

TEST_P(TrafficImport, EverythingComesBack) {
    const NetworkObjects written = import();
    reopen();
    gNet.loadRecord(NetRecord());
    const Comparison same = compareNetworks(written, readNetwork(written.record.netId), true);
    EXPECT_TRUE(same.isEqual()) << same.first.join(QLatin1Char('\n')).toStdString();
}

TEST_P(TrafficImport, DemandIsConservedBySliceAndComposition) {
    import();
    EXPECT_EQ(value("select sum(vehiCount) from DepartureInterval where @"), "352");
    EXPECT_EQ(value("select group_concat(total, ',') from (select total(proportion) as total from "
                    "VehicleConsDetail where @ group by vehicleConsCode)"),
              "100.0,100.0,100.0,100.0,100.0");
    // 20 bicycles start in the second quarter of an hour; the first one ends without any.
    const std::string slices =
        value("select interval, vehiCount from DepartureInterval where @ and departurePointID = "
              "(select departurePointID from DeparturePoint where @ and name = 'north_in') "
              "order by departureIntervalD");
    EXPECT_EQ(slices, "900|0;1800|20");
    EXPECT_EQ(
        value("select vehicleTypeCode, maxSpeed, length, lengthSD, widthSD from VehicleType where @ and "
              "vehicleTypeName = 'Fahrrad'"),
        "16|21.6|1.7|0|0.06")
        << "the rest of the figures is the standard bicycle's";
}

TEST_P(TrafficImport, RatiosHoldFromTheSecondAfterTheEndBefore) {
    import();
    EXPECT_EQ(value("select startDateTime, endDateTime, ratio from RoutingFLowRatio where @ and routingID in "
                    "(select routingID from Routing where @ and deciPointID = (select deciPointID from "
                    "DecisionPoint where @ and deciPointName = 'approach_market turns')) order by "
                    "RoutingFLowRatioID"),
              "1|1800|0.2;1|1800|0.6;1|1800|0.2;1801|3600|0.75;1801|3600|0.25");
    // A lorry departs after 1000 s: nothing is known of the time before its quarter of an hour.
    EXPECT_EQ(value("select startDateTime, endDateTime, ratio from RoutingFLowRatio where @ and routingID in "
                    "(select routingID from Routing where @ and routingName = 'west_in->north_out')"),
              "901|1800|1");
}

TEST_P(TrafficImport, SignalsShowMergedColoursAtTheStopLines) {
    import();
    EXPECT_EQ(value("select timeLength from SignalGroup where @ order by signalGroupID"), "90;46");
    // Signal 4 of the day's plan is green for 33 s and yellow for 3; the six red states are one interval.
    EXPECT_EQ(
        value("select color, timeLength from SignalColor where @ and signalPhaseID = (select signalPhaseID "
              "from SignalPhase where @ and name = '4' order by signalPhaseID limit 1) order by "
              "serialNumber"),
        "绿|33;黄|3;红|54");
    EXPECT_EQ(
        value(
            "select distinct name from SignalGroup where @ and signalGroupID in (select signalGroupID "
            "from SignalPhase where @ and signalPhaseID in (select signalPhaseID from SignalLamp where @))"),
        "market/night");
    const Point3 end = mNet.edge(QStringLiteral("north_in"))->lanes[2].shape.back();
    EXPECT_EQ(value("select count(*) from SignalLamp where @"), "16");
    EXPECT_EQ(value("select x, y from SignalLamp where @ and name = 'market:3'"),
              QStringLiteral("%1|%2").arg(QString::number(end.x), QString::number(end.y)).toStdString());
}

TEST_P(TrafficImport, DevicesStandWhereTheirPositionsSay) {
    import();
    const double length = mNet.edge(QStringLiteral("quay_market"))->lanes[1].length;
    EXPECT_EQ(
        value("select laneNumber, distance, maxQueueLength, dataInterval from VehicleQueueCounter where @"),
        QStringLiteral("2|%1|85|300").arg(length - 5).toStdString());
    EXPECT_EQ(
        value("select name, laneNumber, toLaneNumber, dataInterval from VehicleDrivInfoCollecter where @ "
              "order by collecterID"),
        "west_loop_1|2|-1|60;west_loop_2|3|-1|60");
    EXPECT_EQ(value("select startDist, teminalDist from VehicleTravelDetector where @"), "10|60");
    EXPECT_EQ(value("select name, laneNumber, length from BusStation where @ order by busStationID"),
              "market_stop|1|25;quay_stop|1|25");
    EXPECT_EQ(value("select name, dischargeFreq, dischargeStartTime, dischargeEndTime from BusLine where @"),
              "7|600|0|3000");
    EXPECT_EQ(value("select startTime, endTime, passengerCount from BusStationPassengerArriving where @"),
              "1|3600|60");
    EXPECT_EQ(value("select count(*), min(startTime), max(endTime) from ReduceSpeedInterval where @"),
              "2|601|1800");
    EXPECT_EQ(value("select distinct round(avgSpeed, 3) from ReduceSpeedVehiType where @"), "29.988");
    EXPECT_EQ(value("select name, roadName, limitSpeed from RoadWorkZone where @"),
              "harbour_works|harbour_out|0");
    EXPECT_EQ(value("select location, zoneLength from AccidentZone where @"), "70|10");
    EXPECT_EQ(value("select laneNumber, toLaneNumber from AccidentZoneWithLane where @"), "1|-1");
}
