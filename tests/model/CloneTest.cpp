#include "model/NetContents.h"

#include "tests/differential/OneChange.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/Texts.h"
#include "tests/support/Builders.h"

#include <gtest/gtest.h>

using namespace differential;

// What the fields of an object are says the list that the differential tests keep by hand.

namespace {

template <class T>
void cloneAll(const QList<T> &from, QList<T> &to) {
    for (const T &object : from)
        to.append(*object.clone());
}

/// Clones of all objects of a network, which refer to those that the network's objects refer to.
NetContents clonesOf(const NetContents &net) {
    NetContents clones;
    forEachNetKind([&](auto kind) {
        for (const auto &object : kind.list(net))
            kind.list(clones).push_back(object->clone());
    });
    cloneAll(net.linkTypes, clones.linkTypes);
    cloneAll(net.settings.carFollowing, clones.settings.carFollowing);
    cloneAll(net.settings.laneChanging, clones.settings.laneChanging);
    clones.settings.simulation.emplace(*net.settings.simulation->clone());
    clones.settings.scene = *net.settings.scene->clone();
    clones.traffic.routeLanes = net.traffic.routeLanes;
    return clones;
}

TEST(Clone, HasEveryFieldAndSharesNone) {
    for (quint32 seed = 1; seed <= 6; ++seed) {
        NetPlan plan;
        plan.seed = seed;
        const auto net = RandomNet(plan).make();
        const QStringList before = textsOf(*net);
        NetContents clones = clonesOf(*net);
        expectSame(before, textsOf(clones));
        QSet<QString> done;
        for (;;) {
            OneChange change(done);
            fields(change, clones);
            if (change.field().isEmpty())
                break;
        }
        EXPECT_GT(done.size(), 100);
        expectSame(before, textsOf(*net));
        EXPECT_NE(textsOf(clones), before);
    }
}

TEST(Clone, OfALinkStandsOnItsOwnVerticesAndInNoTable) {
    const auto link = sampleLink(5);
    const auto other = sampleLink(6);
    link->mpEndNode->mpVertex = other->mlVertex.first();
    link->storedLinkType = QStringLiteral("Freeway");
    GuideArrow arrow;
    link->mlLane.first()->mlGuideArrow = {&arrow};
    Net net;
    net.enter(link.get());
    for (Lane *lane : qAsConst(link->mlLane))
        net.enter(lane);
    auto clone = link->clone();
    EXPECT_EQ(clone->mpStartNode->mpVertex, clone->mlVertex.first());
    EXPECT_EQ(clone->mpEndNode->mpVertex, other->mlVertex.first()) << "another link's stays";
    EXPECT_EQ(clone->storedLinkType, link->storedLinkType);
    EXPECT_EQ(clone->mlLane.first()->mlGuideArrow, QList<GuideArrow *>({&arrow}));
    EXPECT_EQ(clone->net(), nullptr);
    EXPECT_EQ(clone->mlLane.first()->net(), nullptr);
    clone.reset();
    EXPECT_EQ(net.getLinkById(5), link.get());
    EXPECT_EQ(net.getLaneById(51), link->mlLane.first());

    link->mpEndNode->mpVertex = nullptr;
    delete link->mpStartNode;
    link->mpStartNode = link->mpEndNode;
    clone = link->clone();
    EXPECT_EQ(clone->mpStartNode, clone->mpEndNode) << "one node for both ends";
    EXPECT_NE(clone->mpStartNode, link->mpStartNode);
}

TEST(Clone, OfAConnectorKeepsTheNumbersOfItsLaneConnectors) {
    const auto from = sampleLink(5);
    const auto to = sampleLink(6);
    const auto connector = sampleConnector(8, from.get(), to.get());
    const long last = LaneConnector::lastId();
    const auto clone = connector->clone();
    EXPECT_EQ(LaneConnector::lastId(), last);
    ASSERT_EQ(clone->mlLaneConnector.size(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(clone->mlLaneConnector.at(i)->laneConnId, 80 + i);
        EXPECT_EQ(clone->mlLaneConnector.at(i)->mpConnector, clone.get());
        EXPECT_EQ(clone->mlLaneConnector.at(i)->mpStartLane, from->mlLane.at(i));
    }
}

TEST(Clone, OfSignalsLeavesLampsWhereTheyAre) {
    SignalGroup group;
    group.mlPhase.append(new SignalPhase);
    SignalPhase &phase = *group.mlPhase.first();
    phase.storedColors = QStringList(QStringLiteral("Red"));
    SignalLamp lamp;
    lamp.setPhase(&phase);
    {
        const auto clone = group.clone();
        EXPECT_TRUE(clone->mlPhase.first()->mlLamp.isEmpty());
        EXPECT_EQ(clone->mlPhase.first()->storedColors, phase.storedColors);
        const auto lampClone = lamp.clone();
        EXPECT_EQ(lampClone->mpPhase, &phase);
    }
    EXPECT_EQ(phase.mlLamp, QList<SignalLamp *>({&lamp}));
    EXPECT_EQ(lamp.mpPhase, &phase);
}

} // namespace
