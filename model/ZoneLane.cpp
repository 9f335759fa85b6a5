#include "ZoneLane.h"

#include <algorithm>

bool ZoneLane::allOnLink(const QList<ZoneLane *> &lanes) {
    return std::all_of(lanes.begin(), lanes.end(),
                       [](const ZoneLane *lane) { return lane->toLaneNumber < 0; });
}
