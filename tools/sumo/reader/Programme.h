#pragma once

#include "tools/sumo/reader/SumoNet.h"

namespace moratools {

class XmlInput;

/// Reads the current element, a signal programme (tlLogic), to its end.
SumoProgramme readProgramme(XmlInput &input);

} // namespace moratools
