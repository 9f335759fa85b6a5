#include "tools/kinds/Comparison.h"
#include "model/Description.h"
#include "tests/differential/OneChange.h"
#include "tests/differential/RandomNet.h"
#include "tests/support/Builders.h"

#include <QJsonArray>
#include <QSet>
#include <gtest/gtest.h>

#include <cmath>

using namespace differential;
using namespace moratools;

// No field of an object may be missing where objects are compared or shown. What their fields are says the list that
// the differential tests keep by hand.

namespace {

NetPlan planOf(int seed) {
    NetPlan plan;
    plan.seed = quint32(seed);
    return plan;
}

constexpr int kSeeds = 12;

/// The fields of which a change goes unseen in random networks; @p sees(net, same) is asked for each field once.
template <class Sees>
QStringList unseen(QSet<QString> &fields, const Sees &sees) {
    QStringList missed;
    for (int seed = 1; seed <= kSeeds; ++seed) {
        const auto net = RandomNet(planOf(seed)).make();
        const auto same = RandomNet(planOf(seed)).make();
        EXPECT_FALSE(sees(*net, *same)) << "a network differs from itself";
        for (;;) {
            OneChange change(fields);
            differential::fields(change, *net);
            if (change.field().isEmpty())
                break;
            if (!sees(*net, *same))
                missed.append(change.field());
            change.undo();
        }
    }
    missed.sort();
    return missed;
}

/// Ids of owners, which the objects stand under, and restrictions, which no import makes.
const QStringList kUnseen = {QStringLiteral("accidentZones.mlLane.zoneId"),
                             QStringLiteral("busLines.mlStationLine.busLineID"),
                             QStringLiteral("compositions.mlDetail.vehicleConsCode"),
                             QStringLiteral("links.mlLane.mlLimitVehicle.code"),
                             QStringLiteral("links.mlLane.mlLimitVehicle.name"),
                             QStringLiteral("roadWorkZones.mlLane.zoneId"),
                             QStringLiteral("speedAreas.mlSpeedInterval.reduceSpeedAreaID"),
                             QStringLiteral("speedAreas.mlSpeedVehiType.reduceSpeedAreaID")};

template <class T>
void append(QJsonArray &all, const Objects<T> &objects) {
    for (const auto &object : objects)
        all.append(describe(*object).toJson());
}
template <class T>
void append(QJsonArray &all, const QList<T> &objects) {
    for (const T &object : objects)
        all.append(describe(object).toJson());
}

QJsonArray descriptionsOf(const NetContents &net) {
    QJsonArray all;
    append(all, net.links);
    append(all, net.connectors);
    append(all, net.guideArrows);
    append(all, net.linkTypes);
    append(all, net.settings.carFollowing);
    append(all, net.settings.laneChanging);
    all.append(describe(*net.settings.simulation).toJson());
    all.append(describe(*net.settings.scene).toJson());
    TrafficObjects::forEachKind(
        [&](const char *, const char *, auto list) { append(all, net.traffic.*list); });
    return all;
}

} // namespace

TEST(Comparison, SeesEveryFieldOfRoadsAndTraffic) {
    QSet<QString> fields;
    const QStringList missed = unseen(fields, [](const NetContents &net, const NetContents &same) {
        return !compareNetworks(net, same, true).isEqual();
    });
    QStringList expected = kUnseen;
    for (const QString &field : qAsConst(fields)) {
        // What no import writes is not compared.
        for (const char *list : {"carFollowing.", "guideArrows.", "laneChanging.", "linkTypes.",
                                 "routeLanes.", "simulation.", "scene."}) {
            if (field.startsWith(QLatin1String(list)))
                expected.append(field);
        }
    }
    expected.sort();
    EXPECT_EQ(missed.join(QLatin1Char('\n')).toStdString(), expected.join(QLatin1Char('\n')).toStdString());
    EXPECT_GE(fields.size(), 294);
}

TEST(Comparison, SeesWhatIsMissingOnEitherSide) {
    for (int seed = 1; seed <= kSeeds; ++seed) {
        const auto net = RandomNet(planOf(seed)).make();
        const auto same = RandomNet(planOf(seed)).make();
        const auto expectSeen = [&](const char *what, auto &objects) {
            if (objects.empty())
                return;
            auto last = std::move(objects.back());
            objects.pop_back();
            EXPECT_FALSE(compareNetworks(*net, *same, true).isEqual()) << what;
            EXPECT_FALSE(compareNetworks(*same, *net, true).isEqual()) << what;
            objects.push_back(std::move(last));
        };
        expectSeen("link", net->links);
        expectSeen("connector", net->connectors);
        TrafficObjects::forEachKind(
            [&](const char *, const char *name, auto list) { expectSeen(name, net->traffic.*list); });
        for (const auto &link : net->links)
            expectSeen("lane", link->mlLane);
        for (const auto &connector : net->connectors)
            expectSeen("lane connector", connector->mlLaneConnector);
    }
}

