#include "tools/differences/Merge.h"

#include "tools/differences/MergedRow.h"
#include "tools/differences/PatchText.h"
#include "tools/differences/References.h"
#include "tools/rows/RowValue.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <deque>
#include <map>
#include <set>

namespace moratools {

namespace {

using Row = MergedRow;
using Kind = RowChange::Kind;

/// A table by its place in the catalogue, and the bytes of a key: rows in the order of patches.
using Identity = std::pair<std::ptrdiff_t, QByteArray>;

Identity identityOf(const RowChange &change) {
    Identity identity{change.table - catalogue::tables().data(), {}};
    for (auto value = change.key.cbegin(); value != change.key.cend(); ++value)
        rowvalue::appendCanonical(identity.second, value.value());
    return identity;
}

QByteArray bytesOf(const std::vector<RowChange> &changes) {
    std::vector<QByteArray> lines;
    for (const RowChange &change : changes)
        lines.push_back(patchtext::lineOf(change));
    std::sort(lines.begin(), lines.end());
    QByteArray bytes;
    for (const QByteArray &line : lines)
        bytes += line;
    return bytes;
}

/// Whether rows of the table are told apart by their places.
bool isList(const catalogue::Table &table) {
    const std::vector<const char *> columns = identityColumns(table, true);
    return !table.id && std::any_of(columns.begin(), columns.end(), [&table](const char *column) {
        return std::none_of(
            table.references.begin(), table.references.end(),
            [column](const auto &reference) { return qstrcmp(reference.column, column) == 0; });
    });
}

QJsonObject naming(const char *conflict, const RowChange &change) {
    return {{QStringLiteral("conflict"), QLatin1String(conflict)},
            {QStringLiteral("table"), QLatin1String(change.table->name)},
            {QStringLiteral("key"), patchtext::toJson(change.key)}};
}

class Merge {
public:
    Merge(const std::vector<RowChange> &ours, const std::vector<RowChange> &theirs, const Answers &answers)
        : mAnswers(answers) {
        take(ours, Ours);
        take(theirs, Theirs);
    }

    MergedChanges run() {
        settleRemovals(Ours);
        settleRemovals(Theirs);
        settleLists();
        for (auto &entry : mRows)
            settleRows(entry.second);
        while (dropDangling() || settleCarried()) {
        }
        for (auto &entry : mRows)
            entry.second.appendRest(mMerged.changes);
        return std::move(mMerged);
    }

private:
    void take(const std::vector<RowChange> &changes, Side side) {
        for (const RowChange &change : changes) {
            Row &row = mRows[identityOf(change)];
            row.changes[side].push_back(change);
            const RowId id = idOf(change);
            if (id.first)
                mIds[id] = &row;
        }
        for (auto &[identity, row] : mRows) {
            for (const RowChange &change : row.changes[side]) {
                const RowId owner = ownerOf(change);
                if (owner.first)
                    mParts[side][owner].push_back(&row);
                for (const catalogue::Reference &reference : change.table->references) {
                    if (reference.bond == catalogue::Bond::Carried && change.kind == Kind::Removed)
                        mCarriers[side][referredBy(change, reference, change.before)] = &row;
                }
            }
        }
    }

    Answer ask(QJsonObject text) {
        const Answer answer = mAnswers.value(QJsonDocument(text).toJson(QJsonDocument::Compact));
        mMerged.conflicts.push_back({std::move(text), answer});
        return answer;
    }

    /// The row that an identifier stands for where the side removes it and the other one does not.
    Row *removedBy(Side side, const RowId &id) const {
        const auto found = id.first ? mIds.find(id) : mIds.end();
        const bool isRemoved = found != mIds.end() && found->second->isOne(side, Kind::Removed) &&
                               !found->second->isOne(otherOf(side), Kind::Removed);
        return isRemoved ? found->second : nullptr;
    }

    /// The object that goes with what belongs to it, and with what is there for it alone.
    Row *wholeOf(Row *row, Side side) const {
        const RowChange &change = row->changes[side].front();
        if (Row *owner = removedBy(side, ownerOf(change)))
            return wholeOf(owner, side);
        const auto carrier = mCarriers[side].find(idOf(change));
        return carrier != mCarriers[side].end() ? wholeOf(carrier->second, side) : row;
    }

