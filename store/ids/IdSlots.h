#pragma once

#include "store/core/Store.h"

#include <functional>
#include <utility>
#include <vector>

/// The members that hold the identifiers of some objects, by table: those that are 0 are given one.
class IdSlots {
public:
    void add(const char *table, long &id);
    /// @p member of each object of a list of pointers or of values; a null pointer has none.
    template <class List, class Entity>
    void addEach(const char *table, List &objects, long Entity::*member) {
        for (auto &object : objects) {
            if constexpr (std::is_pointer_v<std::decay_t<decltype(object)>>) {
                if (object)
                    add(table, object->*member);
            } else {
                add(table, object.*member);
            }
        }
    }
    /// What is to be done once all have an identifier: parts name their owner by it.
    void afterwards(std::function<void()> step) { mAfterwards.push_back(std::move(step)); }

    /// Draws what is missing, in the store's network; without all of it nothing is given.
    bool fill(const Store &store) const;

private:
    struct OfTable {
        const char *table;
        std::vector<long *> ids;
    };

    std::vector<OfTable> mTables; ///< in the order of adding
    std::vector<std::function<void()>> mAfterwards;
};
