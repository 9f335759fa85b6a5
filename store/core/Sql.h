#pragma once

#include <QString>

#include <initializer_list>

/// One statement in the spelling of both generations of the store format.
///
/// Both texts are full literals: about a third of them differ in ways that no rule covers, and a literal can
/// be searched for.
struct Sql {
    const char *one;  ///< Stores of one network.
    const char *many; ///< Generation 6: several networks per store, every row led by its NetId.
};

/// Puts @p value into the lowest numbered placeholder of @p text (%0, %1, ...), as QString::arg() does. A
/// text without a placeholder comes back unchanged.
QString fillNumber(const QString &text, long value);

/// Puts @p values into @p text in order with fillNumber().
QString fillNumbers(const QString &text, std::initializer_list<long> values);

/// @p text with its single quotes doubled, ready to stand between single quotes in a statement.
QString quoted(const QString &text);

/// @p name as an identifier in double quotes: the engines take it letter for letter.
QString identifierAsStored(const QString &name);

/// @p name as an identifier of a statement: as it stands where it is made of ASCII letters, digits and
/// underscores (PostgreSQL takes it without regard to case then), in double quotes otherwise.
QString identifier(const QString &name);
