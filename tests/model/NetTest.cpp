#include "model/Net.h"

#include "model/Connector.h"
#include "model/Link.h"
#include "model/SignalPhase.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

std::unique_ptr<Link> linkOf(long id) {
    auto link = std::make_unique<Link>();
    link->linkID = id;
    auto *lane = new Lane;
    lane->laneID = id * 10;
    link->mlLane.append(lane);
    return link;
}

// Two links, a connector between their lanes and a phase, all entered into gNet.
struct Graph {
    Graph() {
        connector->mlLaneConnector.append(
            new LaneConnector(connector.get(), from->mlLane.first(), to->mlLane.first()));
        phase->signalPhaseID = 9;
        for (Link *link : {to.get(), from.get()}) {
            gNet.enter(link);
            gNet.enter(link->mlLane.first());
        }
        gNet.enter(connector.get());
        gNet.enter(phase.get());
    }

    std::unique_ptr<Link> from = linkOf(1);
    std::unique_ptr<Link> to = linkOf(2);
    std::unique_ptr<Connector> connector = std::make_unique<Connector>(7, from.get(), to.get());
    std::unique_ptr<SignalPhase> phase = std::make_unique<SignalPhase>();
};

// The cases share gNet when they run in one process.
class NetTables : public ::testing::Test {
protected:
    void TearDown() override { gNet = Net(); }
};

void expectEmptyTables(const Net &net, long laneConnectorId) {
    EXPECT_TRUE(net.lLink().isEmpty());
    EXPECT_TRUE(net.lConnector().isEmpty());
    EXPECT_EQ(net.getLinkById(1), nullptr);
    EXPECT_EQ(net.getLaneById(10), nullptr);
    EXPECT_EQ(net.getConnectorById(7), nullptr);
    EXPECT_EQ(net.getLaneConnectorById(laneConnectorId), nullptr);
    EXPECT_EQ(net.getSignalPhaseById(9), nullptr);
}

} // namespace

TEST_F(NetTables, FindsWhatWasEnteredAndListsInOrderOfIds) {
    const Graph graph;
    EXPECT_EQ(gNet.lLink(), QList<Link *>({graph.from.get(), graph.to.get()}));
    EXPECT_EQ(gNet.lConnector(), QList<Connector *>({graph.connector.get()}));
    EXPECT_EQ(gNet.getLinkById(2), graph.to.get());
    EXPECT_EQ(gNet.getLaneById(10), graph.from->mlLane.first());
    EXPECT_EQ(gNet.getConnectorById(7), graph.connector.get());
    const LaneConnector *laneConnector = graph.connector->mlLaneConnector.first();
    EXPECT_EQ(gNet.getLaneConnectorById(laneConnector->laneConnId), laneConnector);
    EXPECT_EQ(gNet.getSignalPhaseById(9), graph.phase.get());
}

TEST_F(NetTables, ObjectsAndTablesMayGoInEitherOrder) {
    long laneConnectorId = 0;
    {
        const Graph graph;
        laneConnectorId = LaneConnector::generId;
        graph.from->linkID = 99; // a changed id does not keep an object in the tables
    }
    expectEmptyTables(gNet, laneConnectorId);
    {
        const Graph graph;
        laneConnectorId = LaneConnector::generId;
        gNet.releaseNet();
        expectEmptyTables(gNet, laneConnectorId);
    }
    expectEmptyTables(gNet, laneConnectorId);
}

TEST_F(NetTables, OnlyTheEnteredObjectLeaves) {
    const auto held = linkOf(1);
    gNet.enter(held.get());
    {
        const auto twin = linkOf(1);
        gNet.enter(twin.get()); // the id is taken
        EXPECT_EQ(gNet.getLinkById(1), held.get());
    }
    EXPECT_EQ(gNet.getLinkById(1), held.get());

    // The rule is the same for all that is entered: the first one stays.
    const Graph graph;
    const long laneConnectorId = LaneConnector::generId;
    {
        Graph twin;
        twin.connector->mlLaneConnector.first()->laneConnId = laneConnectorId;
        gNet.enter(twin.connector.get());
    }
    EXPECT_EQ(gNet.getLaneById(10), graph.from->mlLane.first());
    EXPECT_EQ(gNet.getConnectorById(7), graph.connector.get());
    EXPECT_EQ(gNet.getLaneConnectorById(laneConnectorId), graph.connector->mlLaneConnector.first());
    EXPECT_EQ(gNet.getSignalPhaseById(9), graph.phase.get());

    // An object whose id has changed stands under the new one alone, or nowhere when that is taken.
    graph.from->linkID = 3;
    gNet.enter(graph.from.get());
    graph.to->linkID = 1;
    gNet.enter(graph.to.get());
    EXPECT_EQ(gNet.lLink(), QList<Link *>({held.get(), graph.from.get()}));
}

