#pragma once

#include "model/NetReferences.h"
#include "store/core/Store.h"

struct NetContents;

namespace editing {

/// Writes what was changed in a network since it was loaded or saved; see StoredNet::saveChanges().
bool saveChanges(const Store &store, NetContents &net, Cascade cascade);

} // namespace editing
