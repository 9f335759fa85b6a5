#pragma once

#include "store/bulk/NetLoad.h"
#include "store/bulk/SortedById.h"

/// Finds, row by row, the object of a list that a row belongs to. The rows come in the order of their owners'
/// ids; the list is brought into ascending order, and rows without an owner are reported.
template <class List, class Entity>
class Owners {
public:
    /// @param owners pointers, owning or not.
    /// @param id the member that holds the owners' ids.
    /// @param table whose rows are looked up.
    /// @param reason what is reported of a row without an owner.
    Owners(NetLoad &net, List &owners, long Entity::*id, const char *table, const char *reason)
        : mNet(net), mOwners(owners), mIdOf{id}, mTable(table), mReason(reason), mPlaces(owners, mIdOf) {
        sortById(owners, mIdOf);
    }

    /// The object whose id is in a column of the row; null without one.
    Entity *of(Rows &row, const char *column) {
        const long id = row.id(column);
        const std::size_t place = mPlaces.find(id);
        if (place < mOwners.size())
            return &*mOwners[place];
        mNet.skip(mTable, id, mReason);
        return nullptr;
    }

private:
    struct IdOf {
        long Entity::*id;
        template <class Pointer>
        long operator()(const Pointer &object) const {
            return (*object).*id;
        }
    };

    NetLoad &mNet;
    List &mOwners;
    IdOf mIdOf;
    const char *mTable;
    const char *mReason;
    SortedById<List, IdOf> mPlaces;
};
