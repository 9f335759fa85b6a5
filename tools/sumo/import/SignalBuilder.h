#pragma once

#include "model/NetContents.h"
#include "tools/sumo/import/IdSource.h"
#include "tools/sumo/import/NetworkMap.h"
#include "tools/sumo/import/SignalPlan.h"

namespace moratools {

/// Makes signal groups and lamps. Each signal of a programme becomes a phase, named by its index; states of
/// one colour that follow each other are one colour interval. Times are whole seconds: the ends of the
/// states are rounded, so that a cycle keeps its length. A group starts when its cycle first does and ends
/// with the day.
///
/// Colours: G and g are green, y and Y yellow, r red. Red-yellow (u) and the stop before a turn on red (s)
/// are red too; off (O) and blinking (o) are grey.
///
/// A lamp stands at the end of the lane that a controlled connection leaves.
void buildSignals(const SignalPlan &plan, const NetworkMap &network, IdSource &ids, TrafficObjects &into);

} // namespace moratools
