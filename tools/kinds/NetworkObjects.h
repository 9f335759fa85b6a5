#pragma once

#include "model/NetContents.h"
#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"

#include <QStringList>

namespace moratools {

class StoreSession;

/// The objects of a network, owned: as they were written into a store or as they were read from it.
using NetworkObjects = NetContents;

/// Makes network `netId` (0: the store's first) its current one and reads the
/// record. Throws `Failure` when there is no such network.
MORATOOLS_EXPORT NetworkObjects openNetwork(const StoreSession &store, long netId);

/// Reads network `netId` (0: the store's first) as a whole. It becomes the store's current one,
/// whose tables hold these objects alone. Throws `Failure` when there
/// is no such network or an object that the store lists cannot be read.
MORATOOLS_EXPORT NetworkObjects readNetwork(const StoreSession &store, long netId,
                                            const Progress &progress = {});

/// The same of a store that may be damaged: what cannot be read is left out, and damageOf() tells. Throws
/// `Failure` when there is no such network or a table cannot be read.
MORATOOLS_EXPORT NetworkObjects readWhatIsSound(const StoreSession &store, long netId,
                                                const Progress &progress = {});

/// What the reading of a damaged store left out or took only in part, a line for each reason; empty for a
/// sound one.
MORATOOLS_EXPORT QStringList damageOf(const NetworkObjects &network);

} // namespace moratools
