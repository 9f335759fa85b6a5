#include "model/Net.h"
#include "model/NetContents.h"
#include "model/VehicleType.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QFile>
#include <QWriteLocker>

#include <future>
#include <thread>

namespace {

/// What gNet's tables hold and answer, which is one network of one store.
class CurrentNetTest : public StoreKindFixture {
protected:
    /// Two links, a connector, a group of one phase and a lamp that shows it.
    void writeNet(long net) {
        const auto from = sampleLink(7);
        const auto to = sampleLink(8);
        for (Link *link : {from.get(), to.get()})
            ASSERT_TRUE(DBTools::insertLink(gDB, net, link, true));
        ASSERT_TRUE(DBTools::insertConnector(gDB, net, sampleConnector(5, from.get(), to.get()).get(), true));
        SignalGroup group;
        group.signalGroupID = 4;
        auto *phase = new SignalPhase;
        phase->signalPhaseID = 41;
        group.mlPhase = {phase};
        ASSERT_TRUE(DBTools::insertSignalGroup(gDB, net, &group, true));
        SignalLamp lamp;
        lamp.signalLampID = 9;
        lamp.laneID = 72;
        lamp.toLaneID = 81;
        lamp.setPhase(phase);
        ASSERT_TRUE(DBTools::insertSignalLamp(gDB, net, &lamp, true));
    }

