#include "RoadWorkZone.h"

#include "Net.h"

RoadWorkZone::RoadWorkZone() : RoadWorkZone(gNet) {}

RoadWorkZone::RoadWorkZone(const Net &net)
    : zoneLength(net.config().inSceneUnits(100.0)), limitSpeed(net.config().inSceneUnits(60 / 3.6)) {}
