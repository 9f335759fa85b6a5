#pragma once

#include "tools/MoraToolsExport.h"

#include <QByteArray>
#include <QString>

namespace moratools {

/// Throws `Failure` when nothing can be written to `path`: a folder, a link that leads to itself, a store.
/// `what` says what is to be there ("picture").
MORATOOLS_EXPORT void requireOutputPath(const QString &path, const QString &what);

/// Writes a file as a whole: the one that a link leads to is replaced in one go, or on a failure stays as it was. A
/// device or a pipe is written to. Throws `Failure` when it cannot be written.
MORATOOLS_EXPORT void writeOutputFile(const QString &path, const QByteArray &bytes);

} // namespace moratools
