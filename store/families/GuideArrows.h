#pragma once

#include "store/core/Store.h"

#include <QList>

struct GuideArrow;

/// Guide arrows painted on lanes.
namespace guidearrows {

bool insert(const Store &store, GuideArrow *arrow, bool inTransaction);
GuideArrow *read(const Store &store, long id);
/// The arrows whose lane exists.
bool listIds(const Store &store, QList<long> &ids);

} // namespace guidearrows
