#pragma once

#include <QHash>
#include <QList>

#include <algorithm>

/// A table of objects by id that owns none of them. Entering, leaving and finding take constant time; an
/// object leaves by its identity, whatever has become of its id meanwhile.
template <class T>
class NetIndex {
public:
    /// The object entered under `id`, or null.
    T *find(long id) const { return mObjects.value(id, nullptr); }

    /// Enters the object under `id` alone, unless another one has that id: then it is in the table no more.
    void enter(long id, T *object) {
        leave(object);
        if (mObjects.contains(id))
            return;
        mObjects.insert(id, object);
        mIds.insert(object, id);
    }

    void leave(const T *object) {
        const auto entry = mIds.constFind(object);
        if (entry == mIds.constEnd())
            return;
        mObjects.remove(entry.value());
        mIds.erase(entry);
    }

    void clear() {
        mObjects.clear();
        mIds.clear();
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
    QHash<long, T *> mObjects;
    QHash<const T *, long> mIds;
};
