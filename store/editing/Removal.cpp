#include "store/editing/Removal.h"

#include <limits>

namespace {

using catalogue::Bond;
using catalogue::Reference;
using catalogue::Table;

/// In the place of an object among the referrers: it is none, it was asked for.
constexpr std::size_t kAskedFor = std::numeric_limits<std::size_t>::max();

const Table &link() {
    static const Table &table = *catalogue::find(QStringLiteral("Link"));
    return table;
}

const Table &connector() {
    static const Table &table = *catalogue::find(QStringLiteral("Connector"));
    return table;
}

bool refersTo(const Reference &reference, const Table &to) {
    return reference.table ? qstrcmp(reference.table, to.name) == 0 : &to == &link() || &to == &connector();
}

/// Objects of a life of their own, and parts that others refer to.
bool isNamed(const Table &table) {
    static const QStringList parts = {QStringLiteral("Lane"), QStringLiteral("SignalPhase"),
                                      QStringLiteral("BusStationLine"),
                                      QStringLiteral("RoutingLaneConnector")};
    const catalogue::Kind *kind = catalogue::kindIn(QLatin1String(table.name));
    return (kind && kind->word) || parts.contains(QLatin1String(table.name));
}

/// The column that numbers the rows, where the store has one: lane connectors of one network have none, and
/// nothing refers to them.
const char *idOf(const Table &table) {
    return qstrcmp(table.name, "LaneConnector") == 0 ? nullptr : table.id;
}

} // namespace

void Removal::start(const Table &table, Ids ids) {
    settle(ids);
    go(table, ids);
}

bool Removal::isGoing(const Table &table, long id) const {
    const auto going = mGoing.find(&table);
    return going != mGoing.end() && contains(going->second.ids, id);
}

void Removal::go(const Table &table, const Ids &ids) {
    Going &going = mGoing[&table];
    Ids fresh;
    std::set_difference(ids.begin(), ids.end(), going.ids.begin(), going.ids.end(),
                        std::back_inserter(fresh));
    going.fresh.insert(going.fresh.end(), fresh.begin(), fresh.end());
    going.ids.insert(going.ids.end(), fresh.begin(), fresh.end());
    settle(going.ids);
}

void Removal::name(const Table &table, long id, Fate fate) {
    if (!isNamed(table))
        return;
    const auto [named, isNew] = mNamed.emplace(std::make_pair(&table, id), mReferrers.size());
    if (isNew) {
        const QString name = QLatin1String(table.name);
        mReferrers.push_back(
            {name, id, nullptr, catalogue::wordFor(name) + QLatin1Char(' ') + QString::number(id), fate});
    } else if (fate == Fate::Part && named->second != kAskedFor) {
        // It goes for what it refers to, and also as a part: that says more.
        mReferrers[named->second].fate = Fate::Part;
    }
}

bool Removal::find() {
    if (!mRows.isGood())
        return false;
    for (const auto &[table, going] : mGoing) {
        for (const long id : going.ids)
            mNamed.emplace(std::make_pair(table, id), kAskedFor);
    }
    for (bool isNew = true; isNew;) {
        isNew = false;
        for (const Table &table : catalogue::tables()) {
            const auto going = mGoing.find(&table);
            if (going == mGoing.end() || going->second.fresh.empty())
                continue;
            Ids ids;
            ids.swap(going->second.fresh);
            settle(ids);
            isNew = true;
            if (!findReferrers(table, ids))
                return false;
        }
    }
    const auto place = [](const NetObject &object) { return catalogue::find(object.table); };
    std::sort(mReferrers.begin(), mReferrers.end(), [&](const NetObject &a, const NetObject &b) {
        return place(a) != place(b) ? place(a) < place(b) : a.id < b.id;
    });
    // What goes after all does not only let go.
    mReferrers.erase(std::remove_if(mReferrers.begin(), mReferrers.end(),
                                    [&](const NetObject &object) {
                                        return object.fate == Fate::Loses &&
                                               isGoing(*place(object), object.id);
                                    }),
                     mReferrers.end());
    return true;
}

