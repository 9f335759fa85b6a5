#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"
#include "tools/sumo/reader/SumoNet.h"

namespace moratools {

/// Reads a SUMO network (.net.xml, plain or gzip-compressed) as a stream and checks that every reference in
/// it leads somewhere. Throws `Failure` with the file, the line and what to do when the file is missing, cut
/// off, not XML, no network, or inconsistent.
MORATOOLS_EXPORT SumoNet readSumoNet(const QString &path, const Progress &progress = {});

} // namespace moratools
