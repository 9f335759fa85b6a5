#include "store/guard/SchemaGuard.h"

#include "store/catalogue/Catalogue.h"
#include "store/core/Engine.h"
#include "store/core/Probes.h"
#include "store/guard/PlainTable.h"

#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <optional>

namespace schemaguard {

namespace {

bool refuse(const QString &name, const QString &reason, FailureList &failures) {
    return recordFailure(failures, {}, name.isEmpty() ? reason : QStringLiteral("%1: %2").arg(name, reason),
                         0, FailureKind::Damaged);
}

/// Runs a question; its failure is recorded.
bool ask(QSqlQuery &query, const QString &sql, FailureList &failures) {
    query.setForwardOnly(true);
    query.exec(sql);
    return checkStatement(query, failures);
}

/// The tables of the format in lower case, as a list of literals.
QString namesAsLiterals() {
    QStringList names;
    for (const QString &table : tablesOfTheFormat())
        names.append(QStringLiteral("'%1'").arg(table.toLower()));
    return names.join(QLatin1Char(','));
}

/// What stands on the tables of the format that is none of it: kind, name and table of the first.
QString serverQuestion() {
    return QStringLiteral(
               "with recursive own as (select oid, relname, relkind from pg_class where "
               "pg_table_is_visible(oid) and relname in (%1) and relkind <> 'i' "
               // What is read with a table: the leaves of a partitioned one, tables that inherit from it.
               "union all select c.oid, c.relname, c.relkind from pg_inherits join own on inhparent = own.oid "
               "join pg_class c on c.oid = inhrelid) "
               "select case relkind when 'v' then 'view' when 'm' then 'view' else 'foreign table' end, relname, "
               "relname from own where relkind not in ('r', 'p') and not exists (select 1 from pg_class leaf "
               "join pg_foreign_table on ftrelid = leaf.oid join pg_foreign_server s on s.oid = ftserver "
               "join pg_foreign_data_wrapper w on w.oid = srvfdw where leaf.oid = own.oid and "
               "leaf.relispartition and fdwname = 'postgres_fdw') "
               "union all select 'trigger', tgname, relname from pg_trigger join own on tgrelid = own.oid "
               "where not tgisinternal "
               "union all select 'rule', rulename, relname from pg_rewrite join own on ev_class = own.oid "
               "where rulename <> '_RETURN' "
               "union all select 'check', conname, relname from pg_constraint join own on conrelid = own.oid "
               "where contype = 'c' "
               "union all select 'generated column', attname, relname from pg_attribute join own on "
               "attrelid = own.oid where attgenerated <> '' "
               "limit 1")
        .arg(namesAsLiterals());
}

QString intruder(const QString &kind, const QString &name, const QString &table) {
    const bool isNameless = name.compare(table, Qt::CaseInsensitive) == 0;
    const bool isTheTable = kind == QLatin1String("view") || kind.endsWith(QLatin1String(" table"));
    QString what = QStringLiteral("table %1 has the %2 \"%3\"").arg(table, kind, name);
    if (isTheTable || isNameless)
        what =
            (isTheTable ? QStringLiteral("%1 is a %2") : QStringLiteral("table %1 has a %2")).arg(name, kind);
    return what +
           QStringLiteral(", which no store has and which would work unseen; get the store from where it was "
                          "made, or have whoever knows what this is for take it away");
}

/// Reads the catalogue of an SQLite file, which runs nothing of it.
bool hasPlainFileTables(const QSqlDatabase &db, const QString &name, FailureList &failures) {
    QSet<QString> own;
    for (const QString &table : tablesOfTheFormat())
        own.insert(table.toLower());
    QSqlQuery entries(db);
    if (!ask(entries, QStringLiteral("select type, name, tbl_name, sql from sqlite_master"), failures))
        return false;
    while (entries.next()) {
        const QString entry = entries.value(1).toString();
        const QString table = entries.value(2).toString();
        if (!own.contains(table.toLower()) && !own.contains(entry.toLower()))
            continue;
        const QString odd = plaintable::oddityOf(entries.value(0).toString(), entries.value(3).toString());
        if (!odd.isEmpty())
            return refuse(name, intruder(odd, entry, table), failures);
    }
    return checkStatement(entries, failures);
}

bool hasPlainServerTables(const QSqlDatabase &db, const QString &name, FailureList &failures) {
    QSqlQuery odd(db);
    if (!ask(odd, serverQuestion(), failures))
        return false;
    if (!odd.next())
        return checkStatement(odd, failures);
    return refuse(name, intruder(odd.value(0).toString(), odd.value(1).toString(), odd.value(2).toString()),
                  failures);
}

/// Whether the keys of the roads' tables are led by the network: "0" or "1" for each table, without
/// repetition. A table of a file that has lost its key is judged by its columns, but for Link, which has that
/// of the network in older stores, too. A store without networks says no: older ones get the table when they
/// are brought forward, and it is not that of newer ones.
QString keyQuestion(const QSqlDatabase &db) {
    const QString tables = QStringLiteral("('link', 'lane', 'connector', 'vertex')");
    if (engine::isPostgreSql(db))
        return QStringLiteral(
                   "select distinct bool_or(a.attname = 'netid')::int from pg_index i join pg_class c "
                   "on c.oid = i.indrelid join pg_attribute a on a.attrelid = c.oid and a.attnum = "
                   "any (i.indkey) where i.indisprimary and c.relname in %1 and "
                   "pg_table_is_visible(c.oid) group by c.relname "
                   "union select 0 where to_regclass('net') is null")
            .arg(tables);
    return QStringLiteral(
               "select distinct case when max(c.pk) > 0 then max(lower(c.name) = 'netid' and c.pk > 0) "
               "else max(lower(c.name) = 'netid') end from sqlite_master m, "
               "pragma_table_info(m.name) c where m.type = 'table' and lower(m.name) in %1 "
               "group by m.name having max(c.pk) > 0 or lower(m.name) <> 'link' union select 0 where not exists "
               "(select 1 from sqlite_master where lower(name) = 'net')")
        .arg(tables);
}

} // namespace

const QStringList &tablesOfTheFormat() {
    static const QStringList all = [] {
        // The store's own bookkeeping, and what finished runs left.
        QStringList tables{QStringLiteral("DbVersion"),
                           QStringLiteral("IDGenerater"),
                           QStringLiteral("PassengerArriving"),
                           QStringLiteral("RoadType"),
                           QStringLiteral("Rsu"),
                           QStringLiteral("Vehicle"),
                           QStringLiteral("VehicleDriving")};
        for (const catalogue::Table &table : catalogue::tables())
            tables.append(QLatin1String(table.name));
        tables.sort();
        return tables;
    }();
    return all;
}

bool hasPlainTables(const QSqlDatabase &db, const QString &name, FailureList &failures) {
    if (engine::isPostgreSql(db))
        return hasPlainServerTables(db, name, failures);
    return !engine::isSqlite(db) || hasPlainFileTables(db, name, failures);
}

bool hasFittingVersion(const QSqlDatabase &db, const QString &name, FailureList &failures) {
    FailureList reasons;
    const std::optional<long> version = probes::dbVersion(db, reasons);
    for (const CallDbResult &reason : qAsConst(reasons))
        refuse(name, reason.error, failures);
    if (!version || *version == 0)
        return version.has_value();
    QSqlQuery keys(db);
    if (!ask(keys, keyQuestion(db), failures))
        return false;
    const bool hasSeveralNets = probes::hasSeveralNets(*version);
    while (keys.next()) {
        if (keys.value(0).toBool() != hasSeveralNets)
            return refuse(name,
                          QStringLiteral("the store says that it is of version %1, and its tables are not; "
                                         "restore it from a copy")
                              .arg(*version),
                          failures);
    }
    return checkStatement(keys, failures);
}

} // namespace schemaguard
