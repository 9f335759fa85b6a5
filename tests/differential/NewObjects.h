#pragma once

#include "model/NetContents.h"

namespace differential {

/// Takes the ids of all objects that no other one knows by its id, and what a save derives from ids: such
/// objects get them from the next save. Of a network that was read it takes what does not depend on which
/// ids were free.
void forgetIds(NetContents &net);

/// Puts objects in front of the others of their kinds. Where those have forgotten their ids these have none,
/// either, so that a save gives them the ids that an earlier one may have given to those.
void putOthersInFront(NetContents &net);

} // namespace differential