TEST_F(NetTables, AnotherNetworksRecordEmptiesTheTables) {
    EXPECT_FALSE(gNet.isCurrent(3)); // no network yet
    EXPECT_FALSE(gNet.isCurrent(0));
    NetRecord record;
    record.netId = 3;
    gNet.loadRecord(record);
    const Graph graph;
    gNet.config().scale = 2;

    record.name = QStringLiteral("O'Brien");
    gNet.loadRecord(record);
    EXPECT_EQ(gNet.lLink().size(), 2);
    EXPECT_EQ(gNet.netName(), QStringLiteral("O'Brien"));

    const Net copy = gNet;
    expectEmptyTables(copy, LaneConnector::generId);
    EXPECT_EQ(copy.name, QStringLiteral("O'Brien"));
    EXPECT_EQ(copy.config().scale, 2);
    gNet = copy;
    EXPECT_EQ(gNet.lLink().size(), 2);

    record.netId = 4;
    gNet.loadRecord(record);
    expectEmptyTables(gNet, LaneConnector::generId);
    EXPECT_EQ(gNet.config().scale, 2);
    EXPECT_TRUE(gNet.isCurrent(4));
    EXPECT_FALSE(gNet.isCurrent(3));
}

TEST(Net, ShowsItsRecordThroughTheInterface) {
    Net net;
    net.netId = 5;
    net.name = QStringLiteral("name");
    net.sourceUrl = QStringLiteral("url");
    net.sourceType = QStringLiteral("type");
    net.backgroundUrl = QStringLiteral("background");
    net.caption = QStringLiteral("caption");
    net.centerX = 1.5;
    net.centerY = -2;
    net.otherAttrsJson.insert(QStringLiteral("k"), 1);
    const IRoadNet &roadNet = net;
    EXPECT_EQ(roadNet.id(), 5);
    EXPECT_EQ(roadNet.netName(), net.name);
    EXPECT_EQ(roadNet.url(), net.sourceUrl);
    EXPECT_EQ(roadNet.type(), net.sourceType);
    EXPECT_EQ(roadNet.bkgUrl(), net.backgroundUrl);
    EXPECT_EQ(roadNet.explain(), net.caption);
    EXPECT_EQ(roadNet.centerPoint(), QPointF(1.5, -2));
    EXPECT_EQ(roadNet.otherAttrs(), net.otherAttrsJson);
}

TEST_F(NetTables, AnObjectIsInThoseOfOneNetwork) {
    const auto held = linkOf(1);
    gNet.enter(held.get());
    auto link = linkOf(3);
    {
        Net other;
        other.enter(link.get());
        EXPECT_EQ(link->net(), &other);
        gNet.enter(link.get());
        EXPECT_EQ(other.getLinkById(3), nullptr);
        other.enter(link.get());
        EXPECT_EQ(gNet.lLink(), QList<Link *>({held.get()}));
        link->linkID = 1;
        other.enter(link.get());
        EXPECT_EQ(other.getLinkById(1), link.get());
        EXPECT_EQ(other.connection(), nullptr);
    }
    EXPECT_EQ(link->net(), nullptr) << "the network died before";
    link.reset();
    EXPECT_EQ(gNet.getLinkById(1), held.get());
    EXPECT_EQ(held->net(), &gNet);
    gNet.releaseNet();
    EXPECT_EQ(held->net(), nullptr);
}

TEST_F(NetTables, MayDieBeforeAnEnteredObject) {
    EXPECT_EXIT(
        {
            auto link = linkOf(3);
            gNet.enter(link.get());
            gNet.~Net(); // as at the end of a process
            link.reset();
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}
