#pragma once

#include "tools/checks/Rule.h"

namespace moratools {

/// @{ The rules of each group, in the order in which findings are reported.
std::vector<Rule> storeRules();
/// Those of the store on identifiers, counters and other numbers, which are among them.
std::vector<Rule> numberRules();
std::vector<Rule> referenceRules();
std::vector<Rule> jsonRules();
std::vector<Rule> geometryRules();
std::vector<Rule> connectorShapeRules(); ///< geometry, too
std::vector<Rule> topologyRules();
std::vector<Rule> signalRules();
std::vector<Rule> vehicleRules(); ///< demand
std::vector<Rule> demandRules();
std::vector<Rule> transitRules();
std::vector<Rule> deviceRules();
/// @}

} // namespace moratools
