#include "tools/differences/PatchedRows.h"

#include "store/core/Engine.h"
#include "store/opening/RecordRows.h"
#include "tools/reports/Failure.h"
#include "tools/rows/FormatSchema.h"
#include "tools/session/ServerFailure.h"

#include <QSqlError>

#include <algorithm>

namespace moratools {

namespace {

QString shown(const QVariant &value) {
    constexpr int enough = 40;
    return value.isValid() ? value.toString().left(enough) : QStringLiteral("nothing");
}

/// A column that is the store's, not the network's.
bool isOfStore(const catalogue::Table &table, const QString &key) {
    return key == QLatin1String("netid") ||
           (key == QLatin1String("isdefault") && qstrcmp(table.name, "Net") == 0);
}

/// What tells a row from the others, of a row with all its values.
RowValues keyOf(const RowChange &change, const RowValues &row) {
    const catalogue::Table &table = *change.table;
    const bool hasId =
        table.id && row.contains(formatName(QLatin1String(table.name), QLatin1String(table.id)));
    RowValues key;
    for (const char *column : identityColumns(table, hasId)) {
        const QString name = formatName(QLatin1String(table.name), QLatin1String(column));
        if (!isOfStore(table, name.toLower()))
            key.insert(name, row.value(name));
    }
    return key;
}

/// What could not be asked is no answer.
[[noreturn]] void refuseReading(const QSqlQuery &query) {
    requireServer(query);
    throw Failure(
        QStringLiteral("the store cannot be read (%1); check it, or the server. Nothing was changed")
            .arg(query.lastError().databaseText().simplified()));
}

} // namespace

PatchedRows::PatchedRows(const NetworkRows &rows, RowsTakenBack *taken)
    : mRows(rows), mTaken(taken), mIsSqlite(engine::isSqlite(rows.db())) {}

QString PatchedRows::make(const RowChange &change) {
    const StoreTable *table = mRows.table(QLatin1String(change.table->name));
    if (!table)
        return QStringLiteral("the store has no table %1").arg(QLatin1String(change.table->name));
    for (const RowValues &values : {change.key, change.before, change.after}) {
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            if (!table->column(value.key()))
                return QStringLiteral("table %1 of the store has no column %2").arg(table->name, value.key());
        }
    }
    switch (change.kind) {
    case RowChange::Kind::Added:
        return add(change, *table);
    case RowChange::Kind::Removed:
        return remove(change, *table);
    default:
        return update(change, *table);
    }
}

QString PatchedRows::add(const RowChange &change, const StoreTable &table) {
    const bool hasKey = !formatSchema().tables.value(table.name.toLower()).key.isEmpty();
    if (hasKey && !find(change, table, keyOf(change, change.after)).isEmpty())
        return QStringLiteral("the row is there already");
    QStringList names;
    QStringList places;
    QVector<Binding> values;
    for (const StoreColumn &column : table.columns) {
        QVariant value = change.after.value(formatName(table.name, column.key));
        if (column.key == QLatin1String("netid"))
            value = qint64(mRows.netId());
        else if (isOfStore(*change.table, column.key))
            value = QStringLiteral("F"); // there is one by default already
        names.append(quotedName(column.name));
        places.append(QStringLiteral("?"));
        values.append({&column, value});
    }
    return run(QStringLiteral("insert into %1(%2) values(%3)")
                   .arg(quotedName(table.name), names.join(QLatin1Char(',')), places.join(QLatin1Char(','))),
               values, {&change, {}, change.after});
}

