#include "store/StoredNet.h"

#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <memory>

namespace {

/// Two links of two lanes with a connector between them, and a signal group whose lamp stands on the first
/// lane.
class StoredNetTest : public StoreKindFixture {
protected:
    void prepare() override {
        for (const long id : {5L, 6L}) {
            mLinks.push_back(sampleLink(id));
            for (Lane *lane : qAsConst(mLinks.back()->mlLane))
                lane->mlLimitVehicle.clear();
        }
        mConnector = sampleConnector(8, mLinks[0].get(), mLinks[1].get());
        mConnector->mlLimitVehicle.clear();
        mGroup = std::make_unique<SignalGroup>();
        mGroup->signalGroupID = 3;
        mGroup->name = QStringLiteral("signals");
        for (const long id : {11L, 12L}) {
            auto *phase = new SignalPhase;
            phase->signalPhaseID = id;
            phase->serialNumber = int(id - 10);
            phase->name = QString::number(id);
            phase->mlColor = {{QStringLiteral("红"), 5}, {QStringLiteral("绿"), 6}};
            mGroup->mlPhase.append(phase);
        }
        mLamp = std::make_unique<SignalLamp>();
        mLamp->signalLampID = 9;
        mLamp->laneID = 51;
        mLamp->setPhase(mGroup->mlPhase.first());
        ASSERT_TRUE(mNet.insert(mLinks)) << failure();
        ASSERT_TRUE(mNet.insert(*mConnector)) << failure();
        ASSERT_TRUE(mNet.insert(*mGroup)) << failure();
        ASSERT_TRUE(mNet.insert(*mLamp)) << failure();
        clearFailures();
    }

    static std::string failure() {
        const QList<CallDbResult> all = DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult;
        return all.isEmpty() ? std::string() : (all.last().error + all.last().sql).toStdString();
    }
    static std::string refusal() {
        const std::string text = failure();
        clearFailures();
        return text;
    }
    std::string stored(const char *sql) {
        return rows(QLatin1String(sql)).join(QLatin1Char(' ')).toStdString();
    }
    /// Rows that SQLite has written on the connection.
    int written() {
        return isPostgres() ? 0 : rows(QStringLiteral("select total_changes()")).first().toInt();
    }
    void expectWritten(int before, int expected) {
        if (!isPostgres()) {
            EXPECT_EQ(written() - before, expected);
        }
    }

