#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

namespace moratools {

/// Sizes of a store's file, bytes.
struct Compaction {
    qint64 before = 0;
    qint64 after = 0;
};

/// Writes the SQLite store `path`, of whatever age, anew without the pages that nothing uses. Its rows keep
/// their order; it is not brought forward. The engine does it in one transaction, so that a store of which
/// the process dies half-way is as it was. Throws `Failure`, with nothing changed: when the store is damaged,
/// another program uses it, or the disk has no room for the copy that the engine makes meanwhile.
MORATOOLS_EXPORT Compaction compactStore(const QString &path);

} // namespace moratools
