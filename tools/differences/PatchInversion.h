#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

class QIODevice;

namespace moratools {

/// Writes the patch that takes back what the one in `patch` does, line by line. `name` is what messages call
/// that one; both devices are open. Throws `Failure` for a patch that is none, and when it cannot be written.
MORATOOLS_EXPORT void invertPatch(QIODevice &patch, const QString &name, QIODevice &inverse);

} // namespace moratools
