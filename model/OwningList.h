#pragma once

#include <QList>
#include <QtAlgorithms>

/// A QList of pointers that owns what it points to: its destructor deletes the objects, a copy holds copies
/// of them. Taking a pointer out (takeAt, takeFirst, removeOne, clear, ...) hands the object to whoever took
/// it.
template <class T>
class OwningList : public QList<T *> {
public:
    OwningList() = default;
    OwningList(const OwningList &other) : QList<T *>() {
        this->reserve(other.size());
        for (const T *object : other)
            this->append(new T(*object));
    }
    OwningList(OwningList &&other) noexcept : QList<T *>() { this->swap(other); }
    OwningList &operator=(OwningList other) noexcept {
        this->swap(other);
        return *this;
    }
    ~OwningList() { qDeleteAll(*this); }

    /// Deletes every object and empties the list.
    void deleteAll() {
        // Emptied first, so that an object's destructor never finds itself or a dead neighbour in the list.
        const QList<T *> objects(*this);
        this->clear();
        qDeleteAll(objects);
    }
};
