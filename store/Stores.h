#pragma once

#include "model/CallDbResult.h"
#include "model/MoraStoreExport.h"
#include "model/Net.h"
#include "model/OpenOptions.h"
#include "model/StoreSettings.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QSqlDatabase;

/// Making, opening and closing stores. Nothing is thrown: false has a record, which FailureScope shows (of the
/// process's store where there is no other).
///
///     if (!stores::create(path) || !stores::open(path))
///         show(FailureScope::sinceOpening(gDB).last().error);
namespace stores {

/// @{ The templates that the library carries, and the one of the newest generation.
MORASTORE_EXPORT QStringList templateNames();
MORASTORE_EXPORT QString newestTemplate();
/// The bytes of a template; empty when there is none of that name.
MORASTORE_EXPORT QByteArray templateNamed(const QString &name);
/// @}

/// Makes a new SQLite store from a template, with the current schema. An existing file is never touched, and
/// where it fails no file stays behind. The store is not opened.
MORASTORE_EXPORT bool create(const QString &path, const QString &templateName = newestTemplate());

/// @{ Opens an SQLite file, or what @p settings name (the port included; for SQLite the name is the file), as the
/// process's store: on gDB, with gNet, gSpecialWords and the failure lists as DBTools::openDatabase() leaves them,
/// in the language and with the network that @p options name. The host's JSON settings play no part.
///
/// The new store is tried first: where it cannot be opened, the store that is open stays as it is, with its
/// network and its failures, and the reasons are added to these. A transaction that is open in it is rolled back
/// when it is replaced.
MORASTORE_EXPORT bool open(const QString &path, const OpenOptions &options = {});
MORASTORE_EXPORT bool open(const StoreSettings &settings, const OpenOptions &options = {});
/// @}
/// Closes the process's store, rolling back what is open in it: gDB, gsDbPath, gNet with its record, the
/// registries and the reserved identifiers are empty then. Objects stay with their owners, failures in their
/// lists. Handles of the connection that the host has made go first.
MORASTORE_EXPORT void close();

/// Whether the store of a connection was opened for reading, be it that its file may not be written to.
MORASTORE_EXPORT bool isReadOnly(const QSqlDatabase &db);

/// The records of all networks by id, complete: with their centres and which one is the default. Columns that
/// older stores lack read as their defaults. Empty beside a recorded failure.
MORASTORE_EXPORT QList<NetRecord> networks(QSqlDatabase &db);

/// Writes the record of a new network, with its dictionaries (DBTools::initDictionary()), and makes it the current
/// one of the store. All or nothing, also inside a transaction of the caller's.
/// @param record its id is drawn where it is 0, and is not to be there otherwise. Stores of one network take the
///        columns that they have, and refuse a second network.
/// @return the id; none with a record.
MORASTORE_EXPORT std::optional<long> addNetwork(QSqlDatabase &db, NetRecord record);

/// Whether it is the one failure that the first opening of a generation-6 store leaves by design: counters are
/// per network there, so the row of table Rsu, which belongs to none, is refused.
MORASTORE_EXPORT bool isByDesign(const CallDbResult &failure);

} // namespace stores
