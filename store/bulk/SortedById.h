#pragma once

#include <algorithm>
#include <vector>

/// Finds objects by id in a list in ascending order of ids, for rows that come in nearly that order: the
/// object of the row before and the one after it are tried first. The list must stay as it is meanwhile.
template <class List, class IdOf>
class SortedById {
public:
    SortedById(const List &list, IdOf idOf) : mList(list), mIdOf(idOf) {}

    /// The place of the object with that id, or the size of the list.
    std::size_t find(long id) {
        for (std::size_t near = mLast; near < mLast + 2 && near < mList.size(); ++near) {
            if (mIdOf(mList[near]) == id)
                return mLast = near;
        }
        const auto found =
            std::lower_bound(mList.begin(), mList.end(), id,
                             [this](const auto &object, long of) { return mIdOf(object) < of; });
        if (found == mList.end() || mIdOf(*found) != id)
            return mList.size();
        return mLast = std::size_t(found - mList.begin());
    }

private:
    const List &mList;
    IdOf mIdOf;
    std::size_t mLast = 0;
};

/// Brings a list into ascending order of ids, which the store's order is already but for identifiers beyond
/// 32 bits, and drops all but the first object of an id. @return the number of objects dropped.
template <class List, class IdOf>
std::size_t sortById(List &list, IdOf idOf) {
    const auto before = [&](const auto &a, const auto &b) { return idOf(a) < idOf(b); };
    const auto same = [&](const auto &a, const auto &b) { return idOf(a) == idOf(b); };
    if (!std::is_sorted(list.begin(), list.end(), before))
        std::stable_sort(list.begin(), list.end(), before);
    const auto kept = std::unique(list.begin(), list.end(), same);
    const auto dropped = std::size_t(list.end() - kept);
    list.erase(kept, list.end());
    return dropped;
}
