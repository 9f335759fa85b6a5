#pragma once

#include "tools/checks/Rule.h"

namespace moratools {

/// @{ The rules of each group, in the order in which findings are reported.
std::vector<Rule> storeRules();
std::vector<Rule> referenceRules();
/// @}

} // namespace moratools
