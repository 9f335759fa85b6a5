#include "VehicleDetector.h"

#include "Net.h"
#include "SpecialWords.h"

VehicleDetector::VehicleDetector()
    : length(gNet.config().inSceneUnits(1.0)), type(gSpecialWords.getWord(QStringLiteral("标准检测器"))) {}
