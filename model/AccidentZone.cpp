#include "AccidentZone.h"

long AccidentZone::duration() const {
    if (fixedDuration > 0)
        return fixedDuration;
    if (level < 1)
        return 2147483; // for good: the largest number of seconds whose milliseconds fit into 32 bits
    if (level == 1)
        return 600;
    return level == 2 ? 3600 : 10800;
}
