#pragma once

#include <QString>
#include <QStringList>

// Lists in tests/golden that results are compared with as a whole. Where a difference is meant, set
// MORASTORE_WRITE_GOLDEN to write them anew, and read what has changed in them.

/// Writes @p lines as the list @p name where that is wished; whether it was.
bool writesGolden(const QString &name, const QStringList &lines);

/// The lines of the list @p name.
QStringList readGolden(const QString &name);
