#pragma once

#include <QString>

/// The source tree, with examples/ and CHANGELOG.md.
QString sourceFolder();

/// The morastore program of this build.
QString morastoreProgram();
