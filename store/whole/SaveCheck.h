#pragma once

#include "store/core/Store.h"

struct NetContents;

/// Looks through a network before any of it is written.
///
/// Objects point to others of the same network: a lane that was deleted or a link that was taken out of it is
/// known by that, and is not looked into. Where objects are named by id, 0 names none, so that an object
/// which gets its id only in the save cannot be meant, and a row with that 0 would be lost at the next load.
/// @return false when an object is refused, which is recorded.
bool refersToItself(const Store &store, const NetContents &contents);
/// The same for what is marked as changed, by what it points to alone.
bool changesReferToNet(const Store &store, const NetContents &contents);
