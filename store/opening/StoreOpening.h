#pragma once

#include "model/OpenOptions.h"
#include "store/core/Store.h"

class QSqlDatabase;

/// The steps of an opening, alike for the store of the process and for every other. What is found out goes
/// to the state; false ends the opening, with a record there.
namespace opening {

/// @{ Opens @p db, which has its names, judges the store and learns what operations need to know.
/// @param path of an SQLite file.
/// @param resetIdCache empty the reserved identifiers once more after connecting.
bool forWriting(StoreState &state, QSqlDatabase &db, const QString &path, bool resetIdCache);
bool forReading(StoreState &state, QSqlDatabase &db, const QString &path, bool resetIdCache);
/// @}

/// What a store can be opened for where @p wanted is asked: a file that may not be written to, or that lies in
/// such a folder, for reading.
StoreAccess possibleAccess(const StoreSettings &settings, StoreAccess wanted);
/// Sets the language of an open store and makes a network the current one; false when there is none of that
/// name.
bool applyOptions(StoreState &state, QSqlDatabase &db, const OpenOptions &options);

/// @{ Parts of the above that switches of connections make use of: connecting to a store that is none of a
/// stranger's (one that cannot be opened passes: it has its record when it is validated), and refusing what is
/// no store file to write to.
bool openGuarded(QSqlDatabase &db, FailureList &failures);
bool isWritableStoreFile(const QString &path, FailureList &failures);
/// @}

/// @{ A store of one network, and one of several, whatever its version says.
Store storeOfOneNet(StoreState &state, QSqlDatabase &db, long netId);
Store storeOfSeveralNets(StoreState &state, QSqlDatabase &db, long netId);
/// @}
/// The store as its version has it. Where that cannot be read, which is recorded, nothing of an operation runs.
/// @param operation what its failures are recorded under; a literal.
Store storeByVersion(StoreState &state, QSqlDatabase &db, long netId, const char *operation);
/// Brings an SQLite store to the current schema; whether it could be asked everything.
bool bringForward(StoreState &state, QSqlDatabase &db);
/// Brings a store of the first generation to what bringForward() expects. Does nothing on a store of several
/// networks, on a server, and where the store is refused.
void bringFirstGenerationForward(StoreState &state, QSqlDatabase &db);
/// Does the same for a store that is not open yet; the connection is closed again. False where the store cannot
/// be had for it.
bool passFirstGeneration(StoreState &state, QSqlDatabase &db, const QString &path);
/// Reads the names of tables and keys once; what could not be read is read the next time.
void readCatalogue(StoreState &state, QSqlDatabase &db);

} // namespace opening
