#include "VehicleDetector.h"

#include "Net.h"
#include "SpecialWords.h"
#include "Words.h"

VehicleDetector::VehicleDetector() : VehicleDetector(gNet, gSpecialWords) {}

VehicleDetector::VehicleDetector(const Net &net, const SpecialWords &words)
    : length(net.config().inSceneUnits(1.0)), type(words.getWord(Words::StandardDetector)) {}
