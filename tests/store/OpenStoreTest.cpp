#include "store/OpenStore.h"

#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/OldStores.h"
#include "tests/support/StoreFixture.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>

#include <thread>

namespace {

using Access = OpenStore::Access;

QStringList rowsOf(const QSqlDatabase &db, const QString &sql) {
    QSqlQuery query(sql, db);
    EXPECT_TRUE(query.isActive()) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
    QStringList texts;
    while (query.next())
        texts.append(query.value(0).toString());
    return texts;
}

/// The store of the process is a Chinese file of one network; beside it another one is open.
class OpenStoreTest : public StoreFixture {
protected:
    void SetUp() override { openTemplate("EmptyNet_V2.1.1"); }

    QString fileOf(const char *templateName) {
        const QString file = folder() + QStringLiteral("/另 other %1.net").arg(++mFiles);
        copyTemplate(templateName, file);
        return file;
    }

    /// A store of several networks, in English, whose network @p net is the current one.
    std::unique_ptr<OpenStore> openOther(const StoreSettings &settings, long net) {
        auto other = std::make_unique<OpenStore>(settings, Access::Write);
        EXPECT_TRUE(other->isOpen()) << qPrintable(other->failures().value(0).error);
        QSqlDatabase &db = other->db();
        EXPECT_TRUE(DBTools_V6::insertNet(db, net, QStringLiteral("beside"), {}, {}, {}, {}, false, true));
        EXPECT_TRUE(DBTools::initDictionary(db, net, true));
        EXPECT_EQ(DBTools::selectNetById(db, net), &other->net());
        other->failures().clear();
        return other;
    }
    std::unique_ptr<OpenStore> openOther(long net) {
        StoreSettings settings;
        settings.name = fileOf("EmptyNet_V6.0.0");
        return openOther(settings, net);
    }

    static void insert(QSqlDatabase &db, long net, long id, const QString &name) {
        const auto link = sampleLink(id);
        link->linkName = name;
        ASSERT_TRUE(DBTools::insertLink(db, net, link.get(), true));
    }

