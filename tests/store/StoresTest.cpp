#include "store/Stores.h"

#include "model/NetContents.h"
#include "model/SignalGroup.h"
#include "model/SignalPhase.h"
#include "model/Words.h"
#include "store/FailureScope.h"
#include "store/OpenStore.h"
#include "store/Transaction.h"
#include "tests/support/Builders.h"
#include "tests/support/OldStores.h"
#include "tests/support/PostgresDatabase.h"
#include "tests/support/StoreFixture.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>

namespace {

QByteArray bytesOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class StoresTest : public StoreFixture {
protected:
    void TearDown() override { stores::close(); }

    QString fileCalled(const QString &name) const { return folder() + QLatin1Char('/') + name; }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    /// A new store with two networks, of which the second is the one to open by default.
    QString storeCalled(const QString &name) {
        QString file = fileCalled(name);
        EXPECT_TRUE(stores::create(file));
        OpenStore store(file, OpenStore::Access::Write);
        for (const char *sql :
             {"insert into Net values(4, 'West', 'w', 'MoraSim', 'b', 1.5, 2.5, 'text', '{\"a\":1}', 'F')",
              "insert into Net values(7, 'East', null, 'MoraSim', null, 3, 4, null, null, 'T')"})
            EXPECT_TRUE(QSqlQuery(store.db()).exec(QLatin1String(sql)));
        return file;
    }
    static QString reason() { return FailureScope::sinceOpening(gDB).last().error; }
};

TEST_F(StoresTest, ANewStoreIsWholeOrNotThere) {
    const QString file = fileCalled(QStringLiteral("新 Netz ü.net"));
    ASSERT_TRUE(stores::create(file)) << qPrintable(reason());
    EXPECT_EQ(files(), QStringList(QStringLiteral("新 Netz ü.net")));
    const QByteArray bytes = bytesOf(file);
    EXPECT_FALSE(stores::create(file));
    EXPECT_TRUE(reason().contains(QStringLiteral("exists already"))) << qPrintable(reason());
    EXPECT_EQ(bytesOf(file), bytes);
    EXPECT_FALSE(stores::create(fileCalled(QStringLiteral("other")), QStringLiteral("EmptyNet_V9")));
    EXPECT_TRUE(reason().contains(QStringLiteral("EmptyNet_V6.0.0"))) << qPrintable(reason());
    EXPECT_FALSE(stores::create(fileCalled(QStringLiteral("nowhere/x.net"))));
    EXPECT_FALSE(stores::create(QString()));
    EXPECT_EQ(files().size(), 1);

    ASSERT_TRUE(stores::open(file)) << qPrintable(reason());
    // It was brought to the current schema when it was made.
    EXPECT_EQ(failureCount(), 0);
    EXPECT_EQ(gsDbPath, file);
    EXPECT_EQ(gNet.netId, 0);
    EXPECT_EQ(DBTools::dbVer(), 6);
    for (const QString &name : stores::templateNames()) {
        EXPECT_TRUE(stores::create(fileCalled(name), name)) << qPrintable(name + reason());
        EXPECT_TRUE(stores::open(fileCalled(name))) << qPrintable(name + reason());
    }
}

TEST_F(StoresTest, TheOpenStoreStaysWhenTheNewOneCannotBeOpened) {
    const QString good = storeCalled(QStringLiteral("good"));
    ASSERT_TRUE(stores::open(good)) << qPrintable(reason());
    EXPECT_EQ(gNet.name, QStringLiteral("East"));
    const auto link = sampleLink(1);
    gNet.enter(link.get());
    Transaction change(gDB);
    EXPECT_TRUE(DBTools::insertLink(gDB, 7, link.get(), false));

    QFile garbage(fileCalled(QStringLiteral("garbage")));
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly) && garbage.write("no store") == 8);
    garbage.close();
    OpenOptions north;
    north.network = QStringLiteral("North");
    StoreSettings unreachable;
    unreachable.driver = QStringLiteral("QPSQL");
    unreachable.host = QStringLiteral("127.0.0.1");
    unreachable.port = 1;
    const std::initializer_list<std::pair<StoreSettings, OpenOptions>> cases{
        {[&] {
             StoreSettings s;
             s.name = fileCalled(QStringLiteral("missing"));
             return s;
         }(),
         {}},
        {[&] {
             StoreSettings s;
             s.name = garbage.fileName();
             return s;
         }(),
         {}},
        {[&] {
             StoreSettings s;
             s.name = storeCalled(QStringLiteral("no north"));
             return s;
         }(),
         north},
        {StoreSettings(), {}},
        {unreachable, {}}};
    for (const auto &[settings, options] : cases) {
        SCOPED_TRACE(qPrintable(settings.driver + settings.name));
        const FailureScope since(gDB);
        EXPECT_FALSE(stores::open(settings, options));
        EXPECT_FALSE(since.isEmpty());
        EXPECT_FALSE(since.last().error.isEmpty());
        EXPECT_EQ(since.last().operation, QStringLiteral("open"));
        EXPECT_TRUE(gDB.isOpen());
        EXPECT_EQ(gsDbPath, good);
        EXPECT_EQ(gNet.netId, 7);
        EXPECT_EQ(gNet.getLinkById(1), link.get());
        EXPECT_TRUE(change.isOpen());
    }
    clearFailures();
    EXPECT_TRUE(change.commit()) << qPrintable(reason());
    EXPECT_EQ(count("Link"), 1);
}