    StoredNet mNet{gDB, kNet};
    std::vector<std::unique_ptr<Link>> mLinks;
    std::unique_ptr<Connector> mConnector;
    std::unique_ptr<SignalGroup> mGroup;
    std::unique_ptr<SignalLamp> mLamp;
};

TEST_P(StoredNetTest, AnUpdateWritesWhatDiffersAndNothingElse) {
    const int before = written();
    EXPECT_TRUE(mNet.update(*mLinks[0])) << failure();
    expectWritten(before, 0);
    mLinks[0]->limitSpeed = 33;
    mLinks[0]->mlLane[1]->width = 7;
    mLinks[0]->mlVertex[1]->x = 1234.5;
    EXPECT_TRUE(mNet.update(*mLinks[0])) << failure();
    expectWritten(before, 3);
    EXPECT_EQ(stored("select limitSpeed from Link where linkID = 5"), "33");
    EXPECT_EQ(stored("select width from Lane where laneID = 52"), "7");
    EXPECT_EQ(stored("select x from Vertex where vertexID = 52"), "1234.5");
    EXPECT_EQ(failureCount(), 0) << failure();
}

TEST_P(StoredNetTest, ALaneInTheMiddleLeavesTheOthersTheirIds) {
    auto lane = std::make_unique<Lane>();
    lane->width = 2;
    lane->serialNumber = 2;
    lane->otherAttrsJson = QJsonObject{{QStringLiteral("a"), 1}};
    mLinks[0]->mlLane[1]->serialNumber = 3;
    mLinks[0]->mlLane.insert(1, lane.release());
    const int before = written();
    ASSERT_TRUE(mNet.update(*mLinks[0])) << failure();
    const long id = mLinks[0]->mlLane[1]->laneID;
    EXPECT_GT(id, 62);
    expectWritten(before, 3); // the lane, the number of the one beyond it, the counter
    EXPECT_EQ(rows(QStringLiteral("select laneID from Lane where linkID = 5 order by serialNumber")),
              (QStringList{QStringLiteral("51"), QString::number(id), QStringLiteral("52")}));
}

TEST_P(StoredNetTest, WhatOthersReferToIsNotRemovedBehindTheirBacks) {
    delete mLinks[0]->mlLane.takeFirst();
    EXPECT_FALSE(mNet.update(*mLinks[0]));
    EXPECT_EQ(refusal(),
              "Lane 51 cannot be removed: connector 8, signal lamp 9 refer to it. Remove these first, "
              "or take them along.");
    EXPECT_EQ(count(QStringLiteral("Lane")), 4);
    EXPECT_TRUE(mNet.update(*mLinks[0], Cascade::Take)) << failure();
    EXPECT_EQ(stored("select laneID from Lane order by laneID"), "52 61 62");
    EXPECT_EQ(stored("select startLaneID from LaneConnector order by startLaneID"), "52");
    EXPECT_EQ(count(QStringLiteral("SignalLamp")), 0);

    delete mLinks[1]->mlLane.takeLast();
    EXPECT_FALSE(mNet.update(*mLinks[1]));
    EXPECT_EQ(refusal(),
              "Lane 62 cannot be removed: connector 8 refers to it. Remove these first, or take them along.");

    EXPECT_FALSE(mNet.remove<Link>(5));
    EXPECT_EQ(refusal(),
              "Link 5 cannot be removed: connector 8 refers to it. Remove these first, or take them along.");
    EXPECT_TRUE(mNet.remove<Link>(5, Cascade::Take)) << failure();
    EXPECT_EQ(stored("select linkID from Link"), "6");
    EXPECT_EQ(stored("select distinct linkID from LinkVertex"), "6");
    EXPECT_EQ(stored("select nodeID from Node order by nodeID"), "61 62");
    EXPECT_EQ(count(QStringLiteral("Vertex")), 3);
    EXPECT_EQ(count(QStringLiteral("LaneConnector")) + count(QStringLiteral("Connector")), 0);
}

TEST_P(StoredNetTest, WhatRefersToALinkIsNamedOnce) {
    const auto referrers = mNet.whatRefersTo<Link>(5);
    ASSERT_TRUE(referrers);
    QStringList texts;
    for (const NetObject &object : *referrers)
        texts.append(object.text + QLatin1Char(' ') + QString::number(int(object.fate)));
    EXPECT_EQ(texts.join(QLatin1String(", ")).toStdString(),
              "lane 51 0, lane 52 0, connector 8 1, signal lamp 9 1");
}

TEST_P(StoredNetTest, NumbersThatMatchNothingAreRefusedByName) {
    mLamp->laneID = 99;
    EXPECT_FALSE(mNet.update(*mLamp));
    EXPECT_EQ(refusal(), "Signal lamp 9 names lane 99, which the network does not have.");
    mLamp->laneID = 0;
    EXPECT_FALSE(mNet.update(*mLamp));
    EXPECT_EQ(refusal(), "Signal lamp 9 names no lane: its id is 0.");
    mLamp->signalLampID = 10;
    EXPECT_FALSE(mNet.update(*mLamp));
    EXPECT_EQ(refusal(), "Signal lamp 10 is not in the store.");
    mGroup->name = QStringLiteral("again");
    EXPECT_FALSE(mNet.insert(*mGroup));
    EXPECT_EQ(refusal(), "Signal group 3 is in the store already.");
    EXPECT_FALSE(mNet.remove<SignalLamp>(QList<long>{9, 10}));
    EXPECT_EQ(refusal(), "Signal lamp 10 is not in the store.");
    EXPECT_EQ(stored("select laneID from SignalLamp"), "51");
}

TEST_P(StoredNetTest, PhasesComeBackInTheOrderOfTheirGroup) {
    auto *phase = new SignalPhase;
    phase->name = QStringLiteral("new");
    phase->mlColor = {{QStringLiteral("黄"), 3}};
    mGroup->mlPhase.insert(1, phase);
    mGroup->mlPhase[2]->mlColor.removeLast();
    ASSERT_TRUE(mNet.update(*mGroup)) << failure();
    reopen();
    const std::unique_ptr<SignalGroup> read(DBTools::selectSignalGroupByID(gDB, kNet, 3));
    ASSERT_TRUE(read);
    QStringList names;
    for (const SignalPhase *one : qAsConst(read->mlPhase))
        names.append(one->name + QLatin1Char(' ') + QString::number(one->mlColor.size()));
    if (isPostgres())
        names.sort();
    EXPECT_EQ(names.join(QLatin1Char(',')).toStdString(),
              isPostgres() ? "11 2,12 1,new 1" : "11 2,new 1,12 1");
}

TEST_P(StoredNetTest, FieldsOfManyAreWrittenAlone) {
    mLinks[0]->limitSpeed = 30;
    mLinks[0]->desiredSpeed = 31;
    mLinks[1]->limitSpeed = 32;
    mLinks[1]->linkName = QStringLiteral("not written");
    const QList<Link *> both = {mLinks[0].get(), mLinks[1].get()};
    const int before = written();
    EXPECT_TRUE(mNet.updateFields({QStringLiteral("limitSpeed"), QStringLiteral("desiredSpeed")}, mLinks))
        << failure();
    expectWritten(before, 2);
    EXPECT_EQ(stored("select limitSpeed from Link order by linkID"), "30 32");
    EXPECT_EQ(stored("select count(*) from Link where linkName = 'not written'"), "0");
    EXPECT_FALSE(mNet.updateFields({QStringLiteral("linkID")}, both));
    EXPECT_EQ(refusal(), "Table Link has no column linkID that could be changed.");
    mLinks[1]->linkID = 77;
    EXPECT_FALSE(mNet.updateFields({QStringLiteral("limitSpeed")}, both));
    EXPECT_EQ(refusal(), "Link 77 is not in the store.");
}

TEST_P(StoredNetTest, WhatLinksShareMovesForBothAndGoesWithTheLast) {
    Link &first = *mLinks[0];
    Link &second = *mLinks[1];
    // The second link begins where the first one ends.
    *second.mlVertex.first() = *first.mlVertex.last();
    second.mpStartNode->nodeID = first.mpEndNode->nodeID;
    second.mpStartNode->nodeName = first.mpEndNode->nodeName;
    ASSERT_TRUE(mNet.update(second)) << failure();
    EXPECT_EQ(count(QStringLiteral("Vertex")) * 10 + count(QStringLiteral("Node")), 53);

    // One link moves it, the other one has not heard of that; then both move it, to different places.
    first.mlVertex.last()->x = 777;
    ASSERT_TRUE(mNet.update(QList<Link *>{&second, &first})) << failure();
    EXPECT_EQ(stored("select x from Vertex where vertexID = 53"), "777");
    first.mlVertex.last()->x = 778;
    second.mlVertex.first()->x = 779;
    EXPECT_FALSE(mNet.update(QList<Link *>{&first, &second}));
    EXPECT_EQ(refusal(),
              "Vertex 53 is shared by links that give it different values: give it the same in each.");
    EXPECT_EQ(stored("select x from Vertex where vertexID = 53"), "777");

    ASSERT_TRUE(mNet.remove<Link>(5, Cascade::Take)) << failure();
    EXPECT_EQ(stored("select vertexID from LinkVertex order by num"), "53 62 63");
    EXPECT_EQ(count(QStringLiteral("Vertex")) * 10 + count(QStringLiteral("Node")), 32);
    ASSERT_TRUE(mNet.remove<Link>(6)) << failure();
    EXPECT_EQ(count(QStringLiteral("Vertex")) + count(QStringLiteral("Node")) + count(QStringLiteral("Lane")),
              0);
}

TEST_P(StoredNetTest, LinksOfANetworkFollowWhatTheyShare) {
    Link &second = *mLinks[1];
    *second.mlVertex.first() = *mLinks[0]->mlVertex.last();
    second.centerLinePointsJson = StoredJson();
    ASSERT_TRUE(mNet.update(second)) << failure();
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents)) << failure();
    contents.edit(*contents.find<Link>(5)).mlVertex.last()->x = 555;
    ASSERT_TRUE(mNet.saveChanges(contents)) << failure();
    EXPECT_EQ(contents.find<Link>(6)->mlVertex.first()->x, 555);
    // So that the next change of that link does not take it back.
    contents.edit(*contents.find<Link>(6)).limitSpeed = 11;
    ASSERT_TRUE(mNet.saveChanges(contents)) << failure();
    EXPECT_EQ(stored("select x from Vertex where vertexID = 53"), "555");
}

