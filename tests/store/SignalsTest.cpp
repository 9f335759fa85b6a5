#include "model/Net.h"
#include "model/SignalGroup.h"
#include "model/SignalLamp.h"
#include "model/SpecialWords.h"
#include "store/DBTools.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

namespace {

SignalPhase *addPhase(SignalGroup &group, long id, int serialNumber) {
    auto *phase = new SignalPhase;
    phase->signalPhaseID = id;
    phase->serialNumber = serialNumber;
    phase->name = QStringLiteral("相位 %1").arg(id);
    phase->mlColor = {{QStringLiteral("红"), 30}, {QStringLiteral("绿"), 27}, {QStringLiteral("黄"), 3}};
    group.mlPhase.append(phase);
    return phase;
}

/// A group of two phases, the later id and number first.
std::unique_ptr<SignalGroup> sampleGroup(long id) {
    auto group = std::make_unique<SignalGroup>();
    group->signalGroupID = id;
    group->name = QStringLiteral("O'Brien 路口");
    group->timeLength = 90;
    group->startTime = 25200;
    group->endTime = 32400;
    addPhase(*group, 10 * id + 2, 2)->mlColor.append({QStringLiteral("Violet"), 1});
    addPhase(*group, 10 * id + 1, 1);
    return group;
}

std::unique_ptr<SignalLamp> sampleLamp(long id, SignalPhase *phase, int laneId) {
    auto lamp = std::make_unique<SignalLamp>();
    lamp->signalLampID = id;
    lamp->name = QStringLiteral("灯 %1").arg(id);
    lamp->laneID = laneId;
    lamp->toLaneID = 999;
    lamp->x = 1.0 / 3;
    lamp->y = -2.0 / 3;
    lamp->z = 5.25;
    lamp->setPhase(phase);
    return lamp;
}

std::unique_ptr<SignalGroup> readGroup(long id) {
    return std::unique_ptr<SignalGroup>(DBTools::selectSignalGroupByID(gDB, 1, id));
}

std::unique_ptr<SignalLamp> readLamp(long id) {
    return std::unique_ptr<SignalLamp>(DBTools::selectSignalLampByID(gDB, 1, id));
}

QString colours(const SignalPhase *phase) {
    return phase->signalColorInStr();
}

class SignalsTest : public StoreKindFixture {
protected:
    void TearDown() override {
        gSpecialWords.setLangIsNotZh(false);
        gSpecialWords.setDbIsEnglish(false);
    }
    QStringList storedColours() {
        return rows(QStringLiteral("select serialNumber, color, timeLength from SignalColor "
                                   "where signalPhaseID = 42 order by serialNumber"));
    }
};

TEST_P(SignalsTest, AGroupComesBackAsWritten) {
    const auto written = sampleGroup(4);
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, written.get(), true));
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, sampleGroup(3).get(), true));
    reopen();

    QList<long> ids = {8};
    EXPECT_TRUE(DBTools::selectSignalGroupIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({8, 3, 4}));
    auto read = readGroup(4);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->signalGroupID, 4);
    EXPECT_EQ(read->name, written->name);
    EXPECT_EQ(read->timeLength, 90);
    EXPECT_EQ(read->startTime, 25200);
    EXPECT_EQ(read->endTime, 32400);
    ASSERT_EQ(read->mlPhase.size(), 2);
    for (int i = 0; i < 2; ++i) {
        SignalPhase *phase = read->mlPhase.at(i);
        EXPECT_EQ(phase->signalPhaseID, written->mlPhase.at(i)->signalPhaseID) << "in the order of the rows";
        EXPECT_EQ(phase->serialNumber, 2 - i);
        EXPECT_EQ(phase->name, written->mlPhase.at(i)->name);
        EXPECT_EQ(colours(phase), colours(written->mlPhase.at(i)));
        EXPECT_EQ(gNet.getSignalPhaseById(phase->signalPhaseID), phase);
    }
    read.reset();
    EXPECT_EQ(gNet.getSignalPhaseById(42), nullptr);
    EXPECT_FALSE(readGroup(5));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(SignalsTest, ColoursAreStoredAndReadInTheWordsOfTheDictionary) {
    struct Case {
        bool langIsNotZh, dbIsEnglish;
        const char *stored, *read;
    };
    // The last one is a host that has become Chinese over a store that was written in English.
    const Case cases[] = {{false, false, "红", "红"},
                          {true, true, "Red", "Red"},
                          {true, false, "红", "红"},
                          {false, true, "红", "红"}};
    for (const Case &words : cases) {
        gSpecialWords.setLangIsNotZh(words.langIsNotZh);
        gSpecialWords.setDbIsEnglish(words.dbIsEnglish);
        ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, sampleGroup(4).get(), true));
        EXPECT_EQ(storedColours().value(0), QStringLiteral("1|%1|30").arg(QString::fromUtf8(words.stored)));
        EXPECT_EQ(storedColours().value(3), QStringLiteral("4|Violet|1"));
        EXPECT_EQ(readGroup(4)->mlPhase.first()->mlColor.first().color, QString::fromUtf8(words.read));
        for (const char *table : {"SignalColor", "SignalPhase", "SignalGroup"})
            execute(QStringLiteral("delete from %1").arg(QLatin1String(table)));
    }
    gSpecialWords.setLangIsNotZh(true);
    gSpecialWords.setDbIsEnglish(true);
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, sampleGroup(4).get(), true));
    EXPECT_EQ(storedColours(), QStringList({"1|Red|30", "2|Green|27", "3|Yellow|3", "4|Violet|1"}));
    gSpecialWords.setLangIsNotZh(false);
    EXPECT_EQ(colours(readGroup(4)->mlPhase.first()), QStringLiteral("红30,绿27,黄3,Violet1"));
}

