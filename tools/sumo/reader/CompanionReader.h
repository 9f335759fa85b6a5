#pragma once

#include "tools/sumo/reader/NetReader.h"
#include "tools/sumo/reader/SumoCompanions.h"

/// Reads a SUMO file of demand or additional objects (plain or gzip-compressed) as a stream and appends what
/// it holds to `into`. References are not followed: they may lead to files that come later. Throws `Failure`
/// with the file, the line and what to do when the file is missing, cut off or not XML, is a network or a
/// configuration, or has an attribute that cannot be read.
void readSumoCompanion(const QString &path, SumoCompanions &into, const Progress &progress = {});
