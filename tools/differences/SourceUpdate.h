#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/Merge.h"
#include "tools/differences/NetworkMerge.h"

#include <QStringList>

namespace moratools {

/// What has to be done to a network that was imported, and edited since, so that it has what is new in its source.
struct SourceUpdate {
    TwoEdits edits;      ///< `ours`: what was edited since the import; `theirs`: what is new in the source
    QStringList remarks; ///< what correspondence of names left open, a line each
};

/// The file that a network was imported from, as the store names it; empty where it does not.
MORATOOLS_EXPORT QString sourceOf(const StoreReader &store, const NamedNetwork &network);

/// Compares the network `ours` of a store of several networks with `base`, its source as it was imported, and
/// `next`, the source as it is now: both as imports of their own, in stores that nobody needs afterwards and that are written to. All three are matched
/// by names (align()). The network keeps its name and date whatever the source is called. Throws `Failure` where a store cannot be read, or
/// holds one network.
MORATOOLS_EXPORT SourceUpdate compareWithSource(const NetworkVersion &ours, const NetworkVersion &base,
                                                const NetworkVersion &next, const Progress &progress = {});

} // namespace moratools
