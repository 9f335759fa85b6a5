#pragma once

#include "tools/differences/RowChange.h"

#include <utility>

namespace moratools {

/// A row by its identifier; the table is null for none.
using RowId = std::pair<const catalogue::Table *, qint64>;

/// What a column of a row refers to: nothing where the column has no value, names none, or holds a number of
/// the host's. What a row says of its road counts, as far as `row` has it.
RowId referredBy(const catalogue::Table &table, const catalogue::Reference &reference, const RowValues &row);

/// The identifier of a row that has one of its own.
RowId idOf(const RowChange &change);

/// The row that a part belongs to; null for others.
RowId ownerOf(const RowChange &change);

/// How the format spells the column of a reference.
QString columnOf(const catalogue::Table &table, const catalogue::Reference &reference);

} // namespace moratools
