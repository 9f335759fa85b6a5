#pragma once

#include "model/MoraStoreExport.h"

#include <QStringList>

class QSqlDatabase;

/// The tables that statements find by their bare names, as the engine spells them. A partitioned table of a
/// server is one, and its leaves are none. Empty when the store cannot be asked.
MORASTORE_EXPORT QStringList tableNames(const QSqlDatabase &db);
/// The condition on pg_class for them on a server, in whatever schema of the search path they are. Tables of a
/// connection alone are left out.
MORASTORE_EXPORT QString tablesOnServer();
