#include "tools/kinds/Kinds.h"
#include "tests/host/Morastore.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"
#include "tools/session/StoreSession.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

using namespace moratools;

// What lists of names, copies and removals cost in a network of any size.

class NamedKinds : public StoreFixture {};

TEST_F(NamedKinds, AListTakesAsManyStatementsHoweverLongItIs) {
    openTemplate("EmptyNet_V6.0.0");
    if (!StatementTrace::canTrace(gDB))
        GTEST_SKIP() << "the driver has an engine of its own";
    DBTools::initDictionary(gDB, kNet, true);
    const auto counted = [](const NamedKind &kind) {
        const StatementTrace trace(gDB);
        const QList<NamedObject> objects = kind.list(StoreSession::ofProcess({}), kNet);
        return QPair<int, int>(objects.size(), trace.statements().size());
    };
    QMap<QString, QPair<int, int>> before;
    for (const NamedKind &kind : namedKinds())
        before.insert(kind.name, counted(kind));
    // Every table of objects gets 50 rows more; a column of the table that must not be empty gets the number
    // of its row.
    QStringList tables = gDB.tables();
    tables.removeAll(QStringLiteral("DbVersion"));
    for (const QString &table : qAsConst(tables)) {
        QStringList columns;
        QStringList values;
        for (const QString &column :
             rows(QStringLiteral("select name from pragma_table_info('%1') where \"notnull\" or pk")
                      .arg(table))) {
            columns.append(QLatin1Char('[') + column + QLatin1Char(']'));
            values.append(column.compare(QLatin1String("NetId"), Qt::CaseInsensitive) == 0
                              ? QString::number(kNet)
                              : QStringLiteral("i"));
        }
        QSqlQuery(
            QStringLiteral("with recursive n(i) as (select 1001 union all select i + 1 from n where i < "
                           "1050) insert into %1(%2) select %3 from n")
                .arg(table, columns.join(QLatin1Char(',')), values.join(QLatin1Char(','))),
            gDB);
    }
    int longer = 0;
    for (const NamedKind &kind : namedKinds()) {
        const auto [objects, statements] = counted(kind);
        // The first to ask may look for tables, too.
        EXPECT_LE(statements, before.value(kind.name).second) << qPrintable(kind.name);
        longer += objects >= before.value(kind.name).first + 50;
    }
    // Settings come alone.
    EXPECT_EQ(longer, 21);
}

TEST_F(Morastore, ADetectorShowsItsVehicleTypes) {
    const QString store = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    alter(store, {QStringLiteral("insert into VehicleDetector(NetId, vehicleDetectorId, signalGroupID, name, "
                                 "phaseNumber, roadId, roadType, laneNumber, length, distToTerminal, type, "
                                 "maxGreen) values(1, 4, 1, 'D', 1, 1, 'L', 1, 2, 3, 'T', 5)"),
                  QStringLiteral("insert into DetectorVehiType(NetId, vehicleDetectorId, vehicleTypeCode) "
                                 "values(1, 4, 2), (1, 4, 3)")});
    const QJsonObject shown =
        QJsonDocument::fromJson(run({QStringLiteral("show"), store, QStringLiteral("vehicleDetectors"),
                                     QStringLiteral("4"), QStringLiteral("--json")})
                                    .out.toUtf8())
            .object();
    EXPECT_EQ(shown.value(QStringLiteral("vehicleTypeCodes")).toArray(), (QJsonArray{2, 3}));
}

TEST_F(Morastore, CopyAndRemovalTakeNoMemoryForEveryRow) {
#if defined(Q_OS_LINUX) && !defined(__SANITIZE_ADDRESS__)
    const auto largestChild = [] {
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        return usage.ru_maxrss;
    };
    const QString store = newStore();
    const QString target = newStore(QStringLiteral("target"));
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    alter(store,
          {QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n where i < 300) "
                          "insert into Node(NetId, nodeID, nodeName, vertexID) select 1, 100000 + i, "
                          "hex(zeroblob(100000)), (select min(vertexID) from Vertex) from n")});
    ASSERT_GT(QFileInfo(store).size(), 60'000'000);
    // In KiB: the program, a cache of 64 MiB, and some room.
    constexpr long limit = 140L * 1024;
    EXPECT_EQ(run({QStringLiteral("copy"), store, target}).exitCode, 0);
    EXPECT_LT(largestChild(), limit);
    EXPECT_EQ(run({QStringLiteral("remove"), target, QStringLiteral("1"), QStringLiteral("--yes")}).exitCode,
              0);
    EXPECT_EQ(run({QStringLiteral("compact"), target}).exitCode, 0);
    EXPECT_LT(QFileInfo(target).size(), 2'000'000);
    EXPECT_EQ(run({QStringLiteral("digest"), store}).exitCode, 0);
    EXPECT_EQ(run({QStringLiteral("show"), store, QStringLiteral("links")}).exitCode, 0);
    EXPECT_LT(largestChild(), limit);
#else
    GTEST_SKIP() << "the memory of a program cannot be measured here";
#endif
}
