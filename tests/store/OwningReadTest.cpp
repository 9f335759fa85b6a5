#include "store/StoredNet.h"

#include "model/Description.h"
#include "model/NetContents.h"
#include "model/SpecialWords.h"
#include "tests/differential/AsRead.h"
#include "tests/differential/RandomNet.h"
#include "tests/support/StoreFixture.h"

#include <QJsonDocument>

namespace {

/// A network of which every kind has objects, written and read back one by one.
class OwningReadTest : public StoreKindFixture {
protected:
    void prepare() override {
        differential::NetPlan plan;
        plan.severalNets = hasSeveralNets();
        for (bool isFull = false; !isFull; ++plan.seed) {
            mNet = differential::RandomNet(plan).make();
            isFull = true;
            forEachNetKind([&](auto kind) { isFull = isFull && !kind.list(*mNet).empty(); });
        }
        const long type = mNet->traffic.vehicleTypes.front()->vehicleTypeCode;
        for (const auto &link : mNet->links) {
            for (Lane *lane : qAsConst(link->mlLane))
                lane->mlLimitVehicle = {{type, QString()}};
        }
        for (const auto &connector : mNet->connectors)
            connector->mlLimitVehicle = {type};
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *mNet, true));
        differential::arrangeAsRead(*mNet, hasSeveralNets());
        reopen();
    }

    template <class T>
    Owned<T> read(const T &object) {
        return StoredNet(gDB, kNet).read<T>(NetKind<T>::idOf(object));
    }
    template <class T>
    static QByteArray textOf(const T &object) {
        return QJsonDocument(describe(object).toJson()).toJson();
    }

    std::unique_ptr<NetContents> mNet;
};

TEST_P(OwningReadTest, GivesWhatTheStoreHas) {
    forEachNetKind([this](auto kind) {
        for (const auto &object : kind.list(*mNet)) {
            const auto owned = read(*object);
            ASSERT_TRUE(owned) << kind.table << ' ' << kind.idOf(*object);
            EXPECT_EQ(textOf(*owned).toStdString(), textOf(*object).toStdString()) << kind.table;
            EXPECT_NE(owned.get(), read(*object).get()) << "each read makes its own";
        }
        using T = typename decltype(kind)::Object;
        EXPECT_FALSE(StoredNet(gDB, kNet).read<T>(987654)) << kind.table;
    });
    EXPECT_EQ(failureCount(), 0);
}

/// What a read leaves out, an update would take away.
TEST_P(OwningReadTest, GivesWhatSingleReadsLeaveOut) {
    const long type = mNet->traffic.vehicleTypes.front()->vehicleTypeCode;
    for (const auto &link : mNet->links) {
        const Owned<Link> owned = read(*link);
        for (const Lane *lane : qAsConst(owned->mlLane)) {
            ASSERT_EQ(lane->mlLimitVehicle.size(), 1);
            EXPECT_EQ(lane->mlLimitVehicle.first().first, type);
        }
    }
    for (const auto &connector : mNet->connectors)
        EXPECT_EQ(read(*connector)->mlLimitVehicle, QList<long>({type}));
    for (const auto &point : mNet->traffic.departurePoints) {
        const Owned<DeparturePoint> owned = read(*point);
        for (int i = 0; i < point->mlInterval.size(); ++i)
            EXPECT_EQ(owned->mlInterval.at(i).vehiCons.vehicleConsCode,
                      point->mlInterval.at(i).vehiCons.vehicleConsCode);
    }
}

/// Whatever gNet and the registries hold, no read takes it or leaves anything there.
TEST_P(OwningReadTest, HasNothingToDoWithTheCurrentNetwork) {
    NetContents loaded;
    ASSERT_TRUE(DBTools::loadNet(gDB, kNet, loaded));
    const Connector &connector = *loaded.connectors.front();
    const auto types = ghVehicleType;
    ghVehicleType.clear();
    ghVehicleComposition.clear();
    auto owned = read(connector);
    EXPECT_NE(owned->mpStartLink, connector.mpStartLink);
    EXPECT_EQ(owned->mpStartLink->linkID, connector.mpStartLink->linkID);
    EXPECT_EQ(owned->net(), nullptr);
    EXPECT_EQ(owned->mpStartLink->net(), nullptr);
    EXPECT_EQ(gNet.getConnectorById(connector.connID), &connector);
    EXPECT_EQ(gNet.getLinkById(connector.mpStartLink->linkID), connector.mpStartLink);
    for (const auto &detector : loaded.traffic.vehicleDetectors)
        EXPECT_EQ(read(*detector)->mlVehiTypeCode, detector->mlVehiTypeCode);
    EXPECT_TRUE(ghVehicleType.isEmpty() && ghVehicleComposition.isEmpty());
    owned.reset();
    EXPECT_EQ(gNet.lConnector().size(), int(loaded.connectors.size()));

    // Lamps of the loaded network stay the only ones of its phases.
    const SignalLamp &lamp = *loaded.traffic.signalLamps.front();
    const Owned<SignalLamp> read = StoredNet(gDB, kNet).read<SignalLamp>(lamp.signalLampID);
    ASSERT_TRUE(read->mpPhase);
    EXPECT_NE(read->mpPhase, lamp.mpPhase);
    EXPECT_EQ(read->mpPhase->mlLamp, QList<SignalLamp *>({read.get()}));
    EXPECT_FALSE(lamp.mpPhase->mlLamp.contains(read.get()));
}

