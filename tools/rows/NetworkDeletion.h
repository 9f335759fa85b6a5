#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/kinds/StoreInfo.h"

namespace moratools {

/// What would go with a network of the store. Throws `Failure` when it cannot be read.
MORATOOLS_EXPORT NetworkInfo takeStockBeforeRemoval(const StoreSession &store, long netId);

/// Removes a network of the store as a whole or, on a `Failure`, not at all: its objects, its record
/// and, in a store of several networks, every other row that is led by its number.
MORATOOLS_EXPORT void removeNetwork(const StoreSession &store, long netId);

} // namespace moratools
