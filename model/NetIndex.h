#pragma once

#include <QHash>
#include <QList>

#include <algorithm>

class Net;

/// A table of a network's objects of one kind by id, which owns none of them. Entering, leaving and finding
/// take constant time. An object is in one table at most; it leaves by its identity, whatever has become of
/// its id meanwhile, and at the latest when it is destroyed.
template <class T>
class NetIndex {
public:
    /// Where an object stands: its member `mPlace`, with which it leaves the table.
    class Place {
    public:
        Place() = default;
        ~Place() { leave(); }
        /// A copy of an object is in no table.
        Place(const Place &) {}
        Place &operator=(const Place &) = delete;

        /// The network whose table has the object; null while none has.
        Net *net() const { return mTable ? mTable->mNet : nullptr; }

    private:
        friend class NetIndex;

        void leave() {
            if (mTable)
                mTable->mObjects.remove(mId);
            mTable = nullptr;
        }

        NetIndex *mTable = nullptr;
        long mId = 0;
    };

    explicit NetIndex(Net *net) : mNet(net) {}
    ~NetIndex() { clear(); }
    NetIndex(const NetIndex &) = delete;
    NetIndex &operator=(const NetIndex &) = delete;

    /// The object entered under `id`, or null.
    T *find(long id) const { return mObjects.value(id, nullptr); }

    /// Enters the object under `id` alone, unless another one has that id: then it is in no table any more.
    void enter(long id, T *object) {
        Place &place = object->mPlace;
        place.leave();
        if (mObjects.contains(id))
            return;
        mObjects.insert(id, object);
        place.mTable = this;
        place.mId = id;
    }

    void clear() {
        for (T *object : qAsConst(mObjects))
            object->mPlace.mTable = nullptr;
        mObjects.clear();
    }

    QList<T *> inAscendingOrder() const {
        QList<long> ids = mObjects.keys();
        std::sort(ids.begin(), ids.end());
        QList<T *> objects;
        objects.reserve(ids.size());
        for (const long id : ids)
            objects.append(mObjects.value(id));
        return objects;
    }

private:
    Net *mNet;
    QHash<long, T *> mObjects;
};
