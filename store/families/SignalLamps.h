#pragma once

#include "store/core/Store.h"

#include <QList>

class NetLoad;
class NetSave;
class SignalLamp;

/// Signal heads; their phases are read before them.
namespace signallamps {

bool insertSignalLamp(const Store &store, SignalLamp *lamp, bool inTransaction);
SignalLamp *readSignalLamp(const Store &store, long id);
bool listSignalLampIds(const Store &store, QList<long> &ids);

void loadAllSignalLamps(NetLoad &net);
void saveAllSignalLamps(NetSave &net);

} // namespace signallamps
