#pragma once

#include "host/Progress.h"
#include "model/Connector.h"
#include "model/Link.h"
#include "model/Net.h"

#include <memory>
#include <vector>

/// The objects of a network, owned: as they were written into a store or as they were read from it.
struct NetworkObjects {
    NetRecord record;
    std::vector<std::unique_ptr<Link>> links;
    std::vector<std::unique_ptr<Connector>> connectors; // after the links, so that they are destroyed first
};

/// Reads network `netId` (0: the store's first) of the open store object by object, in the order of ids. It
/// becomes the current network gNet, which must not hold objects of it already. Throws `Failure` when there
/// is no such network or an object that the store lists cannot be read.
NetworkObjects readNetwork(long netId, Progress &progress);
