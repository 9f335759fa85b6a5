#pragma once

#include "MoraStoreExport.h"
#include "OwningList.h"
#include "Routing.h"
#include "RoutingFlowByInterval.h"

#include <QString>

#include <memory>

class Link;
struct _DecisionPoint;

/// Where passing vehicles are given a route. It owns its routes and flow intervals; a copy has copies of
/// them, which lead back to the copy.
class MORASTORE_EXPORT DecisionPoint {
public:
    DecisionPoint() = default;
    DecisionPoint(const DecisionPoint &other);
    DecisionPoint &operator=(const DecisionPoint &other);
    /// Takes id, name and place; the link is the one that gNet has under the record's id, or null. Routes and
    /// flow intervals stay.
    DecisionPoint &operator=(const _DecisionPoint &record);
    /// A copy that the caller owns, on the same link, with copies of its routes and flow intervals.
    std::unique_ptr<DecisionPoint> clone() const { return std::make_unique<DecisionPoint>(*this); }

    long deciPointID = 0;
    QString deciPointName;
    Link *mpLink = nullptr; ///< not owned
    double x = 0;
    double y = 0;
    double z = 0;
    OwningList<Routing> mlRouting;
    OwningList<RoutingFlowByInterval> mlFlowByInterval; ///< in ascending order of their ends
};
