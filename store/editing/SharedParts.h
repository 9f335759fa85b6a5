#pragma once

#include "store/editing/NetRows.h"

#include <map>

/// Nodes and vertices, which several links may share: they go when the last link lets go of them.
class SharedParts {
public:
    explicit SharedParts(const NetRows &rows) : mRows(rows) {}

    /// These may be without a link after the change.
    void consider(const catalogue::Table &table, const Ids &ids);
    /// What rows of these identifiers carry, by all references; false after a failure, which is recorded.
    bool considerWhatCarry(const catalogue::Table &table, const char *column, const Ids &ids);
    /// Deletes those that nothing refers to.
    bool removeUnused();

private:
    bool findUsed(const catalogue::Table &table, const Ids &ids, Ids &used) const;

    const NetRows &mRows;
    std::map<const catalogue::Table *, Ids> mConsidered;
};
