#include "VehicleQueueCounter.h"

#include "Net.h"

VehicleQueueCounter::VehicleQueueCounter() : VehicleQueueCounter(gNet) {}

VehicleQueueCounter::VehicleQueueCounter(const QPointF &position) : VehicleQueueCounter() {
    x = position.x();
    y = position.y();
}

VehicleQueueCounter::VehicleQueueCounter(const Net &net)
    : speedLowLimit(net.config().inSceneUnits(5 / 3.6)),
      speedUpLimit(net.config().inSceneUnits(10 / 3.6)),
      maxDistInterval(net.config().inSceneUnits(20.0)),
      maxQueueLength(net.config().inSceneUnits(500.0)) {}
