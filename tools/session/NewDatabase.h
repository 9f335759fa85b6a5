#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/session/StoreAddress.h"

#include <QStringList>

namespace moratools {

/// Names of the templates that the library carries for servers, the one that is usually wanted first: it
/// holds no network, as a new file does not.
MORATOOLS_EXPORT QStringList databaseTemplateNames();

/// Makes a store of generation 6 in an empty database on a PostgreSQL server, from a template. A database
/// that does not exist is made, where the user may. Throws `Failure`, and then there is no database that was
/// not there before, and nothing in one that was.
MORATOOLS_EXPORT void makeDatabaseStore(const StoreAddress &address, const QString &name);

/// The most partitions that a store is made with: what asks for no network asks all of them.
constexpr int kMostPartitions = 32;

/// The same without networks, for networks that are spread over `partitions` partitions, each of which can be
/// placed on a server of its own (Placement.h).
MORATOOLS_EXPORT void makePartitionedStore(const StoreAddress &address, int partitions);

/// Makes the tables that partitions of another database's store, which has `partitions` of them, are placed
/// in: the database is no store by itself. Throws as makeDatabaseStore() does.
MORATOOLS_EXPORT void makePlaceForPartitions(const StoreAddress &address, int partitions);

} // namespace moratools
