#pragma once

#include "tools/sumo/reader/SumoNet.h"

class XmlInput;

/// Reads the current element, a signal programme (tlLogic), to its end.
SumoProgramme readProgramme(XmlInput &input);