bool Removal::findReferrers(const Table &to, const Ids &ids) {
    for (const Table &from : catalogue::tables()) {
        for (const Reference &reference : from.references) {
            const bool isFollowed = reference.bond != Bond::Carried && reference.bond != Bond::HostNumber;
            if (isFollowed && refersTo(reference, to) && !followReference(from, reference, to, ids))
                return false;
        }
    }
    return true;
}

bool Removal::findRoadRows(const Table &from, const Reference &reference, const Table &to, const Ids &ids,
                           Ids &found) {
    // Where the other kind of road has the number, too, the row tells which is meant.
    const Table &other = &to == &link() ? connector() : link();
    Ids shared;
    if (!mRows.forEach(other, {other.id}, other.id, ids,
                       [&](Query &row) { shared.push_back(row.id(other.id)); }))
        return false;
    settle(shared);
    std::vector<QByteArray> columns{from.id, reference.column};
    if (reference.roadType)
        columns.emplace_back(reference.roadType);
    columns.insert(columns.end(), reference.lanes.begin(), reference.lanes.end());
    const auto written = mWritten.find(&from);
    return mRows.forEach(from, columns, reference.column, ids, [&](Query &row) {
        const long id = row.id(from.id);
        const long road = row.id(reference.column);
        const bool isWritten = written != mWritten.end() && contains(written->second, id);
        const auto valueOf = [&row](const char *column) { return row.value(column); };
        if (!contains(shared, road) ||
            (isWritten ? isGoing(other, road) : reference.saysConnector(valueOf) == (&to == &connector())))
            found.push_back(id);
    });
}

bool Removal::followReference(const Table &from, const Reference &reference, const Table &to,
                              const Ids &ids) {
    const Reference *owner = from.owner();
    const char *own = idOf(from);
    const Table *ownerTable = owner ? catalogue::find(QLatin1String(owner->table)) : nullptr;
    Ids found;
    Ids owners;
    if (!reference.table) {
        if (!findRoadRows(from, reference, to, ids, found))
            return false;
    } else {
        std::vector<QByteArray> columns;
        if (own)
            columns.emplace_back(own);
        if (owner)
            columns.emplace_back(owner->column);
        const bool read =
            columns.empty() || mRows.forEach(from, columns, reference.column, ids, [&](Query &row) {
                if (own)
                    found.push_back(row.id(own));
                if (owner)
                    owners.push_back(row.id(owner->column));
            });
        if (!read)
            return false;
    }
    settle(found);
    settle(owners);
    switch (reference.bond) {
    case Bond::Owner:
        for (const long id : owners)
            name(*ownerTable, id, Fate::Goes);
        go(*ownerTable, owners);
        return true;
    case Bond::Named:
        // The rows of parts are not named by themselves, but the objects that they belong to.
        for (const long id : owner ? owners : found)
            name(owner ? *ownerTable : from, id, Fate::Loses);
        mCleared.push_back({&from, reference.column, ids});
        return true;
    case Bond::Entry:
        for (const long id : owners)
            name(*ownerTable, id, Fate::Loses);
        mEntries.push_back({&from, reference.column, ids});
        return true;
    default:
        break;
    }
    const Fate fate = reference.bond == Bond::Part ? Fate::Part : Fate::Goes;
    for (const long id : own ? found : owners)
        name(from, id, fate);
    if (own)
        go(from, found);
    else
        mEntries.push_back({&from, reference.column, ids});
    return true;
}

Ids Removal::going(const Table &table) const {
    const auto going = mGoing.find(&table);
    return going != mGoing.end() ? going->second.ids : Ids();
}

bool Removal::concernsOthers() const {
    return std::any_of(mReferrers.cbegin(), mReferrers.cend(),
                       [](const NetObject &object) { return object.fate != Fate::Part; });
}

bool Removal::apply() const {
    for (const Entries &entries : mCleared) {
        if (!mRows.clear(*entries.table, entries.column, entries.ids))
            return false;
    }
    for (const Entries &entries : mEntries) {
        if (!mRows.remove(*entries.table, entries.column, entries.ids))
            return false;
    }
    const std::vector<Table> &tables = catalogue::tables();
    for (auto table = tables.rbegin(); table != tables.rend(); ++table) {
        const auto going = mGoing.find(&*table);
        if (going != mGoing.end() && !mRows.remove(*table, table->id, going->second.ids))
            return false;
    }
    return true;
}
