#pragma once

#include "tools/differences/RowChange.h"

#include <vector>

namespace moratools {

/// Who made a change.
enum Side { Ours, Theirs };

inline Side otherOf(Side side) {
    return side == Ours ? Theirs : Ours;
}

/// What two sides did to the rows of one identity, most often one thing each, and what of it is to be.
struct MergedRow {
    std::vector<RowChange> changes[2];
    bool isDropped[2] = {false, false};
    /// What our version has, of columns that are to have what `changes` say.
    RowValues replaced;

    bool isOne(Side side, RowChange::Kind kind) const {
        return changes[side].size() == 1 && changes[side].front().kind == kind;
    }
    bool has(Side side) const { return !changes[side].empty() && !isDropped[side]; }
    const RowChange &any() const { return changes[changes[Ours].empty() ? Theirs : Ours].front(); }

    /// Appends what is to be done to our version.
    void appendRest(std::vector<RowChange> &rest) const;

private:
    RowChange stored(RowChange ours) const;
    RowChange whole(RowChange::Kind kind, const RowValues &base, const RowValues &values) const;
    void appendColumns(std::vector<RowChange> &rest) const;
};

} // namespace moratools
