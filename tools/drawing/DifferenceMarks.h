#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/DifferenceReport.h"
#include "tools/drawing/Marks.h"
#include "tools/kinds/NetworkObjects.h"

#include <vector>

namespace moratools {

/// Where two networks differ, for a picture of the second: what is new green, what is gone red, what is changed
/// amber. Roads are lines, all else rings.
struct DifferenceMarks {
    std::vector<Marks> marks;
    int nowhere = 0; ///< objects that stand nowhere: settings, vehicle types
};

MORATOOLS_EXPORT DifferenceMarks marksOf(const DifferenceReport &report, const NetworkObjects &before,
                                         const NetworkObjects &after);

} // namespace moratools
