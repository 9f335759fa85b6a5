#pragma once

#include "model/GeometryLine.h"
#include "tools/MoraToolsExport.h"
#include "tools/kinds/NetworkObjects.h"

namespace moratools {

/// @{ Networks hold links that are no roads, since trains or ships use them. The vocabulary has no word for
/// these: they and their lanes have no type, and the link's attributes say "notRoad" under "sumo".
MORATOOLS_EXPORT bool isRoad(const Link &link);
MORATOOLS_EXPORT void markNoRoad(Link &link);
/// @}

/// The link's line: its centre line, or its vertices where it has none.
GeometryLine lineOf(const Link &link);

/// Takes out of a network in memory what is no road, with all that is on it.
MORATOOLS_EXPORT void keepRoads(NetworkObjects &network);

} // namespace moratools
