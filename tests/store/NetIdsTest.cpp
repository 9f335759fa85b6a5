#include "store/NetIds.h"

#include "model/BusLine.h"
#include "model/BusStationLine.h"
#include "model/DecisionPoint.h"
#include "model/DeparturePoint.h"
#include "model/ReduceSpeedArea.h"
#include "model/RoadWorkZone.h"
#include "model/Routing.h"
#include "model/RoutingFLowRatio.h"
#include "model/RoutingFlowByInterval.h"
#include "model/SignalGroup.h"
#include "model/SignalPhase.h"
#include "store/FailureScope.h"
#include "store/StoredNet.h"
#include "tests/support/Builders.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"

#include <set>

namespace {

class NetIdsTest : public StoreKindFixture {
protected:
    /// A link without any identifier.
    static std::unique_ptr<Link> newLink() {
        auto link = sampleLink(1);
        link->linkID = 0;
        for (Vertex *vertex : qAsConst(link->mlVertex))
            vertex->vertexID = 0;
        for (Node *node : {link->mpStartNode, link->mpEndNode})
            node->nodeID = 0;
        for (Lane *lane : qAsConst(link->mlLane))
            lane->laneID = lane->linkID = 0;
        return link;
    }

    int mCounters = 0;
};

TEST_P(NetIdsTest, ALinkIsNumberedWithAllItsParts) {
    const NetIds ids = NetIds::ofCurrentNet(gDB);
    const auto link = newLink();
    ASSERT_TRUE(ids.draw(*link));
    std::set<long> vertices, lanes;
    for (const Vertex *vertex : qAsConst(link->mlVertex))
        vertices.insert(vertex->vertexID);
    for (const Lane *lane : qAsConst(link->mlLane)) {
        lanes.insert(lane->laneID);
        EXPECT_EQ(lane->linkID, link->linkID);
    }
    EXPECT_EQ(link->linkID, 1);
    EXPECT_EQ(vertices, (std::set<long>{1, 2, 3}));
    EXPECT_EQ(lanes, (std::set<long>{1, 2}));
    EXPECT_EQ(link->mpStartNode->nodeID, 1);
    EXPECT_EQ(link->mpEndNode->nodeID, 2);
    EXPECT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));

    // What has a number keeps it; what is new gets one that nothing has.
    link->mlLane.insert(1, new Lane);
    ASSERT_TRUE(ids.draw(*link));
    EXPECT_EQ(link->linkID, 1);
    EXPECT_EQ(link->mlLane.at(0)->laneID, 1);
    EXPECT_EQ(link->mlLane.at(1)->laneID, 3);
    EXPECT_EQ(link->mlLane.at(1)->linkID, 1);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(NetIdsTest, NumbersThatObjectsBringAlongAreNotDrawn) {
    const auto link = newLink();
    link->mlLane.at(1)->laneID = 2;
    link->mlVertex.at(0)->vertexID = 1;
    link->mlVertex.at(2)->vertexID = 3;
    ASSERT_TRUE(NetIds(gDB, kNet).draw(*link));
    EXPECT_NE(link->mlLane.at(0)->laneID, 2);
    EXPECT_NE(link->mlLane.at(0)->laneID, 0);
    const long drawn = link->mlVertex.at(1)->vertexID;
    EXPECT_TRUE(drawn == 2 || drawn > 3) << drawn;
}

TEST_P(NetIdsTest, PartsOfEveryKindAreNumbered) {
    const NetIds ids(gDB, kNet);
    SignalGroup group;
    group.mlPhase = {new SignalPhase, new SignalPhase};
    DeparturePoint departure;
    departure.mlInterval = {{}, {}};
    DecisionPoint decision;
    decision.mlRouting = {new Routing, new Routing};
    auto *slice = new RoutingFlowByInterval;
    slice->mlFlowRatio = {new RoutingFLowRatio, new RoutingFLowRatio};
    decision.mlFlowByInterval = {slice};
    BusLine line;
    line.mlStationLine = {new BusStationLine, new BusStationLine};
    line.mlStationLine.at(1)->mlPassengerArriving = {new PassengerArriving(0, 1, 2, 3)};
    ReduceSpeedArea area;
    area.mlSpeedInterval = {new ReduceSpeedInterval, new ReduceSpeedInterval};
    area.mlSpeedVehiType = {new ReduceSpeedVehiType};
    RoadWorkZone zone;
    zone.mlLane = {new ZoneLane};
    ASSERT_TRUE(ids.draw(group) && ids.draw(departure) && ids.draw(decision) && ids.draw(line) &&
                ids.draw(area) && ids.draw(zone));
    EXPECT_EQ(group.signalGroupID, 1);
    EXPECT_EQ(group.mlPhase.at(1)->signalPhaseID, 2);
    EXPECT_EQ(departure.departurePointID, 1);
    EXPECT_EQ(departure.mlInterval.at(1).departureIntervalD, 2);
    EXPECT_EQ(decision.deciPointID, 1);
    EXPECT_EQ(decision.mlRouting.at(1)->routingID, 2);
    EXPECT_EQ(slice->mlFlowRatio.at(1)->routingFLowRatioID, 2);
    EXPECT_EQ(line.busLineID, 1);
    EXPECT_EQ(line.mlStationLine.at(1)->stationLineID, 2);
    EXPECT_EQ(line.mlStationLine.at(1)->busLineID, 1);
    EXPECT_EQ(line.mlStationLine.at(1)->mlPassengerArriving.at(0)->passengerArrivingID, 1);
    EXPECT_EQ(area.reduceSpeedAreaID, 1);
    EXPECT_EQ(area.mlSpeedInterval.at(1)->intervalID, 2);
    EXPECT_EQ(area.mlSpeedInterval.at(1)->reduceSpeedAreaID, 1);
    EXPECT_EQ(area.mlSpeedVehiType.at(0)->reduceSpeedAreaID, 1);
    EXPECT_EQ(zone.roadWorkZoneId, 1);
    EXPECT_EQ(zone.mlLane.at(0)->zoneId, 1);
}

