#pragma once

#include <QList>
#include <QSet>
#include <QtAlgorithms>

#include <initializer_list>
#include <type_traits>

/// A QList of pointers that owns what it points to: its destructor deletes the objects, a copy holds copies
/// of them. Taking a pointer out (takeAt, takeFirst, removeOne, clear, ...) hands the object to whoever took
/// it. Each object is in one list, once.
template <class T>
class OwningList : public QList<T *> {
public:
    OwningList() = default;
    OwningList(const OwningList &other) : QList<T *>() {
        this->reserve(other.size());
        for (const T *object : other)
            this->append(object ? copyOf(*object) : nullptr);
    }
    OwningList(OwningList &&other) noexcept : QList<T *>() { this->swap(other); }
    OwningList &operator=(OwningList other) noexcept {
        this->swap(other);
        return *this;
    }
    /// @{ Takes over the objects of @p objects. What the list held and does not hold now is deleted.
    OwningList &operator=(const QList<T *> &objects) {
        const QList<T *> before(*this);
        QList<T *>::operator=(objects);
        const QSet<T *> kept(this->cbegin(), this->cend());
        for (T *object : before) {
            if (!kept.contains(object))
                delete object;
        }
        return *this;
    }
    OwningList &operator=(std::initializer_list<T *> objects) { return *this = QList<T *>(objects); }
    /// @}
    ~OwningList() { qDeleteAll(*this); }

    /// Deletes every object and empties the list.
    void deleteAll() {
        // Emptied first, so that an object's destructor never finds itself or a dead neighbour in the list.
        const QList<T *> objects(*this);
        this->clear();
        qDeleteAll(objects);
    }

private:
    static T *copyOf(const T &object) {
        if constexpr (std::is_copy_constructible_v<T>)
            return new T(object);
        else
            return object.clone().release();
    }
};
