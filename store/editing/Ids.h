#pragma once

#include <algorithm>
#include <vector>

/// Identifiers, ascending and each once after settle().
using Ids = std::vector<long>;

inline void settle(Ids &ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

inline bool contains(const Ids &settled, long id) {
    return std::binary_search(settled.begin(), settled.end(), id);
}
