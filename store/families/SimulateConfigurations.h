#pragma once

#include "model/SimulateConfiguration.h"
#include "store/core/Store.h"

/// How a simulation run is stepped and what it records: one row a network.
namespace simulateconfigurations {

bool save(const Store &store, const SimulateConfiguration &configuration, bool useTransaction);
bool read(const Store &store, SimulateConfiguration &configuration);

} // namespace simulateconfigurations
