#pragma once

#include "model/NetContents.h"

#include <QStringList>

namespace differential {

/// Writes a network object by object, in the order of the lists and in one transaction, as a host does: its
/// record (where a store has several), its objects and settings. Kinds that no operation writes (zones, link
/// types) are written by statements of this function's own; standard rows give way to those of the network.
/// @return the objects whose operation gave false, "VehicleDetector 7".
QStringList writeSingly(NetContents &net, long netId, bool severalNets);

/// Reads a network object by object: every id that the lists of ids give. gNet must hold its record and
/// nothing else.
std::unique_ptr<NetContents> readSingly(long netId);

} // namespace differential
