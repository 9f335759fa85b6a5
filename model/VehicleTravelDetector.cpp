#include "VehicleTravelDetector.h"

void VehicleTravelDetector::empty() {
    VehicleTravelDetector fresh;
    fresh.startX = startX;
    fresh.startY = startY;
    fresh.teminalX = teminalX;
    fresh.teminalY = teminalY;
    *this = fresh;
}