TEST_F(StoresTest, NetworksAreListedWithAllOfTheirRecords) {
    const QString file = storeCalled(QStringLiteral("two"));
    OpenOptions west;
    west.network = QStringLiteral("West");
    ASSERT_TRUE(stores::open(file, west)) << qPrintable(reason());
    EXPECT_EQ(gNet.netId, 4);
    const QList<NetRecord> nets = stores::networks(gDB);
    ASSERT_EQ(nets.size(), 2);
    EXPECT_EQ(nets[0].netId, 4);
    EXPECT_EQ(nets[0].name, QStringLiteral("West"));
    EXPECT_EQ(nets[0].centerX, 1.5);
    EXPECT_EQ(nets[0].centerY, 2.5);
    EXPECT_EQ(nets[0].caption, QStringLiteral("text"));
    EXPECT_EQ(nets[0].sourceUrl, QStringLiteral("w"));
    EXPECT_EQ(nets[0].otherAttrsJson.value(QStringLiteral("a")).toInt(), 1);
    EXPECT_FALSE(nets[0].isDefault);
    EXPECT_TRUE(nets[1].isDefault);
    EXPECT_EQ(nets[1].centerX, 3.0);
    // Reading them has made none of them current.
    EXPECT_EQ(gNet.netId, 4);
    execute(QStringLiteral("alter table Net rename to Away"));
    EXPECT_TRUE(stores::networks(gDB).isEmpty());
    EXPECT_EQ(FailureScope::sinceOpening(gDB).last().operation, QStringLiteral("networks"));
}

TEST_F(StoresTest, ANetworkIsAddedWithItsDictionaries) {
    ASSERT_TRUE(stores::open(storeCalled(QStringLiteral("third"))));
    NetRecord record;
    record.name = QStringLiteral("O'Brien %1");
    record.sourceUrl = QStringLiteral("from");
    record.caption = QStringLiteral("text");
    record.centerX = 5;
    EXPECT_EQ(stores::addNetwork(gDB, record), 8) << qPrintable(reason());
    EXPECT_EQ(gNet.netId, 8);
    EXPECT_EQ(rows(QStringLiteral("select name, sourceUrl, caption, centerX from Net where NetId = 8")),
              QStringList(QStringLiteral("O'Brien %1|from|text|5")));
    EXPECT_EQ(rows(QStringLiteral("select vehicleTypeName from VehicleType where NetId = 8 and "
                                  "vehicleTypeCode = 1")),
              QStringList("Car"));
    record.netId = 4;
    EXPECT_FALSE(stores::addNetwork(gDB, record).has_value());
    EXPECT_EQ(FailureScope::sinceOpening(gDB).first().kind, FailureKind::Constraint);
    EXPECT_EQ(gNet.netId, 8);
    EXPECT_EQ(rows(QStringLiteral("select name from Net where NetId = 4")), QStringList("West"));
    EXPECT_EQ(rows(QStringLiteral("select count(*) from VehicleType where NetId = 4")), QStringList("0"));

    const QString one = fileCalled(QStringLiteral("one"));
    ASSERT_TRUE(stores::create(one, QStringLiteral("EmptyNet_V2.1.1")) && stores::open(one));
    record.netId = 0;
    EXPECT_EQ(stores::addNetwork(gDB, record), 1) << qPrintable(reason());
    EXPECT_EQ(gNet.name, QStringLiteral("O'Brien %1"));
    EXPECT_FALSE(stores::addNetwork(gDB, record).has_value());
    EXPECT_EQ(count("Net"), 1);
}

