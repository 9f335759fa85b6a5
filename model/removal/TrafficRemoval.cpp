#include "model/removal/NetRemoval.h"

#include "model/SignalPhase.h"

using lists::any;
using lists::destroy;
using lists::each;

void NetRemoval::reachSignals() {
    each(mNet.traffic.signalGroups, [this](const SignalGroup &group) {
        if (!isDoomed(&group))
            return;
        remember(mGroups, group.signalGroupID);
        each(group.mlPhase, [this](const SignalPhase &phase) {
            reachPart("SignalPhase", "phase", phase.signalPhaseID, phase.name, &phase);
        });
    });
    each(mNet.traffic.signalLamps, [this](SignalLamp &lamp) {
        if (isDoomed(&lamp))
            return;
        if (isDoomed(lamp.mpPhase.data()))
            reach(lamp, "shows a phase that goes");
        else if (mLanes.contains(lamp.laneID))
            reach(lamp, "stands on a lane that goes");
        else if (mLanes.contains(lamp.toLaneID)) {
            reach(lamp, "leads to a lane that goes", Fate::Loses);
            clear(lamp, [](SignalLamp &changed) { changed.toLaneID = 0; });
        }
    });
}

void NetRemoval::reachDemand() {
    each(mNet.traffic.departurePoints, [this](DeparturePoint &point) {
        const auto goes = [compositions = mCompositions](const DepartureInterval &interval) {
            return compositions.contains(interval.vehiCons.vehicleConsCode);
        };
        if (isDoomed(&point))
            return;
        if (mLinks.contains(point.linkID)) {
            reach(point, "stands on a link that goes");
        } else if (std::any_of(point.mlInterval.cbegin(), point.mlInterval.cend(), goes)) {
            reach(point, "releases a vehicle composition that goes", Fate::Loses);
            clear(point, [goes](DeparturePoint &changed) {
                for (DepartureInterval &interval : changed.mlInterval) {
                    if (goes(interval))
                        interval.vehiCons = VehicleComposition();
                }
            });
        }
    });
}

void NetRemoval::reachRoutes() {
    each(mNet.traffic.decisionPoints, [this](DecisionPoint &point) {
        if (!isDoomed(&point) && isDoomed(point.mpLink))
            reach(point, "stands on a link that goes");
        if (isDoomed(&point)) {
            each(point.mlRouting, [this](const Routing &route) {
                reachPart("Routing", "route", route.routingID, route.routingName, &route);
            });
        } else {
            reachParts(point, &DecisionPoint::mlRouting, [this](const Routing &route) {
                if (!follows(route))
                    return false;
                reachOther("Routing", "route", route.routingID, route.routingName, &route,
                           "follows a link that goes");
                return true;
            });
        }
        each(point.mlRouting, [this](const Routing &route) {
            if (isDoomed(&route))
                remember(mRoutes, route.routingID);
        });
        if (!isDoomed(&point))
            loseRatios(point);
    });
}

bool NetRemoval::follows(const Routing &route) const {
    return std::any_of(route.mlLinkChain.begin(), route.mlLinkChain.end(),
                       [this](const QList<Link *> &chain) { return isAnyDoomed(chain); });
}

bool NetRemoval::isAnyDoomed(const QList<Link *> &links) const {
    return std::any_of(links.begin(), links.end(), [this](const Link *link) { return isDoomed(link); });
}

void NetRemoval::loseRatios(DecisionPoint &point) {
    if (!any(point.mlRouting, [this](const Routing &route) { return isDoomed(&route); }))
        return;
    clear(point, [routes = mRoutes](DecisionPoint &changed) {
        each(changed.mlFlowByInterval, [&](RoutingFlowByInterval &interval) {
            destroy(interval.mlFlowRatio,
                    [&](const RoutingFLowRatio &ratio) { return routes.contains(ratio.routingID); });
        });
    });
}

