#pragma once

#include "MoraStoreExport.h"

#include <QList>
#include <QString>

#include <memory>

class DecisionPoint;
class Link;

/// A route that vehicles take from a decision point. A copy names the same decision point and the same links.
class MORASTORE_EXPORT Routing {
public:
    /// Back to the state of a new route; point and links stay with their owners.
    void init();
    /// A copy that the caller owns, at the same decision point and along the same links.
    std::unique_ptr<Routing> clone() const { return std::make_unique<Routing>(*this); }

    long routingID = 0;
    QString routingName;
    double proportion = 0;                    ///< share of the traffic
    DecisionPoint *mpDecisionPoint = nullptr; ///< not owned
    QList<QList<Link *>> mlLinkChain;         ///< sub-chains of links in driving order; not owned
};
