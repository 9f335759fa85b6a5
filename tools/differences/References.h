#pragma once

#include "tools/differences/RowChange.h"

#include <functional>
#include <utility>

namespace moratools {

/// A row by its identifier; the table is null for none.
using RowId = std::pair<const catalogue::Table *, qint64>;

/// What a column refers to in `row`, the values of a change before or after it: nothing where the column has no
/// value, names none, or holds a number of the host's.
RowId referredBy(const RowChange &change, const catalogue::Reference &reference, const RowValues &row);

/// What a row itself says of its road, `Link` or `Connector`. `valueOf` gives its value of a column.
const catalogue::Table *roadBySign(const catalogue::Reference &reference,
                                   const std::function<QVariant(const char *)> &valueOf);

/// The identifier of a row that has one of its own.
RowId idOf(const RowChange &change);

/// The row that a part belongs to; null for others.
RowId ownerOf(const RowChange &change);

/// How the format spells the column of a reference.
QString columnOf(const catalogue::Table &table, const catalogue::Reference &reference);

} // namespace moratools
