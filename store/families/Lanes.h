#pragma once

#include "store/core/Store.h"

#include <QVariant>

class Lane;
class Link;
class NetLoad;
class NetSave;

/// The lanes of a link: they are written and read with it.
namespace lanes {

/// The lane of serial number 1, the rightmost; null without one.
const Lane *firstLane(const Link &link);
/// The lane of the highest serial number, the leftmost; null without lanes.
const Lane *lastLane(const Link &link);

/// Writes the lanes. @param soFar the verdict so far: attributes are written only while nothing has failed.
/// @return the verdict with the lanes.
bool insertLanes(const Store &store, const Link &link, bool soFar);
/// Writes the vehicle types that may not use the lanes. Generation 6 keeps none.
bool insertLaneRestrictions(const Store &store, const Link &link);

/// Appends the stored lanes to @p link, by serial number, with their restrictions.
void readLanesOf(const Store &store, Link &link);
QVariantList describeLanes(const Link &link);

/// The lanes of the links loaded before.
void loadAllLanes(NetLoad &net);
void saveAllLanes(NetSave &net);

} // namespace lanes
