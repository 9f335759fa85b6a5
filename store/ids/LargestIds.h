#pragma once

#include "model/MoraStoreExport.h"

#include <QSqlDatabase>
#include <QString>

namespace catalogue {
struct Table;
}

namespace identifiers {

/// The statement that reads the largest identifier which a row of @p table has in any network of the store: one value, null
/// where there is none. It takes no longer the more rows there are. Files of generation 6 that an earlier release made have
/// no index that begins with the identifier, and the last row of each network is looked for.
MORASTORE_EXPORT QString largestOfAllNets(const QSqlDatabase &db, const catalogue::Table &table,
                                          bool hasSeveralNets);

} // namespace identifiers
