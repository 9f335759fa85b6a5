#include "MoraInterfaces.h"

IMoraInterface *gpMoraInterface = nullptr;
IMoraPlugin *gpMoraPlugin = nullptr;

// The destructors are here so that each interface has its one virtual table and type information in this
// library, whichever libraries implement or cast to it.
IBusStationLine::~IBusStationLine() = default;
IMoraInterface::~IMoraInterface() = default;
IMoraPlugin::~IMoraPlugin() = default;
IRoadNet::~IRoadNet() = default;
ISignalGroup::~ISignalGroup() = default;
ISignalLamp::~ISignalLamp() = default;
ISignalPhase::~ISignalPhase() = default;
ITableProvider::~ITableProvider() = default;
