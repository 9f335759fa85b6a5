#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QString>

namespace moratools {

/// How roads and lanes of a SUMO network are called in a store: entries of the fixed vocabulary, to be asked
/// for with SpecialWords::getWord().
namespace vocabulary {

/// The kind of a lane by the vehicles that it admits. A lane without any restriction is a motor lane: nothing
/// is said about it. One that names its vehicles is a shared lane when bicycles may use it beside cars, a bus
/// lane when only public transport (trams and trains included) may, a non-motor lane when two-wheelers are
/// the fastest, a sidewalk when pedestrians are. Everything else is a motor lane.
MORATOOLS_EXPORT QString laneKind(const VehicleClasses &permissions);

/// The class of a road by its type where that follows the OpenStreetMap classes ("highway.primary", with
/// further types before a "|"), else by the kind of its lanes when they are all of one kind; an arterial road
/// otherwise.
MORATOOLS_EXPORT QString linkKind(const SumoEdge &edge);

} // namespace vocabulary

} // namespace moratools
