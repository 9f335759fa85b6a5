#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/PatchText.h"
#include "tools/reports/Progress.h"

#include <QStringList>

#include <vector>

namespace moratools {

class StoreSession;

/// How a patch is applied.
enum class Fitting {
    Whole, ///< to the network that it was made for, all or nothing
    Anyway ///< what fits to any network
};

/// What came of it.
struct PatchedNetwork {
    qint64 changes = 0;
    /// With Fitting::Anyway what did not fit, a sentence for each change.
    QStringList leftOut;
    QString digest; ///< of the network as it is now, in the words of the patch
};

/// Applies a patch to a network of a store that is open for writing, in one transaction: rows are added,
/// changed in their places and removed, each only if it is what the patch says; identifiers that rows bring are not
/// given out again. Fitting::Whole asks for the digests of the patch, before and after. Fitting::Anyway leaves
/// out what does not fit, and what would leave references that lead nowhere. Throws `Failure`, and then the store
/// is as it was.
MORATOOLS_EXPORT PatchedNetwork applyPatch(const StoreSession &store, long netId, PatchReader &patch,
                                           Fitting fitting, const Progress &progress = {});

/// Makes changes that are in memory, all or nothing, as applyPatch() does with Fitting::Whole, but without
/// digests: it takes as long as the changes need. Words are those of the store. In a file rows get their
/// places. Throws `Failure`, and then the store is as it was.
MORATOOLS_EXPORT void applyChanges(const StoreSession &store, long netId,
                                   const std::vector<RowChange> &changes,
                                   const std::vector<RowPlace> &places = {});
/// The same in the words of `header`, for the network that has its digest before; none is asked for afterwards.
MORATOOLS_EXPORT void applyChanges(const StoreSession &store, long netId,
                                   const std::vector<RowChange> &changes, const PatchHeader &header,
                                   const Progress &progress = {});

} // namespace moratools