QString PatchedRows::update(const RowChange &change, const StoreTable &table) {
    const QList<StoredRow> rows = find(change, table, change.key);
    if (rows.size() != 1)
        return rows.isEmpty() ? QStringLiteral("there is no such row")
                              : QStringLiteral("%1 rows answer to it").arg(rows.size());
    QStringList assignments;
    QVector<Binding> values;
    RowValues changed = rows.first().values;
    for (auto column = change.before.cbegin(); column != change.before.cend(); ++column) {
        const QVariant stored = rows.first().values.value(column.key());
        if (!rowvalue::areSame(stored, column.value()))
            return QStringLiteral("%1 is %2 and not %3")
                .arg(column.key(), shown(stored), shown(column.value()));
        const StoreColumn *target = table.column(column.key());
        assignments.append(quotedName(target->name) + QStringLiteral(" = ?"));
        values.append({target, change.after.value(column.key())});
        changed.insert(column.key(), change.after.value(column.key()));
    }
    if (assignments.isEmpty())
        return {};
    return run(
        QStringLiteral("update %1 set %2 where %3")
            .arg(quotedName(table.name), assignments.join(QLatin1Char(',')), rows.first().place.toString()),
        values, {&change, rows.first().values, changed});
}

QString PatchedRows::remove(const RowChange &change, const StoreTable &table) {
    if (qstrcmp(change.table->name, "Net") == 0 && mRows.hasSeveralNetworks())
        return QStringLiteral("the record of a network stays with it; \"morastore remove\" removes both");
    const QList<StoredRow> rows = find(change, table, keyOf(change, change.before));
    const auto isIt = [&change](const StoredRow &row) {
        return std::all_of(row.values.keyBegin(), row.values.keyEnd(), [&](const QString &column) {
            return rowvalue::areSame(row.values.value(column), change.before.value(column));
        });
    };
    const auto row = std::find_if(rows.begin(), rows.end(), isIt);
    if (row == rows.end())
        return rows.isEmpty() ? QStringLiteral("there is no such row")
                              : QStringLiteral("the row is another one");
    return run(QStringLiteral("delete from %1 where %2").arg(quotedName(table.name), row->place.toString()),
               {}, {&change, row->values, {}});
}

/// The rows with these values in their columns, with all that counts.
QList<PatchedRows::StoredRow> PatchedRows::find(const RowChange &change, const StoreTable &table,
                                                const RowValues &key) const {
    const QString address = mIsSqlite ? QStringLiteral("rowid") : QStringLiteral("ctid");
    QStringList names{mIsSqlite ? address : QStringLiteral("cast(ctid as text)")};
    for (const StoreColumn &column : table.columns)
        names.append(quotedName(column.name));
    const QString net = mRows.condition(table);
    // Leaves of a partitioned table count their places each for itself.
    const QString ofNetwork = QString(net).replace(QLatin1String(" where "), QLatin1String(" and "));
    QStringList conditions{net.isEmpty() ? QStringLiteral(" where 1 = 1") : net};
    QVariantList values;
    for (auto column = key.cbegin(); column != key.cend(); ++column) {
        const StoreColumn *asked = table.column(column.key());
        QVariant value = column.value();
        // What the column cannot hold is in no row.
        if (!asked || !rowvalue::fit(value, asked->kind, mIsSqlite))
            return {};
        conditions.append(quotedName(asked->name) +
                          (value.isValid() ? QStringLiteral(" = ?") : QStringLiteral(" is null")));
        if (value.isValid())
            values.append(value);
    }
    QSqlQuery query(mRows.db());
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("select %1 from %2%3")
                      .arg(names.join(QLatin1Char(',')), quotedName(table.name),
                           conditions.join(QStringLiteral(" and "))));
    for (const QVariant &value : qAsConst(values))
        query.addBindValue(value);
    if (!query.exec())
        refuseReading(query);
    QList<StoredRow> rows;
    while (query.next()) {
        StoredRow row;
        row.place = mIsSqlite ? QStringLiteral("rowid = %1").arg(query.value(0).toLongLong())
                              : QStringLiteral("ctid = '%1'%2").arg(query.value(0).toString(), ofNetwork);
        for (int i = 0; i < table.columns.size(); ++i) {
            const StoreColumn &column = table.columns[i];
            if (!isOfStore(*change.table, column.key))
                row.values.insert(formatName(table.name, column.key),
                                  rowvalue::fromDriver(query.value(i + 1), mIsSqlite, column.kind));
        }
        rows.append(row);
    }
    if (query.lastError().isValid())
        refuseReading(query);
    return rows;
}

