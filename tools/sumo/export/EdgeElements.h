#pragma once

#include "tools/sumo/export/ExportedRoads.h"
#include "tools/sumo/kept/KeptElement.h"

#include "tools/sumo/reader/VehicleClasses.h"

#include <QSet>

namespace moratools {

/// A junction as `<node>` of SUMO's plain form, without what it says of signals.
KeptElement nodeElement(const ExportedJunction &junction);

/// A link as `<edge>` of SUMO's plain form, with its lanes.
///
/// Where it is as an import found it, that is what the import has kept. Else the edge follows the link's line, its lanes
/// lie to either side of it, and what the lanes are called says who may use them.
///
KeptElement edgeElement(const ExportedRoads &roads, const Link &link);

/// A link as `<edge>` of a network file: its lanes have lines of their own, from junction to junction.
KeptElement netEdgeElement(const ExportedRoads &roads, const Link &link);

/// The `<type>`s of the edges that edgeElement() gives a type of its own.
std::vector<KeptElement> typeElements(const ExportedRoads &roads);

/// Which vehicle classes may use a lane.
VehicleClasses permittedOn(const Link &link, const Lane &lane);

/// What is kept of a lane of a link beside what all lanes of the link have: an object of attributes.
QJsonObject keptOfLane(const Link &link, const Lane &lane);

/// Adds the attributes of an object of kept attributes, but those named, and its parameters and children.
void addKept(KeptElement &element, const QJsonObject &kept, const QSet<QString> &but);

} // namespace moratools
