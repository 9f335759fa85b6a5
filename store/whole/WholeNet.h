#pragma once

#include "model/NetProgress.h"
#include "store/core/Store.h"

struct NetContents;

/// Networks read and written as a whole.
namespace wholenet {

bool loadWholeNet(const Store &store, NetContents &contents, const NetProgress &progress);

bool saveWholeNet(const Store &store, NetContents &contents, bool useTransaction,
                  const NetProgress &progress);

} // namespace wholenet