TEST_P(SignalsTest, AFailedRowDoesNotStopTheOthers) {
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, sampleGroup(4).get(), true));
    auto other = sampleGroup(5);
    other->mlPhase.first()->signalPhaseID = 42;
    EXPECT_FALSE(DBTools::insertSignalGroup(gDB, kNet, other.get(), true));
    EXPECT_EQ(failures().size(), 1);
    EXPECT_EQ(count(QStringLiteral("SignalGroup")), 2);
    EXPECT_EQ(rows(QStringLiteral("select signalPhaseID from SignalPhase order by signalPhaseID")),
              QStringList({"41", "42", "51"}));
    EXPECT_EQ(count(QStringLiteral("SignalColor")), 14);
    EXPECT_TRUE(DBTools::insertSignalGroup(gDB, kNet, nullptr, true));

    clearFailures();
    ASSERT_TRUE(gDB.transaction());
    EXPECT_TRUE(DBTools::insertSignalGroup(gDB, kNet, sampleGroup(6).get(), false));
    ASSERT_TRUE(gDB.rollback()) << "without the flag the transaction is the caller's";
    EXPECT_FALSE(readGroup(6));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(SignalsTest, ALampComesBackOnceItsPhaseIsKnown) {
    letReferencesDangle();
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(7).get(), true));
    const auto group = sampleGroup(4);
    const auto written = sampleLamp(9, group->mlPhase.last(), 72);
    const auto lost = sampleLamp(8, group->mlPhase.last(), 73);
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, group.get(), true));
    ASSERT_TRUE(DBTools::insertSignalLamp(gDB, kNet, written.get(), true));
    ASSERT_TRUE(DBTools::insertSignalLamp(gDB, kNet, lost.get(), true));
    EXPECT_FALSE(DBTools::insertSignalLamp(gDB, kNet, written.get(), true));
    EXPECT_EQ(failures().size(), 1);
    reopen();

    QList<long> ids;
    EXPECT_TRUE(DBTools::selectSignalLampIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({8, 9}));
    EXPECT_FALSE(readLamp(9)) << "its phase has not been read";
    const auto readBack = readGroup(4);
    SignalPhase *phase = readBack->findPhaseByName(group->mlPhase.last()->name);
    const auto read = readLamp(9);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mpPhase, phase);
    EXPECT_EQ(phase->mlLamp, QList<SignalLamp *>({read.get()}));
    EXPECT_EQ(read->signalLampID, 9);
    EXPECT_EQ(read->name, written->name);
    EXPECT_EQ(read->laneID, 72);
    EXPECT_EQ(read->toLaneID, 999);
    EXPECT_EQ(read->x, written->x);
    EXPECT_EQ(read->y, written->y);
    EXPECT_EQ(read->z, written->z);
    auto again = readLamp(9);
    EXPECT_EQ(phase->mlLamp, QList<SignalLamp *>({read.get()})) << "a lamp stands in the list once";
    EXPECT_EQ(again->mpPhase, phase);
    again.reset();
    EXPECT_EQ(phase->mlLamp, QList<SignalLamp *>({read.get()}));
    EXPECT_FALSE(readLamp(8)) << "its lane is gone";
    EXPECT_FALSE(readLamp(7));
    EXPECT_EQ(failureCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, SignalsTest, testing::ValuesIn(kStoreKinds), storeKindName);

class OneNetSignalsTest : public StoreFixture {};

TEST_F(OneNetSignalsTest, StoresOfVersionOneSpellTheSerialNumberTheirWay) {
    openTemplate("EmptyNet_V3.0.0");
    execute(QStringLiteral("update DbVersion set versionId = 1"));
    execute(QStringLiteral("alter table SignalColor rename column serialNumber to serialNnumber"));
    DBTools::setDbVersion(1);
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, kNet, sampleGroup(4).get(), true));
    EXPECT_EQ(colours(readGroup(4)->mlPhase.last()), QStringLiteral("红30,绿27,黄3"));
    EXPECT_EQ(failureCount(), 0);
}

class SeveralNetsSignalsTest : public StoreFixture {};

TEST_F(SeveralNetsSignalsTest, AnotherNetworkStaysOutOfTheCurrentOne) {
    openTemplate("EmptyNet_V6.0.0");
    for (const long net : {kNet, 2L}) {
        ASSERT_TRUE(DBTools::insertLink(gDB, net, sampleLink(7).get(), true));
        auto group = sampleGroup(4);
        group->timeLength = static_cast<int>(100 * net);
        ASSERT_TRUE(DBTools::insertSignalGroup(gDB, net, group.get(), true));
        auto lamp = sampleLamp(9, group->mlPhase.first(), 72);
        lamp->z = static_cast<double>(net);
        ASSERT_TRUE(DBTools::insertSignalLamp(gDB, net, lamp.get(), true));
    }
    const std::unique_ptr<SignalGroup> other(DBTools::selectSignalGroupByID(gDB, 2, 4));
    ASSERT_TRUE(other);
    EXPECT_EQ(other->timeLength, 200);
    EXPECT_EQ(other->mlPhase.size(), 2);
    EXPECT_EQ(gNet.getSignalPhaseById(42), nullptr);

    const auto own = readGroup(4);
    EXPECT_EQ(own->timeLength, 100);
    EXPECT_EQ(DBTools::selectSignalLampByID(gDB, 2, 9), nullptr);
    // The lane is there in both networks, the lamp is read once.
    const auto lamp = readLamp(9);
    ASSERT_TRUE(lamp);
    EXPECT_EQ(lamp->z, 1);
    EXPECT_EQ(lamp->laneID, 72);
    EXPECT_EQ(lamp->mpPhase, own->mlPhase.first());
    EXPECT_EQ(failureCount(), 0);
}

} // namespace
