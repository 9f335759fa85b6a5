#include "store/whole/SaveCheck.h"

#include "model/NetContents.h"
#include "store/families/GuideArrows.h"
#include "store/whole/NumberCheck.h"

#include <QHash>

#include <algorithm>
#include <unordered_set>

namespace {

template <class Entity>
using Known = std::unordered_set<const Entity *>;

template <class List, class Entity>
bool hasNew(const List &objects, long Entity::*id) {
    return std::any_of(objects.begin(), objects.end(),
                       [id](const auto &object) { return (*object).*id == 0; });
}

template <class List, class Test>
bool all(const List &objects, const Test &test) {
    return std::all_of(objects.begin(), objects.end(), [&test](const auto &object) { return test(*object); });
}

class SaveCheck {
public:
    SaveCheck(const Store &store, const NetContents &contents)
        : mStore(store), mContents(contents), mTraffic(contents.traffic) {}

    bool run() {
        learn();
        return all(mContents.links, [this](const Link &link) { return isGood(link); }) &&
               all(mContents.connectors, [this](const Connector &connector) { return isGood(connector); }) &&
               arrowsAreGood() &&
               all(mTraffic.signalLamps, [this](const SignalLamp &lamp) { return isGood(lamp); }) &&
               all(mTraffic.decisionPoints, [this](const DecisionPoint &point) { return isGood(point); }) &&
               routeLanesAreGood() && transitIsGood() && devicesAreGood() && placesAreGood() &&
               numbersAreGood();
    }

    /// What is marked as changed. Numbers are held against the store.
    bool runOnChanges() {
        const NetChanges &changes = mContents.changes;
        const auto links = changes.changed<Link>();
        const auto connectors = changes.changed<Connector>();
        const auto lamps = changes.changed<SignalLamp>();
        const auto points = changes.changed<DecisionPoint>();
        const auto stations = changes.changed<BusStation>();
        const auto lines = changes.changed<BusLine>();
        if (!connectors.isEmpty() || !lamps.isEmpty() || !points.isEmpty() || !stations.isEmpty() ||
            !lines.isEmpty())
            learn();
        return all(links, [this](const Link &link) { return isGood(link); }) &&
               all(connectors, [this](const Connector &connector) { return isGood(connector); }) &&
               all(lamps, [this](const SignalLamp &lamp) { return isShown(lamp); }) &&
               all(points, [this](const DecisionPoint &point) { return isGood(point); }) &&
               all(stations, [this](const BusStation &station) { return isGood(station); }) &&
               all(lines, [this](const BusLine &line) { return isGood(line); });
    }

private:
    /// Which objects there are, by their addresses.
    void learn() {
        for (const auto &link : mContents.links) {
            mLinks.insert(link.get());
            mLanes.insert(link->mlLane.cbegin(), link->mlLane.cend());
            mHasNewLane = mHasNewLane || hasNew(link->mlLane, &Lane::laneID);
        }
        for (const auto &group : mTraffic.signalGroups)
            mPhases.insert(group->mlPhase.cbegin(), group->mlPhase.cend());
        for (const auto &point : mTraffic.decisionPoints) {
            mPoints.insert(point.get());
            mHasNewRoute = mHasNewRoute || hasNew(point->mlRouting, &Routing::routingID);
        }
        for (const auto &station : mTraffic.busStations)
            mLinkOfStation.insert(station->busStationID, station->mpLink);
        mHasNewLink = hasNew(mContents.links, &Link::linkID);
        mHasNewConnector = hasNew(mContents.connectors, &Connector::connID);
        mHasNewGroup = hasNew(mTraffic.signalGroups, &SignalGroup::signalGroupID);
    }

    bool refuse(const char *kind, long id, const char *reason) {
        return mStore.fail(
            {},
            QStringLiteral("%1 %2 %3.").arg(QLatin1String(kind), QString::number(id), QLatin1String(reason)),
            id);
    }
    bool has(const Link *link) const { return mLinks.count(link) > 0; }
    bool has(const Lane *lane) const { return mLanes.count(lane) > 0; }

    bool isGood(const Link &link) {
        for (const Node *node : {link.mpStartNode, link.mpEndNode}) {
            if (node && node->mpVertex && !link.mlVertex.contains(node->mpVertex) &&
                !isVertex(node->mpVertex))
                return refuse("Node", node->nodeID, "stands on a vertex that is not part of the network");
        }
        return true;
    }

