#include "store/whole/KnownRoads.h"

#include "store/core/Query.h"
#include "store/whole/NetLoad.h"

bool roadIsKnown(NetLoad &net, long roadId) {
    constexpr Sql road = {
        "select LinkID from Link where LinkID = %0 union select ConnID from Connector where ConnID = %1",
        "select linkID from Link where NetId = %0 and linkID = %1 union select connID from Connector where NetId = %2 and connID = %3"};
    if (gNet.getLinkById(roadId) || gNet.getConnectorById(roadId))
        return true;
    return net.store.hasSeveralNets()
               ? Query(net.store, road, {roadId, net.store.netId(), roadId}).execAndNext()
               : Query(net.store, road, {roadId, roadId}).execAndNext();
}
