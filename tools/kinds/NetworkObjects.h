#pragma once

#include "tools/kinds/TrafficObjects.h"
#include "tools/reports/Progress.h"

#include <QStringList>

/// The objects of a network, owned: as they were written into a store or as they were read from it.
using NetworkObjects = NetContents;

/// Makes network `netId` (0: the store's first) of the open store the current network gNet and reads its
/// record. Throws `Failure` when there is no such network.
NetworkObjects openNetwork(long netId);

/// Reads network `netId` (0: the store's first) of the open store as a whole. It becomes the current network
/// gNet, whose tables hold these objects alone. Throws `Failure` when there
/// is no such network or an object that the store lists cannot be read.
NetworkObjects readNetwork(long netId, const Progress &progress = {});

/// What the reading of a damaged store left out or took only in part, a line for each reason; empty for a
/// sound one.
QStringList damageOf(const NetworkObjects &network);
