#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"
#include "tools/sumo/import/LeftOut.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QJsonObject>

namespace moratools {

/// What an import made of its files, element by element and attribute by attribute:
///
///     {"files": [{"name": "city.net.xml", "bytes": 123}, ...],
///      "elements": [{"element": "lane", "attribute": "width", "read": 20, "target": "column",
///                    "where": "Lane.width"}, ...]}
///
/// `attribute` is null for the elements themselves; `target` is "column", "attributes" or "leftOut", the last
/// with a `reason` and without `where` (null). The rows of an element, and those of one of its attributes, add
/// up to what the files have of it. Names within a reason are left out, so that equal reasons make one row.
///
/// Reads the files once more: `net` and `companions`, of which `leftOut` names elements. Throws `Failure` when
/// they cannot be read any more.
MORATOOLS_EXPORT QJsonObject importReport(const SumoNet &net, const SumoCompanions &companions,
                                          const LeftOut &leftOut, const Progress &progress = {});

} // namespace moratools
