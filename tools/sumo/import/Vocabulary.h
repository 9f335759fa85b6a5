#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QString>

namespace moratools {

/// How roads and lanes of a SUMO network are called in a store: entries of the fixed vocabulary, to be asked
/// for with SpecialWords::getWord().
namespace vocabulary {

/// Whether vehicles of the road, bicycles or pedestrians may use any lane of an edge. Railways, rivers and what
/// is closed to all are no roads.
MORATOOLS_EXPORT bool isRoad(const SumoEdge &edge);

/// The kind of a lane by the vehicles that it admits. A lane without any restriction is a motor lane: nothing
/// is said about it. One that names its vehicles is a shared lane when bicycles may use it beside cars, a bus
/// lane when of the vehicles of the road only public transport may, a non-motor lane when two-wheelers are the
/// fastest, a sidewalk when pedestrians are. For a lane that no road user may use (rails, a river) the
/// vocabulary has no word: its kind is empty. Everything else is a motor lane.
MORATOOLS_EXPORT QString laneKind(const VehicleClasses &permissions);

/// The class of a road. Where motor vehicles may use it, it follows the type when that is of the OpenStreetMap
/// classes of such roads ("highway.primary", with further types before a "|"); of another type, it follows the
/// kind of the lanes when they are all of one, and is an arterial road otherwise. Where only public transport,
/// only bicycles or only pedestrians may, it is a way for these, whatever its type. What is no road has no
/// class: empty.
MORATOOLS_EXPORT QString linkKind(const SumoEdge &edge);

} // namespace vocabulary

} // namespace moratools
