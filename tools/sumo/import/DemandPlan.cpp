#include "tools/sumo/import/DemandPlan.h"

#include "tools/sumo/import/Departures.h"
#include "tools/sumo/import/References.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>

namespace moratools {

namespace {

constexpr double kRounding = 1e-9;
constexpr int kMostVehicles = std::numeric_limits<int>::max();

/// A decision point while traffic is added to it.
struct OpenDecision {
    PlannedDecision plan;
    std::map<QString, std::size_t> routeOf;                        ///< by edges
    std::map<std::pair<double, double>, PlannedShares> intervalOf; ///< by end and begin

    void add(const QStringList &edges, const QString &routeName, double begin, double end, double weight) {
        const auto known = routeOf.emplace(edges.join(QLatin1Char(' ')), plan.routes.size());
        if (known.second)
            plan.routes.push_back({routeName, edges, 0});
        plan.routes[known.first->second].weight += weight;
        PlannedShares &interval = intervalOf[{end, begin}];
        interval.begin = begin;
        interval.end = end;
        interval.shares[known.first->second] += weight;
    }

    PlannedDecision close() {
        for (auto &interval : intervalOf) {
            double sum = 0;
            for (const auto &share : interval.second.shares)
                sum += share.second;
            // Shares that add up to 1 but for the last digits are kept as they are.
            if (sum > 0 && std::abs(sum - 1) > kRounding) {
                for (auto &share : interval.second.shares)
                    share.second /= sum;
            }
            plan.intervals.push_back(std::move(interval.second));
        }
        return std::move(plan);
    }
};

class DemandPlanner {
public:
    DemandPlanner(const SumoCompanions &companions, LeftOut &leftOut)
        : mCompanions(companions), mLeftOut(leftOut) {
        for (const SumoRoute &route : companions.routes) {
            if (!route.id.isEmpty() && !route.edges.isEmpty() && !mRoutes.contains(route.id))
                mRoutes.insert(route.id, &route);
        }
        for (const SumoDistribution &distribution : companions.routeDistributions)
            mDistributions.insert(distribution.id, &distribution);
    }

    DemandPlan plan();

private:
    struct Share {
        QStringList edges;
        QString name;
        double part = 1;
    };
    std::vector<Share> routesOf(const SumoVehicle &vehicle) const;
    void addVehicle(const SumoVehicle &vehicle);
    void addDepartures(const QString &edge, const QString &type, const std::map<int, int> &counts);
    void addTurns();
    OpenDecision &decisionAt(const QString &name, const QString &edge);

