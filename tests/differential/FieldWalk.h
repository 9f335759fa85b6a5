#pragma once

#include "tests/differential/Fields.h"

#include <memory>
#include <optional>
#include <type_traits>

namespace differential {

/// What visitors share that change values in place: they go through all that is owned, and leave alone what
/// names other objects. @p Visitor adds what it does with a value, a word or an id.
template <class Visitor>
class FieldWalk {
public:
    template <class Value>
    void id(const char *, const Value &) {}
    template <class Object, class Id>
    void reference(const char *, Object *, Id Object::*) {}
    template <class Object>
    void references(const char *, const QList<Object *> &, long Object::*) {}
    template <class Object>
    void part(const char *, Object *object) {
        if (object)
            element(object);
    }
    template <class List>
    void list(const char *, List &objects) {
        for (auto &object : objects)
            element(object);
    }
    template <class Object>
    void optional(const char *, std::optional<Object> &object) {
        if (object)
            element(*object);
    }

private:
    void element(long) {}
    template <class Object>
    void element(Object *object) {
        fields(static_cast<Visitor &>(*this), *object);
    }
    template <class Object>
    void element(std::unique_ptr<Object> &object) {
        element(object.get());
    }
    template <class Object>
    std::enable_if_t<std::is_class_v<Object>> element(Object &object) {
        element(&object);
    }
};

} // namespace differential
