#pragma once

#include "model/CallDbResult.h"
#include "model/MoraStoreExport.h"

#include <optional>

class QSqlDatabase;
class Store;

/// Brings older SQLite stores forward in place.
namespace upgrade {

/// Creates what the current schema has and the store lacks. Each step asks first, acts in one transaction of
/// its own and records a failed statement without stopping the steps after it, so that a process that dies in
/// between leaves a store which the next opening completes. Where the store cannot be asked what it has, that
/// is recorded and no later step is taken.
/// @return whether the store could be asked everything.
bool toCurrentSchema(const Store &store);

/// Brings a first-generation store to the layout that toCurrentSchema() expects: a counter per table, the
/// tables that came later, columns spelled as every later version spells them. The store is no longer of
/// version 1 afterwards.
void firstGeneration(const Store &store);

/// Whether toCurrentSchema() would add a table of the library's to the open SQLite store @p db; only asks.
/// None when it could not ask; the reason is appended to @p failures.
MORASTORE_EXPORT std::optional<bool> isPending(const QSqlDatabase &db, FailureList &failures);

/// Whether the open SQLite store @p db needs firstGeneration() before toCurrentSchema(), also when an earlier
/// run was interrupted; only asks. No store of several networks does. None when it could not ask; the reason
/// is appended to @p failures.
MORASTORE_EXPORT std::optional<bool> isFirstGeneration(const QSqlDatabase &db, FailureList &failures);

} // namespace upgrade