void NetRemoval::reachRouteLanes() {
    for (const RouteLanes &pair : mNet.traffic.routeLanes) {
        if (mRoutes.contains(pair.routingID))
            reachPair(pair, "the route goes", Fate::Part);
        else if (mConnectors.contains(pair.connID))
            reachPair(pair, "the connector goes", Fate::Goes);
        else if (mLanes.contains(pair.lanes.laneID1) || mLanes.contains(pair.lanes.laneID2))
            reachPair(pair, "a lane goes", Fate::Goes);
    }
}

void NetRemoval::reachPair(const RouteLanes &pair, const char *reason, Fate fate) {
    mPairs.insert(keyOf(pair));
    const QString text =
        QStringLiteral("lanes %1 and %2 of route %3 on connector %4: %5")
            .arg(QString::number(pair.lanes.laneID1), QString::number(pair.lanes.laneID2),
                 QString::number(pair.routingID), QString::number(pair.connID), QLatin1String(reason));
    mReached.append({QStringLiteral("RoutingLaneConnector"), pair.routingID, &pair, text, fate});
}

void NetRemoval::reachDevices() {
    const TrafficObjects &traffic = mNet.traffic;
    each(traffic.vehicleDetectors, [this](VehicleDetector &detector) {
        reachOnRoad(detector, detector.roadId, !detector.isOnLink());
        if (isDoomed(&detector))
            return;
        if (mGroups.contains(detector.signalGroupID))
            reach(detector, "serves a signal group that goes");
        else if (isListed(detector.mlVehiTypeCode))
            loseTypes(detector, "registers a vehicle type that goes", &VehicleDetector::mlVehiTypeCode,
                      itself);
    });
    each(traffic.queueCounters, [this](const VehicleQueueCounter &counter) {
        reachOnRoad(counter, counter.roadID, !counter.isOnLink());
    });
    each(traffic.travelDetectors, [this](const VehicleTravelDetector &detector) {
        reachOnRoad(detector, detector.startRoadId, !detector.isOnLinkStart());
        reachOnRoad(detector, detector.teminalRoadId, !detector.isOnLinkTeminal());
    });
    each(traffic.collectors, [this](const VehicleDrivInfoCollector &collector) {
        reachOnRoad(collector, collector.roadID, collector.toLaneNumber >= 1);
    });
}

void NetRemoval::reachTransit() {
    each(mNet.traffic.busStations, [this](const BusStation &station) {
        if (!isDoomed(&station) && isDoomed(station.mpLink))
            reach(station, "stands on a link that goes");
        if (isDoomed(&station))
            remember(mStations, station.busStationID);
    });
    each(mNet.traffic.busLines, [this](BusLine &line) {
        if (!isDoomed(&line) && isAnyDoomed(line.mlLink))
            reach(line, "follows a link that goes");
        if (isDoomed(&line)) {
            each(line.mlStationLine, [this](const BusStationLine &stop) {
                reachPart("BusStationLine", "stop", stop.stationLineID, {}, &stop);
            });
            return;
        }
        reachParts(line, &BusLine::mlStationLine, [this](const BusStationLine &stop) {
            if (!mStations.contains(stop.busStationID))
                return false;
            reachOther("BusStationLine", "stop", stop.stationLineID, {}, &stop,
                       "is at a bus station that goes");
            return true;
        });
    });
}

void NetRemoval::reachPlaces() {
    each(mNet.traffic.accidentZones,
         [this](const AccidentZone &zone) { reachOnRoad(zone, zone.roadId, saysConnector(zone.roadType)); });
    each(mNet.traffic.roadWorkZones,
         [this](const RoadWorkZone &zone) { reachOnRoad(zone, zone.roadID, saysConnector(zone.roadType)); });
    each(mNet.traffic.speedAreas, [this](ReduceSpeedArea &area) {
        reachOnRoad(area, area.roadID, !area.isOnLink());
        const auto goes = [types = mTypes](const ReduceSpeedVehiType &type) {
            return types.contains(type.vehicleTypeCode);
        };
        if (isDoomed(&area) || !any(area.mlSpeedVehiType, goes))
            return;
        reach(area, "slows a vehicle type that goes", Fate::Loses);
        clear(area, [goes](ReduceSpeedArea &changed) { destroy(changed.mlSpeedVehiType, goes); });
    });
}