TEST(Comparison, ComparesNumbersBitForBit) {
    const auto net = RandomNet(planOf(1)).make();
    const auto same = RandomNet(planOf(1)).make();
    double &ours = net->links.front()->mlVertex.first()->z;
    double &theirs = same->links.front()->mlVertex.first()->z;
    for (const auto &[a, b] : {std::pair(0.0, -0.0), std::pair(1.0, std::nextafter(1.0, 2.0))}) {
        ours = a;
        theirs = b;
        EXPECT_EQ(compareNetworks(*net, *same, true).differences, 1) << b;
        theirs = a;
        EXPECT_TRUE(compareNetworks(*net, *same, true).isEqual());
    }
    net->record.isDefault = !same->record.isDefault;
    EXPECT_EQ(compareNetworks(*net, *same, true).first.size(), 1);
}

TEST(Description, HasEveryField) {
    QSet<QString> fields;
    const QStringList missed = unseen(fields, [](const NetContents &net, const NetContents &same) {
        return descriptionsOf(net) != descriptionsOf(same);
    });
    QStringList expected = kUnseen + QStringList(QStringLiteral("links.mlLane.linkID"));
    for (const char *field : {"connID", "laneID1", "laneID2", "routingID"}) // shown by no kind
        expected.append(QLatin1String("routeLanes.") + QLatin1String(field));
    expected.sort();
    EXPECT_EQ(missed.join(QLatin1Char('\n')).toStdString(), expected.join(QLatin1Char('\n')).toStdString());
}

namespace {

/// Two links of two lanes, and a connector of two lane connectors between them.
NetworkObjects sampleNetwork() {
    NetworkObjects network;
    network.record.name = QStringLiteral("N");
    network.links.push_back(sampleLink(1));
    network.links.push_back(sampleLink(2));
    network.connectors.push_back(sampleConnector(3, network.links[0].get(), network.links[1].get()));
    network.traffic.collectors.push_back(std::make_unique<VehicleDrivInfoCollector>());
    return network;
}

/// What is said of a network that differs from the sample as `change` has it.
template <class Change>
std::string differencesAfter(const Change &change) {
    NetworkObjects read = sampleNetwork();
    change(read);
    return compareNetworks(sampleNetwork(), read, true).first.join(QLatin1Char('\n')).toStdString();
}

} // namespace

// The record has 10 values, a link 117 (of these 66 of its points), a connector 139 (114), a collector 12; 17
// kinds have a number of objects.
TEST(Comparison, CountsValuesAndCoordinates) {
    const Comparison comparison = compareNetworks(sampleNetwork(), sampleNetwork(), true);
    EXPECT_EQ(comparison.differences, 0);
    EXPECT_EQ(comparison.fields, 10 + 2 * 117 + 139 + 12 + 17);
    EXPECT_EQ(comparison.coordinates, 2 * 66 + 114);
    // Each of two lane connectors has three lines of five points.
    const Comparison without = compareNetworks(sampleNetwork(), sampleNetwork(), false);
    EXPECT_EQ(without.fields, comparison.fields - qint64(2) * 3 * 16);
    EXPECT_EQ(without.coordinates, comparison.coordinates - qint64(2) * 3 * 15);
}

TEST(Comparison, SaysWhereAndWhat) {
    EXPECT_EQ(differencesAfter([](NetworkObjects &net) {
                  net.record.otherAttrsJson = {{QStringLiteral("a"), 1}};
              }),
              "network \"N\" otherAttrs was written as {} and read as {\"a\":1}");
    EXPECT_EQ(differencesAfter([](NetworkObjects &net) {
                  net.traffic.collectors[0]->x = -0.0;
                  net.traffic.collectors[0]->name = QStringLiteral("K");
              }),
              "driving-data collector 0 \"0\" name was written as \"0\" and read as \"K\"\n"
              "driving-data collector 0 \"0\" x was written as 0 and read as -0");
    EXPECT_EQ(differencesAfter([](NetworkObjects &net) { net.connectors.clear(); }),
              "connector 3 \"转 3\" was written as one and read as none\n"
              "number of objects (connector) was written as 1 and read as 0");
}

TEST(Comparison, SeesAPartThatWasNotWritten) {
    NetworkObjects written = sampleNetwork();
    delete written.links[0]->mpEndNode;
    written.links[0]->mpEndNode = nullptr;
    // Its id, its name and its vertex.
    EXPECT_EQ(compareNetworks(written, sampleNetwork(), true).differences, 3);
    EXPECT_EQ(compareNetworks(sampleNetwork(), written, true).differences, 3);
}

TEST(Comparison, MatchesLaneConnectorsByTheirLanes) {
    EXPECT_EQ(
        differencesAfter([](NetworkObjects &net) { net.connectors[0]->mlLaneConnector.swapItemsAt(0, 1); }),
        "");
    EXPECT_EQ(differencesAfter([](NetworkObjects &net) {
                  net.connectors[0]->mlLaneConnector[0]->mpEndLane = net.links[1]->mlLane[1];
              }),
              "connector 3 \"转 3\" laneConnectors was written as 11 to 21 and read as none");
}
