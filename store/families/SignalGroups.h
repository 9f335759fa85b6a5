#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class SignalGroup;

/// Signal groups with their phases and colours.
namespace signalgroups {

bool insert(const Store &store, SignalGroup *group, bool inTransaction);
SignalGroup *read(const Store &store, long id);
bool listIds(const Store &store, QList<long> &ids);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace signalgroups
