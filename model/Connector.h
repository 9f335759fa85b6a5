#pragma once

#include "LaneConnector.h"
#include "MoraStoreExport.h"
#include "NetIndex.h"
#include "OwningList.h"
#include "StoredJson.h"

#include <QString>

#include <memory>

class Link;

/// Joins the end of one link to the start of another. It owns its lane connectors.
class MORASTORE_EXPORT Connector {
public:
    /// The road id starts as `id`, too. The links stay with their owners.
    Connector(long id, Link *from, Link *to);

    /// A copy that the caller owns, of the same id and between the same links, with copies of the lane
    /// connectors, of the same numbers and lanes, which are the copy's. None is in a network's tables.
    std::unique_ptr<Connector> clone() const;
    Connector &operator=(const Connector &) = delete;

    long connID = 0;
    long roadId = 0;
    QString connName = QStringLiteral("1");
    double length = 0; ///< metres
    double curvature = 1.0;
    double nonLinearCoefficient = 1.0;
    QString color = QStringLiteral("CCCCCC"); ///< as Link::laneColor
    double desiredSpeed = 50.0;               ///< km/h
    double limitSpeed = 80.0;                 ///< km/h
    StoredJson leftBreakPointsJson; ///< the geometry objects hold {"data":[{"x":..,"y":..,"z":..}, ...]}
    StoredJson rightBreakPointsJson;
    StoredJson otherAttrsJson; ///< the host's
    Link *mpStartLink = nullptr;
    Link *mpEndLink = nullptr;
    OwningList<LaneConnector> mlLaneConnector;
    QList<long> mlLimitVehicle; ///< codes of the restricted vehicle types

    /// The network whose tables have the object; null while none has.
    Net *net() const { return mPlace.net(); }

private:
    friend class NetIndex<Connector>;
    Connector(const Connector &) = default;

    NetIndex<Connector>::Place mPlace;
};
