#include "store/core/Probes.h"

#include "store/core/Engine.h"
#include "store/core/Savepoint.h"
#include "store/core/Sql.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace probes {

namespace {

constexpr qint64 kNewestVersion = 6;

QSqlQuery run(const QSqlDatabase &db, const QString &sql) {
    QSqlQuery query(db);
    // QPSQL gives up the rest of a forward-only result as soon as the savepoint is released.
    query.setForwardOnly(!engine::isPostgreSql(db));
    if (db.isOpen()) {
        Savepoint savepoint(db);
        savepoint.end(query.exec(sql));
    }
    return query;
}

/// Whether the statement that failed with @p error did so because @p table is not there, which is an answer.
/// A statement that was refused for another reason (a lock, a damaged page) leads to no second question.
bool failedForLackOf(const QString &table, const QSqlDatabase &db, const QSqlError &error) {
    if (table.isEmpty() || !error.isValid())
        return false;
    // https://www.postgresql.org/docs/15/errcodes-appendix.html, https://www.sqlite.org/rescode.html
    if (engine::isPostgreSql(db))
        return error.nativeErrorCode() == QLatin1String("42P01");
    if (error.nativeErrorCode() != QLatin1String("1"))
        return false;
    const QString entry = QStringLiteral(
        "select 1 from sqlite_master where type in ('table', 'view') and name = '%1' collate nocase");
    QSqlQuery found = run(db, entry.arg(quoted(table)));
    return found.isActive() && !found.next() && !found.lastError().isValid();
}

/// The result of @p sql, before its first row; none where it could not be had.
std::optional<QSqlQuery> ask(const QSqlDatabase &db, const QString &sql, FailureList &failures,
                             const QString &table = {}) {
    const QSqlQuery query = run(db, sql);
    if (failedForLackOf(table, db, query.lastError()))
        return QSqlQuery(db);
    return checkStatement(query, failures) ? std::make_optional(query) : std::nullopt;
}

std::optional<QSqlQuery> tableInfo(const QSqlDatabase &db, const QString &table, FailureList &failures) {
    return ask(db, QStringLiteral("PRAGMA table_info('%1')").arg(quoted(table)), failures);
}

/// @p result, once all of @p rows was read; none where reading broke off.
template <class Result>
std::optional<Result> whole(const Result &result, const QSqlQuery &rows, FailureList &failures) {
    return checkStatement(rows, failures) ? std::make_optional(result) : std::nullopt;
}

/// A version is an integer from 1 on; PostgreSQL's driver gives numbers that are not negative without a sign.
std::optional<qint64> versionIn(const QVariant &value) {
    const auto type = value.type();
    const bool isInteger = type == QVariant::Int || type == QVariant::LongLong || type == QVariant::ULongLong;
    const qint64 number = value.toLongLong();
    return isInteger && !value.isNull() && number >= 1 ? std::make_optional(number) : std::nullopt;
}

std::nullopt_t refuse(const QSqlQuery &query, const QString &reason, FailureList &failures) {
    recordFailure(failures, query.lastQuery(), reason, 0, FailureKind::Damaged);
    return std::nullopt;
}

bool isKeyColumn(const QSqlQuery &column, const QString &table) {
    const bool isNetColumn = column.value(QStringLiteral("name"))
                                 .toString()
                                 .compare(QLatin1String("NetId"), Qt::CaseInsensitive) == 0;
    return column.value(QStringLiteral("pk")).toInt() >= 1 && (!isNetColumn || table == QLatin1String("Net"));
}

} // namespace

QString refusalOfVersion(qint64 version) {
    return version <= kNewestVersion
               ? QString()
               : QStringLiteral(
                     "the store is of version %1, and this release knows none above %2; use a newer release")
                     .arg(QString::number(version), QString::number(kNewestVersion));
}

