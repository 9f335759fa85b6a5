#include "tools/sumo/import/DemandBuilder.h"

#include "tools/sumo/import/Departures.h"
#include "tools/sumo/import/VehicleClassFigures.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <map>

namespace moratools {

namespace {

int secondsOf(double time) {
    return int(std::lround(time));
}

/// The links in chains none of which has one twice.
QList<QList<Link *>> chainsOf(const QList<Link *> &links) {
    QList<QList<Link *>> chains;
    QSet<Link *> inChain;
    for (Link *link : links) {
        if (chains.isEmpty() || inChain.contains(link)) {
            chains.append(QList<Link *>());
            inChain.clear();
        }
        chains.last().append(link);
        inChain.insert(link);
    }
    return chains;
}

} // namespace

void DemandBuilder::buildTypes() {
    QHash<long, const VehicleType *> standard;
    long code = 0;
    for (const auto &type : mInto.vehicleTypes) {
        standard.insert(type->vehicleTypeCode, type.get());
        code = std::max(code, type->vehicleTypeCode);
    }
    Objects<VehicleType> types;
    for (const SumoVehicleType &source : mCompanions.vehicleTypes) {
        const VehicleType *nearest = standard.value(standardTypeOf(source.vClass));
        types.push_back(
            std::make_unique<VehicleType>(vehicleTypeOf(source, nearest ? *nearest : VehicleType(), ++code)));
        mTypeCodes.insert(source.id, code);
    }
    std::move(types.begin(), types.end(), std::back_inserter(mInto.vehicleTypes));
    for (const SumoDistribution &distribution : mCompanions.typeDistributions)
        addComposition(distribution.id, distribution.members);
}

QList<long> DemandBuilder::typeCodes(const QString &id) const {
    const auto single = mTypeCodes.constFind(id);
    if (single != mTypeCodes.constEnd())
        return {*single};
    QList<long> codes;
    if (const VehicleComposition *composition = mCompositions.value(id)) {
        for (const VehicleConsDetail &detail : composition->mlDetail)
            codes.append(detail.vehicleTypeCode);
    }
    return codes;
}

void DemandBuilder::addComposition(const QString &name, const std::vector<SumoChoice> &members) {
    double sum = 0;
    std::map<long, double> shares; // the store keeps a type once in a composition
    for (const SumoChoice &member : members) {
        sum += member.probability;
        shares[mTypeCodes.value(member.id)] += member.probability;
    }
    auto composition = std::make_unique<VehicleComposition>();
    composition->vehicleConsCode = mIds.next("VehicleConstitutent");
    composition->name = name;
    double left = 100;
    for (auto share = shares.begin(); share != shares.end(); ++share) {
        const bool isLast = std::next(share) == shares.end();
        const double percent = isLast ? left : share->second / sum * 100;
        left -= percent;
        composition->mlDetail.append({composition->vehicleConsCode, share->first, percent});
    }
    mCompositions.insert(name, composition.get());
    mInto.compositions.push_back(std::move(composition));
}

const VehicleComposition &DemandBuilder::compositionOf(const QString &type) {
    const QString id = type.isEmpty() ? QStringLiteral("DEFAULT_VEHTYPE") : type;
    if (!mCompositions.contains(id))
        addComposition(id, {{id, 1}});
    return *mCompositions.value(id);
}

void DemandBuilder::buildDemand(const DemandPlan &plan) {
    for (const PlannedDepartures &departures : plan.departures)
        addDeparturePoint(departures);
    for (const PlannedDecision &decision : plan.decisions)
        addDecisionPoint(decision);
}

void DemandBuilder::addDeparturePoint(const PlannedDepartures &planned) {
    auto point = std::make_unique<DeparturePoint>();
    point->departurePointID = mIds.next("DeparturePoint");
    point->name = planned.edge;
    point->linkID = mNetwork.link(planned.edge)->linkID;
    const auto add = [&](int end, int vehicles, const VehicleComposition &composition) {
        point->mlInterval.append({mIds.next("DepartureInterval"), end, vehicles, composition});
    };
    int next = 0;
    for (const auto &slice : planned.vehicles) {
        if (slice.first > next)
            add(slice.first * kSliceSeconds, 0, compositionOf(slice.second.begin()->first));
        next = slice.first + 1;
        for (const auto &departing : slice.second)
            add(next * kSliceSeconds, departing.second, compositionOf(departing.first));
    }
    mInto.departurePoints.push_back(std::move(point));
}

void DemandBuilder::addDecisionPoint(const PlannedDecision &planned) {
    auto point = std::make_unique<DecisionPoint>();
    point->deciPointID = mIds.next("DecisionPoint");
    point->deciPointName = planned.name;
    point->mpLink = mNetwork.link(planned.edge);
    const Vertex &start = *point->mpLink->mlVertex.first();
    point->x = start.x;
    point->y = start.y;
    point->z = start.z;
    addRoutes(*point, planned);
    addRatios(*point, planned);
    mInto.decisionPoints.push_back(std::move(point));
}

void DemandBuilder::addRoutes(DecisionPoint &point, const PlannedDecision &planned) {
    double sum = 0;
    for (const PlannedRoute &route : planned.routes)
        sum += route.weight;
    for (const PlannedRoute &source : planned.routes) {
        auto route = std::make_unique<Routing>();
        route->routingID = mIds.next("Routing");
        route->routingName = source.name.isEmpty()
                                 ? QStringLiteral("%1->%2").arg(source.edges.first(), source.edges.last())
                                 : source.name;
        route->proportion = sum > 0 ? source.weight / sum : 0;
        route->mpDecisionPoint = &point;
        route->mlLinkChain = chainsOf(mNetwork.links(source.edges));
        point.mlRouting.append(route.release());
    }
}

void DemandBuilder::addRatios(DecisionPoint &point, const PlannedDecision &planned) {
    const auto addInterval = [&point](long end) {
        auto *interval = new RoutingFlowByInterval;
        point.mlFlowByInterval.append(interval);
        interval->endDateTime = end;
        return interval;
    };
    long previousEnd = 0;
    for (const PlannedShares &source : planned.intervals) {
        if (secondsOf(source.begin) > previousEnd)
            previousEnd = addInterval(secondsOf(source.begin))->endDateTime;
        RoutingFlowByInterval *interval = addInterval(secondsOf(source.end));
        for (const auto &share : source.shares) {
            auto *ratio = new RoutingFLowRatio;
            interval->mlFlowRatio.append(ratio);
            ratio->routingFLowRatioID = mIds.next("RoutingFLowRatio");
            ratio->routingID = point.mlRouting.at(int(share.first))->routingID;
            ratio->startDateTime = previousEnd + 1;
            ratio->endDateTime = interval->endDateTime;
            ratio->ratio = share.second;
        }
        previousEnd = interval->endDateTime;
    }
}

} // namespace moratools
