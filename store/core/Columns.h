#pragma once

#include "store/core/Query.h"

#include <cstddef>
#include <type_traits>
#include <variant>

/// A column of a table and the member of the entity that holds its value. One list of these serves the insert
/// and the reads of a flat entity.
template <class Entity>
struct Column {
    /// With its colon, spelled as in the insert. Results are matched without regard to case, so what follows
    /// the colon names the column in every result.
    const char *placeholder;
    /// long: an identifier or a number of seconds, narrowed to 32 bits when read. bool: "T" or "F".
    std::variant<long Entity::*, int Entity::*, double Entity::*, QString Entity::*, bool Entity::*> member;

    const char *name() const { return placeholder + 1; }
};

/// Binds every column of @p columns, an array or another range of Column<Entity>, from @p entity.
template <class Row, class Columns, class Entity>
Row &bindAll(Row &row, const Columns &columns, const Entity &entity) {
    for (const Column<Entity> &column : columns) {
        const auto bindMember = [&](auto member) {
            if constexpr (std::is_same_v<decltype(member), bool Entity::*>)
                row.bindFlag(column.placeholder, entity.*member);
            else
                row.bind(column.placeholder, entity.*member);
        };
        std::visit(bindMember, column.member);
    }
    return row;
}

/// Reads every column of @p columns of the current row into @p entity; NULL reads as 0 or as empty.
template <class Row, class Entity, std::size_t N>
void readAll(Row &row, const Column<Entity> (&columns)[N], Entity &entity) {
    for (const Column<Entity> &column : columns) {
        const auto readMember = [&](auto member) {
            using Member = decltype(member);
            const char *name = column.name();
            if constexpr (std::is_same_v<Member, long Entity::*>)
                entity.*member = row.id(name);
            else if constexpr (std::is_same_v<Member, int Entity::*>)
                entity.*member = row.integer(name);
            else if constexpr (std::is_same_v<Member, double Entity::*>)
                entity.*member = row.number(name);
            else if constexpr (std::is_same_v<Member, QString Entity::*>)
                entity.*member = row.text(name);
            else
                entity.*member = row.text(name) == QLatin1String("T");
        };
        std::visit(readMember, column.member);
    }
}
