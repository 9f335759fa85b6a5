#pragma once

#include "tools/sumo/reader/SumoNet.h"

namespace moratools {

class XmlInput;

/// Reads the current element, a signal programme (tlLogic), to its end. Throws `Failure` with programme and phase
/// for times that a store cannot hold, for states of unequal length or unknown letters, and for a phase that goes
/// on with one that is not there.
/// `file` is what the source of the programme says.
SumoProgramme readProgramme(XmlInput &input, int file);

} // namespace moratools