    /// What the other side does to, or newly with, objects that this one removes.
    void settleRemovals(Side side) {
        const Side other = otherOf(side);
        std::map<Row *, std::vector<Row *>> disputed;
        std::vector<Row *> order;
        const auto dispute = [&](Row *removed, Row &use) {
            Row *whole = wholeOf(removed, side);
            // A list is settled as a whole, and what is there for others stays as long as they need it.
            if (isList(*whole->any().table) || catalogue::isCarried(*whole->any().table))
                return;
            std::vector<Row *> &uses = disputed[whole];
            if (uses.empty())
                order.push_back(whole);
            if (std::find(uses.begin(), uses.end(), &use) == uses.end())
                uses.push_back(&use);
        };
        for (auto &[identity, row] : mRows) {
            if (row.isOne(side, Kind::Removed) && row.isOne(other, Kind::Changed))
                dispute(&row, row);
            for (const RowChange &change : row.changes[other]) {
                for (const catalogue::Reference &reference : change.table->references) {
                    Row *removed = removedBy(side, referredBy(change, reference, change.after));
                    if (removed && reference.bond != catalogue::Bond::Carried)
                        dispute(removed, row);
                }
            }
        }
        for (Row *whole : order)
            settleRemoval(*whole, disputed[whole], side);
    }

    void settleRemoval(Row &whole, const std::vector<Row *> &uses, Side side) {
        const Side other = otherOf(side);
        QJsonObject text = naming("removed", whole.changes[side].front());
        text.insert(QStringLiteral("by"), QLatin1String(side == Ours ? "ours" : "theirs"));
        QJsonArray because;
        for (const Row *use : uses) {
            for (const RowChange &change : use->changes[other])
                because.append(QJsonObject{{QStringLiteral("table"), QLatin1String(change.table->name)},
                                           {QStringLiteral("key"), patchtext::toJson(change.key)}});
        }
        text.insert(QStringLiteral("because"), because);
        const bool takesOurs = ask(text).take != Answer::Take::Theirs;
        if ((side == Ours) == takesOurs) {
            // What refers to the object goes in dropDangling().
            for (Row *use : uses)
                use->isDropped[other] = use->isDropped[other] || use->isOne(side, Kind::Removed);
        } else {
            keep(whole, side);
        }
    }

    /// An object stays, with its parts and with what they refer to.
    void keep(Row &whole, Side side) {
        std::deque<Row *> kept{&whole};
        while (!kept.empty()) {
            Row *row = kept.front();
            kept.pop_front();
            if (row->isDropped[side] || !row->isOne(side, Kind::Removed))
                continue;
            row->isDropped[side] = true;
            const RowChange &change = row->changes[side].front();
            const auto parts = mParts[side].find(idOf(change));
            if (parts != mParts[side].end())
                kept.insert(kept.end(), parts->second.begin(), parts->second.end());
            for (const catalogue::Reference &reference : change.table->references) {
                if (Row *target = removedBy(side, referredBy(change, reference, change.before)))
                    kept.push_back(target);
            }
        }
    }

    /// A row that is as it was needs what it stood on, which the side may have removed.
    void keepFor(const RowChange &change, Side side) {
        for (const catalogue::Reference &reference : change.table->references) {
            if (Row *target = removedBy(side, referredBy(change, reference, change.before)))
                keep(*target, side);
        }
    }

    /// Places in a list mean nothing without the other ones: a list that both changed is theirs or ours.
    void settleLists() {
        std::map<std::pair<const catalogue::Table *, RowId>, std::vector<Row *>> lists;
        for (auto &[identity, row] : mRows) {
            const RowId owner = ownerOf(row.any());
            const bool isKept = !removedBy(Ours, owner) && !removedBy(Theirs, owner);
            if (owner.first && isKept && isList(*row.any().table))
                lists[{row.any().table, owner}].push_back(&row);
        }
        for (const auto &[list, rows] : lists) {
            std::vector<RowChange> changes[2];
            for (const Row *row : rows) {
                for (const Side side : {Ours, Theirs}) {
                    changes[side].insert(changes[side].end(), row->changes[side].begin(),
                                         row->changes[side].end());
                }
            }
            if (changes[Ours].empty() || changes[Theirs].empty() ||
                bytesOf(changes[Ours]) == bytesOf(changes[Theirs]))
                continue;
            QJsonObject text{{QStringLiteral("conflict"), QStringLiteral("list")},
                             {QStringLiteral("table"), QLatin1String(list.first->name)},
                             {QStringLiteral("of"), QLatin1String(list.second.first->name)},
                             {QStringLiteral("id"), list.second.second}};
            const Side dropped = askFor(text, changes[Ours], changes[Theirs]);
            for (Row *row : rows)
                drop(*row, dropped);
        }
    }

