#include "tools/differences/MergedRow.h"

#include "tools/rows/RowValue.h"

namespace moratools {

using Kind = RowChange::Kind;

namespace {

/// A whole row with other values in some columns.
RowValues overlaid(RowValues row, const RowValues &values) {
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        if (value.value().isValid())
            row.insert(value.key(), value.value());
        else
            row.remove(value.key());
    }
    return row;
}

void insertAll(RowValues &into, const RowValues &values) {
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        into.insert(value.key(), value.value());
}

/// `like`, which becomes a change of a row from some values to others, as far as they differ.
void appendChange(RowChange like, const RowValues &from, const RowValues &to, std::vector<RowChange> &rest) {
    like.kind = Kind::Changed;
    like.before.clear();
    like.after.clear();
    for (auto value = to.cbegin(); value != to.cend(); ++value) {
        const QVariant is = from.value(value.key());
        if (rowvalue::areSame(is, value.value()))
            continue;
        like.before.insert(value.key(), is);
        like.after.insert(value.key(), value.value());
    }
    if (!like.after.isEmpty())
        rest.push_back(like);
}

} // namespace

void MergedRow::appendRest(std::vector<RowChange> &rest) const {
    const bool hasTheirs = has(Theirs);
    const RowValues theirs =
        isOne(Theirs, Kind::Changed) && hasTheirs ? changes[Theirs].front().after : RowValues();
    if (isOne(Ours, Kind::Removed) && isOne(Theirs, Kind::Changed)) {
        if (isDropped[Ours])
            rest.push_back(whole(Kind::Added, changes[Ours].front().before, theirs));
    } else if (isOne(Ours, Kind::Changed) && isOne(Theirs, Kind::Removed) && hasTheirs) {
        rest.push_back(
            whole(Kind::Removed, changes[Theirs].front().before, stored(changes[Ours].front()).after));
    } else if (isOne(Ours, Kind::Added) && isDropped[Ours] && isOne(Theirs, Kind::Added) && hasTheirs) {
        // In its place, since its key is taken as long as ours is there.
        RowValues wanted = changes[Theirs].front().after;
        const RowValues now = stored(changes[Ours].front()).after;
        for (auto value = now.cbegin(); value != now.cend(); ++value)
            wanted.insert(value.key(), wanted.value(value.key()));
        appendChange(changes[Theirs].front(), now, wanted, rest);
    } else if (isDropped[Ours] && !isOne(Ours, Kind::Changed)) {
        for (const RowChange &change : changes[Ours])
            rest.push_back(inverted(stored(change)));
        if (hasTheirs)
            rest.insert(rest.end(), changes[Theirs].begin(), changes[Theirs].end());
    } else if (!changes[Ours].empty()) {
        appendColumns(rest);
    } else if (hasTheirs) {
        rest.insert(rest.end(), changes[Theirs].begin(), changes[Theirs].end());
    }
}

/// Our change as it is in our version.
RowChange MergedRow::stored(RowChange ours) const {
    insertAll(ours.after, replaced);
    return ours;
}

RowChange MergedRow::whole(Kind kind, const RowValues &base, const RowValues &values) const {
    RowChange change = any();
    change.kind = kind;
    change.before = kind == Kind::Removed ? overlaid(base, values) : RowValues();
    change.after = kind == Kind::Added ? overlaid(base, values) : RowValues();
    return change;
}

/// What becomes of a row of ours that stays: what theirs has of its columns, and what of ours cannot be.
void MergedRow::appendColumns(std::vector<RowChange> &rest) const {
    const RowChange &ours = changes[Ours].front();
    RowValues now = stored(ours).after;
    RowValues wanted = isDropped[Ours] ? ours.before : RowValues();
    for (auto value = replaced.cbegin(); value != replaced.cend() && !isDropped[Ours]; ++value)
        wanted.insert(value.key(), ours.after.value(value.key()));
    if (isOne(Ours, Kind::Changed) && isOne(Theirs, Kind::Changed) && has(Theirs)) {
        const RowChange &theirs = changes[Theirs].front();
        insertAll(wanted, theirs.after);
        RowValues base = theirs.before;
        insertAll(base, now);
        now = base;
    }
    appendChange(ours, now, wanted, rest);
}

} // namespace moratools