TEST_P(NetIdsTest, ListsTakeAFewStatementsForEachTable) {
    std::vector<std::unique_ptr<Link>> links;
    links.reserve(500);
    for (int i = 0; i < 500; ++i)
        links.push_back(newLink());
    const NetIds ids(gDB, kNet);
    std::unique_ptr<StatementTrace> trace;
    if (!isPostgres())
        trace = std::make_unique<StatementTrace>(gDB);
    ASSERT_TRUE(ids.drawEach(links));
    if (trace) {
        EXPECT_LE(trace->statements().size(), 20);
    }
    std::set<long> linkIds, laneIds, nodeIds, vertexIds;
    for (const auto &link : links) {
        linkIds.insert(link->linkID);
        for (const Lane *lane : qAsConst(link->mlLane))
            laneIds.insert(lane->laneID);
        for (const Vertex *vertex : qAsConst(link->mlVertex))
            vertexIds.insert(vertex->vertexID);
        nodeIds.insert({link->mpStartNode->nodeID, link->mpEndNode->nodeID});
    }
    EXPECT_EQ(linkIds.size(), 500U);
    EXPECT_EQ(laneIds.size(), 1000U);
    EXPECT_EQ(vertexIds.size(), 1500U);
    EXPECT_EQ(nodeIds.size(), 1000U);
    EXPECT_EQ(*linkIds.begin(), 1);
    // The counters have moved on.
    EXPECT_EQ(ids.next(Table::Lane), 1001);
    EXPECT_EQ(ids.next(QStringLiteral("lane")), 1002);
    EXPECT_EQ(ids.next(Table::Lane, 3), (QList<long>{1003, 1004, 1005}));
    const StoredNet net(gDB, kNet);
    EXPECT_EQ(net.nextId(Table::Lane), 1006);
    const auto one = newLink(), other = newLink();
    EXPECT_TRUE(net.drawIds(*one));
    EXPECT_TRUE(net.drawIds(QList<Link *>{one.get(), other.get()}));
    EXPECT_EQ(other->linkID, one->linkID + 1);
    QList<Link *> again{links.front().get(), links.front().get(), nullptr};
    EXPECT_TRUE(ids.drawEach(again));
}

TEST_P(NetIdsTest, WhatNumbersNothingIsRefused) {
    const auto refuses = [this](const char *what, auto &&draw) {
        SCOPED_TRACE(what);
        const FailureScope since(gDB);
        EXPECT_FALSE(draw());
        EXPECT_EQ(since.failures().size(), 1);
        EXPECT_EQ(since.last().kind, FailureKind::NotFound) << qPrintable(since.text());
        EXPECT_EQ(count("IDGenerater"), mCounters);
    };
    mCounters = count("IDGenerater");
    const NetIds ids(gDB, kNet);
    refuses("a table without numbers", [&] { return ids.next(QStringLiteral("LinkVertex")).has_value(); });
    refuses("no table", [&] { return ids.next(QStringLiteral("Nowhere")).has_value(); });
    if (!hasSeveralNets())
        return;
    const auto link = newLink();
    refuses("no such network", [&] { return NetIds(gDB, 7).next(Table::Link).has_value(); });
    refuses("an object for no such network", [&] { return NetIds(gDB, 7).draw(*link); });
    refuses("an object in no such network", [&] { return StoredNet(gDB, 7).insert(*link); });
    EXPECT_EQ(link->linkID, 0);
    EXPECT_EQ(count("Link"), 0);
    gNet.loadRecord({});
    refuses("no current network", [&] { return NetIds::ofCurrentNet(gDB).draw(*link); });
    EXPECT_EQ(link->mlLane.first()->laneID, 0);
}

TEST_P(NetIdsTest, ADrawThatFailsLeavesTheObjectAsItWas) {
    if (isPostgres())
        execute(QStringLiteral("drop sequence seq_lane_id; drop sequence seq_table_id"));
    else
        refuse(QStringLiteral("insert"), QStringLiteral("IDGenerater"));
    execute(QStringLiteral("delete from IDGenerater where TableName = 'Lane'"));
    const auto link = newLink();
    EXPECT_FALSE(NetIds(gDB, kNet).draw(*link));
    EXPECT_EQ(link->linkID, 0);
    EXPECT_EQ(link->mlVertex.first()->vertexID, 0);
    EXPECT_EQ(failureCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(Stores, NetIdsTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