    /// Asks which side's rows are taken; gives the other one.
    Side askFor(QJsonObject text, const std::vector<RowChange> &ours, const std::vector<RowChange> &theirs) {
        for (const auto &[name, changes] :
             {std::make_pair("ours", &ours), std::make_pair("theirs", &theirs)}) {
            QJsonArray list;
            for (const RowChange &change : *changes)
                list.append(QJsonDocument::fromJson(patchtext::lineOf(change)).object());
            text.insert(QLatin1String(name), list);
        }
        return ask(text).take == Answer::Take::Theirs ? Ours : Theirs;
    }

    void settleRows(Row &row) {
        if (!row.has(Ours) || !row.has(Theirs))
            return;
        if (row.isOne(Ours, Kind::Changed) && row.isOne(Theirs, Kind::Changed)) {
            settleColumns(row);
            return;
        }
        const bool isSettled = (row.isOne(Ours, Kind::Removed) && row.isOne(Theirs, Kind::Changed)) ||
                               (row.isOne(Ours, Kind::Changed) && row.isOne(Theirs, Kind::Removed));
        if (isSettled || bytesOf(row.changes[Ours]) == bytesOf(row.changes[Theirs]))
            return;
        row.isDropped[askFor(naming("rows", row.any()), row.changes[Ours], row.changes[Theirs])] = true;
    }

    /// What was taken is what both have then.
    void settleColumns(Row &row) {
        RowChange &ours = row.changes[Ours].front();
        RowChange &theirs = row.changes[Theirs].front();
        const QStringList columns = theirs.after.keys();
        for (const QString &column : columns) {
            const QVariant our = ours.after.value(column);
            const QVariant their = theirs.after.value(column);
            if (!ours.after.contains(column) || rowvalue::areSame(our, their))
                continue;
            QJsonObject text = naming("column", ours);
            text.insert(QStringLiteral("column"), column);
            text.insert(QStringLiteral("base"), patchtext::toJson(ours.before.value(column)));
            text.insert(QStringLiteral("ours"), patchtext::toJson(our));
            text.insert(QStringLiteral("theirs"), patchtext::toJson(their));
            const Answer answer = ask(text);
            const bool takesTheirs = answer.take == Answer::Take::Theirs;
            const QVariant taken = answer.take == Answer::Take::Value ? answer.value
                                   : takesTheirs                      ? their
                                                                      : our;
            if (!rowvalue::areSame(taken, our))
                row.replaced.insert(column, our);
            ours.after.insert(column, taken);
            theirs.after.insert(column, taken);
            ours.roads.insert(theirs.roads);
        }
    }

    bool isGone(const RowId &id) const {
        const auto found = id.first ? mIds.find(id) : mIds.end();
        if (found == mIds.end())
            return false;
        const Row &row = *found->second;
        for (const Side side : {Ours, Theirs}) {
            if (row.isOne(side, Kind::Removed) && !row.isDropped[side])
                return true;
            if (row.isOne(side, Kind::Added) && row.isDropped[side] && !row.has(otherOf(side)))
                return true;
        }
        return false;
    }

    /// Drops what would refer to what is not there: new rows, and new values of columns. Whether there was any.
    bool dropDangling() {
        bool hasDropped = false;
        for (auto &[identity, row] : mRows) {
            for (const Side side : {Ours, Theirs}) {
                for (RowChange &change : row.changes[side])
                    hasDropped = (row.has(side) && dropDangling(row, side, change)) || hasDropped;
            }
        }
        return hasDropped;
    }

