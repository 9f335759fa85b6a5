#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>
#include <QStringList>

namespace moratools {

/// Names of the template stores that the library carries.
MORATOOLS_EXPORT QStringList templateNames();

/// The template of the newest generation.
MORATOOLS_EXPORT QString newestTemplate();

/// Makes the store `path` from the template `name`, opened once so that it has the current schema. An
/// existing file is never touched; on a failure (`Failure`) no file stays behind.
MORATOOLS_EXPORT void makeStore(const QString &path, const QString &name);

} // namespace moratools