    void addNet(long net) {
        if (hasSeveralNets())
            ASSERT_TRUE(DBTools_V6::insertNet(gDB, net, QStringLiteral("net %1").arg(net), {}, {}, {}, {},
                                              false, true));
        else
            execute(QStringLiteral("update Net set NetId = %1").arg(net));
    }
};

std::unique_ptr<Link> readLink(long net, long id) {
    return std::unique_ptr<Link>(DBTools::selectLinkByID(gDB, net, id));
}

TEST_P(CurrentNetTest, OpeningEmptiesTheTables) {
    writeNet(kNet);
    const auto link = readLink(kNet, 7);
    const std::unique_ptr<SignalGroup> group(DBTools::selectSignalGroupByID(gDB, kNet, 4));
    ASSERT_EQ(gNet.getLinkById(7), link.get());
    if (!isPostgres()) {
        EXPECT_FALSE(DBTools::openDatabase(gDB, QString(), true));
        EXPECT_EQ(gNet.getLinkById(7), link.get()) << "nothing was opened";
    }
    execute(QStringLiteral("update Link set LinkName = 'of the new store' where linkID = 7"));
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_TRUE(gNet.lLink().isEmpty());
    EXPECT_EQ(gNet.getLaneById(72), nullptr);
    EXPECT_EQ(gNet.getSignalPhaseById(41), nullptr);
    const auto read = readLink(kNet, 7);
    ASSERT_TRUE(read);
    EXPECT_NE(read, link);
    EXPECT_EQ(read->linkName, QStringLiteral("of the new store"));
    EXPECT_EQ(gNet.getLinkById(7), read.get());
    if (isPostgres())
        return;
    ASSERT_TRUE(DBTools_V6::openDatabaseForBackup(gDBForBackup, path(), true));
    EXPECT_TRUE(gNet.lLink().isEmpty());
}

TEST_P(CurrentNetTest, RemovingTheCurrentNetworkEmptiesTheTables) {
    writeNet(kNet);
    const auto link = readLink(kNet, 7);
    if (hasSeveralNets()) {
        addNet(2);
        writeNet(2);
        ASSERT_TRUE(DBTools::removeNetData(gDB, 2, true));
        EXPECT_EQ(gNet.getLinkById(7), link.get()) << "another network was removed";
    }
    ASSERT_TRUE(DBTools::removeNetData(gDB, kNet, true));
    EXPECT_TRUE(gNet.lLink().isEmpty());
    EXPECT_EQ(gNet.getLaneById(72), nullptr);
    EXPECT_EQ(DBTools::selectLinkByID(gDB, kNet, 7), nullptr);
    EXPECT_EQ(gNet.netId, kNet) << "its record is still there";
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(CurrentNetTest, ALoadEmptiesTheTablesAlsoForANetworkWithoutAnId) {
    addNet(0);
    writeNet(0);
    NetContents first;
    ASSERT_TRUE(DBTools::loadNet(gDB, 0, first));
    NetContents second;
    ASSERT_TRUE(DBTools::loadNet(gDB, 0, second));
    const Connector &connector = *second.connectors.front();
    EXPECT_EQ(connector.mpStartLink, second.links[0].get());
    EXPECT_EQ(connector.mpEndLink, second.links[1].get());
    EXPECT_EQ(connector.mlLaneConnector.first()->mpStartLane, second.links[0]->mlLane.first());
    EXPECT_EQ(second.traffic.signalLamps.front()->mpPhase,
              second.traffic.signalGroups.front()->mlPhase.first());
    first = NetContents();
    EXPECT_EQ(gNet.getLinkById(7), second.links[0].get());
    EXPECT_EQ(gNet.getConnectorById(5), &connector);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(CurrentNetTest, ALoadThatFindsNothingLeavesGNetEmpty) {
    writeNet(kNet);
    for (const long current : {0L, kNet}) {
        gNet = Net();
        gNet.netId = current;
        gNet.config().scale = 3;
        const auto link = sampleLink(7);
        gNet.enter(link.get());
        NetContents contents;
        contents.links.push_back(sampleLink(6));
        EXPECT_FALSE(DBTools::loadNet(gDB, 99, contents));
        EXPECT_TRUE(contents.links.empty());
        EXPECT_TRUE(gNet.lLink().isEmpty());
        EXPECT_EQ(gNet.netId, 0);
        EXPECT_EQ(gNet.config().scale, 1);
    }
}

TEST_P(CurrentNetTest, BeforeANetworkIsLoadedTheTablesSpeakForOneNetworkStoresAlone) {
    writeNet(kNet);
    gNet = Net();
    const auto stranger = sampleLink(7);
    gNet.enter(stranger.get());
    gNet.enter(stranger->mlLane.first());
    const auto ofLink = [](long net) { return DBTools::selectLinkByID(gDB, net, 7); };
    if (!hasSeveralNets()) {
        EXPECT_EQ(ofLink(kNet), stranger.get());
        return;
    }
    const std::unique_ptr<Link> read(ofLink(kNet));
    EXPECT_NE(read, stranger);
    const std::unique_ptr<Link> other = readLink(kNet, 8);
    EXPECT_EQ(gNet.lLink(), QList<Link *>({stranger.get()}));
    EXPECT_EQ(DBTools::selectConnectorByID(gDB, kNet, 5), nullptr);
    ASSERT_NE(DBTools::selectNetById(gDB, kNet), nullptr);
    const auto from = readLink(kNet, 7);
    const auto to = readLink(kNet, 8);
    const std::unique_ptr<Connector> connector(DBTools::selectConnectorByID(gDB, kNet, 5));
    ASSERT_TRUE(connector);
    EXPECT_EQ(connector->mpStartLink, from.get());
}

TEST_P(CurrentNetTest, WhatIsReadOnceMoreAndDeletedLeavesTheFirst) {
    writeNet(kNet);
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    SignalPhase *phase = net.traffic.signalGroups.front()->mlPhase.first();
    SignalLamp *lamp = net.traffic.signalLamps.front().get();
    const long laneConnector = net.connectors.front()->mlLaneConnector.first()->laneConnId;
    const auto expectTheLoaded = [&] {
        EXPECT_EQ(gNet.getConnectorById(5), net.connectors.front().get());
        EXPECT_EQ(gNet.getLaneConnectorById(laneConnector), net.connectors.front()->mlLaneConnector.first());
        EXPECT_EQ(gNet.getSignalPhaseById(41), phase);
        EXPECT_EQ(phase->mlLamp, QList<SignalLamp *>({lamp}));
        EXPECT_EQ(gNet.getLaneById(72), net.links[0]->mlLane.last());
    };
    {
        const std::unique_ptr<Connector> connector(DBTools::selectConnectorByID(gDB, kNet, 5));
        const std::unique_ptr<SignalGroup> group(DBTools::selectSignalGroupByID(gDB, kNet, 4));
        const std::unique_ptr<SignalLamp> again(DBTools::selectSignalLampByID(gDB, kNet, 9));
        ASSERT_TRUE(connector && group && again);
        EXPECT_EQ(again->mpPhase, phase);
        expectTheLoaded();
    }
    expectTheLoaded();
}

TEST_P(CurrentNetTest, ALoadFillsTheConfiguration) {
    writeNet(kNet);
    execute(QStringLiteral("delete from Configuration"));
    addRow("Configuration", "sceneWidth, sceneHeight, scale, showBackgroundMap, showGrid",
           "700, 500, 0.5, 'F', 'T'");
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    EXPECT_EQ(gNet.config().scale, 0.5);
    EXPECT_EQ(VehicleDetector().length, 2);
    ASSERT_TRUE(DBTools::saveConfiguration(gDB, kNet, true));
    EXPECT_EQ(rows(QStringLiteral("select cast(sceneWidth as integer), cast(sceneHeight as integer), "
                                  "cast(scale * 10 as integer), showBackgroundMap, showGrid from "
                                  "Configuration")),
              QStringList(QStringLiteral("700|500|5|F|T")));
    execute(QStringLiteral("delete from Configuration"));
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, net));
    EXPECT_EQ(gNet.config().scale, 1) << "the scale of the load before";
}

// A host that holds the registry's lock for writing, as who changes the registry should, is not kept waiting.
TEST_P(CurrentNetTest, ALoadDoesNotTakeTheLockOfTheVehicleTypes) {
    DBTools::initDictionary(gDB, kNet, true);
    writeNet(kNet);
    addRow("VehicleDetector",
           "vehicleDetectorId, signalGroupID, name, phaseNumber, roadId, roadType, laneNumber, toLaneNumber, "
           "length, distToTerminal, type, maxGreen",
           "3, 4, 'd', 1, 7, 'L', 1, -1, 2, 3, 't', 60");
    addRow("DetectorVehiType", "vehicleDetectorId, vehicleTypeCode", "3, 2");

    std::promise<void> held;
    std::promise<void> loaded;
    bool isWaitedFor = false;
    std::thread holder([&] {
        const QWriteLocker locker(&VehicleType::mlock);
        held.set_value();
        isWaitedFor = loaded.get_future().wait_for(std::chrono::seconds(5)) == std::future_status::timeout;
    });
    held.get_future().wait();
    NetContents net;
    EXPECT_TRUE(DBTools::loadNet(gDB, kNet, net));
    loaded.set_value();
    holder.join();
    EXPECT_FALSE(isWaitedFor);
    ASSERT_EQ(net.traffic.vehicleDetectors.size(), 1U);
    EXPECT_EQ(net.traffic.vehicleDetectors.front()->mlVehiTypeCode, QList<long>{2});
}

INSTANTIATE_TEST_SUITE_P(Stores, CurrentNetTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
