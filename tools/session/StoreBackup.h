#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

namespace moratools {

/// Writes what the SQLite store `path` holds to the new file `copy`, through the engine, so that a store that
/// other programs use is copied as of one moment; then checks the copy: its integrity, its tables, indexes
/// and numbers of rows. An existing file is never touched; on a failure (`Failure`) no file stays behind.
void backUpStore(const QString &path, const QString &copy);

/// The same beside the store, as PATH.before-WHAT-DATE-TIME; where that is taken, with -2, -3, ... after it. Returns
/// the path of the copy.
MORATOOLS_EXPORT QString keepCopy(const QString &path, const QString &what);

} // namespace moratools
