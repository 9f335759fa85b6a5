#pragma once

#include <QString>

/// The source tree, with examples/ and CHANGELOG.md.
QString sourceFolder();

/// The SQL text of the PostgreSQL schema that this build made.
QString postgresqlText();

/// The morastore program of this build.
QString morastoreProgram();