    bool dropDangling(Row &row, Side side, RowChange &change) {
        for (const catalogue::Reference &reference : change.table->references) {
            const QString column = columnOf(*change.table, reference);
            if (change.kind == Kind::Removed || reference.bond == catalogue::Bond::Carried ||
                !isGone(referredBy(change, reference, change.after)))
                continue;
            if (reference.bond == catalogue::Bond::Owner) {
                // Without one of its roads a route is another one: the object stays as it was.
                dropObject(ownerOf(change), side);
                drop(row, side);
                return true;
            }
            if (change.kind == Kind::Added && reference.bond != catalogue::Bond::Named) {
                row.isDropped[side] = true;
                return true;
            }
            const QVariant value = change.kind == Kind::Added ? qint64(0) : change.before.value(column);
            // Where that is gone as well, by both, nothing is left to choose: the check after a merge names it.
            if (rowvalue::areSame(change.after.value(column), value))
                continue;
            if (change.kind == Kind::Changed)
                keepFor(change, side);
            // Ours stands in the store as it was.
            if (side == Ours && !row.replaced.contains(column))
                row.replaced.insert(column, change.after.value(column));
            change.after.insert(column, value);
            return true;
        }
        return false;
    }

    /// What a side did to a row, which is as it was then unless the other one did something to it, too.
    void drop(Row &row, Side side) {
        row.isDropped[side] = true;
        if (row.has(otherOf(side)))
            return;
        for (const RowChange &change : row.changes[side])
            keepFor(change, side);
    }

    /// All that a side did to an object.
    void dropObject(const RowId &id, Side side) {
        const auto row = mIds.find(id);
        if (row != mIds.end())
            drop(*row->second, side);
        const auto parts = mParts[side].find(id);
        if (parts == mParts[side].end())
            return;
        for (Row *part : parts->second) {
            if (part->isDropped[side])
                continue;
            drop(*part, side);
            dropObject(idOf(part->changes[side].front()), side);
        }
    }

    /// What rows need that are there for others alone.
    std::set<RowId> carried() const {
        std::set<RowId> ids;
        for (const auto &[identity, row] : mRows) {
            for (const Side side : {Ours, Theirs}) {
                // Without either side's change the row is what it was.
                const bool isBase = row.isDropped[side] && !row.has(otherOf(side));
                for (const RowChange &change : row.changes[side]) {
                    for (const catalogue::Reference &reference : change.table->references) {
                        if (reference.bond == catalogue::Bond::Carried && (isBase || row.has(side)))
                            ids.insert(referredBy(change, reference, isBase ? change.before : change.after));
                    }
                }
            }
        }
        return ids;
    }

    /// Drops new rows that are there for others which are not to be, and removals of rows that others need.
    /// Whether there was any.
    bool settleCarried() {
        const std::set<RowId> needed = carried();
        bool hasDropped = false;
        for (auto &[identity, row] : mRows) {
            if (!catalogue::isCarried(*row.any().table))
                continue;
            const bool isNeeded = needed.count(idOf(row.any())) > 0;
            for (const Side side : {Ours, Theirs}) {
                const bool drops = row.has(side) && (isNeeded ? row.isOne(side, Kind::Removed) &&
                                                                    !row.isOne(otherOf(side), Kind::Removed)
                                                              : row.isOne(side, Kind::Added));
                row.isDropped[side] = row.isDropped[side] || drops;
                hasDropped = hasDropped || drops;
            }
        }
        return hasDropped;
    }

    const Answers &mAnswers;
    std::map<Identity, Row> mRows;
    std::map<RowId, Row *> mIds;
    std::map<RowId, std::vector<Row *>> mParts[2]; ///< what a side changes, by what it belongs to
    std::map<RowId, Row *> mCarriers[2];           ///< what a side removes, by what is there for it
    MergedChanges mMerged;
};

} // namespace

bool MergedChanges::isOpen() const {
    return std::any_of(conflicts.begin(), conflicts.end(),
                       [](const Conflict &conflict) { return conflict.answer.take == Answer::Take::Open; });
}

MergedChanges mergeChanges(const std::vector<RowChange> &ours, const std::vector<RowChange> &theirs,
                           const Answers &answers) {
    return Merge(ours, theirs, answers).run();
}

} // namespace moratools