    const SumoCompanions &mCompanions;
    LeftOut &mLeftOut;
    QHash<QString, const SumoRoute *> mRoutes;
    QHash<QString, const SumoDistribution *> mDistributions;
    DemandPlan mPlan;
    QHash<QString, int> mDeparturesAt;
    std::vector<OpenDecision> mDecisions;
    QHash<QString, int> mDecisionOf;
};

std::vector<DemandPlanner::Share> DemandPlanner::routesOf(const SumoVehicle &vehicle) const {
    if (vehicle.route >= 0)
        return {{mCompanions.routes[std::size_t(vehicle.route)].edges, QString(), 1}};
    const auto single = mRoutes.constFind(vehicle.routeId);
    if (single != mRoutes.constEnd())
        return {{(*single)->edges, (*single)->id, 1}};
    const auto distribution = mDistributions.constFind(vehicle.routeId);
    if (distribution == mDistributions.constEnd())
        return {};
    double sum = 0;
    for (const SumoChoice &member : (*distribution)->members)
        sum += member.probability;
    std::vector<Share> shares;
    for (const SumoChoice &member : (*distribution)->members)
        shares.push_back({mRoutes.value(member.id)->edges, member.id, member.probability / sum});
    return shares;
}

/// Divides `count` among shares that add up to 1, in whole numbers that add up to it.
std::vector<int> divided(int count, const std::vector<double> &parts) {
    std::vector<int> counts;
    double before = 0;
    int given = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        before += parts[i];
        const int until = i + 1 == parts.size() ? count : int(std::lround(count * before));
        counts.push_back(until - given);
        given = until;
    }
    return counts;
}

void DemandPlanner::addVehicle(const SumoVehicle &vehicle) {
    const std::map<int, int> counts = departuresBySlice(vehicle);
    const std::vector<Share> routes = routesOf(vehicle);
    if (routes.empty()) {
        addDepartures(vehicle.from, vehicle.type, counts);
        return;
    }
    std::vector<double> parts;
    parts.reserve(routes.size());
    for (const Share &route : routes)
        parts.push_back(route.part);
    for (const auto &slice : counts) {
        const std::vector<int> shares = divided(slice.second, parts);
        for (std::size_t i = 0; i < routes.size(); ++i) {
            const Share &route = routes[i];
            addDepartures(route.edges.first(), vehicle.type, {{slice.first, shares[i]}});
            decisionAt(route.edges.first(), route.edges.first())
                .add(route.edges, route.name, double(slice.first) * kSliceSeconds,
                     (slice.first + 1.0) * kSliceSeconds, slice.second * route.part);
        }
    }
}

void DemandPlanner::addDepartures(const QString &edge, const QString &type,
                                  const std::map<int, int> &counts) {
    for (const auto &slice : counts) {
        if (slice.second == 0)
            continue;
        auto known = mDeparturesAt.constFind(edge);
        if (known == mDeparturesAt.constEnd()) {
            known = mDeparturesAt.insert(edge, int(mPlan.departures.size()));
            mPlan.departures.push_back({edge, {}});
        }
        int &sum = mPlan.departures[std::size_t(*known)].vehicles[slice.first][type];
        const int fitting = std::min(slice.second, kMostVehicles - sum);
        sum += fitting;
        mPlan.vehicles += fitting;
        if (const int rest = slice.second - fitting; rest > 0) {
            mLeftOut.vehicles += rest;
            mLeftOut.add(QStringLiteral("vehicles"), rest,
                         QStringLiteral("%1 on edge \"%2\": an interval holds no more than %3")
                             .arg(QString::number(rest), edge, QString::number(kMostVehicles)));
        }
    }
}

OpenDecision &DemandPlanner::decisionAt(const QString &name, const QString &edge) {
    auto known = mDecisionOf.constFind(name);
    if (known == mDecisionOf.constEnd()) {
        known = mDecisionOf.insert(name, int(mDecisions.size()));
        mDecisions.emplace_back();
        mDecisions.back().plan.name = name;
        mDecisions.back().plan.edge = edge;
    }
    return mDecisions[std::size_t(*known)];
}

void DemandPlanner::addTurns() {
    // Reading a store knows intervals by their ends alone.
    std::map<std::pair<QString, double>, double> beginOf;
    for (const SumoTurnRatio &turn : mCompanions.turnRatios) {
        const auto known = beginOf.emplace(std::make_pair(turn.from, turn.end), turn.begin);
        if (known.first->second != turn.begin) {
            const QString fault = QStringLiteral("another interval has the same end");
            mLeftOut.addKept(
                QStringLiteral("turn ratios"),
                named(mCompanions, QStringLiteral("%1->%2").arg(turn.from, turn.to), turn.source, fault),
                turn.source);
            continue;
        }
        decisionAt(turn.from + QStringLiteral(" turns"), turn.from)
            .add({turn.from, turn.to}, turn.to, turn.begin, turn.end, turn.ratio);
    }
}

DemandPlan DemandPlanner::plan() {
    for (const SumoVehicle &vehicle : mCompanions.vehicles)
        addVehicle(vehicle);
    addTurns();
    for (OpenDecision &decision : mDecisions)
        mPlan.decisions.push_back(decision.close());
    return std::move(mPlan);
}

} // namespace

DemandPlan planDemand(const SumoCompanions &companions, LeftOut &leftOut) {
    return DemandPlanner(companions, leftOut).plan();
}

} // namespace moratools
