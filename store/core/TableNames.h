#pragma once

#include "model/MoraStoreExport.h"

#include <QStringList>

class QSqlDatabase;

/// The tables that statements find by their bare names, as the engine spells them. A partitioned table of a
/// server is one, and its leaves are none. Empty when the store cannot be asked.
MORASTORE_EXPORT QStringList tableNames(const QSqlDatabase &db);
