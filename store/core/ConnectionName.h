#pragma once

#include "model/MoraStoreExport.h"

#include <QString>

/// A name for a connection beside those of hosts that no other connection of the process has.
/// @param purpose what the connection is for, as a word.
MORASTORE_EXPORT QString newConnectionName(const char *purpose);
