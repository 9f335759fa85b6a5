#pragma once

#include "MoraSupportExport.h"

#include <QJsonObject>

/// Files of the host that its libraries read.
namespace FileHelper {

/// The host's configuration: one JSON object in the file that the environment variable MORA_CONFIG names,
/// else in "mora.json" in the application's configuration folders (QStandardPaths::AppConfigLocation). Empty
/// when there is no file. A file that MORA_CONFIG names and that cannot be read, or a file that holds no JSON
/// object, gives an empty object and an error in the log "config".
MORASUPPORT_EXPORT QJsonObject readConfigFile();

} // namespace FileHelper
