#pragma once

#include "store/StoredNet.h"
#include "tests/differential/Editor.h"
#include "tests/differential/StoredRows.h"
#include "tests/support/Setting.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/StoreText.h"
#include "tools/differences/NetworkDiff.h"
#include "tools/differences/PatchText.h"
#include "tools/rows/Digest.h"
#include "tools/rows/NetworkCopy.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreSession.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

using namespace differential;
using namespace moratools;

/// Random networks and random edits of them. MORASTORE_SEEDS says how many pairs,
/// MORASTORE_FIRST_SEED which one is the first.
class EditedNetworks : public StoreKindFixture {
protected:
    StoreAddress address() const {
        return isPostgres()
                   ? StoreAddress(QStringLiteral("dbname='%1' host='%2' port=%3 user='%4' password='%5'")
                                      .arg(gDB.databaseName(), gDB.hostName(), QString::number(gDB.port()),
                                           gDB.userName(), gDB.password()))
                   : StoreAddress(path());
    }

    /// What is compared of a store: its rows, as the engine spells them, without the counters.
    static QStringList rowsOf(const QString &file) {
        QStringList lines = contentOf(file);
        const auto isCounter = [](const QString &line) {
            return line.contains(QLatin1String("IDGenerater"));
        };
        lines.erase(std::remove_if(lines.begin(), lines.end(), isCounter), lines.end());
        lines.sort();
        return lines;
    }
    QStringList rowsHere() const {
        return isPostgres() ? linesOf(storedRows(kNet, hasSeveralNets())) : rowsOf(path());
    }

    static QString digest(const StoreAddress &store) {
        const StoreReader reader(store);
        return digestOf(reader, reader.networks().first());
    }

    static QByteArray diff(const StoreAddress &before, const StoreAddress &after) {
        const StoreReader one(before);
        const StoreReader other(after);
        QByteArray lines;
        const ComparedNetworks compared =
            diffNetworks(one, one.networks().first(), other, other.networks().first(),
                         [&lines](const RowChange &change) { lines += patchtext::lineOf(change); });
        EXPECT_EQ(compared.before, digest(before));
        EXPECT_EQ(compared.after, digest(after));
        return patchtext::lineOf(PatchHeader{compared.before, compared.after, compared.words}) + lines;
    }

    /// One random network after the other in the store, until one fails.
    template <class Use>
    void forEachNetwork(int seeds, const Use &use) {
        const int first = setting("MORASTORE_FIRST_SEED", 1);
        for (int seed = first; seed < first + setting("MORASTORE_SEEDS", seeds) && !HasFailure(); ++seed) {
            SCOPED_TRACE(testing::Message()
                         << "to repeat: MORASTORE_FIRST_SEED=" << seed << " MORASTORE_SEEDS=1");
            if (seed > first)
                openNewStore();
            NetPlan plan;
            plan.seed = quint32(seed);
            plan.severalNets = hasSeveralNets();
            RandomNet random(plan);
            makeNetwork(random);
            use(random);
        }
    }

    /// A random network in the store.
    void makeNetwork(RandomNet &random) {
        auto made = random.make();
        gNet.loadRecord(NetRecord());
        execute(QStringLiteral("delete from LinkType"));
        execute(QStringLiteral("delete from Net"));
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *made, true));
    }

    /// A network like the one of the store, under the same numbers, in another store.
    QString twin(const QString &name = QStringLiteral("twin")) const {
        QString file = folder() + QLatin1Char('/') + name;
        QFile::remove(file);
        if (!isPostgres()) {
            EXPECT_TRUE(QFile::copy(path(), file));
            return file;
        }
        makeStore(file, newestTemplate());
        StoreReader source(address());
        const StoreSession target(file, Access::Write);
        EXPECT_EQ(copyNetworks(source, target, source.networks(), QString()).size(), 1);
        return file;
    }

    /// Edits of a host, in any number.
    static void edit(const QString &file, RandomNet &random) {
        const StoreSession store(file, Access::Write);
        NetContents net;
        ASSERT_TRUE(DBTools::loadNet(store.db(), kNet, net)) << qPrintable(store.firstFailureText());
        Editor editor(net, random, true);
        for (int edits = random.below(60); edits > 0; --edits)
            editor.edit();
        EXPECT_TRUE(StoredNet(store.db(), kNet).saveChanges(net)) << qPrintable(store.firstFailureText());
    }

    /// Statements of another program.
    static void alter(const QString &file, RandomNet &random) {
        const StoreSession store(file, Access::Write);
        for (const char *sql : kStatements) {
            QSqlQuery query(store.db());
            const bool isWanted = random.chance(0.3);
            EXPECT_TRUE(!isWanted || query.exec(QLatin1String(sql)))
                << sql << qPrintable(query.lastError().text());
        }
    }

    static constexpr const char *kStatements[] = {
        "update Link set addValue = null, curvature = 0.1 + 0.2, limitSpeed = 1e300",
        "update Link set linkName = 'O''Brien' || char(9) || char(128512), nonLinearCoefficient = -1e-300",
        "update LinkVertex set num = num + 7",
        "update SignalColor set timeLength = timeLength + 1 where rowid % 2",
        "insert into SignalColor select * from SignalColor where rowid % 3 = 0",
        "update Lane set otherAttrsJson = cast('{\"a\": \"ü\"}' as blob) where rowid % 2",
        "update Configuration set backgroundMap = x'00FF27005C'",
        "update VehicleType set length = 9007199254740994, width = 123456789012345680000.0",
        "delete from LaneConnector where rowid % 2",
        "update BusLineRoad set serialNumber = serialNumber + 1000",
        "update RoutingLink set num2 = num2 + 1",
    };
};