TEST_F(StoresTest, AReadOnlyFileOpensReadOnlyAndSaysSo) {
    const QString file = storeCalled(QStringLiteral("fixed"));
    const QByteArray bytes = bytesOf(file);
    const auto isRefused = [] { return !DBTools::insertLink(gDB, 7, sampleLink(1).get(), true); };
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner));
    ASSERT_TRUE(stores::open(file)) << qPrintable(reason());
    EXPECT_TRUE(stores::isReadOnly(gDB));
    EXPECT_TRUE(isRefused());
    {
        const OpenStore other(file);
        EXPECT_TRUE(other.isOpen() && other.isReadOnly());
    }
    OpenOptions reading;
    reading.access = StoreAccess::Read;
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(stores::open(file, reading)) << qPrintable(reason());
    EXPECT_TRUE(stores::isReadOnly(gDB));
    EXPECT_TRUE(isRefused());
    EXPECT_EQ(bytesOf(file), bytes);
    ASSERT_TRUE(stores::open(file)) << qPrintable(reason());
    EXPECT_FALSE(stores::isReadOnly(gDB));
    EXPECT_FALSE(isRefused());
}

TEST_F(StoresTest, AStoreOfTheFirstGenerationIsBroughtForwardOrReadFromACopy) {
    const QString file = fileCalled(QStringLiteral("first"));
    makeFirstGenerationStore(file);
    const QByteArray bytes = bytesOf(file);
    OpenOptions reading;
    reading.access = StoreAccess::Read;
    ASSERT_TRUE(stores::open(file, reading)) << qPrintable(reason());
    EXPECT_TRUE(stores::isReadOnly(gDB));
    EXPECT_EQ(bytesOf(file), bytes);
    ASSERT_TRUE(stores::open(file)) << qPrintable(reason());
    EXPECT_FALSE(DBTools::hasErrorFieldName(gDB));
    EXPECT_NE(bytesOf(file), bytes);
}

TEST_F(StoresTest, ADatabaseOfAServerIsOpenedInTheSameWay) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    const PostgresDatabase database;
    StoreSettings settings;
    settings.driver = QStringLiteral("QPSQL");
    settings.host = PostgresDatabase::host();
    settings.port = PostgresDatabase::port();
    settings.name = database.name();
    settings.user = PostgresDatabase::user();
    settings.password = PostgresDatabase::password();
    ASSERT_TRUE(stores::open(settings)) << qPrintable(reason());
    EXPECT_EQ(gsDbPath, QString());
    NetRecord record;
    record.name = QStringLiteral("served");
    record.isDefault = true;
    const auto net = stores::addNetwork(gDB, record);
    ASSERT_TRUE(net) << qPrintable(reason());
    EXPECT_EQ(gNet.netId, *net);
    OpenOptions reading;
    reading.access = StoreAccess::Read;
    ASSERT_TRUE(stores::open(settings, reading)) << qPrintable(reason());
    EXPECT_TRUE(stores::isReadOnly(gDB));
    EXPECT_EQ(gNet.name, QStringLiteral("served"));
    EXPECT_FALSE(DBTools::insertLink(gDB, *net, sampleLink(1).get(), true));
    // The wrong password leaves the open one.
    settings.password = QStringLiteral("not this");
    EXPECT_FALSE(stores::open(settings));
    EXPECT_EQ(FailureScope::sinceOpening(gDB).last().kind, FailureKind::Lost);
    EXPECT_EQ(count("Link"), 0);
    stores::close();
}

