#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class SignalGroup;

/// Signal groups with their phases and colours.
namespace signalgroups {

bool insertSignalGroup(const Store &store, SignalGroup *group, bool inTransaction);
SignalGroup *readSignalGroup(const Store &store, long id);
bool listSignalGroupIds(const Store &store, QList<long> &ids);

void loadAllSignalGroups(NetLoad &net);
void saveAllSignalGroups(NetSave &net);

} // namespace signalgroups
