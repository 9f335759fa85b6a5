#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
struct GuideArrow;

/// Guide arrows painted on lanes.
namespace guidearrows {

bool insert(const Store &store, GuideArrow *arrow, bool inTransaction);
GuideArrow *read(const Store &store, long id);
/// The arrows whose lane exists.
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace guidearrows
