#pragma once

#include "tools/kinds/StoreInfo.h"

/// What would go with a network of the open store. Throws `Failure` when it cannot be read.
NetworkInfo takeStockBeforeRemoval(long netId);

/// Removes a network of the open store as a whole or, on a `Failure`, not at all: its objects, its record
/// and, in a store of several networks, every other row that is led by its number.
void removeNetwork(long netId);
