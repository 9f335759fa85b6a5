#include "store/editing/Changes.h"

#include <set>

using catalogue::Bond;

namespace {

bool isNamed(const QByteArray &column, const char *name) {
    return name && qstricmp(column.constData(), name) == 0;
}

/// Whether two links that share a row mean the same by it. A height comes from each link's own line.
bool meanTheSame(const RecordedTable &rows, const std::vector<Cell> &a, const std::vector<Cell> &b) {
    for (std::size_t i = 0; i < rows.columns.size(); ++i) {
        if (a[i] != b[i] && !isNamed(rows.columns[i], "Z"))
            return false;
    }
    return true;
}

} // namespace

bool Changes::isFixed(const Table &table, const QByteArray &column) {
    return isNamed(column, "NetId") || isNamed(column, table.id) ||
           std::any_of(table.key.begin(), table.key.end(),
                       [&column](const char *key) { return isNamed(column, key); });
}

int Changes::Stored::indexOf(const char *column) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (isNamed(columns[i], column))
            return int(i);
    }
    return -1;
}

Changes::Key Changes::keyOf(const Table &table, const RecordedTable &rows, std::size_t row) {
    Key key;
    for (const char *column : table.key)
        key.push_back(RecordedTable::whole(rows.rows[row][std::size_t(rows.indexOf(column))]));
    return key;
}

Changes::Key Changes::keyOf(const Table &table, const Stored &rows, std::size_t row) {
    Key key;
    for (const char *column : table.key)
        key.push_back(Query::narrowedId(rows.rows[row][std::size_t(rows.indexOf(column))]));
    return key;
}

bool Changes::compare() {
    for (const Table &table : catalogue::tables()) {
        Work work;
        if (catalogue::isCarried(table) ? !compareShared(table, work) : !compareTable(table, work))
            return false;
        if (!work.inserts.empty() || !work.updates.empty() || !work.deletes.empty() || !work.gone.empty())
            mWork.emplace(&table, std::move(work));
    }
    return true;
}

std::vector<int> Changes::differences(const Table &table, const RecordedTable &recorded, std::size_t now,
                                      const Stored &stored, std::size_t before) {
    std::vector<int> columns;
    for (std::size_t i = 0; i < recorded.columns.size(); ++i) {
        if (isFixed(table, recorded.columns[i]))
            continue;
        const int place = stored.indexOf(recorded.columns[i].constData());
        if (!readsAs(stored.rows[before][std::size_t(place)], recorded.rows[now][i]))
            columns.push_back(int(i));
    }
    return columns;
}

bool Changes::compareTable(const Table &table, Work &work) {
    struct Group {
        std::vector<std::size_t> now;
        std::vector<std::size_t> before;
    };
    std::map<Key, Group> groups;
    const RecordedTable &recorded = mRecorded.of(table);
    const Stored &stored = mStored[&table];
    for (std::size_t i = 0; i < recorded.rows.size(); ++i)
        groups[keyOf(table, recorded, i)].now.push_back(i);
    for (std::size_t i = 0; i < stored.rows.size(); ++i)
        groups[keyOf(table, stored, i)].before.push_back(i);
    const bool isNumbered = table.id && table.key.front() == table.id;
    for (const auto &[key, group] : groups) {
        if (isNumbered && group.now.size() > 1)
            return refuse(table, key.front(), QStringLiteral("is there twice: draw an id of its own."));
        if (group.now.empty() && isNumbered)
            work.gone.push_back(key.front());
        else if (!compareGroup(table, recorded, stored, group.now, group.before, work))
            work.deletes.push_back(key);
    }
    // As they come in the lists: what has no order of its own is read as it was written.
    std::sort(work.inserts.begin(), work.inserts.end());
    return true;
}

bool Changes::compareGroup(const Table &table, const RecordedTable &recorded, const Stored &stored,
                           const std::vector<std::size_t> &now, const std::vector<std::size_t> &before,
                           Work &work) {
    if (now.size() == 1 && before.size() == 1) {
        std::vector<int> columns = differences(table, recorded, now.front(), stored, before.front());
        if (!columns.empty())
            work.updates.push_back({now.front(), std::move(columns)});
        return true;
    }
    bool isSame = now.size() == before.size();
    for (std::size_t i = 0; isSame && i < now.size(); ++i)
        isSame = differences(table, recorded, now[i], stored, before[i]).empty();
    if (isSame)
        return true;
    work.inserts.insert(work.inserts.end(), now.begin(), now.end());
    return before.empty();
}