TEST_P(StoredNetTest, WhatIsGoneFromANetworkIsNotLookedInto) {
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents)) << failure();
    contents.edit(*contents.find<Connector>(8)).length = 3;
    contents.links.erase(contents.links.begin());
    EXPECT_FALSE(mNet.saveChanges(contents));
    EXPECT_EQ(refusal(), "Connector 8 joins a link that is not part of the network.");
    EXPECT_FALSE(contents.changes.isEmpty());
}

TEST_P(StoredNetTest, ANumberThatTwoRoadsHadIsThatOfTheOneThatStays) {
    const auto turn = sampleConnector(5, mLinks[1].get(), mLinks[1].get());
    turn->mlLimitVehicle.clear();
    ASSERT_TRUE(mNet.insert(*turn)) << failure();
    VehicleQueueCounter onConnector;
    onConnector.roadID = 5;
    onConnector.laneNumber = onConnector.toLaneNumber = 1;
    ASSERT_TRUE(mNet.insert(onConnector)) << failure();
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents)) << failure();
    ASSERT_TRUE(contents.remove(*contents.find<Link>(5), Cascade::Take));
    // It says link now, and there is none of that number any more.
    VehicleQueueCounter *counter = contents.find<VehicleQueueCounter>(onConnector.queueCounterID);
    ASSERT_TRUE(counter);
    contents.edit(*counter).toLaneNumber = 0;
    EXPECT_TRUE(mNet.saveChanges(contents)) << failure();
    EXPECT_EQ(stored("select roadID || ' ' || toLaneNumber from VehicleQueueCounter"), "5 0");
    EXPECT_EQ(stored("select linkID from Link"), "6");
    // In the store alone it goes with the connector, which is the one that it can mean.
    EXPECT_FALSE(mNet.remove<Connector>(5));
    clearFailures();
    EXPECT_TRUE(mNet.remove<Connector>(5, Cascade::Take)) << failure();
    EXPECT_EQ(count(QStringLiteral("VehicleQueueCounter")), 0);
}

