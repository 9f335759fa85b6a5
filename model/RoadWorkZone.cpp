#include "RoadWorkZone.h"

#include "Net.h"

RoadWorkZone::RoadWorkZone()
    : zoneLength(gNet.config().inSceneUnits(100.0)), limitSpeed(gNet.config().inSceneUnits(60 / 3.6)) {}
