#pragma once

#include "tools/sumo/reader/SumoNet.h"

namespace moratools {

/// Checks that the network has a road and that every connection leads from a lane that exists to one that
/// exists, over internal lanes that exist. Throws `Failure` for the first reference that leads nowhere.
void checkReferences(const SumoNet &net);

} // namespace moratools
