#include "store/editing/SharedParts.h"

using catalogue::Bond;
using catalogue::Reference;
using catalogue::Table;

void SharedParts::consider(const Table &table, const Ids &ids) {
    Ids &considered = mConsidered[&table];
    considered.insert(considered.end(), ids.begin(), ids.end());
}

bool SharedParts::considerWhatCarry(const Table &table, const char *column, const Ids &ids) {
    for (const Reference &reference : table.references) {
        if (reference.bond != Bond::Carried)
            continue;
        Ids carried;
        if (!mRows.forEach(table, {reference.column}, column, ids,
                           [&](Query &row) { carried.push_back(row.id(reference.column)); }))
            return false;
        consider(*catalogue::find(QLatin1String(reference.table)), carried);
    }
    return true;
}

bool SharedParts::findUsed(const Table &table, const Ids &ids, Ids &used) const {
    for (const Table &from : catalogue::tables()) {
        for (const Reference &reference : from.references) {
            const bool carries = reference.bond == Bond::Carried && qstrcmp(reference.table, table.name) == 0;
            if (carries && !mRows.forEach(from, {reference.column}, reference.column, ids,
                                          [&](Query &row) { used.push_back(row.id(reference.column)); }))
                return false;
        }
    }
    settle(used);
    return true;
}

bool SharedParts::removeUnused() {
    // What refers to others comes behind them: a node lets go of its vertex before that is looked at.
    const std::vector<Table> &tables = catalogue::tables();
    for (auto table = tables.rbegin(); table != tables.rend(); ++table) {
        const auto considered = mConsidered.find(&*table);
        if (considered == mConsidered.end())
            continue;
        Ids ids = considered->second;
        settle(ids);
        Ids used;
        if (!findUsed(*table, ids, used))
            return false;
        Ids unused;
        std::set_difference(ids.begin(), ids.end(), used.begin(), used.end(), std::back_inserter(unused));
        if (!considerWhatCarry(*table, table->id, unused) || !mRows.remove(*table, table->id, unused))
            return false;
    }
    return true;
}
