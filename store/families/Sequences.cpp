#include "store/families/Sequences.h"

#include "store/core/Query.h"

#include <QMap>

#include <algorithm>
#include <optional>

namespace sequences {

namespace {

/// A sequence and what it must not hand out again.
struct Sequence {
    const char *largest;
    const char *restart;
};

constexpr Sequence kSequences[] = {
    {"select max(netid) from net", "alter sequence seq_net_id RESTART %1"},
    {"select max(linkid) from Link", "alter sequence seq_link_id RESTART %1"},
    {"select max(laneid) from lane", "alter sequence seq_lane_id RESTART %1"},
    {"select max(connid) from connector", "alter sequence seq_connector_id RESTART %1"},
    {"select max(vertexid) from vertex", "alter sequence seq_vertex_id RESTART %1"},
};

constexpr const char *kTables = "select tablename from pg_tables where schemaname = '%1'";
constexpr const char *kKeyColumns =
    "SELECT tc.constraint_name, tc.table_name, kcu.column_name FROM information_schema.table_constraints AS tc JOIN information_schema.key_column_usage AS kcu ON tc.constraint_name = kcu.constraint_name JOIN information_schema.constraint_column_usage AS ccu ON ccu.constraint_name = tc.constraint_name";

/// The column of a table's own id: the first of its primary key but for the network's; empty without one,
/// none when the server could not be asked.
std::optional<QString> keyColumn(const Store &store, const QString &schema, const QString &table) {
    const QString condition =
        QStringLiteral(" where tc.constraint_type = 'PRIMARY KEY' and tc.table_schema = '%1' and "
                       "tc.table_name = '%2' order by kcu.ordinal_position")
            .arg(quoted(schema), quoted(table));
    Query columns(store, QString::fromLatin1(kKeyColumns) + condition);
    if (!columns.exec())
        return std::nullopt;
    while (columns.next()) {
        QString column = columns.text("column_name");
        if (column.compare(QLatin1String("netid"), Qt::CaseInsensitive) != 0 || table == QLatin1String("net"))
            return column;
    }
    return columns.isComplete() ? std::make_optional(QString()) : std::nullopt;
}

bool largestOf(const Store &store, const QString &schema, const QString &table, const QString &column,
               long &largest) {
    Query rows(store,
               QStringLiteral("select max(%1) from %2.%3")
                   .arg(identifierAsStored(column), identifierAsStored(schema), identifierAsStored(table)));
    if (!rows.execAndNext())
        return false;
    largest = std::max(largest, rows.firstId());
    return true;
}

QString schemaOrPublic(const QString &schema) {
    return schema.isEmpty() ? QStringLiteral("public") : schema;
}

bool restart(const Store &store, const Sequence &sequence) {
    Query rows(store, sequence.largest);
    if (!rows.execAndNext())
        return false;
    return Query(store, sequence.restart, {rows.firstId() + 1}).exec();
}

/// Adds the largest key value of each table of @p schema.
bool largestKeys(const Store &store, const QString &schema, QMap<QString, long> &largest) {
    const QString name = schemaOrPublic(schema);
    QStringList tables;
    Query list(store, QString::fromLatin1(kTables).arg(quoted(name)));
    if (!list.exec())
        return false;
    while (list.next())
        tables.append(list.text("tablename"));
    if (!list.isComplete())
        return false;
    for (const QString &table : qAsConst(tables)) {
        const auto column = keyColumn(store, name, table);
        if (!column || (!column->isEmpty() && !largestOf(store, name, table, *column, largest[table])))
            return false;
    }
    return true;
}

long largestOfAll(const QMap<QString, long> &largest) {
    return largest.isEmpty() ? 0 : std::max(0L, *std::max_element(largest.cbegin(), largest.cend()));
}

/// Moves the sequences of the tables in @p largest that have one.
bool restartOwn(const Store &store, const QMap<QString, long> &largest) {
    QStringList known;
    Query list(store, "select relname from pg_class where relkind = 'S' and pg_table_is_visible(oid)");
    if (!list.exec())
        return false;
    while (list.next())
        known.append(list.text("relname"));
    bool moved = list.isComplete();
    for (auto table = largest.cbegin(); table != largest.cend(); ++table) {
        const QString own = QStringLiteral("seq_%1_id").arg(table.key());
        const QString sql = QStringLiteral("alter sequence %1 RESTART %2")
                                .arg(identifierAsStored(own), QString::number(table.value() + 1));
        if (known.contains(own))
            moved = moved && Query(store, sql).exec();
    }
    return moved;
}

} // namespace

bool largestKey(const Store &store, const QString &schema, long &largest) {
    if (!store.isPostgreSql())
        return true;
    QMap<QString, long> keys;
    const bool read = largestKeys(store, schema, keys);
    largest = largestOfAll(keys);
    return read;
}

bool rebase(const Store &store, const QString &schema) {
    if (!store.isPostgreSql())
        return true;
    for (const Sequence &sequence : kSequences) {
        if (!restart(store, sequence))
            return false;
    }
    QMap<QString, long> keys;
    if (!largestKeys(store, schema, keys))
        return false;
    Query current(store, "select nextval('\"seq_table_id\"')");
    if (!current.execAndNext())
        return false;
    return Query(store, "alter sequence seq_table_id RESTART %1",
                 {std::max(largestOfAll(keys), current.firstId())})
               .exec() &&
           restartOwn(store, keys);
}

} // namespace sequences