/// What an object refers to stays with it, and goes with it.
TEST_P(OwningReadTest, KeepsWhatTheObjectRefersTo) {
    auto line = read(*mNet->traffic.busLines.front());
    auto point = read(*mNet->traffic.decisionPoints.front());
    reopen();
    const Owned<BusLine> moved = std::move(line);
    ASSERT_FALSE(moved->mlLink.isEmpty());
    for (int i = 0; i < moved->mlLink.size(); ++i)
        EXPECT_EQ(moved->mlLink.at(i)->linkID, moved->mlRoadId.at(i));
    EXPECT_EQ(point->mpLink->linkID, mNet->traffic.decisionPoints.front()->mpLink->linkID);
    const auto clone = point->clone();
    EXPECT_EQ(clone->mpLink, point->mpLink);
}

/// Nothing of an object may be lost on the way through memory.
TEST_P(OwningReadTest, GivesAllThatAnUpdateWrites) {
    const QStringList tables =
        isPostgres() ? rows(QStringLiteral("select tablename from pg_tables where schemaname = 'public'"))
                     : rows(QStringLiteral("select name from sqlite_master where type = 'table'"));
    const auto content = [&] {
        QStringList all;
        for (const QString &table : tables) {
            QStringList of = rows(QStringLiteral("select * from ") + table);
            of.sort();
            all += table + QStringLiteral(": ") + of.join(QLatin1Char(';'));
        }
        return all;
    };
    const QStringList before = content();
    StoredNet net(gDB, kNet);
    forEachNetKind([&](auto kind) {
        for (const auto &object : kind.list(*mNet)) {
            const auto owned = read(*object);
            EXPECT_TRUE(net.update(*owned)) << kind.table << ' ' << kind.idOf(*object);
            ASSERT_EQ(content(), before) << kind.table << ' ' << kind.idOf(*object);
        }
    });
    EXPECT_EQ(failureCount(), 0);
}

/// An English store with a word of either language, under a host of either.
TEST_P(OwningReadTest, GivesWordsThatAnUpdateLeavesAsTheyAre) {
    const SignalGroup &group = *mNet->traffic.signalGroups.front();
    const Link &link = *mNet->links.front();
    const VehicleType &type = *mNet->traffic.vehicleTypes.front();
    execute(QStringLiteral("delete from SignalColor"));
    for (const SignalPhase *phase : group.mlPhase) {
        int number = 0;
        for (const char *color : {"Red", "绿"})
            addRow("SignalColor", "signalPhaseID, serialNumber, color, timeLength",
                   QStringLiteral("%1, %2, '%3', 5")
                       .arg(QString::number(phase->signalPhaseID), QString::number(++number),
                            QString::fromUtf8(color)));
    }
    execute(QStringLiteral("update Link set linkType = '高速路'"));
    execute(QStringLiteral("update VehicleType set vehicleTypeName = '小客车'"));
    const QString words =
        QStringLiteral("select distinct color from SignalColor union select linkType from Link "
                       "union select vehicleTypeName from VehicleType order by 1");
    const QStringList written = rows(words);
    ASSERT_EQ(written.size(), 4);
    gSpecialWords.setDbIsEnglish(true);
    for (const bool hostIsChinese : {true, false}) {
        gSpecialWords.setLangIsNotZh(!hostIsChinese);
        gSpecialWords.initVars();
        StoredNet net(gDB, kNet);
        const auto ownedGroup = read(group);
        const auto ownedLink = read(link);
        const auto ownedType = read(type);
        ownedGroup->timeLength = hostIsChinese;
        ownedLink->limitSpeed = hostIsChinese;
        ownedType->width = hostIsChinese;
        ownedGroup->mlPhase.first()->mlColor.first().interval += 1;
        EXPECT_TRUE(net.update(*ownedGroup) && net.update(*ownedLink) && net.update(*ownedType));
        EXPECT_EQ(rows(words), written) << hostIsChinese;
    }
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(OwningReadTest, GivesNothingWhereAPartCannotBeRead) {
    const Connector &connector = *mNet->connectors.front();
    dropTable(QStringLiteral("Link"));
    clearFailures();
    EXPECT_FALSE(read(connector));
    EXPECT_GT(failureCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, OwningReadTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
