#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/kinds/StoreInfo.h"

namespace moratools {

/// What would go with a network of the open store. Throws `Failure` when it cannot be read.
MORATOOLS_EXPORT NetworkInfo takeStockBeforeRemoval(long netId);

/// Removes a network of the open store as a whole or, on a `Failure`, not at all: its objects, its record
/// and, in a store of several networks, every other row that is led by its number.
MORATOOLS_EXPORT void removeNetwork(long netId);

} // namespace moratools
