#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/RowChange.h"

#include <QHash>
#include <QJsonObject>

#include <vector>

namespace moratools {

/// What is to become of a conflict.
struct Answer {
    enum class Take { Open, Ours, Theirs, Value };

    Take take = Take::Open;
    QVariant value = {}; ///< with Take::Value, of a column
};

/// Two edits of one network that cannot both be kept.
struct Conflict {
    /// What both did, as the line of a file says it.
    QJsonObject text;
    Answer answer;
};

/// Answers by the texts of their conflicts, as JSON without blanks.
using Answers = QHash<QByteArray, Answer>;

/// One edit that has what two had.
struct MORATOOLS_EXPORT MergedChanges {
    /// What is left to do to our version; with open conflicts they count as answered for us.
    std::vector<RowChange> changes;
    std::vector<Conflict> conflicts;

    bool isOpen() const;
};

/// Merges what two sides changed in one network, row by row and column by column. What both did is done. Conflicts
/// are
/// - a column to which both gave another value ("column"),
/// - an object that one removed, and that the other changed, has changed parts of, or newly refers to
///   ("removed"): whoever is taken, what would refer to nothing goes, and what a kept object refers to stays,
/// - a list (the vertices of a link, the colours of a phase, the roads of a route) that both changed ("list"),
/// - other rows that both added or changed as wholes ("rows").
///
/// New rows of both sides under one identifier must be the same (see clashingIds()).
MORATOOLS_EXPORT MergedChanges mergeChanges(const std::vector<RowChange> &ours,
                                            const std::vector<RowChange> &theirs,
                                            const Answers &answers = {});

/// Identifiers under which both sides added other objects, by table and ascending: of objects that differ, of
/// what they consist of, and of what refers to them.
MORATOOLS_EXPORT QHash<const catalogue::Table *, std::vector<qint64>>
clashingIds(const std::vector<RowChange> &ours, const std::vector<RowChange> &theirs);

} // namespace moratools