bool Changes::compareShared(const Table &table, Work &work) {
    const RecordedTable &recorded = mRecorded.of(table);
    const Stored &stored = mStored[&table];
    std::map<long, std::size_t> storedOf;
    for (std::size_t i = 0; i < stored.rows.size(); ++i)
        storedOf.emplace(keyOf(table, stored, i).front(), i);
    std::map<long, std::vector<std::size_t>> recordedOf;
    for (std::size_t i = 0; i < recorded.rows.size(); ++i)
        recordedOf[keyOf(table, recorded, i).front()].push_back(i);
    for (const auto &[id, rows] : recordedOf) {
        const auto before = storedOf.find(id);
        const std::size_t *first = nullptr;
        for (const std::size_t &row : rows) {
            // One that is as it was comes from a link that has not heard of the change of another one.
            if (before != storedOf.end() && differences(table, recorded, row, stored, before->second).empty())
                continue;
            if (first && !meanTheSame(recorded, recorded.rows[*first], recorded.rows[row]))
                return refuse(table, id,
                              QStringLiteral("is shared by links that give it different values: give it the "
                                             "same in each."));
            first = first ? first : &row;
        }
        if (!first)
            continue;
        if (before == storedOf.end())
            work.inserts.push_back(*first);
        else
            work.updates.push_back({*first, differences(table, recorded, *first, stored, before->second)});
        mWritten[&table].emplace(id, *first);
    }
    Ids left;
    for (const auto &[id, row] : storedOf) {
        if (recordedOf.count(id) == 0)
            left.push_back(id);
    }
    mShared.consider(table, left);
    return true;
}

void Changes::collectNames(const Table &table, const Work &work, Named &named) const {
    const RecordedTable *recorded = mRecorded.find(table);
    if (!recorded)
        return;
    for (const Reference &reference : table.references) {
        const int column = recorded->indexOf(reference.column);
        if (column < 0 || reference.bond == Bond::HostNumber)
            continue;
        const auto take = [&](std::size_t row) {
            const long id = RecordedTable::whole(recorded->rows[row][std::size_t(column)]);
            const NamedPlace place{&table, &reference, ownNumber(table, *recorded, row)};
            if (!reference.table)
                named.roads.emplace(id, place);
            else
                named.tables[catalogue::find(QLatin1String(reference.table))].emplace(id, place);
        };
        for (const std::size_t row : work.inserts)
            take(row);
        for (const Update &update : work.updates) {
            if (std::find(update.columns.begin(), update.columns.end(), column) != update.columns.end())
                take(update.row);
        }
    }
}

long Changes::ownNumber(const Table &table, const RecordedTable &rows, std::size_t row) {
    const Reference *owner = table.owner();
    const int place = rows.indexOf(table.id ? table.id : owner ? owner->column : "");
    return place < 0 ? 0 : RecordedTable::whole(rows.rows[row][std::size_t(place)]);
}

bool Changes::requireNamed(const std::map<long, NamedPlace> &places,
                           const std::vector<const Table *> &targets) const {
    Ids missing;
    for (const auto &[id, place] : places)
        missing.push_back(id);
    for (const Table *target : targets) {
        Ids known = recordedIds(*target);
        if (!mRows.forEach(*target, {target->id}, target->id, missing,
                           [&](Query &row) { known.push_back(row.id(target->id)); }))
            return false;
        settle(known);
        Ids left;
        std::set_difference(missing.begin(), missing.end(), known.begin(), known.end(),
                            std::back_inserter(left));
        missing.swap(left);
    }
    for (const long id : missing) {
        const NamedPlace &place = places.at(id);
        if (id <= 0 && place.reference->mayBeNone)
            continue;
        const QString word = place.reference->table
                                 ? catalogue::wordFor(QLatin1String(place.reference->table))
                                 : QStringLiteral("link or connector");
        return refuse(*place.from, place.row,
                      id == 0 ? QStringLiteral("names no %1: its id is 0.").arg(word)
                              : QStringLiteral("names %1 %2, which the network does not have.")
                                    .arg(word, QString::number(id)));
    }
    return true;
}

bool Changes::referencesLead() const {
    static const std::vector<const Table *> roads = {catalogue::find(QStringLiteral("Link")),
                                                     catalogue::find(QStringLiteral("Connector"))};
    Named named;
    for (const auto &[table, work] : mWork)
        collectNames(*table, work, named);
    for (const auto &[table, places] : named.tables) {
        if (!requireNamed(places, {table}))
            return false;
    }
    return requireNamed(named.roads, roads);
}