QString PatchedRows::run(const QString &sql, QVector<Binding> values, const Effect &effect) const {
    QSqlQuery query(mRows.db());
    query.prepare(asRecorded(mRows.db(), sql));
    for (auto &[column, value] : values) {
        if (!rowvalue::fit(value, column->kind, mIsSqlite))
            return QStringLiteral("column %1 cannot keep the value \"%2\"").arg(column->name, shown(value));
        query.addBindValue(value);
    }
    if (!query.exec()) {
        requireServer(query);
        return QStringLiteral("the store refuses it (%1)").arg(query.lastError().databaseText().simplified());
    }
    if (query.numRowsAffected() != 1)
        return QStringLiteral("the store has not made the change");
    if (mTaken) {
        const catalogue::Table &table = *effect.change->table;
        const auto valuesOf = [&table](const RowValues &row) {
            return [&table, &row](const StoreColumn &column) {
                return row.value(formatName(QLatin1String(table.name), column.key));
            };
        };
        if (!effect.before.isEmpty())
            mTaken->was(table, valuesOf(effect.before));
        if (!effect.after.isEmpty())
            mTaken->is(table, valuesOf(effect.after));
    }
    return {};
}

QString PatchedRows::danglingAfter(const RowChange &change) const {
    const catalogue::Table &table = *change.table;
    if (change.kind == RowChange::Kind::Removed) {
        const QVariant id =
            table.id ? change.before.value(formatName(QLatin1String(table.name), QLatin1String(table.id)))
                     : QVariant();
        return id.isValid() && isReferredTo(table, id) ? QStringLiteral("others refer to the row")
                                                       : QString();
    }
    for (const catalogue::Reference &reference : table.references) {
        const QString column = formatName(QLatin1String(table.name), QLatin1String(reference.column));
        const QVariant id = change.after.value(column);
        if (reference.bond == catalogue::Bond::HostNumber || id.toLongLong() == 0)
            continue;
        const std::vector<const char *> targets = reference.table
                                                      ? std::vector<const char *>{reference.table}
                                                      : std::vector<const char *>{"Link", "Connector"};
        const bool leads = std::any_of(targets.begin(), targets.end(), [&](const char *name) {
            const catalogue::Table *target = catalogue::find(QLatin1String(name));
            return hasRow(*target, target->id, id);
        });
        if (!leads)
            return QStringLiteral("%1 %2 is not there").arg(column, shown(id));
    }
    return {};
}

bool PatchedRows::isReferredTo(const catalogue::Table &to, const QVariant &id) const {
    const bool isRoad = qstrcmp(to.name, "Link") == 0 || qstrcmp(to.name, "Connector") == 0;
    for (const catalogue::Table &table : catalogue::tables()) {
        for (const catalogue::Reference &reference : table.references) {
            const bool refers = reference.table ? qstrcmp(reference.table, to.name) == 0 : isRoad;
            if (refers && reference.bond != catalogue::Bond::HostNumber &&
                hasRow(table, reference.column, id))
                return true;
        }
    }
    return false;
}

bool PatchedRows::hasRow(const catalogue::Table &entry, const char *column, const QVariant &value) const {
    const StoreTable *table = mRows.table(QLatin1String(entry.name));
    const StoreColumn *asked = table ? table->column(QLatin1String(column)) : nullptr;
    if (!asked)
        return false;
    const QString net = mRows.condition(*table);
    QSqlQuery query(mRows.db());
    query.prepare(QStringLiteral("select 1 from %1%2 %3 %4 = ? limit 1")
                      .arg(quotedName(table->name), net,
                           net.isEmpty() ? QStringLiteral("where") : QStringLiteral("and"),
                           quotedName(asked->name)));
    query.addBindValue(value);
    if (!query.exec())
        refuseReading(query);
    const bool has = query.next();
    if (!has && query.lastError().isValid())
        refuseReading(query);
    return has;
}

} // namespace moratools
