#pragma once

#include "tools/differences/RowChange.h"
#include "tools/rows/NetworkRows.h"

#include <vector>

namespace moratools {

/// The places of rows that came, went and were moved: of a table `kept` beside that of `entry`, whose columns
/// `came` and `place` say of each row whether it came or went, and where, in the order in which that happened.
std::vector<RowPlace> placesIn(const QSqlDatabase &db, const catalogue::Table &entry, const StoreTable &kept,
                               const QString &came, const QString &place);

/// Puts rows where they stand after the changes. One whose place another row has taken stands behind all others.
/// Throws `Failure` where the store refuses.
void putInPlaces(const NetworkRows &rows, const std::vector<RowPlace> &places);

} // namespace moratools
