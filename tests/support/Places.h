#pragma once

#include <QString>

/// The source tree, with examples/ and CHANGELOG.md.
QString sourceFolder();

/// The SQL text of the PostgreSQL schema that this build made.
QString postgresqlText();

/// The morastore program of this build.
QString morastoreProgram();

/// The same program, killing itself at the event that MORASTORE_KILL_AT numbers.
QString killedMorastoreProgram();
