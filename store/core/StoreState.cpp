#include "store/core/StoreState.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using Numbered = std::vector<std::pair<quint64, const CallDbResult *>>;

/// Appends the failures after that number. A record of the host's own has none and stands where it was appended.
void appendAfter(const FailureList &failures, quint64 after, Numbered &found) {
    quint64 place = 0;
    for (const CallDbResult &failure : failures) {
        place = std::max(place, failure.number);
        if (after == 0 || failure.number > after)
            found.emplace_back(place, &failure);
    }
}

} // namespace

FailureList StoreState::failuresAfter(quint64 number) const {
    Numbered found;
    appendAfter(failures, number, found);
    if (severalNetsFailures != &failures)
        appendAfter(*severalNetsFailures, number, found);
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    FailureList inOrder;
    for (const auto &entry : found)
        inOrder.append(*entry.second);
    return inOrder;
}
