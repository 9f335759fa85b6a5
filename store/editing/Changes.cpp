#include "store/editing/Changes.h"

#include "store/editing/Removal.h"
#include "store/ids/Identifiers.h"

using catalogue::Bond;
using catalogue::Reference;
using catalogue::Table;

namespace {

/// How many of the objects that are in the way a refusal names.
constexpr int kNamed = 5;

const Table &tableOf(const Reference &reference) {
    return *catalogue::find(QLatin1String(reference.table));
}

void include(Ids &all, const Ids &ids) {
    all.insert(all.end(), ids.begin(), ids.end());
    settle(all);
}

QString beginning(QString word) {
    word[0] = word.at(0).toUpper();
    return word;
}

} // namespace

Changes::Changes(const Store &store, const char *only)
    : mStore(store), mRows(store), mRecorded(only), mShared(mRows) {}

void Changes::put(const Table &table, const Ids &ids) {
    include(mObjects[&table], ids);
}

void Changes::change(const Table &table, const Ids &ids) {
    put(table, ids);
    include(mKnown[&table], ids);
}

void Changes::add(const Table &table, const Ids &ids) {
    put(table, ids);
    include(mAdded[&table], ids);
}

void Changes::remove(const Table &table, const Ids &ids) {
    letGo(table, ids);
    include(mFound[&table], ids);
}

void Changes::letGo(const Table &table, const Ids &ids) {
    include(mRemoved[&table], ids);
}

bool Changes::refuse(const Table &table, long id, const QString &reason, FailureKind kind) const {
    CallDbResult failure;
    failure.error = beginning(catalogue::wordFor(QLatin1String(table.name))) + QLatin1Char(' ') +
                    QString::number(id) + QLatin1Char(' ') + reason;
    failure.kind = kind;
    failure.table = QLatin1String(table.name);
    failure.id = failure.objectId = id;
    return recordFailure(mStore.failures(), failure);
}

Ids Changes::recordedIds(const Table &table) const {
    Ids ids;
    const RecordedTable *recorded = mRecorded.find(table);
    const int column = recorded && table.id ? recorded->indexOf(table.id) : -1;
    if (column < 0)
        return ids;
    for (const auto &row : recorded->rows)
        ids.push_back(RecordedTable::whole(row[std::size_t(column)]));
    settle(ids);
    return ids;
}

bool Changes::apply(Cascade cascade) {
    if (!mRows.isGood() || !mStore.isUsable())
        return false;
    if (mStore.hasMisspeltSerialNumber())
        return mStore.fail(
            {}, QStringLiteral("The store is of the first generation: bring it forward before it is "
                               "changed."));
    if (!readStored() || !requirePresence() || !requireRemoved() || !compare() || !referencesLead())
        return false;
    const std::vector<Table> &tables = catalogue::tables();
    for (auto table = tables.rbegin(); table != tables.rend(); ++table) {
        const auto work = mWork.find(&*table);
        if (work != mWork.end() && !deleteRows(*table, work->second))
            return false;
    }
    for (const Table &table : tables) {
        const auto work = mWork.find(&table);
        if (work != mWork.end() && !write(table, work->second))
            return false;
    }
    if (!removeGone(cascade) || !mShared.removeUnused())
        return false;
    for (const Table &table : tables) {
        if (table.isAsWritten && !keepOrder(table))
            return false;
    }
    return true;
}

bool Changes::applyColumns(const Table &table, const QStringList &columns) {
    const RecordedTable *recorded = mRecorded.find(table);
    if (!mRows.isGood() || !mStore.isUsable() || !recorded)
        return mRows.isGood() && mStore.isUsable();
    std::vector<int> places;
    for (const QString &column : columns) {
        const int place = recorded->indexOf(column.toLatin1().constData());
        if (place < 0 || isFixed(table, recorded->columns[std::size_t(place)]))
            return mStore.fail({}, QStringLiteral("Table %1 has no column %2 that could be changed.")
                                       .arg(QLatin1String(table.name), column));
        places.push_back(place);
    }
    change(table, recordedIds(table));
    if (!mRows.forEach(table, {table.id}, table.id, mObjects[&table],
                       [&](Query &row) { mStored[&table].rows.push_back({row.value(table.id)}); }))
        return false;
    mStored[&table].columns = {table.id};
    Work &work = mWork[&table];
    for (std::size_t row = 0; row < recorded->rows.size(); ++row)
        work.updates.push_back({row, places});
    return requirePresence() && referencesLead() && updateRows(table, work);
}

bool Changes::readRows(const Table &table, const char *column, const Ids &ids) {
    Stored &stored = mStored[&table];
    if (stored.columns.empty()) {
        const auto add = [&stored](const char *name) {
            for (const QByteArray &known : stored.columns) {
                if (qstricmp(known.constData(), name) == 0)
                    return;
            }
            stored.columns.emplace_back(name);
        };
        for (const char *key : table.key)
            add(key);
        for (const Reference &reference : table.references) {
            if (reference.bond == Bond::Part || reference.bond == Bond::Carried)
                add(reference.column);
        }
        if (const RecordedTable *recorded = mRecorded.find(table)) {
            for (const QByteArray &name : recorded->columns)
                add(name.constData());
        }
        if (stored.columns.empty())
            return true;
    }
    return mRows.forEach(table, stored.columns, column, ids, [&stored](Query &row) {
        StoredRow values;
        values.reserve(stored.columns.size());
        for (const QByteArray &name : stored.columns)
            values.push_back(row.value(name.constData()));
        stored.rows.push_back(std::move(values));
    });
}

bool Changes::readStored() {
    for (const auto &[table, ids] : mObjects) {
        if (!readRows(*table, table->id, ids))
            return false;
    }
    for (const Table *table : mReplaced) {
        if (!readRows(*table, nullptr, {}))
            return false;
    }
    return readParts() && readCarried() && readMoved();
}