std::optional<long> dbVersion(const QSqlDatabase &db, FailureList &failures) {
    auto rows = ask(db, QStringLiteral("select * from DbVersion"), failures, QStringLiteral("DbVersion"));
    if (!rows)
        return std::nullopt;
    // The first row counts; later ones may tell of other versions, but of none with other keys.
    qint64 version = 0;
    while (rows->next()) {
        const auto named = versionIn(rows->value(QStringLiteral("versionId")));
        if (!named || (version != 0 && hasSeveralNets(version) != hasSeveralNets(*named)))
            return refuse(
                *rows,
                QStringLiteral("the store does not say of which version it is; restore it from a copy"),
                failures);
        version = version != 0 ? version : *named;
    }
    if (const QString refusal = refusalOfVersion(version); !refusal.isEmpty())
        return refuse(*rows, refusal, failures);
    return whole(static_cast<long>(version), *rows, failures);
}

Answer hasTable(const QSqlDatabase &db, const QString &table, FailureList &failures) {
    const QString sql = QStringLiteral("select * from sqlite_master where type = 'table' and name = '%1'");
    return returnsRow(db, sql.arg(quoted(table)), failures);
}

Answer tableHasField(const QSqlDatabase &db, const QString &table, const QString &field,
                     FailureList &failures) {
    if (engine::isSqlite(db)) {
        const auto columns = columnsContaining(db, table, field, failures);
        return columns ? Answer(!columns->isEmpty()) : Answer();
    }
    if (!engine::isPostgreSql(db))
        return false;
    const QString sql = QStringLiteral(
        "select count(*) from information_schema.columns WHERE table_schema = 'table_schema' and table_name = '%0' and column_name = '%1'");
    const auto count = number(db, sql.arg(quoted(table), quoted(field)), failures);
    return count ? Answer(*count > 0) : Answer();
}

Answer returnsRow(const QSqlDatabase &db, const QString &sql, FailureList &failures, const QString &table) {
    auto rows = ask(db, sql, failures, table);
    if (!rows)
        return std::nullopt;
    return rows->next() ? Answer(true) : whole(false, *rows, failures);
}

std::optional<qint64> number(const QSqlDatabase &db, const QString &sql, FailureList &failures,
                             const QString &table) {
    auto rows = ask(db, sql, failures, table);
    if (!rows)
        return std::nullopt;
    return rows->next() ? rows->value(0).toLongLong() : whole(qint64(0), *rows, failures);
}

std::optional<QStringList> columnsContaining(const QSqlDatabase &db, const QString &table,
                                             const QString &part, FailureList &failures) {
    auto columns = tableInfo(db, table, failures);
    if (!columns)
        return std::nullopt;
    QStringList names;
    while (columns->next()) {
        const QString name = columns->value(QStringLiteral("name")).toString();
        if (name.contains(part))
            names.append(name);
    }
    return whole(names, *columns, failures);
}

std::optional<Tables> tables(const QSqlDatabase &db, FailureList &failures) {
    auto rows =
        ask(db, QStringLiteral("select * from sqlite_master where type = 'table' order by name"), failures);
    if (!rows)
        return std::nullopt;
    Tables tables;
    while (rows->next()) {
        const QString name = rows->value(QStringLiteral("name")).toString();
        tables.names.append(name);
        // The engine keeps the first words of a statement in this form, whatever they were.
        if (!rows->value(QStringLiteral("sql")).toString().startsWith(QLatin1String("CREATE VIRTUAL TABLE")))
            tables.plain.append(name);
    }
    return whole(tables, *rows, failures);
}

Answer hasMisspeltColumn(const QSqlDatabase &db, FailureList &failures) {
    const auto found = tables(db, failures);
    if (!found)
        return std::nullopt;
    for (const QString &table : found->plain) {
        const auto columns = columnsContaining(db, table, QStringLiteral("Nnumber"), failures);
        if (!columns)
            return std::nullopt;
        if (!columns->isEmpty())
            return true;
    }
    return false;
}

std::optional<QHash<QString, QString>> keyColumns(const QSqlDatabase &db, const QStringList &tables,
                                                  FailureList &failures) {
    QHash<QString, QString> keys;
    for (const QString &table : tables) {
        auto columns = tableInfo(db, table, failures);
        if (!columns)
            return std::nullopt;
        while (columns->next() && !keys.contains(table)) {
            if (isKeyColumn(*columns, table))
                keys.insert(table, columns->value(QStringLiteral("name")).toString());
        }
        if (!checkStatement(*columns, failures))
            return std::nullopt;
    }
    return keys;
}

} // namespace probes
