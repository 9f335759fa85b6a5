#pragma once

#include "model/SimulateConfiguration.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// How a simulation run is stepped and what it records: one row a network.
namespace simulateconfigurations {

bool saveSimulateConfiguration(const Store &store, const SimulateConfiguration &configuration,
                               bool useTransaction);
bool readSimulateConfiguration(const Store &store, SimulateConfiguration &configuration);

void loadAllSimulateConfigurations(NetLoad &net);
void saveAllSimulateConfigurations(NetSave &net);

} // namespace simulateconfigurations
