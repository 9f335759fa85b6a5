#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/session/StoreAddress.h"

#include <QList>
#include <QString>

namespace moratools {

/// A partition of a store whose networks are spread over partitions (makePartitionedStore()).
struct Partition {
    int number = 0;       ///< from 0
    QString server;       ///< the foreign server that its rows are on; empty for the store's own
    QStringList networks; ///< "7 Harbour": those with a record
};

/// The partitions of a store, in order. Nothing is asked of other servers. Throws `Failure`, also for a store
/// without partitions.
MORATOOLS_EXPORT QList<Partition> partitionsOf(const StoreAddress &store);

/// The partition of the network that `wanted` names, by its number or else by its name. Throws `Failure`.
MORATOOLS_EXPORT int partitionOf(const StoreAddress &store, const QString &wanted);

/// Moves the rows of a partition to a foreign server of the store's database, or back for an empty `server`.
///
/// The foreign server is one of postgres_fdw, to a database in which makePlaceForPartitions() has made the
/// tables; the user is the owner of the store's tables and has a mapping. Until the end others go on reading,
/// and nobody writes. The store is changed by one transaction: on a failure (`Failure`) the partition is where
/// it was. Rows that belong to no network, which a commit that came through on one server alone has left, do
/// not go along. Tables there that hold rows already are emptied with `mayEmpty` and otherwise refused.
MORATOOLS_EXPORT void placePartition(const StoreAddress &store, int partition, const QString &server,
                                     bool mayEmpty);

/// Removes rows on other servers that belong to no network, and returns their number. Throws `Failure`;
/// partitions before the one that failed are tidied then.
MORATOOLS_EXPORT qint64 tidyPartitions(const StoreAddress &store);

} // namespace moratools
