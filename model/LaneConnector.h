#pragma once

#include "MoraStoreExport.h"
#include "NetIndex.h"
#include "StoredJson.h"

#include <memory>

class Connector;
class Lane;

/// Joins a lane of a connector's first link to a lane of its second.
class MORASTORE_EXPORT LaneConnector {
public:
    /// Takes the next number of generId as its id. The three objects stay with their owners.
    LaneConnector(Connector *connector, Lane *from, Lane *to);

    /// A copy that the caller owns, of the same number, connector and lanes. It is in no network's tables.
    std::unique_ptr<LaneConnector> clone() const;
    LaneConnector &operator=(const LaneConnector &) = delete;

    long laneConnId = 0;
    int weight = 0;
    StoredJson centerLinePointsJson; ///< the geometry objects hold {"data":[{"x":..,"y":..,"z":..}, ...]}
    StoredJson leftBreakPointsJson;
    StoredJson rightBreakPointsJson;
    StoredJson otherAttrsJson; ///< the host's
    Connector *mpConnector = nullptr;
    Lane *mpStartLane = nullptr;
    Lane *mpEndLane = nullptr;

    /// The last id given. Lane connectors are numbered by process, afresh at every read; opening a store of
    /// generation 6 moves this past the ids that the store has. While other threads use stores it is reached
    /// by the functions below alone.
    static long generId;
    static long lastId();
    /// The next number.
    static long nextId();
    /// From now on numbers are above `id`.
    static void passId(long id);

    /// The network whose tables have the object; null while none has.
    Net *net() const { return mPlace.net(); }

private:
    friend class NetIndex<LaneConnector>;
    LaneConnector(const LaneConnector &) = default;

    NetIndex<LaneConnector>::Place mPlace;
};
