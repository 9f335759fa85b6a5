#pragma once

class Store;

/// Brings older SQLite stores forward in place.
namespace upgrade {

/// Creates what the current schema has and the store lacks. Each step asks first, acts in one transaction of
/// its own and records a failed statement without stopping the steps after it, so that a process that dies in
/// between leaves a store which the next opening completes.
void toCurrentSchema(const Store &store);

/// Brings a first-generation store to the layout that toCurrentSchema() expects: a counter per table, the
/// tables that came later, columns spelled as every later version spells them. The store is no longer of
/// version 1 afterwards.
void firstGeneration(const Store &store);

} // namespace upgrade
