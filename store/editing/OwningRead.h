#pragma once

#include "store/Owned.h"
#include "store/core/Store.h"

/// Reads an object of the store's network under its id, by the statements of the single read of its kind. What
/// it refers to by pointer is read with it and kept with it: both links of a connector, the group of a lamp's
/// phase, the links of decision points, stations, routes and lines. Nothing of the open store's current
/// network, or of its registries, is answered or changed.
///
/// T is a kind of object of NetContents. Null when there is none, or when it cannot be read, which is recorded.
template <class T>
Owned<T> readOwned(const Store &store, long id);
