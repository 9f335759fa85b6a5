#pragma once

#include "store/core/StoreState.h"

class QSqlDatabase;
class QSqlDriver;

/// The store that hosts reach by the static members of DBTools and DBTools_V6 and by the globals (gDB, gNet,
/// ghVehicleType, ...), which all refer to members of it.
struct ProcessStore {
    ProcessStore() { state.severalNetsFailures = &severalNets.failures; }

    StoreState state;
    StoreFacts severalNets; ///< members of DBTools_V6
};

/// Made when it is first asked for, so that it is there for whatever refers to it at the start of a process.
ProcessStore &processStore();

/// @{ What an operation on that connection knows of its store: of one that attachState() named, or of that of
/// the process.
StoreState &stateOf(const QSqlDatabase &db);
StoreState &stateOf(const QSqlDriver *driver);
/// @}

/// Operations on the connection, which must be a valid one, work on @p state from here on; on the process's
/// store for null.
void attachState(const QSqlDatabase &db, StoreState *state);
