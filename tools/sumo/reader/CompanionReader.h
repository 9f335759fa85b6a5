#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/reader/NetReader.h"
#include "tools/sumo/reader/SumoCompanions.h"

namespace moratools {

/// As which kind of file SUMO is given one. Either may hold everything.
enum class CompanionRole { Additional, Routes };

/// Reads a SUMO file of demand or additional objects (plain or gzip-compressed) as a stream and appends what
/// it holds to `into`, both as records and as it stands; files that it includes are noted, not read. References are
/// not followed: they may lead to files that come later. Throws `Failure` with the file, the line and what to do
/// when the file is missing, cut off or not XML, is a network or a configuration, or has an attribute that cannot be
/// read.
MORATOOLS_EXPORT void readSumoCompanion(const QString &path, SumoCompanions &into,
                                        const Progress &progress = {},
                                        CompanionRole role = CompanionRole::Additional);

} // namespace moratools
