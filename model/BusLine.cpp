#include "BusLine.h"

#include "Net.h"

BusLine::BusLine() : desirSpeed(gNet.config().inSceneUnits(50 / 3.6)) {}

void BusLine::init() {
    *this = BusLine();
}
