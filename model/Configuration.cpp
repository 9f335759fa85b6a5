#include "Configuration.h"

double Configuration::inSceneUnits(double metres) const {
    return metres / (scale > 0 ? scale : 1.0);
}
