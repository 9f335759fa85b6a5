#pragma once

#include "host/import/CompanionPlan.h"
#include "host/import/IdSource.h"
#include "host/store/NetworkObjects.h"

/// Makes the objects of `plan` on the roads of `network`, whose links are those of `net`, and writes them
/// into the open store. What the store has of them from the start (vehicle types, the standard composition)
/// is read into `network` as well. Part of the import's transaction; throws `Failure`.
void importTraffic(const SumoNet &net, const CompanionPlan &plan, IdSource &ids, NetworkObjects &network);
