#include "tests/differential/RandomParts.h"

namespace differential {

namespace {

/// The pairs of numbers of lanes from 0 to 3.
std::vector<std::pair<int, int>> lanePairs() {
    std::vector<std::pair<int, int>> pairs;
    for (int from = 0; from < 4; ++from) {
        for (int to = -1; to < 3; ++to)
            pairs.emplace_back(from, to);
    }
    return pairs;
}

} // namespace

void RandomNet::makeSignals(NetContents &net) {
    Ids groupIds(*this, mPlan.owners);
    Ids phaseIds(*this, mPlan.children);
    Ids lampIds(*this, mPlan.owners);
    std::vector<SignalPhase *> phases;
    for (int i = below(4); i > 0; --i) {
        auto group = std::make_unique<SignalGroup>();
        group->signalGroupID = groupIds.next();
        for (int j = below(5); j > 0; --j) {
            auto *phase = new SignalPhase;
            phase->signalPhaseID = phaseIds.next();
            for (int k = below(4); k > 0; --k)
                phase->mlColor.append(Online::ColorInterval(QString(), 0));
            group->mlPhase.append(phase);
            phases.push_back(phase);
        }
        net.traffic.signalGroups.push_back(std::move(group));
    }
    for (int i = phases.empty() ? 0 : below(5); i > 0; --i) {
        auto lamp = std::make_unique<SignalLamp>();
        lamp->signalLampID = lampIds.next();
        lamp->setPhase(phases.at(std::size_t(below(int(phases.size())))));
        lamp->laneID = int(anyLane(net)->laneID);
        lamp->toLaneID = int(anyLane(net)->laneID);
        net.traffic.signalLamps.push_back(std::move(lamp));
    }
}

void RandomNet::makeDemand(NetContents &net) {
    Ids pointIds(*this, mPlan.owners);
    Ids intervalIds(*this, mPlan.children);
    for (int i = below(4); i > 0; --i) {
        auto point = std::make_unique<DeparturePoint>();
        point->departurePointID = pointIds.next();
        point->linkID = anyLink(net)->linkID;
        for (int j = below(4); j > 0; --j) {
            DepartureInterval interval;
            interval.departureIntervalD = intervalIds.next();
            const auto &compositions = net.traffic.compositions;
            interval.vehiCons.vehicleConsCode =
                compositions.at(std::size_t(below(int(compositions.size()))))->vehicleConsCode;
            point->mlInterval.append(interval);
        }
        net.traffic.departurePoints.push_back(std::move(point));
    }
}

void RandomNet::makeRoutes(NetContents &net) {
    Ids pointIds(*this, mPlan.owners);
    Ids routeIds(*this, mPlan.children);
    Ids ratioIds(*this, mPlan.children);
    std::vector<Link *> links;
    for (const auto &link : net.links)
        links.push_back(link.get());
    for (int i = below(4); i > 0; --i) {
        auto point = std::make_unique<DecisionPoint>();
        point->deciPointID = pointIds.next();
        point->mpLink = anyLink(net);
        for (int j = below(4); j > 0; --j) {
            auto *route = new Routing;
            route->routingID = routeIds.next();
            route->mpDecisionPoint = point.get();
            for (int k = below(3); k > 0; --k) {
                route->mlLinkChain.append(QList<Link *>());
                for (Link *link : someOf(links, *this, 4))
                    route->mlLinkChain.last().append(link);
            }
            point->mlRouting.append(route);
        }
        long start = 1;
        for (int j = point->mlRouting.isEmpty() ? 0 : below(4); j > 0; --j) {
            auto *interval = new RoutingFlowByInterval;
            interval->endDateTime = start + 100 + below(500);
            std::vector<Routing *> routes(point->mlRouting.cbegin(), point->mlRouting.cend());
            for (const Routing *route : someOf(routes, *this, 3)) {
                auto *ratio = new RoutingFLowRatio;
                ratio->routingFLowRatioID = ratioIds.next();
                ratio->routingID = route->routingID;
                ratio->startDateTime = chance(0.2) ? 7 : start;
                ratio->endDateTime = interval->endDateTime;
                interval->mlFlowRatio.append(ratio);
            }
            start = interval->endDateTime + 1;
            point->mlFlowByInterval.append(interval);
        }
        for (const Routing *route : qAsConst(point->mlRouting)) {
            if (net.connectors.empty() || chance(0.6))
                continue;
            const Connector &connector = *net.connectors.at(std::size_t(below(int(net.connectors.size()))));
            std::vector<LaneConnector *> pairs(connector.mlLaneConnector.cbegin(),
                                               connector.mlLaneConnector.cend());
            for (const LaneConnector *pair : someOf(pairs, *this, 3))
                net.traffic.routeLanes.append({route->routingID,
                                               connector.connID,
                                               {pair->mpStartLane->laneID, pair->mpEndLane->laneID}});
        }
        net.traffic.decisionPoints.push_back(std::move(point));
    }
}

void RandomNet::makeDevices(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Ids detectorIds(*this, mPlan.owners);
    std::vector<long> types;
    for (const auto &type : traffic.vehicleTypes)
        types.push_back(type->vehicleTypeCode);
    for (int i = traffic.signalGroups.empty() ? 0 : below(4); i > 0; --i) {
        auto detector = std::make_unique<VehicleDetector>();
        detector->vehicleDetectorId = detectorIds.next();
        detector->signalGroupID =
            traffic.signalGroups.at(std::size_t(below(int(traffic.signalGroups.size()))))->signalGroupID;
        detector->roadId = anyRoad(net);
        if (chance(0.7)) {
            for (const long code : someOf(types, *this, 4))
                detector->mlVehiTypeCode.append(code);
        }
        traffic.vehicleDetectors.push_back(std::move(detector));
    }
    Ids counterIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        traffic.queueCounters.push_back(std::make_unique<VehicleQueueCounter>());
        traffic.queueCounters.back()->queueCounterID = counterIds.next();
        traffic.queueCounters.back()->roadID = anyRoad(net);
    }
    Ids travelIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        traffic.travelDetectors.push_back(std::make_unique<VehicleTravelDetector>());
        traffic.travelDetectors.back()->detectorId = travelIds.next();
        traffic.travelDetectors.back()->startRoadId = anyRoad(net);
        traffic.travelDetectors.back()->teminalRoadId = anyRoad(net);
    }
    Ids collectorIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        traffic.collectors.push_back(std::make_unique<VehicleDrivInfoCollector>());
        traffic.collectors.back()->collecterID = collectorIds.next();
        traffic.collectors.back()->roadID = anyRoad(net);
    }
}

