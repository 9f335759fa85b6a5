#pragma once

#include "model/NetContents.h"
#include "tools/sumo/import/DemandPlan.h"
#include "tools/sumo/import/IdSource.h"
#include "tools/sumo/import/NetworkMap.h"

namespace moratools {

/// Makes vehicle types, compositions, departure points and decision points.
///
/// Vehicle types get the codes above those in `into`, which holds the network's standard catalogue. A figure
/// that a type does not give is the one of the standard type of its class; one that it gives has no
/// deviation, since all vehicles of the type share it. Speeds are km/h in a store.
///
/// Distributions become compositions, and a single type that vehicles depart with one of its own, at 100 %.
///
/// Departure points have an interval for each slice and composition, ended by the slice's end in seconds.
/// A slice begins where the one before ends: an interval of no vehicles ends the time without departures.
///
/// Decision points stand at the start of their link. A route that drives a link a second time goes on in a
/// further chain: the store keeps a link once in a chain. An interval without ratios, which leaves no row,
/// ends the time for which nothing is known.
class DemandBuilder {
public:
    DemandBuilder(const SumoCompanions &companions, const NetworkMap &network, IdSource &ids,
                  TrafficObjects &into)
        : mCompanions(companions), mNetwork(network), mIds(ids), mInto(into) {}

    void buildTypes();
    void buildDemand(const DemandPlan &plan);

    /// The codes of a vehicle type or of the members of a distribution.
    QList<long> typeCodes(const QString &id) const;

private:
    void addComposition(const QString &name, const std::vector<SumoChoice> &members);
    const VehicleComposition &compositionOf(const QString &type);
    void addDeparturePoint(const PlannedDepartures &planned);
    void addDecisionPoint(const PlannedDecision &planned);
    void addRoutes(DecisionPoint &point, const PlannedDecision &planned);
    void addRatios(DecisionPoint &point, const PlannedDecision &planned);

    const SumoCompanions &mCompanions;
    const NetworkMap &mNetwork;
    IdSource &mIds;
    TrafficObjects &mInto;
    QHash<QString, long> mTypeCodes;
    QHash<QString, const VehicleComposition *> mCompositions; ///< by type or distribution
};

} // namespace moratools
