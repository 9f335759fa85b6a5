#include "VehicleQueueCounter.h"

#include "Net.h"

VehicleQueueCounter::VehicleQueueCounter() {
    init();
}

VehicleQueueCounter::VehicleQueueCounter(const QPointF &position) : x(position.x()), y(position.y()) {
    init();
}

void VehicleQueueCounter::init() {
    const Configuration &scene = gNet.config();
    speedLowLimit = scene.inSceneUnits(5 / 3.6);
    speedUpLimit = scene.inSceneUnits(10 / 3.6);
    maxDistInterval = scene.inSceneUnits(20.0);
    maxQueueLength = scene.inSceneUnits(500.0);
}
