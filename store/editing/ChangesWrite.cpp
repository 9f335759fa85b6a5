#include "store/editing/Changes.h"
#include "store/ids/Identifiers.h"

using catalogue::Table;

namespace {

void set(RowSink &sink, int place, const Cell &cell) {
    std::visit(
        [&](const auto &value) {
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>)
                sink.setNull(place);
            else
                sink.set(place, value);
        },
        cell);
}

QString joined(const QStringList &parts, const char *separator) {
    return parts.join(QLatin1String(separator));
}

/// "laneID = ? and vehicleTypeCode = ?"; what holds of every row without a key.
QString isTheRow(const Table &table) {
    QStringList parts;
    for (const char *column : table.key)
        parts.append(QLatin1String(column) + QLatin1String(" = ?"));
    return parts.isEmpty() ? QStringLiteral("1 = 1") : joined(parts, " and ");
}

} // namespace

bool Changes::write(const Table &table, const Work &work) {
    return updateRows(table, work) && insertRows(table, work) && keepIds(table, work);
}

bool Changes::updateRows(const Table &table, const Work &work) {
    std::map<std::vector<int>, std::vector<std::size_t>> rowsOf;
    for (const Update &update : work.updates)
        rowsOf[update.columns].push_back(update.row);
    const RecordedTable *recorded = mRecorded.find(table);
    for (const auto &[columns, rows] : rowsOf) {
        QStringList names;
        for (const int column : columns)
            names.append(QString::fromLatin1(recorded->columns[std::size_t(column)]) + QLatin1String(" = ?"));
        const QString sql = QLatin1String("update ") + QLatin1String(table.name) + QLatin1String(" set ") +
                            joined(names, ", ") + QLatin1String(" where ") + mRows.ofNet() + isTheRow(table);
        const auto sink = statementSink(mStore, sql, names.size() + int(table.key.size()));
        for (const std::size_t row : rows) {
            int place = 0;
            for (const int column : columns)
                set(*sink, place++, recorded->rows[row][std::size_t(column)]);
            for (const long value : keyOf(table, *recorded, row))
                sink->set(place++, qint64(value));
            if (!sink->write())
                return false;
        }
        if (!sink->finish())
            return false;
    }
    return true;
}

bool Changes::insertRows(const Table &table, const Work &work) {
    if (work.inserts.empty())
        return true;
    const RecordedTable *recorded = mRecorded.find(table);
    QStringList names;
    for (const QByteArray &column : recorded->columns)
        names.append(QString::fromLatin1(column));
    const auto sink = statementSink(mStore, insertStatement(QLatin1String(table.name), names), names.size());
    for (const std::size_t row : work.inserts) {
        for (int i = 0; i < names.size(); ++i)
            set(*sink, i, recorded->rows[row][std::size_t(i)]);
        if (!sink->write())
            return false;
    }
    return sink->finish();
}

bool Changes::deleteRows(const Table &table, const Work &work) {
    if (work.deletes.empty())
        return true;
    const QString sql = QLatin1String("delete from ") + QLatin1String(table.name) + QLatin1String(" where ") +
                        mRows.ofNet() + isTheRow(table);
    const auto sink = statementSink(mStore, sql, int(table.key.size()));
    for (const Key &key : work.deletes) {
        int place = 0;
        for (const long value : key)
            sink->set(place++, qint64(value));
        if (!sink->write())
            return false;
    }
    return sink->finish();
}

bool Changes::keepIds(const Table &table, const Work &work) {
    const RecordedTable *recorded = mRecorded.find(table);
    const int column = recorded && table.id ? recorded->indexOf(table.id) : -1;
    // The codes of vehicle types are the host's: no counter gives them.
    if (column < 0 || work.inserts.empty() || (table.hasSharedIds && !table.isIdTold))
        return true;
    Ids ids;
    for (const std::size_t row : work.inserts)
        ids.push_back(RecordedTable::whole(recorded->rows[row][std::size_t(column)]));
    return identifiers::keepFrom(mStore, QLatin1String(table.name), ids);
}

/// Reads give such rows in the order in which they were written, which on SQLite is that of their row numbers.
/// A server keeps no order: what is inserted between others comes back where it finds room.
bool Changes::keepOrder(const Table &table) {
    const RecordedTable *recorded = mRecorded.find(table);
    if (!recorded || !mStore.isSqlite())
        return true;
    const catalogue::Reference &owner = *table.owner();
    const int ownerColumn = recorded->indexOf(owner.column);
    std::map<long, std::vector<Key>> wanted;
    for (std::size_t row = 0; row < recorded->rows.size(); ++row)
        wanted[RecordedTable::whole(recorded->rows[row][std::size_t(ownerColumn)])].push_back(
            keyOf(table, *recorded, row));
    Ids owners;
    for (const auto &[id, keys] : wanted)
        owners.push_back(id);
    std::vector<QByteArray> columns{owner.column};
    columns.insert(columns.end(), table.key.begin(), table.key.end());
    std::map<long, std::vector<Key>> there;
    if (!mRows.forEach(table, columns, owner.column, owners, [&](Query &row) {
            Key key;
            for (const char *column : table.key)
                key.push_back(row.id(column));
            there[row.id(owner.column)].push_back(std::move(key));
        }))
        return false;
    const QString sql = QStringLiteral("update %1 set rowid = (select max(rowid) + 1 from %1) where ")
                            .arg(QLatin1String(table.name)) +
                        mRows.ofNet() + isTheRow(table);
    std::unique_ptr<RowSink> sink;
    for (const auto &[id, keys] : wanted) {
        const std::vector<Key> &now = there[id];
        const auto first = std::mismatch(keys.begin(), keys.end(), now.begin(), now.end()).first;
        for (auto key = first; key != keys.end(); ++key) {
            if (!sink)
                sink = statementSink(mStore, sql, int(table.key.size()));
            int place = 0;
            for (const long value : *key)
                sink->set(place++, qint64(value));
            if (!sink->write())
                return false;
        }
    }
    return !sink || sink->finish();
}
