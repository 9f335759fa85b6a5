#pragma once

#include "tools/reports/Progress.h"
#include "tools/sumo/export/ExportedSignals.h"

namespace moratools {

/// The network that netconvert has made of the plain form, beside what the store has.
namespace builtnet {

/// The links whose lanes are longer or shorter there. Throws `Failure` when the file cannot be read.
std::vector<const Link *> ofOtherLength(const QString &path, const ExportedRoads &roads);

/// Writes the network at `from` to `to`, with what making it has changed put back: the programmes, from which letters were
/// cut, and lengths that edges say only so that their lanes have them. The comment in which netconvert says when and
/// from which files it made the network stays behind. Throws `Failure`.
void putRight(const QString &from, const QString &to, const ExportedRoads &roads,
              const ExportedSignals &controls);

} // namespace builtnet

} // namespace moratools
