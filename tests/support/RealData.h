#pragma once

#include "tests/support/Places.h"

#include <QDir>
#include <QFileInfo>
#include <QString>

/// A file of the real networks that lie beside the project, or in the folder named by MORA_REAL_DATA; empty
/// where there is none.
inline QString realDataFile(const QString &name) {
    const QString folder = qEnvironmentVariableIsSet("MORA_REAL_DATA")
                               ? qEnvironmentVariable("MORA_REAL_DATA")
                               : sourceFolder() + QStringLiteral("/../shared/data");
    const QFileInfo file(QDir(folder).filePath(name));
    return file.isFile() ? QDir::cleanPath(file.absoluteFilePath()) : QString();
}
