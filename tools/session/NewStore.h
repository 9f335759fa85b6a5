#pragma once

#include <QString>
#include <QStringList>

/// Names of the template stores that the library carries.
QStringList templateNames();

/// The template of the newest generation.
QString newestTemplate();

/// Makes the store `path` from the template `name`, opened once so that it has the current schema. An
/// existing file is never touched; on a failure (`Failure`) no file stays behind.
void makeStore(const QString &path, const QString &name);
