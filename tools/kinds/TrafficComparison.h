#pragma once

#include "tools/kinds/Comparison.h"

namespace moratools {

/// Adds the comparison of every kind of `TrafficObjects` to `result`, field by field as the objects are
/// described. The two share no object.
void compareTraffic(const TrafficObjects &written, const TrafficObjects &read, Comparison &result);

} // namespace moratools