TEST_P(StoredNetTest, IdsThatObjectsBringAreNotDrawnAgain) {
    // A draw reserves the ids behind it; one of these is brought along.
    long id = 0;
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("GuideArrow"), id));
    GuideArrow own;
    own.guideArrowID = id + 1;
    own.laneID = 52;
    EXPECT_TRUE(mNet.insert(own)) << failure();
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("GuideArrow"), id));
    EXPECT_GT(id, own.guideArrowID);
    GuideArrow drawn;
    drawn.laneID = 61;
    EXPECT_TRUE(mNet.insert(drawn)) << failure();
    EXPECT_GT(drawn.guideArrowID, id);
    // What is refused keeps its id of 0.
    GuideArrow refused;
    refused.laneID = 99;
    EXPECT_FALSE(mNet.insert(refused));
    EXPECT_EQ(refused.guideArrowID, 0);
    EXPECT_EQ(count(QStringLiteral("GuideArrow")), 2);
}

TEST_P(StoredNetTest, APartOfAnotherObjectIsNotTaken) {
    auto lane = mLinks[1]->mlLane.last()->clone();
    lane->serialNumber = 3;
    mLinks[0]->mlLane.append(lane.release());
    EXPECT_FALSE(mNet.update(*mLinks[0]));
    EXPECT_EQ(refusal(), "Lane 62 belongs to link 6 already: change both, or draw an id of its own.");
    delete mLinks[1]->mlLane.takeLast();
    // Moved from one to the other, with what refers to it.
    ASSERT_TRUE(mNet.update(QList<Link *>{mLinks[0].get(), mLinks[1].get()})) << failure();
    EXPECT_EQ(stored("select linkID from Lane where laneID = 62"), "5");
    EXPECT_EQ(count(QStringLiteral("LaneConnector")), 2);
}

TEST_P(StoredNetTest, InsideATransactionTheCallerDecides) {
    ASSERT_TRUE(gDB.transaction());
    mLinks[0]->limitSpeed = 21;
    EXPECT_TRUE(mNet.update(*mLinks[0])) << failure();
    mLamp->laneID = 99;
    EXPECT_FALSE(mNet.update(*mLamp));
    EXPECT_TRUE(mNet.remove<SignalLamp>(9)) << failure();
    EXPECT_TRUE(gDB.commit());
    EXPECT_EQ(stored("select limitSpeed from Link where linkID = 5"), "21");
    EXPECT_EQ(count(QStringLiteral("SignalLamp")), 0);
    ASSERT_TRUE(gDB.transaction());
    EXPECT_TRUE(mNet.remove<Link>(5, Cascade::Take)) << failure();
    EXPECT_TRUE(gDB.rollback());
    EXPECT_EQ(count(QStringLiteral("Link")), 2);
}

TEST_P(StoredNetTest, ARenamedNetworkIsRenamedInTheStore) {
    NetContents contents;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, contents)) << failure();
    contents.record.name = QStringLiteral("O'Brien");
    contents.record.centerX = 12.5;
    EXPECT_TRUE(mNet.saveChanges(contents)) << failure();
    EXPECT_EQ(stored("select name || ' ' || centerX from Net"), "O'Brien 12.5");
    EXPECT_EQ(gNet.netName(), QStringLiteral("O'Brien"));
    contents.record.caption = QStringLiteral("words");
    EXPECT_EQ(mNet.saveChanges(contents), hasSeveralNets()) << failure();
    EXPECT_EQ(hasSeveralNets() ? stored("select caption from Net") : refusal(),
              hasSeveralNets() ? "words" : "A store of this version has no place for caption of a network.");
}

INSTANTIATE_TEST_SUITE_P(Kinds, StoredNetTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
