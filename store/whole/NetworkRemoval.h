#pragma once

#include "store/core/Store.h"

/// Deleting all objects of a network.
namespace networkremoval {

/// Deletes the object rows of the store's network (all object rows of a store of one network), children
/// before parents. The network's record, counters, configuration and the usage log stay.
bool removeNetworkData(const Store &store, bool useTransaction);

} // namespace networkremoval
