#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

/// What lies beside an SQLite file, judged without the engine. A journal or a log that came along with a
/// store can make the engine write to, or delete, files that are no part of the store.
namespace fileguard {

enum class Purpose { Read, Write };

/// The file that the engine uses for @p path: links are followed, since a journal lies beside the file
/// itself.
MORASTORE_EXPORT QString resolved(const QString &path);

/// Why the engine must not open the file @p path, as a clause for the user; empty where nothing is in the
/// way.
///
/// - A journal, a log or its index that is no regular file: the engine would write to what a link leads to.
/// - A rollback journal that ends in a super-journal record, for writing: the engine takes the journal back
///   and then deletes the file that the record names, whatever it is. Reading does neither.
///
/// Nothing is changed.
MORASTORE_EXPORT QString refusal(const QString &path, Purpose purpose);

} // namespace fileguard