TEST_F(StoresTest, ClosingEmptiesWhatBelongsToTheStore) {
    ASSERT_TRUE(stores::open(storeCalled(QStringLiteral("closed"))));
    ASSERT_TRUE(DBTools::initDictionary(gDB, 7, true));
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, 7, net));
    EXPECT_TRUE(DBTools::selectLinkType(gDB, 7, glLinkType));
    EXPECT_FALSE(ghVehicleType.isEmpty());
    long id = 0;
    ASSERT_TRUE(DBTools::getIDByTableName(gDB, QStringLiteral("Link"), id));
    const auto link = sampleLink(1);
    gNet.enter(link.get());
    const Transaction left(gDB);
    stores::close();
    EXPECT_FALSE(gDB.isOpen());
    EXPECT_FALSE(QSqlDatabase::contains());
    EXPECT_FALSE(left.isOpen());
    EXPECT_EQ(gsDbPath, QString());
    EXPECT_EQ(gNet.netId, 0);
    EXPECT_EQ(gNet.name, QString());
    EXPECT_EQ(gNet.getLinkById(1), nullptr);
    EXPECT_TRUE(ghVehicleType.isEmpty() && ghVehicleComposition.isEmpty() && glLinkType.isEmpty());
    EXPECT_TRUE(DBTools::mhId.isEmpty() && DBTools::mhNetMaxId.isEmpty());
    EXPECT_FALSE(DBTools::selectNetId(gDB, 7));
    stores::close();
}

class StoreLanguageTest : public StoresTest {
protected:
    /// Reads every word of the store's network by single reads and writes it again as another object.
    static void readAndWriteSingly(long net) {
        QHash<long, VehicleType> types;
        ASSERT_TRUE(DBTools::selectVehicleType(gDB, net, types));
        for (VehicleType type : types) {
            type.vehicleTypeCode += 100;
            ASSERT_TRUE(DBTools::insertVehicleType(gDB, net, type, true));
        }
        const std::unique_ptr<SignalGroup> group(DBTools::selectSignalGroupByID(gDB, net, 1));
        ASSERT_TRUE(group);
        group->signalGroupID = 2;
        group->mlPhase.first()->signalPhaseID = 2;
        ASSERT_TRUE(DBTools::insertSignalGroup(gDB, net, group.get(), true));
    }
    static std::unique_ptr<SignalGroup> newGroup() {
        auto group = std::make_unique<SignalGroup>();
        group->signalGroupID = 1;
        auto *phase = new SignalPhase;
        phase->signalPhaseID = 1;
        phase->setColorList({{Words::Red, 1}, {Words::Green, 2}, {Words::Grey, 3}});
        group->mlPhase = {phase};
        return group;
    }
    QStringList colors() { return rows(QStringLiteral("select color from SignalColor order by 1")); }
};

TEST_F(StoreLanguageTest, AStoreOpenedWithoutAWordAboutItKeepsItsWords) {
    // Stores of generation 6 are English, those of 2 Chinese.
    const QList<std::pair<QString, QString>> cases{
        {QStringLiteral("EmptyNet_V6.0.0"), QStringLiteral("Grey")},
        {QStringLiteral("EmptyNet_V2.1.1"), QStringLiteral("灰")}};
    for (const auto &[templateName, grey] : cases) {
        SCOPED_TRACE(qPrintable(templateName));
        const bool isEnglish = grey == QLatin1String("Grey");
        const QString file = fileCalled(templateName);
        ASSERT_TRUE(stores::create(file, templateName) && stores::open(file)) << qPrintable(reason());
        const QString name = QStringLiteral("n");
        ASSERT_TRUE(isEnglish ? DBTools_V6::insertNet(gDB, 1, name, {}, {}, {}, {}, true, true)
                              : DBTools::insertNet(gDB, 1, name, {}, {}, {}, QString(), true));
        ASSERT_TRUE(DBTools::initDictionary(gDB, 1, true) && DBTools::selectNetById(gDB, 1));
        ASSERT_TRUE(DBTools::insertSignalGroup(gDB, 1, newGroup().get(), true));
        const QStringList written = colors();
        EXPECT_EQ(written, isEnglish ? (QStringList{"Green", "Grey", "Red"})
                                     : (QStringList{QStringLiteral("灰"), QStringLiteral("红"),
                                                    QStringLiteral("绿")}));
        const QString typeName =
            QStringLiteral("select distinct vehicleTypeName from VehicleType order by 1");
        const QStringList types = rows(typeName);
        EXPECT_EQ(types.size(), 12);
        EXPECT_EQ(types.contains(QStringLiteral("Car")), isEnglish);
        readAndWriteSingly(1);
        EXPECT_EQ(rows(typeName), types);
        EXPECT_EQ(rows(QStringLiteral("select distinct color from SignalColor order by 1")), written);
        Link link;
        link.laneNumber = 1;
        link.linkType = gSpecialWords.getWord(Words::Ramp);
        link.createLanes();
        EXPECT_EQ(link.mlLane.first()->actionType, gSpecialWords.getWord(Words::MotorizedLane));
        EXPECT_EQ(Words::MotorizedLane.inEnglish() == link.mlLane.first()->actionType, isEnglish);
        EXPECT_EQ(failureCount(), 0) << qPrintable(reason());
    }
}

