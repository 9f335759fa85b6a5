#include "BusLine.h"

#include "Net.h"

BusLine::BusLine() : BusLine(gNet) {}

BusLine::BusLine(const Net &net) : desirSpeed(net.config().inSceneUnits(50 / 3.6)) {}

void BusLine::init() {
    *this = BusLine();
}