    int mFiles = 0;
};

/// What the store beside that of the process is on.
class StoreBesideTest : public OpenStoreTest, public testing::WithParamInterface<bool> {
protected:
    std::unique_ptr<OpenStore> openBeside(long net) {
        if (!GetParam())
            return openOther(net);
        if (!PostgresDatabase::hasServer())
            return nullptr;
        mDatabase = std::make_unique<PostgresDatabase>();
        StoreSettings settings;
        settings.driver = QStringLiteral("QPSQL");
        settings.host = PostgresDatabase::host();
        settings.port = PostgresDatabase::port();
        settings.name = mDatabase->name();
        settings.user = PostgresDatabase::user();
        settings.password = PostgresDatabase::password();
        return openOther(settings, net);
    }

private:
    std::unique_ptr<PostgresDatabase> mDatabase;
};

TEST_P(StoreBesideTest, ObjectsIdsFailuresAndNetworksStayApart) {
    const auto other = openBeside(5);
    if (!other)
        GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    QSqlDatabase &db = other->db();
    EXPECT_TRUE(other->hasSeveralNets());
    EXPECT_EQ(DBTools::dbVer(), 5);
    EXPECT_EQ(other->version(), 6);
    EXPECT_EQ(gNet.netId, 1);
    EXPECT_EQ(other->net().netId, 5);
    EXPECT_EQ(failureCount(), 0);

    insert(gDB, 1, 7, QStringLiteral("of the process"));
    insert(db, 5, 7, QStringLiteral("beside"));
    insert(db, 5, 70, QStringLiteral("beside, too"));
    EXPECT_EQ(rowsOf(gDB, QStringLiteral("select LinkName from Link")),
              QStringList(QStringLiteral("of the process")));
    const std::unique_ptr<Link> own(DBTools::selectLinkByID(gDB, 1, 7));
    std::unique_ptr<Link> beside(DBTools::selectLinkByID(db, 5, 7));
    ASSERT_TRUE(own && beside);
    EXPECT_EQ(own->linkName, QStringLiteral("of the process"));
    EXPECT_EQ(beside->linkName, QStringLiteral("beside"));
    EXPECT_EQ(gNet.getLinkById(7), own.get());
    EXPECT_EQ(other->net().getLinkById(7), beside.get());
    EXPECT_EQ(own->net(), &gNet);
    EXPECT_EQ(beside->mlLane.first()->net(), &other->net());

    QList<long> drawn;
    for (int i = 0; i < 2; ++i) {
        for (QSqlDatabase *each : {&gDB, &db}) {
            long id = 0;
            EXPECT_TRUE(DBTools::getIDByTableName(*each, QStringLiteral("Link"), id));
            drawn.append(id);
        }
    }
    EXPECT_EQ(drawn, QList<long>({8, 71, 9, 72}));
    EXPECT_FALSE(DBTools::mhId.contains(5));
    EXPECT_EQ(other->reservedIds()[5][QStringLiteral("Link")].size(), GetParam() ? 0 : 98);
    EXPECT_EQ(DBTools::mhNetMaxId[0][QStringLiteral("Link")], 9);

    EXPECT_FALSE(DBTools::insertLink(db, 5, sampleLink(70).get(), false));
    const int failed = other->failures().size();
    EXPECT_GT(failed, 0);
    EXPECT_EQ(failureCount(), 0);
    EXPECT_FALSE(DBTools::insertLink(gDB, 1, sampleLink(7).get(), false));
    QSqlQuery wrong(QStringLiteral("select nothing from nowhere"), db);
    EXPECT_FALSE(DBTools::validateQuery(wrong));
    EXPECT_GT(DBTools::mlCallDbResult.size(), 0);
    EXPECT_EQ(other->failures().size(), failed + 1);
    EXPECT_EQ(other->failures().last().sql, wrong.lastQuery());

    const long laneId = beside->mlLane.first()->laneID;
    beside.reset();
    EXPECT_EQ(other->net().getLinkById(7), nullptr);
    EXPECT_EQ(other->net().getLaneById(laneId), nullptr);
    EXPECT_EQ(gNet.getLinkById(7), own.get());
    EXPECT_NE(gNet.getLaneById(laneId), nullptr) << "the same id in the other store";
}

TEST_P(StoreBesideTest, WholeNetworksFillTheRegistriesOfTheirStore) {
    const auto other = openBeside(5);
    if (!other)
        GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    insert(gDB, 1, 7, QStringLiteral("of the process"));
    NetContents own;
    ASSERT_TRUE(DBTools::loadNet(gDB, 1, own));
    ASSERT_EQ(gNet.getLinkById(7), own.links.front().get());
    glLinkType.removeFirst();
    ghVehicleType.remove(12);
    ghVehicleComposition.clear();

    NetContents copy;
    copy.links.push_back(sampleLink(8));
    ASSERT_TRUE(DBTools::saveNet(other->db(), 5, copy, true));
    NetContents loaded;
    ASSERT_TRUE(DBTools::loadNet(other->db(), 5, loaded));
    EXPECT_EQ(other->net().lLink(), QList<Link *>({loaded.links.front().get()}));
    EXPECT_EQ(other->vehicleTypes().size(), 12);
    EXPECT_EQ(other->compositions().size(), 1);
    EXPECT_EQ(other->linkTypes().size(), 10);
    EXPECT_EQ(gNet.lLink(), QList<Link *>({own.links.front().get()}));
    EXPECT_EQ(ghVehicleType.size(), 11);
    EXPECT_EQ(glLinkType.size(), 9);

    // A load that fails empties what belongs to its store.
    EXPECT_FALSE(DBTools::loadNet(other->db(), 6, loaded));
    EXPECT_TRUE(other->net().lLink().isEmpty() && other->vehicleTypes().isEmpty());
    EXPECT_EQ(gNet.lLink().size(), 1);
    ASSERT_TRUE(DBTools::removeNetData(other->db(), 5, true));
    EXPECT_EQ(rowsOf(other->db(), QStringLiteral("select count(*) from Link")),
              QStringList(QStringLiteral("0")));
    EXPECT_EQ(gNet.lLink().size(), 1);
    EXPECT_EQ(failureCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreBesideTest, testing::Bool(),
                         [](const auto &of) { return of.param ? "Server" : "File"; });

TEST_F(OpenStoreTest, EachStoreHasItsLanguage) {
    const auto other = openOther(5);
    EXPECT_FALSE(DBTools::isInternational());
    EXPECT_TRUE(other->isInternational());
    EXPECT_FALSE(gSpecialWords.dbIsEnglish);
    QHash<long, VehicleType> types;
    DBTools::selectVehicleType(other->db(), 5, types);
    EXPECT_EQ(types.value(1).vehicleTypeName, QStringLiteral("小客车"));
    execute(QStringLiteral("update VehicleType set vehicleTypeName = 'Car' where vehicleTypeCode = 1"));
    types.clear();
    DBTools::selectVehicleType(gDB, 1, types);
    EXPECT_EQ(types.value(1).vehicleTypeName, QStringLiteral("Car")) << "no word of a Chinese store";

    other->words().setLangIsNotZh(true);
    gSpecialWords.setLangIsNotZh(true);
    VehicleType type;
    type.vehicleTypeCode = 30;
    type.vehicleTypeName = QStringLiteral("货车");
    EXPECT_TRUE(DBTools::insertVehicleType(gDB, 1, type, true));
    EXPECT_TRUE(DBTools::insertVehicleType(other->db(), 5, type, true));
    const QString name = QStringLiteral("select vehicleTypeName from VehicleType where vehicleTypeCode = 30");
    EXPECT_EQ(rowsOf(gDB, name), QStringList(QStringLiteral("货车")));
    EXPECT_EQ(rowsOf(other->db(), name), QStringList(QStringLiteral("Truck")));
    EXPECT_EQ(OpenStore(fileOf("EmptyNet_V6.0.0"), Access::Read).words().mlWord.first(),
              QStringLiteral("MotorizedLane"))
        << "the host's language, and the store's";
}

TEST_F(OpenStoreTest, OperationsOnTheCurrentNetworkTakeIts) {
    const auto other = openOther(5);
    QSqlDatabase &db = other->db();
    other->net().config().scale = 2;
    other->net().config().showGrid = false;
    other->net().caption = QStringLiteral("captioned");
    gNet.caption = QStringLiteral("of the process");
    EXPECT_TRUE(DBTools::updateNet(db, 5, true));
    EXPECT_EQ(rowsOf(db, QStringLiteral("select caption from Net")),
              QStringList(QStringLiteral("captioned")));
    const QString grid = QStringLiteral("select showGrid from Configuration");
    EXPECT_TRUE(DBTools::updateConfigIfShowGrid(db, true));
    EXPECT_EQ(rowsOf(db, grid), QStringList(QStringLiteral("F")));
    EXPECT_TRUE(DBTools::saveConfiguration(db, 5, true));
    EXPECT_EQ(rowsOf(db, QStringLiteral("select scale from Configuration")),
              QStringList(QStringLiteral("2")));
    EXPECT_FALSE(rowsOf(gDB, grid).contains(QStringLiteral("F")));

    const std::unique_ptr<VehicleQueueCounter> missing(DBTools::selectVehicleQueueCounter(db, 5, 1));
    EXPECT_EQ(missing->maxQueueLength, 250) << "500 m by the scale of its scene";
    EXPECT_EQ(VehicleQueueCounter().maxQueueLength, 500);

    // Lanes take their ids where the link belongs.
    insert(db, 5, 7, QStringLiteral("beside"));
    const std::unique_ptr<Link> link(DBTools::selectLinkByID(db, 5, 7));
    link->createLanes({3.5});
    EXPECT_EQ(link->mlLane.last()->laneID, 73);
    Link newOne;
    newOne.createLanes({3.5});
    EXPECT_EQ(newOne.mlLane.first()->laneID, 1);
    other->net().enter(&newOne);
    newOne.createLanes({3.5});
    EXPECT_EQ(newOne.mlLane.last()->laneID, 74);
}

TEST_F(OpenStoreTest, ClosingOneLeavesTheOther) {
    insert(gDB, 1, 7, QStringLiteral("of the process"));
    const std::unique_ptr<Link> own(DBTools::selectLinkByID(gDB, 1, 7));
    auto other = openOther(5);
    const auto another = openOther(6);
    insert(other->db(), 5, 7, QStringLiteral("beside"));
    insert(another->db(), 6, 7, QStringLiteral("beside, too"));
    const std::unique_ptr<Link> beside(DBTools::selectLinkByID(other->db(), 5, 7));
    const QString connection = other->db().connectionName();
    other.reset();
    EXPECT_FALSE(QSqlDatabase::contains(connection));
    EXPECT_EQ(beside->net(), nullptr);
    EXPECT_EQ(beside->linkName, QStringLiteral("beside"));
    EXPECT_EQ(gNet.getLinkById(7), own.get());
    EXPECT_EQ(DBTools::selectLinkByID(gDB, 1, 7), own.get());

    // The process opens another store, and the other stays what it is.
    openTemplate("EmptyNet_V6.0.0");
    EXPECT_EQ(own->net(), nullptr);
    const std::unique_ptr<Link> read(DBTools::selectLinkByID(another->db(), 6, 7));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->linkName, QStringLiteral("beside, too"));
    EXPECT_EQ(another->net().getLinkById(7), read.get());
    EXPECT_EQ(failureCount() + another->failures().size(), 0);
}

TEST_F(OpenStoreTest, OneStoreMayBeReadBesideItsWriter) {
    insert(gDB, 1, 7, QStringLiteral("of the process"));
    OpenStore reader(path(), Access::Read);
    ASSERT_TRUE(reader.isOpen());
    EXPECT_FALSE(reader.hasSeveralNets());
    EXPECT_FALSE(reader.isInternational());
    const std::unique_ptr<Link> link(DBTools::selectLinkByID(reader.db(), 1, 7));
    ASSERT_TRUE(link);
    EXPECT_EQ(link->net(), &reader.net());
    EXPECT_FALSE(DBTools::insertLink(reader.db(), 1, sampleLink(8).get(), true));
    EXPECT_FALSE(reader.failures().isEmpty());
    insert(gDB, 1, 8, QStringLiteral("written meanwhile"));
    EXPECT_EQ(failureCount(), 0);

    // An older store is read from a copy, which is gone with it.
    const QString older = fileOf("EmptyNet_V2.00.00");
    QFile file(older);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    {
        OpenStore other(older, Access::Read);
        ASSERT_TRUE(other.isOpen());
        EXPECT_EQ(DBTools::selectNets(other.db()).size(), 1) << "the upgrade writes the current network";
    }
    file.seek(0);
    EXPECT_TRUE(file.readAll() == bytes);
}

TEST_F(OpenStoreTest, WhatCannotBeOpenedSaysWhyAndChangesNothing) {
    insert(gDB, 1, 7, QStringLiteral("of the process"));
    const QString missing = folder() + QStringLiteral("/missing.net");
    const QString text = folder() + QStringLiteral("/text.net");
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no store at all") > 0);
    file.close();
    const QString triggered = fileOf("EmptyNet_V6.0.0");
    {
        OpenStore other(triggered, Access::Write);
        ASSERT_TRUE(
            QSqlQuery(other.db())
                .exec(QStringLiteral("create trigger t after insert on Link begin delete from Link; end")));
    }
    const int connections = QSqlDatabase::connectionNames().size();
    const QList<QPair<QString, QString>> refused = {{missing, QStringLiteral("no such file")},
                                                    {text, QStringLiteral("not a database")},
                                                    {triggered, QStringLiteral("trigger")},
                                                    {QString(), QStringLiteral("is empty")}};
    for (const auto &each : refused) {
        for (const Access access : {Access::Read, Access::Write}) {
            const OpenStore other(each.first, access);
            SCOPED_TRACE(qPrintable(each.first));
            EXPECT_FALSE(other.isOpen());
            ASSERT_FALSE(other.failures().isEmpty());
            EXPECT_TRUE(other.failures().last().error.contains(each.second))
                << qPrintable(other.failures().last().error);
        }
    }
    EXPECT_FALSE(QFile::exists(missing));
    StoreSettings nowhere;
    nowhere.driver = QStringLiteral("QNONE");
    EXPECT_FALSE(OpenStore(nowhere, Access::Read).isOpen());
    EXPECT_EQ(QSqlDatabase::connectionNames().size(), connections);

    // The handle of an open store stays with it.
    const auto other = openOther(5);
    EXPECT_FALSE(DBTools::transToPostgreSql(other->db()));
    EXPECT_FALSE(DBTools_V6::openDatabaseForBackup(other->db(), path(), true));
    EXPECT_EQ(failureCount(), 2);
    EXPECT_FALSE(DBTools::openDatabase(other->db(), path(), true));
    EXPECT_TRUE(other->isOpen());
    EXPECT_EQ(failureCount(), 1);
    EXPECT_EQ(rowsOf(gDB, QStringLiteral("select LinkName from Link")).size(), 1);
}

TEST_F(OpenStoreTest, ThreadsWithAStoreEachDoNotDisturbOneAnother) {
    constexpr int count = 40;
    const QStringList files = {fileOf("EmptyNet_V6.0.0"), fileOf("EmptyNet_V3.0.0")};
    QList<long> linkIds[3];
    QList<long> laneConnectorIds[3];
    int failures[3] = {};
    // Links, a connector between each and the one before, and back: by single reads and as a whole.
    const auto work = [&](QSqlDatabase &db, long net, int place) {
        std::vector<std::unique_ptr<Link>> links;
        std::vector<std::unique_ptr<Connector>> connectors;
        for (int i = 0; i < count; ++i) {
            long id = 0;
            failures[place] += DBTools::getIDByTableName(db, QStringLiteral("Link"), id) ? 0 : 1;
            linkIds[place].append(id);
            failures[place] += DBTools::insertLink(db, net, sampleLink(id).get(), true) ? 0 : 1;
            links.emplace_back(DBTools::selectLinkByID(db, net, id));
            if (i == 0 || !links[i] || !links[i - 1])
                continue;
            DBTools::insertConnector(db, net, sampleConnector(i, links[i - 1].get(), links[i].get()).get(),
                                     true);
            connectors.emplace_back(DBTools::selectConnectorByID(db, net, i));
            for (const LaneConnector *lanes : qAsConst(connectors.back()->mlLaneConnector))
                laneConnectorIds[place].append(lanes->laneConnId);
        }
        NetContents contents;
        failures[place] += DBTools::loadNet(db, net, contents) ? 0 : 1;
        failures[place] += contents.links.size() == count ? 0 : 1;
        failures[place] += contents.connectors.size() == count - 1 ? 0 : 1;
    };
    const auto run = [&](int place) {
        for (int i = 0; i < 5; ++i)
            failures[place] += OpenStore(files.at(place), Access::Read).isOpen() ? 0 : 1;
        OpenStore other(files.at(place), Access::Write);
        QSqlDatabase &db = other.db();
        const bool isNamed =
            other.hasSeveralNets()
                ? DBTools_V6::insertNet(db, 1, QStringLiteral("n"), {}, {}, {}, {}, false, true)
                : DBTools::insertNet(db, 1, QStringLiteral("n"), {}, {}, {}, QString(), true);
        failures[place] += isNamed && DBTools::selectNetById(db, 1) ? 0 : 1;
        other.failures().clear();
        work(db, 1, place);
        failures[place] += other.failures().size();
    };
    std::thread first(run, 0);
    std::thread second(run, 1);
    work(gDB, 1, 2);
    first.join();
    second.join();
    QSet<long> distinct;
    QList<long> expected;
    for (long id = 1; id <= count; ++id)
        expected.append(id);
    for (int place = 0; place < 3; ++place) {
        SCOPED_TRACE(place);
        EXPECT_EQ(failures[place], 0);
        EXPECT_EQ(linkIds[place], expected);
        EXPECT_EQ(laneConnectorIds[place].size(), 2 * (count - 1));
        distinct.unite(QSet<long>(laneConnectorIds[place].begin(), laneConnectorIds[place].end()));
    }
    EXPECT_EQ(distinct.size(), 3 * 2 * (count - 1));
    EXPECT_EQ(failureCount(), 0);
}

} // namespace
