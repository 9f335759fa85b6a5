#pragma once

class Store;

/// Brings older SQLite stores forward in place.
namespace upgrade {

/// Creates what the current schema has and the store lacks. Each step asks first, acts in one transaction of
/// its own and records a failed statement without stopping the steps after it, so that a process that dies in
/// between leaves a store which the next opening completes.
void toCurrentSchema(const Store &store);

} // namespace upgrade
