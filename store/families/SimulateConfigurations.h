#pragma once

#include "model/SimulateConfiguration.h"
#include "store/core/Store.h"

class NetLoad;
class NetSave;

/// How a simulation run is stepped and what it records: one row a network.
namespace simulateconfigurations {

bool save(const Store &store, const SimulateConfiguration &configuration, bool useTransaction);
bool read(const Store &store, SimulateConfiguration &configuration);

void load(NetLoad &net);
void save(NetSave &net);

} // namespace simulateconfigurations
