#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/ConflictText.h"
#include "tools/reports/Progress.h"
#include "tools/rows/StoreReader.h"

namespace moratools {

/// A network of a store.
struct NetworkVersion {
    StoreAddress store;
    std::string network; ///< number or name; the first one without any
};

/// What two versions changed in the network that both come from.
struct TwoEdits {
    std::vector<RowChange> ours;
    /// Where both gave one identifier to new objects that differ, those of theirs have new ones.
    std::vector<RowChange> theirs;
    MergedDigests digests;              ///< of the networks, in the words of the first
    qint64 renumbered = 0;              ///< how many objects of theirs have new identifiers
    Language words = Language::Unknown; ///< of what the changes say
};

/// Throws `Failure` where a store cannot be read.
MORATOOLS_EXPORT TwoEdits compareVersions(const NetworkVersion &base, const NetworkVersion &ours,
                                          const NetworkVersion &theirs, const Progress &progress = {});

/// Makes the new store `path` of our version and what is to be done to it (mergeChanges()). Throws `Failure`, and
/// then there is no such file.
MORATOOLS_EXPORT void writeMerged(const QString &path, const NetworkVersion &ours, const TwoEdits &edits,
                                  const std::vector<RowChange> &changes, const Progress &progress = {});

} // namespace moratools