    /// Whether it is a vertex of any link; nodes stand on one of their own link's as a rule.
    bool isVertex(const Vertex *vertex) const {
        return std::any_of(mContents.links.begin(), mContents.links.end(), [vertex](const auto &link) {
            return std::find(link->mlVertex.cbegin(), link->mlVertex.cend(), vertex) != link->mlVertex.cend();
        });
    }

    bool isGood(const Connector &connector) {
        if (!has(connector.mpStartLink) || !has(connector.mpEndLink))
            return refuse("Connector", connector.connID, "joins a link that is not part of the network");
        return all(connector.mlLaneConnector, [&](const LaneConnector &lanes) {
            return (has(lanes.mpStartLane) && has(lanes.mpEndLane)) ||
                   refuse("Connector", connector.connID, "joins a lane that is not part of the network");
        });
    }

    bool arrowsAreGood() {
        const auto laneOf = guidearrows::lanesOfUnnamed(mContents);
        return all(mContents.guideArrows, [&](const GuideArrow &arrow) {
            return arrow.laneID != 0 || laneOf.value(&arrow) ||
                   refuse("Guide arrow", arrow.guideArrowID,
                          "names no lane: enter its lane's id, or the arrow into the list of its lane");
        });
    }

    bool isShown(const SignalLamp &lamp) {
        return mPhases.count(lamp.mpPhase.data()) > 0 ||
               refuse("Signal lamp", lamp.signalLampID, "shows a phase that is not part of the network");
    }

    bool isGood(const SignalLamp &lamp) {
        if (!isShown(lamp))
            return false;
        return lamp.laneID != 0 ||
               refuse("Signal lamp", lamp.signalLampID, "names no lane: draw the lane's id before");
    }

    bool isGood(const DecisionPoint &point) {
        if (!has(point.mpLink))
            return refuse("Decision point", point.deciPointID,
                          "stands on a link that is not part of the network");
        if (!all(point.mlRouting, [&](const Routing &route) { return isGood(point, route); }))
            return false;
        const auto isNew = [](const Routing *route) { return route->routingID == 0; };
        if (std::count_if(point.mlRouting.cbegin(), point.mlRouting.cend(), isNew) < 2)
            return true;
        return all(point.mlFlowByInterval, [&](const RoutingFlowByInterval &interval) {
            return !hasNew(interval.mlFlowRatio, &RoutingFLowRatio::routingID) ||
                   refuse(
                       "Decision point", point.deciPointID,
                       "has flow ratios that name no route, and more than one route without an id: draw the "
                       "routes' ids before");
        });
    }

    bool isGood(const DecisionPoint &point, const Routing &route) {
        if (route.mpDecisionPoint && route.mpDecisionPoint != &point &&
            mPoints.count(route.mpDecisionPoint) == 0)
            return refuse("Route", route.routingID,
                          "leads back to a decision point that is not part of the network");
        return std::all_of(
            route.mlLinkChain.cbegin(), route.mlLinkChain.cend(), [&](const QList<Link *> &chain) {
                return std::all_of(chain.cbegin(), chain.cend(),
                                   [this](const Link *link) { return has(link); }) ||
                       refuse("Route", route.routingID, "follows a link that is not part of the network");
            });
    }

    bool routeLanesAreGood() {
        return std::all_of(
            mTraffic.routeLanes.cbegin(), mTraffic.routeLanes.cend(), [this](const RouteLanes &pair) {
                const bool lane = pair.lanes.laneID1 == 0 || pair.lanes.laneID2 == 0;
                const bool isMissing = (mHasNewRoute && pair.routingID == 0) ||
                                       (mHasNewConnector && pair.connID == 0) || (mHasNewLane && lane);
                return !isMissing ||
                       refuse("Lanes of route", pair.routingID,
                              "name a route, connector or lane without an id: draw its id before");
            });
    }

    bool transitIsGood() {
        return all(mTraffic.busStations, [this](const BusStation &station) { return isGood(station); }) &&
               all(mTraffic.busLines, [this](const BusLine &line) { return isGood(line); });
    }

    bool isGood(const BusStation &station) {
        return has(station.mpLink) || refuse("Bus station", station.busStationID,
                                             "stands on a link that is not part of the network");
    }