void RandomNet::makeTransit(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Ids stationIds(*this, mPlan.owners);
    for (int i = below(6); i > 0; --i) {
        auto station = std::make_unique<BusStation>(anyLink(net));
        station->busStationID = stationIds.next();
        traffic.busStations.push_back(std::move(station));
    }
    Ids lineIds(*this, mPlan.owners);
    Ids stopIds(*this, mPlan.children);
    Ids arrivalIds(*this, mPlan.children);
    for (int i = below(4); i > 0; --i) {
        auto line = std::make_unique<BusLine>();
        line->busLineID = lineIds.next();
        for (int j = 1 + below(4); j > 0; --j)
            line->mlLink.append(anyLink(net));
        for (int j = traffic.busStations.empty() ? 0 : below(7); j > 0; --j) {
            const BusStation &station =
                *traffic.busStations.at(std::size_t(below(int(traffic.busStations.size()))));
            if (!line->mlLink.contains(station.mpLink))
                continue;
            auto *stop = new BusStationLine;
            stop->stationLineID = stopIds.next();
            stop->busStationID = station.busStationID;
            stop->busLineID = line->busLineID;
            for (int k = below(4); k > 0; --k)
                stop->mlPassengerArriving.append(new PassengerArriving(arrivalIds.next(), 0, 0, 0));
            line->mlStationLine.append(stop);
        }
        traffic.busLines.push_back(std::move(line));
    }
}

void RandomNet::makeZones(NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    Ids accidentIds(*this, mPlan.owners, mPlan.firstSharedId);
    for (int i = below(3); i > 0; --i) {
        auto zone = std::make_unique<AccidentZone>();
        zone->accidentZoneId = accidentIds.next();
        zone->roadId = anyRoad(net);
        for (const auto &[from, to] : someOf(lanePairs(), *this, 6))
            zone->mlLane.append(new ZoneLane{zone->accidentZoneId, from, to});
        traffic.accidentZones.push_back(std::move(zone));
    }
    Ids workIds(*this, mPlan.owners);
    for (int i = below(3); i > 0; --i) {
        auto zone = std::make_unique<RoadWorkZone>();
        zone->roadWorkZoneId = workIds.next();
        zone->roadID = anyRoad(net);
        for (const auto &[from, to] : someOf(lanePairs(), *this, 6))
            zone->mlLane.append(new ZoneLane{zone->roadWorkZoneId, from, to});
        traffic.roadWorkZones.push_back(std::move(zone));
    }
    Ids areaIds(*this, mPlan.owners);
    Ids intervalIds(*this, mPlan.children);
    std::vector<long> types;
    for (const auto &type : traffic.vehicleTypes)
        types.push_back(type->vehicleTypeCode);
    for (int i = below(4); i > 0; --i) {
        auto area = std::make_unique<ReduceSpeedArea>();
        area->reduceSpeedAreaID = areaIds.next();
        area->roadID = anyRoad(net);
        for (int j = below(5); j > 0; --j)
            area->mlSpeedInterval.append(
                new ReduceSpeedInterval{intervalIds.next(), area->reduceSpeedAreaID, 0, 0});
        for (const long code : someOf(types, *this, 5))
            area->mlSpeedVehiType.append(new ReduceSpeedVehiType{area->reduceSpeedAreaID, code, 0, 0});
        traffic.speedAreas.push_back(std::move(area));
    }
}

void RandomNet::makeSettings(NetContents &net) {
    NetSettings &settings = net.settings;
    for (const long id : {1L, 2L}) {
        settings.carFollowing.append(DriveFollowedModelParam());
        settings.carFollowing.last().modelParamID = id;
    }
    for (int i = 1; i <= 1 + below(4); ++i) {
        settings.laneChanging.append(ChangeLaneModelParam());
        settings.laneChanging.last().modelParamID = i;
    }
    settings.simulation.emplace();
    settings.simulation->mAcceMultiples = 1 + below(20);
    settings.scene.emplace();
    const QDate day = QDate(2020, 1, 1).addDays(below(2000));
    settings.scene->saveDate =
        mPlan.severalNets ? QDateTime(day, QTime(0, 0)) : QDateTime(day, QTime(below(24), below(60), 7));
}

} // namespace differential
