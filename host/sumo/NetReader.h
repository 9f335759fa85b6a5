#pragma once

#include "host/sumo/SumoNet.h"

#include <functional>

/// Called now and then with the share of the file that has been read, 0 to 1.
using ReadProgress = std::function<void(double)>;

/// Reads a SUMO network (.net.xml, plain or gzip-compressed) as a stream and checks that every reference in
/// it leads somewhere. Throws `Failure` with the file, the line and what to do when the file is missing, cut
/// off, not XML, no network, or inconsistent.
SumoNet readSumoNet(const QString &path, const ReadProgress &progress = {});