TEST_F(StoreLanguageTest, WholeSavesOfAChineseHostWriteTheWordsOfTheStore) {
    const QString file = storeCalled(QStringLiteral("english"));
    OpenOptions chinese;
    chinese.words = ShownWords::Chinese;
    ASSERT_TRUE(stores::open(file, chinese)) << qPrintable(reason());
    NetContents net;
    net.traffic.signalGroups.push_back(newGroup());
    net.traffic.vehicleTypes.push_back(std::make_unique<VehicleType>());
    net.traffic.vehicleTypes.back()->vehicleTypeName = Words::Bus;
    net.linkTypes.append({1, Words::Ramp, 0, 0, 0, 0});
    ASSERT_TRUE(DBTools::saveNet(gDB, 4, net, true)) << qPrintable(reason());
    EXPECT_EQ(colors(), (QStringList{"Green", "Grey", "Red"}));
    EXPECT_EQ(rows(QStringLiteral("select vehicleTypeName from VehicleType")), QStringList("Bus"));
    EXPECT_EQ(rows(QStringLiteral("select typeName from LinkType")), QStringList("Ramp"));
    ASSERT_TRUE(DBTools::loadNet(gDB, 4, net));
    EXPECT_EQ(net.traffic.signalGroups[0]->mlPhase.first()->mlColor.first().color, QStringLiteral("红"));
    EXPECT_TRUE(net.unknownWords.isEmpty());
    // Loaded and saved in a new store of the language, nothing has another word.
    ASSERT_TRUE(stores::open(storeCalled(QStringLiteral("copy")), chinese));
    ASSERT_TRUE(DBTools::saveNet(gDB, 4, net, true)) << qPrintable(reason());
    EXPECT_EQ(colors(), (QStringList{"Green", "Grey", "Red"}));
}

TEST_F(StoreLanguageTest, AColourThatIsNoneOfTheVocabularyIsReported) {
    ASSERT_TRUE(stores::open(storeCalled(QStringLiteral("purple"))));
    const auto group = newGroup();
    group->mlPhase.first()->setColorList({{Words::Red, 1},
                                          {QStringLiteral("红"), 1},
                                          {QStringLiteral("Purple"), 2},
                                          {QStringLiteral("red"), 1}});
    ASSERT_TRUE(DBTools::insertSignalGroup(gDB, 7, group.get(), true));
    NetContents net;
    ASSERT_TRUE(DBTools::loadNet(gDB, 7, net));
    EXPECT_TRUE(net.skipped.isEmpty());
    ASSERT_EQ(net.unknownWords.size(), 1);
    EXPECT_EQ(net.unknownWords[0].table, QStringLiteral("SignalColor"));
    EXPECT_EQ(net.unknownWords[0].count, 2);
    EXPECT_EQ(net.unknownWords[0].ids, (QList<long>{1, 1}));
    EXPECT_EQ(net.traffic.signalGroups[0]->mlPhase.first()->mlColor.at(2).color, QStringLiteral("Purple"));
}

} // namespace
