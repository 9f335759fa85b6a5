#pragma once

#include <functional>

namespace moratools {

/// Hears which share of a long step is done, 0 to 1; an empty one hears nothing. It is called for every
/// object of a large network, so it must be quick, in the thread of the operation. What it throws ends the
/// operation as a failure would.
using Progress = std::function<void(double share)>;

/// Tells `progress`, where there is one, that `share` is done.
inline void reportShare(const Progress &progress, double share) {
    if (progress)
        progress(share);
}

} // namespace moratools
