#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

namespace moratools {

/// What a command is going to do with a store. Upgrade is writing to a store however old.
enum class Access { Read, Write, Upgrade };

/// How far a store is from the current schema.
enum class Age {
    Current,
    Older,          ///< the library adds what is missing when it opens the store
    FirstGeneration ///< DBTools::updateDatabase1x() must come first
};

/// Checks, without changing anything, that `path` is an SQLite file that holds a store of a known version,
/// that it is complete, and that it can be had now for `access`. Throws `Failure` with the reason otherwise.
MORATOOLS_EXPORT Age requireStore(const QString &path, Access access);

} // namespace moratools
