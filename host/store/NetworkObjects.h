#pragma once

#include "host/Progress.h"
#include "host/store/TrafficObjects.h"
#include "model/Connector.h"
#include "model/Link.h"
#include "model/Net.h"

#include <memory>
#include <vector>

/// The objects of a network, owned: as they were written into a store or as they were read from it.
struct NetworkObjects {
    NetRecord record;
    Objects<Link> links;
    Objects<Connector> connectors; // after the links, so that they are destroyed first
    TrafficObjects traffic;
};

/// Makes network `netId` (0: the store's first) of the open store the current network gNet and reads its
/// record. Throws `Failure` when there is no such network.
NetworkObjects openNetwork(long netId);

/// Reads network `netId` (0: the store's first) of the open store object by object, in the order of ids. It
/// becomes the current network gNet, which must not hold objects of it already. Throws `Failure` when there
/// is no such network or an object that the store lists cannot be read.
NetworkObjects readNetwork(long netId, Progress &progress);
