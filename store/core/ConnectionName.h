#pragma once

#include <QString>

/// A name for a connection of the library's own that no other connection of the process has.
/// @param purpose what the connection is for, as a word.
QString newConnectionName(const char *purpose);