Ids Changes::storedIds(const Table &table, const char *column) const {
    Ids ids;
    const auto stored = mStored.find(&table);
    if (stored == mStored.end())
        return ids;
    const int place = stored->second.indexOf(column);
    for (const StoredRow &row : stored->second.rows)
        ids.push_back(Query::narrowedId(row[std::size_t(place)]));
    settle(ids);
    return ids;
}

bool Changes::readParts() {
    for (const Table &table : catalogue::tables()) {
        const Reference *owner = table.owner();
        if (!owner || table.isAside || mObjects.count(&table) > 0)
            continue;
        const Table &ownerTable = tableOf(*owner);
        const auto objects = mObjects.find(&ownerTable);
        const Ids owners = objects != mObjects.end() ? objects->second : storedIds(ownerTable, ownerTable.id);
        if (!owners.empty() && !readRows(table, owner->column, owners))
            return false;
    }
    return true;
}

bool Changes::readCarried() {
    const std::vector<Table> &tables = catalogue::tables();
    for (auto table = tables.rbegin(); table != tables.rend(); ++table) {
        if (!catalogue::isCarried(*table))
            continue;
        Ids ids = recordedIds(*table);
        for (const Table &from : tables) {
            for (const Reference &reference : from.references) {
                if (reference.bond != Bond::Carried || &tableOf(reference) != &*table)
                    continue;
                const Ids carried = storedIds(from, reference.column);
                ids.insert(ids.end(), carried.begin(), carried.end());
            }
        }
        settle(ids);
        if (!ids.empty() && !readRows(*table, table->id, ids))
            return false;
    }
    return true;
}

bool Changes::readMoved() {
    for (const Table &table : catalogue::tables()) {
        const Reference *owner = table.owner();
        const RecordedTable *recorded = mRecorded.find(table);
        if (!owner || !recorded || !table.id || table.key.front() != table.id || mObjects.count(&table) > 0)
            continue;
        const Ids now = recordedIds(table);
        const Ids before = storedIds(table, table.id);
        Ids others;
        std::set_difference(now.begin(), now.end(), before.begin(), before.end(), std::back_inserter(others));
        long id = 0;
        long ofOwner = 0;
        if (!mRows.forEach(table, {table.id, owner->column}, table.id, others, [&](Query &row) {
                id = row.id(table.id);
                ofOwner = row.id(owner->column);
            }))
            return false;
        if (id != 0)
            return refuse(
                table, id,
                QStringLiteral("belongs to %1 %2 already: change both, or draw an id of its own.")
                    .arg(catalogue::wordFor(QLatin1String(owner->table)), QString::number(ofOwner)));
    }
    return true;
}

bool Changes::requirePresence() const {
    for (const auto &[table, ids] : mKnown) {
        const Ids there = storedIds(*table, table->id);
        for (const long id : ids) {
            if (!contains(there, id))
                return refuse(*table, id, QStringLiteral("is not in the store."), FailureKind::NotFound);
        }
    }
    for (const auto &[table, ids] : mAdded) {
        const Ids there = storedIds(*table, table->id);
        for (const long id : ids) {
            if (contains(there, id))
                return refuse(*table, id, QStringLiteral("is in the store already."));
        }
    }
    return true;
}

bool Changes::requireRemoved() const {
    for (const auto &[table, ids] : mFound) {
        Ids there;
        const char *column = table->id;
        if (!mRows.forEach(*table, {column}, column, ids,
                           [&there, column](Query &row) { there.push_back(row.id(column)); }))
            return false;
        settle(there);
        const auto missing = std::mismatch(ids.begin(), ids.end(), there.begin(), there.end()).first;
        if (missing != ids.end())
            return refuse(*table, *missing, QStringLiteral("is not in the store."), FailureKind::NotFound);
    }
    return true;
}

bool Changes::removeGone(Cascade cascade) {
    Removal removal(mRows);
    const Table *first = nullptr;
    long firstId = 0;
    const auto start = [&](const Table &table, const Ids &ids) {
        if (ids.empty())
            return;
        if (!first) {
            first = &table;
            firstId = ids.front();
        }
        removal.start(table, ids);
    };
    for (const auto &[table, ids] : mRemoved)
        start(*table, ids);
    for (const auto &[table, work] : mWork)
        start(*table, work.gone);
    if (!first)
        return true;
    for (const auto &[table, ids] : mObjects)
        removal.writtenBeside(*table, ids);
    if (!removal.find())
        return false;
    if (cascade == Cascade::Refuse && removal.concernsOthers())
        return refuse(*first, firstId,
                      QStringLiteral("cannot be removed: %1. Remove these first, or take them along.")
                          .arg(listed(removal.referrers())));
    static const Table &link = *catalogue::find(QStringLiteral("Link"));
    static const Table &vertexOrder = *catalogue::find(QStringLiteral("LinkVertex"));
    const Ids links = removal.going(link);
    return mShared.considerWhatCarry(link, link.id, links) &&
           mShared.considerWhatCarry(vertexOrder, "linkID", links) && removal.apply();
}

QString Changes::listed(const std::vector<NetObject> &referrers) {
    QStringList named;
    int others = 0;
    for (const NetObject &object : referrers) {
        if (object.fate == Fate::Part)
            continue;
        if (named.size() < kNamed)
            named.append(object.text);
        else
            ++others;
    }
    const QString all = named.join(QLatin1String(", "));
    return others > 0 ? QStringLiteral("%1 and %2 more refer to it").arg(all, QString::number(others))
                      : all + QLatin1String(named.size() == 1 ? " refers to it" : " refer to it");
}
