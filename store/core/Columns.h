#pragma once

#include "model/StoredJson.h"

#include <QString>
#include <QVariant>

#include <cstddef>
#include <tuple>
#include <type_traits>

// The columns of a table and the members of the objects that hold their values: one std::tuple of the entries
// below serves the binds of a row, the reads of single objects and of whole networks, and descriptions.
//
// The row of a part may have columns of its owner, too. Each entry takes its value from the object of its own
// class among those that are passed, and does nothing where there is none: a part that is read or described
// alone keeps to its own.

/// A column and the member that holds its value. NULL reads as 0 or as empty.
///
/// long: an identifier or a number of seconds, narrowed to 32 bits when read. bool: "T" or "F".
template <class Class, class Value>
struct Column {
    using Entity = Class;

    /// @param columnPlaceholder with its colon, spelled as in the insert. Results are matched without regard
    ///        to case, so what follows the colon names the column in every result.
    /// @param fieldName what descriptions call it, where that is not the column's name.
    constexpr Column(const char *columnPlaceholder, Value Entity::*held, const char *fieldName = nullptr)
        : placeholder(columnPlaceholder),
          member(held),
          field(fieldName ? fieldName : columnPlaceholder + 1) {}

    const char *placeholder;
    Value Entity::*member;
    const char *field;

    constexpr const char *name() const { return placeholder + 1; }

    template <class Row>
    void bind(Row &row, const Entity &entity) const {
        if constexpr (std::is_same_v<Value, bool>)
            row.bindFlag(placeholder, entity.*member);
        else if constexpr (std::is_same_v<Value, float>)
            row.bind(placeholder, double(entity.*member));
        else
            row.bind(placeholder, entity.*member);
    }

    template <class Row>
    void read(Row &row, Entity &entity) const {
        if constexpr (std::is_same_v<Value, long>)
            entity.*member = row.id(name());
        else if constexpr (std::is_same_v<Value, int>)
            entity.*member = row.integer(name());
        else if constexpr (std::is_floating_point_v<Value>)
            entity.*member = static_cast<Value>(row.number(name()));
        else if constexpr (std::is_same_v<Value, bool>)
            entity.*member = row.text(name()) == QLatin1String("T");
        else if constexpr (std::is_same_v<Value, StoredJson>)
            entity.*member = row.json(name());
        else
            entity.*member = row.text(name());
    }

    QVariant describe(const Entity &entity) const {
        if constexpr (std::is_same_v<Value, long>)
            return qlonglong(entity.*member);
        else if constexpr (std::is_same_v<Value, float>)
            return double(entity.*member);
        else
            return QVariant::fromValue(entity.*member);
    }
};

/// A column with a word of the dictionary: read as it stands, and written by its family, which knows the
/// store's language.
template <class Class>
struct Word : Column<Class, QString> {
    using Column<Class, QString>::Column;

    template <class Row>
    void bind(Row &, const Class &) const {}
};
template <class Class>
Word(const char *, QString Class::*) -> Word<Class>;
template <class Class>
Word(const char *, QString Class::*, const char *) -> Word<Class>;

/// A column with the id of another object, to which a pointer leads; 0 for none. Reading leaves it to the
/// family, which knows where objects are found.
template <class Class, class Pointer, class Target>
struct Reference {
    using Entity = Class;

    constexpr Reference(const char *columnPlaceholder, Pointer Entity::*pointer, long Target::*id,
                        const char *fieldName = nullptr)
        : placeholder(columnPlaceholder),
          member(pointer),
          targetId(id),
          field(fieldName ? fieldName : columnPlaceholder + 1) {}

    const char *placeholder;
    Pointer Entity::*member;
    long Target::*targetId;
    const char *field;

    constexpr const char *name() const { return placeholder + 1; }
    long idOf(const Entity &entity) const {
        const Target *target = entity.*member;
        return target ? target->*targetId : 0L;
    }

    template <class Row>
    void bind(Row &row, const Entity &entity) const {
        row.bind(placeholder, idOf(entity));
    }
    template <class Row>
    void read(Row &, Entity &) const {}
    QVariant describe(const Entity &entity) const { return qlonglong(idOf(entity)); }
};

namespace columns {

/// Calls @p use with the first object that is of class @p Entity.
template <class Entity, class Use>
void withObjectOf(const Use &) {}
template <class Entity, class Use, class First, class... Rest>
void withObjectOf(const Use &use, First &first, Rest &...rest) {
    if constexpr (std::is_base_of_v<Entity, First>)
        use(first);
    else
        withObjectOf<Entity>(use, rest...);
}

} // namespace columns

/// Calls @p visit with each entry, in order.
template <class... Columns, class Visit>
void forEachColumn(const std::tuple<Columns...> &columns, const Visit &visit) {
    std::apply([&visit](const Columns &...column) { (visit(column), ...); }, columns);
}

/// Binds every column from the object that has it.
template <class Row, class... Columns, class... Entities>
Row &bindAll(Row &row, const std::tuple<Columns...> &columns, const Entities &...entities) {
    forEachColumn(columns, [&](const auto &column) {
        using Entity = typename std::decay_t<decltype(column)>::Entity;
        columns::withObjectOf<Entity>([&](const auto &entity) { column.bind(row, entity); }, entities...);
    });
    return row;
}

/// Reads the columns of the current row that are @p entity's.
template <class Row, class... Columns, class Entity>
void readAll(Row &row, const std::tuple<Columns...> &columns, Entity &entity) {
    forEachColumn(columns, [&](const auto &column) {
        if constexpr (std::is_base_of_v<typename std::decay_t<decltype(column)>::Entity, Entity>)
            column.read(row, entity);
    });
}

/// The fields of an object by those of the columns that are its own.
template <class... Columns, class Entity>
QVariantMap describeAll(const std::tuple<Columns...> &columns, const Entity &entity) {
    QVariantMap fields;
    forEachColumn(columns, [&](const auto &column) {
        if constexpr (std::is_base_of_v<typename std::decay_t<decltype(column)>::Entity, Entity>)
            fields.insert(QLatin1String(column.field), column.describe(entity));
    });
    return fields;
}

/// What @p describePart makes of each object of a list, or of what each pointer of it leads to.
template <class List, class DescribePart>
QVariantList describeEach(const List &parts, const DescribePart &describePart) {
    QVariantList list;
    for (const auto &part : parts) {
        if constexpr (std::is_pointer_v<std::decay_t<decltype(part)>>)
            list.append(QVariant(describePart(*part)));
        else
            list.append(QVariant(describePart(part)));
    }
    return list;
}
/// The objects of a list, each by the columns of its own table.
template <class List, class... Columns>
QVariantList describeEach(const List &parts, const std::tuple<Columns...> &columns) {
    return describeEach(parts, [&columns](const auto &part) { return describeAll(columns, part); });
}
