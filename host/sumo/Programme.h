#pragma once

#include "host/sumo/SumoNet.h"

class XmlInput;

/// Reads the current element, a signal programme (tlLogic), to its end.
SumoProgramme readProgramme(XmlInput &input);
