#include "Passenger.h"

long Passenger::generId = 0;
