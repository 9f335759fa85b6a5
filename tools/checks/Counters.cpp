#include "tools/checks/Counters.h"

#include "store/catalogue/Catalogue.h"
#include "tools/checks/Checked.h"

#include <QHash>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace moratools {

namespace {

/// The counters of the store, by table in lower case.
QHash<QString, qint64> valuesOf(const Checked &checked) {
    const StoreReader &store = checked.rows();
    QHash<QString, qint64> values;
    if (!store.isSqlite()) {
        QSqlQuery rows = store.run(
            QStringLiteral("select sequencename, coalesce(last_value, 0) from pg_sequences "
                           "where pg_table_is_visible(format('%I.%I', schemaname, sequencename)::regclass)"));
        while (rows.next()) {
            QString name = rows.value(0).toString();
            name.remove(QLatin1String("seq_")).chop(int(qstrlen("_id")));
            values.insert(name, rows.value(1).toLongLong());
        }
        store.check(rows);
        return values;
    }
    const StoreTable *table = store.table(QStringLiteral("IDGenerater"));
    // A store of the first release has one counter for all tables.
    if (!table || !table->column(QStringLiteral("TableName")))
        return values;
    QSqlQuery rows = store.run(QStringLiteral("select TableName, ID from IDGenerater") +
                               store.condition(*table, checked.net()));
    while (rows.next())
        values.insert(rows.value(0).toString().toLower(), rows.value(1).toLongLong());
    store.check(rows);
    return values;
}

/// Whether a store numbers the rows of a table. Codes of vehicle types are the host's; those of compositions
/// begin with standard ones, which new stores have beside a counter of 0; single passengers are written by
/// nobody, and in a store of one network lane connectors have no number.
bool isCounted(const catalogue::Table &table, const StoreReader &store) {
    const QLatin1String name(table.name);
    return table.uniqueId() && name != QLatin1String("Passenger") &&
           (store.hasSeveralNetworks() || name != QLatin1String("LaneConnector"));
}

} // namespace

Counters::Counters(const Checked &checked) {
    const StoreReader &store = checked.rows();
    const QHash<QString, qint64> values = valuesOf(checked);
    if (values.isEmpty() && store.isSqlite() && !store.hasSeveralNetworks())
        return;
    for (const catalogue::Table &entry : catalogue::tables()) {
        const StoreTable *table = store.table(QLatin1String(entry.name));
        const StoreColumn *id =
            table && isCounted(entry, store) ? table->column(QLatin1String(entry.id)) : nullptr;
        const qint64 largest = id ? store.largest(*table, *id, checked.net()) : 0;
        if (largest <= 0)
            continue;
        Counter counter{QLatin1String(entry.name), largest, std::nullopt, {}};
        // On a server tables without a sequence of their own share one.
        for (const QString &name : {counter.table.toLower(), QStringLiteral("table")}) {
            const auto value = values.constFind(name);
            if (value == values.cend() || (store.isSqlite() && name == QLatin1String("table")))
                continue;
            counter.value = *value;
            counter.sequence = store.isSqlite() ? QString() : QStringLiteral("seq_%1_id").arg(name);
            break;
        }
        counters.push_back(counter);
    }
}

} // namespace moratools
