#include "tools/sumo/routing/TripRouter.h"

#include "tools/sumo/routing/RoadGraph.h"
#include "tools/sumo/routing/TravelProfile.h"

#include <algorithm>
#include <map>
#include <memory>

namespace moratools {

namespace {

/// Legs that begin on an edge: where they end, and the way there once it is known.
using Legs = std::map<int, RoadGraph::Way>;

class TripRouter {
public:
    TripRouter(const SumoNet &net, SumoCompanions &companions);

    std::vector<UnservedTrip> route(const Progress &progress);

private:
    /// A trip as a row of edges that it has to pass.
    struct Trip {
        std::size_t vehicle;
        const TravelProfile *profile;
        std::vector<int> edges;
    };

    void addTrip(std::size_t vehicle);
    const TravelProfile &profileOf(QString type);
    std::vector<int> edgesOf(const SumoVehicle &vehicle) const;
    void findWays(const Progress &progress);
    /// The legs of a trip in one; empty where one is missing, which `reason` names then.
    QStringList wayOf(const Trip &trip, QString &reason) const;
    int routeOf(const QStringList &edges);

    const SumoNet &mNet;
    SumoCompanions &mCompanions;
    QHash<QString, const SumoVehicleType *> mTypes;
    QHash<QString, QString> mMostFrequent; ///< type of a distribution
    QHash<QString, QString> mLaneOfStop;
    std::vector<Trip> mTrips;
    std::map<TravelProfile, std::map<int, Legs>> mLegs;
    QHash<QString, int> mRoutes; ///< by edges
};

TripRouter::TripRouter(const SumoNet &net, SumoCompanions &companions) : mNet(net), mCompanions(companions) {
    for (const SumoVehicleType &type : companions.vehicleTypes)
        mTypes.insert(type.id, &type);
    for (const SumoDistribution &distribution : companions.typeDistributions) {
        const auto most = std::max_element(
            distribution.members.begin(), distribution.members.end(),
            [](const SumoChoice &a, const SumoChoice &b) { return a.probability < b.probability; });
        if (most != distribution.members.end())
            mMostFrequent.insert(distribution.id, most->id);
    }
    for (const SumoBusStop &stop : companions.busStops)
        mLaneOfStop.insert(stop.id, stop.lane);
}

const TravelProfile &TripRouter::profileOf(QString type) {
    type = mMostFrequent.value(type, type);
    const SumoVehicleType *known = mTypes.value(type);
    SumoVehicleType usual;
    usual.vClass = QStringLiteral("passenger");
    return mLegs.try_emplace(travelProfileOf(known ? *known : usual)).first->first;
}

std::vector<int> TripRouter::edgesOf(const SumoVehicle &vehicle) const {
    QStringList names{vehicle.from};
    names += vehicle.via;
    if (vehicle.via.isEmpty()) {
        for (const SumoStop &stop : vehicle.stops) {
            const QString lane = stop.busStop.isEmpty() ? stop.lane : mLaneOfStop.value(stop.busStop);
            names.append(lane.left(lane.lastIndexOf(QLatin1Char('_'))));
        }
    }
    names.append(vehicle.to);
    std::vector<int> edges;
    for (const QString &name : names) {
        const auto known = mNet.edgeIndex.constFind(name);
        if (known != mNet.edgeIndex.constEnd() && (edges.empty() || edges.back() != *known))
            edges.push_back(*known);
    }
    return edges;
}

void TripRouter::addTrip(std::size_t vehicle) {
    const SumoVehicle &record = mCompanions.vehicles[vehicle];
    if (record.hasRoute() || record.isAtArea || record.from.isEmpty() || record.to.isEmpty())
        return;
    Trip trip{vehicle, &profileOf(record.type), edgesOf(record)};
    std::map<int, Legs> &legs = mLegs[*trip.profile];
    for (std::size_t i = 0; i + 1 < trip.edges.size(); ++i)
        legs[trip.edges[i]][trip.edges[i + 1]];
    if (trip.edges.size() == 1)
        legs[trip.edges[0]][trip.edges[0]];
    mTrips.push_back(std::move(trip));
}

void TripRouter::findWays(const Progress &progress) {
    std::size_t searches = 0;
    for (const auto &profile : mLegs)
        searches += profile.second.size();
    std::size_t done = 0;
    for (auto &[profile, starts] : mLegs) {
        const RoadGraph graph(mNet, profile);
        for (auto &[from, legs] : starts) {
            reportShare(progress, double(done++) / double(searches));
            std::vector<int> ends;
            for (const auto &leg : legs)
                ends.push_back(leg.first);
            std::vector<RoadGraph::Way> ways = graph.ways(from, ends);
            for (std::size_t i = 0; i < ends.size(); ++i)
                legs[ends[i]] = std::move(ways[i]);
        }
    }
    reportShare(progress, 1);
}

QStringList TripRouter::wayOf(const Trip &trip, QString &reason) const {
    const std::map<int, Legs> &starts = mLegs.at(*trip.profile);
    const auto nameOf = [this](int edge) { return mNet.edges[std::size_t(edge)].id; };
    QStringList names{nameOf(trip.edges.front())};
    for (std::size_t i = 0; i < trip.edges.size(); ++i) {
        const bool isLast = i + 1 == trip.edges.size();
        if (isLast && i > 0)
            break;
        const int to = trip.edges[isLast ? i : i + 1];
        const RoadGraph::Way &way = starts.at(trip.edges[i]).at(to);
        if (way.empty()) {
            reason = QStringLiteral("no way from edge \"%1\" to \"%2\" for the class \"%3\"")
                         .arg(nameOf(trip.edges[i]), nameOf(to), trip.profile->vClass);
            return {};
        }
        for (std::size_t k = 1; k < way.size(); ++k)
            names.append(nameOf(way[k]));
    }
    return names;
}

/// The route of these edges; vehicles that drive the same share it.
int TripRouter::routeOf(const QStringList &edges) {
    const QString key = edges.join(QLatin1Char(' '));
    const auto known = mRoutes.constFind(key);
    if (known != mRoutes.constEnd())
        return *known;
    SumoRoute route;
    route.edges = edges;
    mCompanions.routes.push_back(std::move(route));
    return *mRoutes.insert(key, int(mCompanions.routes.size()) - 1);
}

std::vector<UnservedTrip> TripRouter::route(const Progress &progress) {
    for (std::size_t i = 0; i < mCompanions.vehicles.size(); ++i)
        addTrip(i);
    findWays(progress);
    std::vector<UnservedTrip> unserved;
    for (const Trip &trip : mTrips) {
        QString reason;
        const QStringList way = wayOf(trip, reason);
        if (way.isEmpty())
            unserved.push_back({trip.vehicle, reason});
        else
            mCompanions.vehicles[trip.vehicle].route = routeOf(way);
    }
    return unserved;
}

} // namespace

std::vector<UnservedTrip> routeTrips(const SumoNet &net, SumoCompanions &companions,
                                     const Progress &progress) {
    return TripRouter(net, companions).route(progress);
}

} // namespace moratools
