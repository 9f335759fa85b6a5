#include "store/ids/Sequences.h"

#include "store/catalogue/Catalogue.h"
#include "store/core/Query.h"
#include "store/core/StorableValue.h"
#include "store/ids/Identifiers.h"

#include <QMap>

#include <algorithm>
#include <optional>

namespace sequences {

namespace {

/// A sequence and what it must not hand out again.
struct Sequence {
    const char *table;
    const char *largest;
    const char *restart;
};

constexpr Sequence kSequences[] = {
    {"net", "select max(netid) from net", "alter sequence seq_net_id RESTART %1"},
    {"Link", "select max(linkid) from Link", "alter sequence seq_link_id RESTART %1"},
    {"lane", "select max(laneid) from lane", "alter sequence seq_lane_id RESTART %1"},
    {"connector", "select max(connid) from connector", "alter sequence seq_connector_id RESTART %1"},
    {"vertex", "select max(vertexid) from vertex", "alter sequence seq_vertex_id RESTART %1"},
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
    if (!columns.isComplete())
        return std::nullopt;
    // A partitioned table has no key: its leaves have.
    const catalogue::Table *entry = catalogue::find(table);
    return entry && entry->id ? QString::fromLatin1(entry->id).toLower() : QString();
}

bool largestOf(const Store &store, const QString &schema, const QString &table, const QString &column,
               qint64 &largest) {
    Query rows(store,
               QStringLiteral("select max(%1) from %2.%3")
                   .arg(identifierAsStored(column), identifierAsStored(schema), identifierAsStored(table)));
    if (!rows.execAndNext())
        return false;
    largest = std::max(largest, rows.firstInteger());
    return true;
}

QString schemaOrPublic(const QString &schema) {
    return schema.isEmpty() ? QStringLiteral("public") : schema;
}

bool restart(const Store &store, const Sequence &sequence) {
    Query rows(store, sequence.largest);
    return rows.execAndNext() &&
           identifiers::requireId(store, QLatin1String(sequence.table), rows.firstInteger() + 1) &&
           Query(store, sequence.restart, {rows.firstId() + 1}).exec();
}

/// Adds the largest key value of each table of @p schema.
bool largestKeys(const Store &store, const QString &schema, QMap<QString, qint64> &largest) {
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

/// The largest of @p keys, at least 0; none when it is beyond an identifier, which is recorded.
std::optional<long> largestOfAll(const Store &store, const QMap<QString, qint64> &keys) {
    const auto largest = std::max_element(keys.cbegin(), keys.cend());
    if (largest == keys.cend() || *largest < 0)
        return 0;
    // Sequences go on with the next one.
    return identifiers::requireId(store, largest.key(), *largest + 1)
               ? std::make_optional(static_cast<long>(*largest))
               : std::nullopt;
}

/// Moves the sequences of the tables in @p largest that have one.
bool restartOwn(const Store &store, const QMap<QString, qint64> &largest) {
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

/// Whether the statements, which name no schema, find the sequence @p name.
std::optional<bool> exists(const Store &store, const QString &name) {
    const QString sql = QStringLiteral(
        "select 1 from pg_class where relkind = 'S' and relname = '%1' and pg_table_is_visible(oid)");
    return Query(store, sql.arg(quoted(name))).returnsRow();
}

/// A sequence as an argument of the server's functions: a text that holds an identifier.
QString textOf(const QString &name) {
    return quoted(identifierAsStored(name));
}

/// Looks for the sequence that identifiers of @p table come from; empty without one, which is recorded.
QString lookFor(const Store &store, const QString &table) {
    const QString own = QStringLiteral("seq_%1_id").arg(table.toLower());
    const QString shared = QStringLiteral("seq_table_id");
    for (const QString &name : {own, shared}) {
        const auto isThere = exists(store, name);
        if (!isThere)
            return {};
        if (*isThere)
            return name;
    }
    if (store.isUsable())
        store.fail({}, QStringLiteral("There is neither a sequence %1 nor %2").arg(own, shared), 0,
                   FailureKind::Damaged);
    return {};
}

/// The same, asking the catalogue once.
QString nameFor(const Store &store, const QString &table) {
    QString &known = store.state().sequences[table.toLower()];
    if (known.isEmpty())
        known = lookFor(store, table);
    return known;
}

/// What the sequence @p name has handed out last.
std::optional<qint64> lastValue(const Store &store, const QString &name) {
    Query state(store,
                QStringLiteral("select case when is_called then last_value else last_value - 1 end from %1")
                    .arg(identifierAsStored(name)));
    return state.execAndNext() ? std::make_optional(state.firstInteger()) : std::nullopt;
}

bool drawFrom(const Store &store, const QString &name, const QString &table, int count, QList<long> &ids) {
    const QString one = QStringLiteral("select nextval('%1')").arg(textOf(name));
    Query drawn(store, count == 1 ? one : one + QStringLiteral(" from generate_series(1, %1)").arg(count));
    if (!drawn.exec())
        return false;
    while (drawn.next()) {
        if (!identifiers::requireId(store, table, drawn.firstInteger()))
            return false;
        ids.append(drawn.firstId());
    }
    return drawn.isComplete() && !ids.isEmpty();
}

} // namespace

bool draw(const Store &store, const QString &table, int count, QList<long> &ids) {
    const QString name = nameFor(store, table);
    return !name.isEmpty() && drawFrom(store, name, table, count, ids);
}

std::optional<qint64> last(const Store &store, const QString &table) {
    const QString name = nameFor(store, table);
    return name.isEmpty() ? std::nullopt : lastValue(store, name);
}

bool drawGeneral(const Store &store, long &id) {
    // The sequence is named "seg", not "seq", in databases and hosts alike.
    QList<long> ids;
    if (!drawFrom(store, QStringLiteral("seg_table_id"), QStringLiteral("General"), 1, ids))
        return false;
    id = ids.first();
    return true;
}

bool pass(const Store &store, const QString &table, qint64 floor) {
    if (floor <= 0)
        return true;
    const QString name = nameFor(store, table);
    if (name.isEmpty())
        return false;
    const auto handedOut = lastValue(store, name);
    if (!handedOut)
        return false;
    const qint64 missing = floor - *handedOut;
    if (missing <= 0)
        return true;
    // Setting a sequence takes no notice of what other processes have drawn since it was looked at, and would
    // give that out again. Drawing the values that are to be passed is safe. Where there are too many of them
    // it is set: others would have to draw all these within one statement.
    constexpr qint64 most = 1000000;
    return Query(store, missing <= most
                            ? QStringLiteral("select count(nextval('%1')) from generate_series(1, %2)")
                                  .arg(textOf(name), QString::number(missing))
                            : QStringLiteral("select setval('%1', %2) from %3 where last_value < %4")
                                  .arg(textOf(name), QString::number(floor), identifierAsStored(name),
                                       QString::number(floor - most / 2)))
        .exec();
}

bool largestKey(const Store &store, const QString &schema, long &largest) {
    if (!store.isPostgreSql())
        return true;
    QMap<QString, qint64> keys;
    if (!largestKeys(store, schema, keys))
        return false;
    const auto all = largestOfAll(store, keys);
    largest = all.value_or(largest);
    return all.has_value();
}

bool rebase(const Store &store, const QString &schema) {
    if (!store.isPostgreSql())
        return true;
    for (const Sequence &sequence : kSequences) {
        if (!restart(store, sequence))
            return false;
    }
    QMap<QString, qint64> keys;
    const auto largest = largestKeys(store, schema, keys) ? largestOfAll(store, keys) : std::nullopt;
    if (!largest)
        return false;
    Query current(store, "select nextval('\"seq_table_id\"')");
    return current.execAndNext() &&
           identifiers::requireId(store, QStringLiteral("General"), current.firstInteger()) &&
           Query(store, "alter sequence seq_table_id RESTART %1", {std::max(*largest, current.firstId())})
               .exec() &&
           restartOwn(store, keys);
}

} // namespace sequences
