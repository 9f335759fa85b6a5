#pragma once

#include "tests/differential/RandomNet.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace differential {

/// Identifiers that no other object of the kind has, in the order of the plan.
class RandomNet::Ids {
public:
    Ids(RandomNet &net, IdOrder order, long behind = 0) : mIds(400) {
        std::iota(mIds.begin(), mIds.end(), behind + 1);
        if (order == IdOrder::Descending)
            std::reverse(mIds.begin(), mIds.end());
        else if (order == IdOrder::Shuffled)
            net.shuffle(mIds);
    }
    long next() { return mIds.at(mUsed++); }

private:
    std::vector<long> mIds;
    std::size_t mUsed = 0;
};

/// Some of @p all, each once, at least one where there is one.
template <class T>
std::vector<T> someOf(std::vector<T> all, RandomNet &random, int atMost) {
    for (std::size_t i = all.size(); i > 1; --i)
        std::swap(all[i - 1], all[std::size_t(random.below(int(i)))]);
    all.resize(std::min<std::size_t>(all.size(), 1 + std::size_t(random.below(atMost))));
    return all;
}

} // namespace differential
