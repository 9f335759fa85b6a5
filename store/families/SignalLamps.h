#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class SignalLamp;

/// Signal heads; their phases are read before them.
namespace signallamps {

bool insert(const Store &store, SignalLamp *lamp, bool inTransaction);
SignalLamp *read(const Store &store, long id);
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace signallamps
