#include "fuzz/Fuzzing.h"
#include "host/Host.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "tools/drawing/NetworkDrawing.h"
#include "tools/kinds/Kinds.h"
#include "tools/reports/Failure.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/CompanionReader.h"
#include "tools/sumo/reader/NetReader.h"

#include <QGuiApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <memory>

using namespace moratools;

namespace {

constexpr long kNet = 1;
constexpr int kMostChanges = 6;
/// The example's objects have ids up to about this one.
constexpr long kLargestId = 12;

QString example(const char *name) {
    return QStringLiteral(MORASTORE_SOURCE_DIR "/examples/crossing/") + QLatin1String(name);
}

void mustRun(const QString &sql) {
    QSqlQuery query(gDB);
    if (!query.exec(sql))
        std::fprintf(stderr, "%s: %s\n", qPrintable(sql), qPrintable(query.lastError().text()));
    fuzzing::require(!query.lastError().isValid(), "a statement of the target's own");
}

/// The same tables without keys and constraints, so that a cell takes anything and a row may come twice.
void dropKeys(const QStringList &tables) {
    for (const QString &table : tables) {
        mustRun(QStringLiteral("create table open_%1 as select * from %1").arg(table));
        mustRun(QStringLiteral("drop table %1").arg(table));
        mustRun(QStringLiteral("alter table open_%1 rename to %1").arg(table));
    }
}

/// A store with the example network, its tables and their columns.
struct Base {
    QString path;
    QStringList tables;
    QHash<QString, QStringList> columns;

    Base(const QString &at, const QString &templateName) : path(at) {
        makeStore(path, templateName);
        const StoreSession store(path, Access::Write);
        const SumoNet net = readSumoNet(example("crossing.net.xml"));
        SumoCompanions companions;
        for (const char *file : {"crossing.add.xml", "crossing.rou.xml", "turns.xml"})
            readSumoCompanion(example(file), companions);
        importNetwork(store, net, planCompanions(net, std::move(companions)), QStringLiteral("crossing"));
        QSqlQuery names(QStringLiteral("select name from sqlite_master where type = 'table' and name not "
                                       "like 'sqlite%' order by name"),
                        gDB);
        while (names.next())
            tables.append(names.value(0).toString());
        names.finish();
        dropKeys(tables);
        for (const QString &table : qAsConst(tables)) {
            const QSqlRecord record = gDB.record(table);
            for (int i = 0; i < record.count(); ++i)
                columns[table].append(record.fieldName(i));
        }
    }
};

/// What lives as long as the process.
struct World {
    int argc = 1;
    char name[10] = "store_cel";
    char *argv[2] = {name, nullptr};
    QTemporaryDir folder;
    host::Session session{QStringLiteral("en"), false};
    std::unique_ptr<QGuiApplication> application;
    std::unique_ptr<Base> bases[2];
    const Base *open = nullptr;

    World() {
        host::prepareProcess();
        application = std::make_unique<QGuiApplication>(argc, argv);
        const char *templates[] = {"EmptyNet_V3.0.0", "EmptyNet_V6.0.0"};
        for (int i = 0; i < 2; ++i)
            bases[i] = std::make_unique<Base>(folder.filePath(QLatin1String(templates[i])),
                                              QLatin1String(templates[i]));
    }
    const Base &use(bool severalNets) {
        const Base *wanted = bases[severalNets].get();
        if (open != wanted)
            fuzzing::require(DBTools::openDatabase(gDB, wanted->path, true), "the store opens");
        open = wanted;
        return *wanted;
    }
};

/// A value of any storage class.
QVariant valueOf(FuzzedDataProvider &input) {
    switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
        return {};
    case 1:
        return qint64(input.ConsumeIntegral<std::int64_t>());
    case 2:
        return qint64(input.ConsumeIntegralInRange(-3, 12));
    case 3:
        return input.ConsumeFloatingPoint<double>();
    case 4:
        return input.ConsumeBool() ? HUGE_VAL : -HUGE_VAL;
    default:
        return QByteArray::fromStdString(input.ConsumeRandomLengthString(200));
    }
}

/// Changes, takes away or repeats rows of any table.
void change(const Base &base, FuzzedDataProvider &input) {
    const QString &table = base.tables[input.ConsumeIntegralInRange(0, base.tables.size() - 1)];
    const QStringList &columns = base.columns[table];
    const QString &column = columns[input.ConsumeIntegralInRange(0, columns.size() - 1)];
    const QString row = QString::number(input.ConsumeIntegralInRange(0, 40));
    QSqlQuery query(gDB);
    switch (input.ConsumeIntegralInRange(0, 7)) {
    case 0:
        query.exec(QStringLiteral("delete from %1 where rowid % 41 = %2").arg(table, row));
        return;
    case 1:
        query.exec(QStringLiteral("insert into %1 select * from %1 where rowid % 41 = %2").arg(table, row));
        return;
    case 2:
        query.exec(QStringLiteral("insert into %1 default values").arg(table));
        return;
    default:
        // Bytes become a text as they are, well-formed or not.
        query.prepare(QStringLiteral("update %1 set %2 = %3 where %4 or rowid % 41 = %5")
                          .arg(table, column,
                               input.ConsumeBool() ? QStringLiteral("cast(? as text)") : QStringLiteral("?"),
                               input.ConsumeBool() ? QStringLiteral("1") : QStringLiteral("0"), row));
        query.addBindValue(valueOf(input));
        query.exec();
    }
}

void readKinds(bool withRoads) {
    for (const NamedKind &kind : namedKinds()) {
        if (kind.needsNetwork != withRoads)
            continue;
        for (long id = 0; id <= kLargestId; ++id) {
            try {
                kind.read(StoreSession::ofProcess({}), kNet, id);
            } catch (const Failure &failure) {
                fuzzing::require(!failure.message().isEmpty(), "a failure says why");
            }
        }
    }
}

/// Reads everything in every way, and draws it.
void readAll(const QString &picture) {
    DBTools::selectNetById(gDB, kNet);
    readKinds(false);
    NetContents network;
    if (!DBTools::loadNet(gDB, kNet, network)) {
        fuzzing::require(!DBTools::mlCallDbResult.isEmpty() || !DBTools_V6::mlCallDbResult.isEmpty(),
                         "a load that fails leaves a record");
        return;
    }
    readKinds(true);
    try {
        drawToFile(network, picture, 300);
    } catch (const Failure &) {
        return;
    }
    QFile file(picture);
    file.open(QIODevice::ReadOnly);
    const QByteArray bytes = file.readAll();
    fuzzing::require(!bytes.contains("\"nan") && !bytes.contains(",nan") && !bytes.contains("inf,"),
                     "a picture has numbers");
}

} // namespace

/// Stores with anything in any cell: every reading and every whole load ends, with objects or with a record,
/// and changes nothing.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static World world;
    FuzzedDataProvider input(data, size);
    const Base &base = world.use(input.ConsumeBool());
    mustRun(QStringLiteral("begin"));
    for (int i = 0; i < kMostChanges && input.remaining_bytes() > 0; ++i)
        change(base, input);
    const auto changes = [] {
        QSqlQuery query(QStringLiteral("select total_changes()"), gDB);
        return query.next() ? query.value(0).toLongLong() : -1;
    };
    const qint64 before = changes();
    readAll(world.folder.filePath(QStringLiteral("picture.svg")));
    fuzzing::require(changes() == before, "reading changes nothing");
    mustRun(QStringLiteral("rollback"));
    DBTools::mlCallDbResult.clear();
    DBTools_V6::mlCallDbResult.clear();
    return 0;
}
