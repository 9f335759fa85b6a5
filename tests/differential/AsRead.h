#pragma once

#include "model/NetContents.h"

namespace differential {

/// Lets flow ratios start where the slice before them ends, as every insert has it.
void arrangeStarts(NetContents &net);

/// Brings the lists into the order in which a read gives them, and sets what a read sets: by hand, from what
/// the pages and headers say of each kind.
void arrangeAsRead(NetContents &net, bool severalNets);

} // namespace differential
