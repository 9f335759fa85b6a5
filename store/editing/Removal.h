#pragma once

#include "model/NetReferences.h"
#include "store/editing/NetRows.h"

#include <map>

/// What goes with objects that are removed from a store, by what refers to what (catalogue::Bond).
class Removal {
public:
    explicit Removal(const NetRows &rows) : mRows(rows) {}

    /// The rows of these identifiers go. Objects that were asked for are not among what refers to them.
    void start(const catalogue::Table &table, Ids ids);
    /// Objects that were written beside the removal: of two roads with the number that one names it means the one
    /// that stays.
    void writtenBeside(const catalogue::Table &table, const Ids &ids) { mWritten[&table] = ids; }
    /// Finds all that goes with them; false when the store could not be asked, which is recorded.
    bool find();

    /// What refers to what goes: whole objects, each once, in the order of the catalogue.
    const std::vector<NetObject> &referrers() const { return mReferrers; }
    /// Whether an object beside those that were asked for, and their parts, would go or lose something.
    bool concernsOthers() const;
    /// Identifiers of a table that go.
    Ids going(const catalogue::Table &table) const;
    /// Deletes what goes; what is left lets go of it.
    bool apply() const;

private:
    using Reference = catalogue::Reference;
    using Table = catalogue::Table;

    /// Identifiers of a table that go, and those of them whose referrers are not known yet.
    struct Going {
        Ids ids;
        Ids fresh;
    };
    /// Rows without an identifier, or entries of lists: all that have one of the ids in the column.
    struct Entries {
        const Table *table;
        const char *column;
        Ids ids;
    };

    bool findReferrers(const Table &to, const Ids &ids);
    bool followReference(const Table &from, const Reference &reference, const Table &to, const Ids &ids);
    /// Of @p ids, those that rows with @p reference may mean as roads of the kind @p to.
    bool findRoadRows(const Table &from, const Reference &reference, const Table &to, const Ids &ids,
                      Ids &found);
    void go(const Table &table, const Ids &ids);
    void name(const Table &table, long id, Fate fate);
    bool isGoing(const Table &table, long id) const;

    const NetRows &mRows;
    std::map<const Table *, Going> mGoing;
    std::map<const Table *, Ids> mWritten;
    std::vector<Entries> mEntries; ///< that go
    std::vector<Entries> mCleared;
    std::vector<NetObject> mReferrers;
    std::map<std::pair<const Table *, long>, std::size_t> mNamed; ///< with the place among the referrers
};