    /// Lines without a road, and stops off it, would not be read again.
    bool isGood(const BusLine &line) {
        const auto isKnown = [this](const Link *link) { return has(link); };
        if (!std::all_of(line.mlLink.cbegin(), line.mlLink.cend(), isKnown))
            return refuse("Bus line", line.busLineID, "follows a link that is not part of the network");
        if (line.mlLink.isEmpty())
            return refuse("Bus line", line.busLineID, "follows no link: enter its route into mlLink");
        if (hasNew(line.mlStationLine, &BusStationLine::busStationID))
            return refuse("Bus line", line.busLineID,
                          "has a stop that names no station: draw the station's id before");
        return all(line.mlStationLine, [&](const BusStationLine &stop) {
            const Link *link = mLinkOfStation.value(stop.busStationID);
            return !link || std::find(line.mlLink.cbegin(), line.mlLink.cend(), link) != line.mlLink.cend() ||
                   refuse("Bus line", line.busLineID, "has a stop at a station that is not on its route");
        });
    }

    /// Stores of one network leave out devices whose road is not there.
    bool devicesAreGood() {
        const bool isLost = !mStore.hasSeveralNets();
        return all(mTraffic.vehicleDetectors,
                   [this](const VehicleDetector &detector) {
                       return isRoad("Vehicle detector", detector.vehicleDetectorId, detector.roadId) &&
                              (detector.signalGroupID != 0 || !mHasNewGroup ||
                               refuse("Vehicle detector", detector.vehicleDetectorId,
                                      "names no signal group: draw the group's id before"));
                   }) &&
               all(mTraffic.queueCounters,
                   [&](const VehicleQueueCounter &counter) {
                       return isRoad("Queue counter", counter.queueCounterID, counter.roadID, isLost);
                   }) &&
               all(mTraffic.travelDetectors,
                   [&](const VehicleTravelDetector &detector) {
                       return isRoad("Travel-time detector", detector.detectorId, detector.startRoadId,
                                     isLost) &&
                              isRoad("Travel-time detector", detector.detectorId, detector.teminalRoadId,
                                     isLost);
                   }) &&
               all(mTraffic.collectors, [&](const VehicleDrivInfoCollector &collector) {
                   return isRoad("Driving-data collector", collector.collecterID, collector.roadID, isLost);
               });
    }

    bool placesAreGood() {
        return all(mTraffic.departurePoints,
                   [this](const DeparturePoint &point) {
                       return isRoad("Departure point", point.departurePointID, point.linkID);
                   }) &&
               all(mTraffic.speedAreas,
                   [this](const ReduceSpeedArea &area) {
                       return isRoad("Speed reduction area", area.reduceSpeedAreaID, area.roadID);
                   }) &&
               all(mTraffic.accidentZones,
                   [this](const AccidentZone &zone) {
                       return isRoad("Accident zone", zone.accidentZoneId, zone.roadId);
                   }) &&
               all(mTraffic.roadWorkZones, [this](const RoadWorkZone &zone) {
                   return isRoad("Road-work zone", zone.roadWorkZoneId, zone.roadID);
               });
    }

    /// A road that another writer left at 0 stays so where it comes back, and no road of the network is
    /// meant.
    bool isRoad(const char *kind, long id, long road, bool isLost = false) {
        return road != 0 || !(isLost || mHasNewLink || mHasNewConnector) ||
               refuse(kind, id, "names no road: draw the road's id before");
    }

    bool numbersAreGood() {
        const std::vector<UnmatchedNumber> &known = mContents.stored.unmatched;
        const std::vector<UnmatchedNumber> unmatched = unmatchedNumbers(mContents);
        const auto isNew = [&known](const UnmatchedNumber &number) {
            return !std::binary_search(known.begin(), known.end(), number);
        };
        const auto first = std::find_if(unmatched.begin(), unmatched.end(), isNew);
        return first == unmatched.end() || mStore.fail({}, textOf(*first), first->id);
    }

    const Store &mStore;
    const NetContents &mContents;
    const TrafficObjects &mTraffic;
    Known<Link> mLinks;
    Known<Lane> mLanes;
    Known<SignalPhase> mPhases;
    Known<DecisionPoint> mPoints;
    QHash<long, const Link *> mLinkOfStation;
    bool mHasNewLink = false;
    bool mHasNewLane = false;
    bool mHasNewConnector = false;
    bool mHasNewRoute = false;
    bool mHasNewGroup = false;
};

} // namespace

bool refersToItself(const Store &store, const NetContents &contents) {
    return SaveCheck(store, contents).run();
}

bool changesReferToNet(const Store &store, const NetContents &contents) {
    return SaveCheck(store, contents).runOnChanges();
}
