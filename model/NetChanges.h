#pragma once

#include "MoraStoreExport.h"
#include "NetKinds.h"

#include <QHash>
#include <QList>
#include <QString>

/// An object of a store that was taken out of a network's lists.
struct RemovedObject {
    QString table;
    long id = 0;

    friend bool operator==(const RemovedObject &a, const RemovedObject &b) {
        return a.id == b.id && a.table == b.table;
    }
};

/// What of a network's objects was changed, added and removed since it was loaded or saved. It is told by
/// NetContents::edit(), add(), remove() and take(); what a host changes in the lists past them is not known
/// until it says markAll().
///
/// It remembers where objects are, and never looks into one that the lists do not have any more: a host may
/// destroy and move out objects behind its back.
class MORASTORE_EXPORT NetChanges {
public:
    /// @param lists where the objects are; they stay where they are as long as this lives.
    explicit NetChanges(const NetLists &lists) : mLists(&lists) {}
    NetChanges(const NetChanges &) = delete;
    NetChanges &operator=(const NetChanges &) = delete;
    /// Takes the marks of @p other, whose lists were moved to these. Those of @p other are gone.
    NetChanges &operator=(NetChanges &&other) noexcept;

    /// The objects of a kind that were edited or added and are in their list now, each once, in the order in
    /// which they were first named; after markAll() all of the list in its order.
    template <class T>
    QList<T *> changed() const {
        QList<T *> objects;
        const Objects<T> &list = NetKind<T>::list(*mLists);
        if (mIsAll) {
            for (const auto &object : list) {
                if (object)
                    objects.append(object.get());
            }
            return objects;
        }
        const Marks marks = mMarks.value(QLatin1String(NetKind<T>::table));
        if (marks.isNew.isEmpty())
            return objects;
        QHash<const void *, T *> present;
        for (const auto &object : list) {
            if (object && marks.isNew.contains(object.get()))
                present.insert(object.get(), object.get());
        }
        for (const void *place : marks.places) {
            if (T *object = present.take(place))
                objects.append(object);
        }
        return objects;
    }
    /// Whether an object was added, and the store does not have it yet.
    template <class T>
    bool isAdded(const T &object) const {
        const auto marks = mMarks.constFind(QLatin1String(NetKind<T>::table));
        return marks != mMarks.constEnd() && marks->isNew.value(&object);
    }
    /// Whether markAll() was called: which objects the store has is not known then.
    bool isAll() const { return mIsAll; }
    /// The objects that the store has under these ids and the network has no more, in the order in which they
    /// were removed or taken. Objects that were added since leave none.
    const QList<RemovedObject> &removed() const { return mRemoved; }

    /// Whether nothing was changed, added or removed.
    bool isEmpty() const;
    /// Forgets all of it: the store has the objects as they are now.
    void clear();
    /// Counts every object as changed, for hosts that edited without NetContents::edit(). What they removed
    /// past the container stays unknown.
    void markAll() { mIsAll = true; }

private:
    friend struct NetContents;
    friend class NetRemoval;

    /// The marks of a kind.
    struct Marks {
        QList<const void *> places;      ///< in the order of the marks; some may be gone, some come twice
        QHash<const void *, bool> isNew; ///< the objects that are marked, and whether the store has them not
    };

    void markEdited(const char *table, const void *object);
    void markAdded(const char *table, const void *object, long id);
    void markRemoved(const char *table, const void *object, long id);

    const NetLists *mLists;
    QHash<QString, Marks> mMarks;
    QList<RemovedObject> mRemoved;
    bool mIsAll = false;
};
