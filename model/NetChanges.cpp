#include "NetChanges.h"

NetChanges &NetChanges::operator=(NetChanges &&other) noexcept {
    if (this == &other)
        return *this;
    mMarks = std::move(other.mMarks);
    mRemoved = std::move(other.mRemoved);
    mIsAll = other.mIsAll;
    other.clear();
    return *this;
}

bool NetChanges::isEmpty() const {
    bool isEmpty = mRemoved.isEmpty() && !mIsAll;
    forEachNetKind(
        [&](auto kind) { isEmpty = isEmpty && changed<typename decltype(kind)::Object>().isEmpty(); });
    return isEmpty;
}

void NetChanges::clear() {
    mMarks.clear();
    mRemoved.clear();
    mIsAll = false;
}

void NetChanges::markEdited(const char *table, const void *object) {
    Marks &marks = mMarks[QLatin1String(table)];
    if (marks.isNew.contains(object))
        return;
    marks.places.append(object);
    marks.isNew.insert(object, false);
}

void NetChanges::markAdded(const char *table, const void *object, long id) {
    // What comes back under an id that the store still has is written over what is there.
    const bool isThere = id != 0 && mRemoved.removeOne({QLatin1String(table), id});
    markEdited(table, object);
    mMarks[QLatin1String(table)].isNew[object] = !isThere;
}

void NetChanges::markRemoved(const char *table, const void *object, long id) {
    const bool wasNew = mMarks[QLatin1String(table)].isNew.take(object);
    if (!wasNew && id != 0)
        mRemoved.append({QLatin1String(table), id});
}
