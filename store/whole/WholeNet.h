#pragma once

#include "model/NetProgress.h"
#include "store/core/Store.h"

struct NetContents;

/// Networks read and written as a whole.
namespace wholenet {

bool load(const Store &store, NetContents &contents, const NetProgress &progress);

bool save(const Store &store, NetContents &contents, bool useTransaction, const NetProgress &progress);

} // namespace wholenet
