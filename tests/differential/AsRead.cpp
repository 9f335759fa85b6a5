#include "tests/differential/AsRead.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace differential {

namespace {

template <class List, class Owner>
void sortById(List &list, long Owner::*id) {
    std::sort(list.begin(), list.end(), [id](const auto &a, const auto &b) { return (*a).*id < (*b).*id; });
}
template <class List, class Key>
void sortBy(List &list, const Key &key) {
    std::stable_sort(list.begin(), list.end(),
                     [&key](const auto &a, const auto &b) { return key(a) < key(b); });
}

/// A link has the break points of its outer lanes, whatever it had of its own.
void arrangeBreakPoints(Link &link) {
    link.leftBreakPointsJson = link.rightBreakPointsJson = StoredJson();
    int highest = 0;
    for (const Lane *lane : qAsConst(link.mlLane)) {
        if (lane->serialNumber > highest)
            link.leftBreakPointsJson = lane->leftBreakPointsJson;
        highest = std::max(highest, lane->serialNumber);
        if (lane->serialNumber == 1)
            link.rightBreakPointsJson = lane->rightBreakPointsJson;
    }
}

/// For each link of the route its stops, as written; twice for a link that the route passes twice.
void arrangeStops(BusLine &line, const Objects<BusStation> &stations) {
    OwningList<BusStationLine> arranged;
    line.mlRoadId.clear();
    for (const Link *link : qAsConst(line.mlLink)) {
        line.mlRoadId.append(link->linkID);
        for (const BusStationLine *stop : qAsConst(line.mlStationLine)) {
            for (const auto &station : stations) {
                if (station->busStationID != stop->busStationID || station->mpLink != link)
                    continue;
                arranged.append(new BusStationLine(*stop));
                arranged.last()->linkID = link->linkID;
            }
        }
    }
    line.mlStationLine = arranged;
}

} // namespace

void arrangeStarts(NetContents &net) {
    for (const auto &point : net.traffic.decisionPoints) {
        long start = 1;
        for (RoutingFlowByInterval *interval : qAsConst(point->mlFlowByInterval)) {
            for (RoutingFLowRatio *ratio : qAsConst(interval->mlFlowRatio))
                ratio->startDateTime = start;
            start = interval->endDateTime + 1;
        }
    }
}

void arrangeAsRead(NetContents &net, bool severalNets) {
    TrafficObjects &traffic = net.traffic;
    sortById(traffic.vehicleTypes, &VehicleType::vehicleTypeCode);
    sortById(traffic.compositions, &VehicleComposition::vehicleConsCode);
    sortById(net.links, &Link::linkID);
    sortById(net.guideArrows, &GuideArrow::guideArrowID);
    sortById(net.connectors, &Connector::connID);
    sortById(traffic.signalGroups, &SignalGroup::signalGroupID);
    sortById(traffic.signalLamps, &SignalLamp::signalLampID);
    sortById(traffic.departurePoints, &DeparturePoint::departurePointID);
    sortById(traffic.decisionPoints, &DecisionPoint::deciPointID);
    sortById(traffic.vehicleDetectors, &VehicleDetector::vehicleDetectorId);
    sortById(traffic.queueCounters, &VehicleQueueCounter::queueCounterID);
    sortById(traffic.travelDetectors, &VehicleTravelDetector::detectorId);
    sortById(traffic.collectors, &VehicleDrivInfoCollector::collecterID);
    sortById(traffic.busStations, &BusStation::busStationID);
    sortById(traffic.busLines, &BusLine::busLineID);
    sortById(traffic.speedAreas, &ReduceSpeedArea::reduceSpeedAreaID);
    sortById(traffic.accidentZones, &AccidentZone::accidentZoneId);
    sortById(traffic.roadWorkZones, &RoadWorkZone::roadWorkZoneId);
    sortBy(traffic.routeLanes, [](const RouteLanes &pair) {
        return std::make_tuple(pair.routingID, pair.connID, pair.lanes.laneID1, pair.lanes.laneID2);
    });
    for (const auto &composition : traffic.compositions)
        sortBy(composition->mlDetail, [](const VehicleConsDetail &detail) { return detail.vehicleTypeCode; });
    for (const auto &link : net.links) {
        arrangeBreakPoints(*link);
        sortBy(link->mlLane, [](const Lane *lane) { return lane->serialNumber; });
        for (Lane *lane : qAsConst(link->mlLane))
            sortBy(lane->mlLimitVehicle, [](const auto &restriction) { return restriction.first; });
    }
    for (const auto &connector : net.connectors)
        sortBy(connector->mlLimitVehicle, [](long code) { return code; });
    for (const auto &point : traffic.departurePoints)
        sortBy(point->mlInterval, [](const auto &interval) { return interval.departureIntervalD; });
    arrangeStarts(net);
    for (const auto &point : traffic.decisionPoints) {
        sortById(point->mlRouting, &Routing::routingID);
        for (RoutingFlowByInterval *interval : qAsConst(point->mlFlowByInterval))
            sortById(interval->mlFlowRatio, &RoutingFLowRatio::routingID);
    }
    // The key that serves these reads leads on with the code.
    for (const auto &detector : traffic.vehicleDetectors)
        sortBy(detector->mlVehiTypeCode, [](long code) { return code; });
    for (const auto &area : traffic.speedAreas) {
        if (severalNets)
            sortById(area->mlSpeedVehiType, &ReduceSpeedVehiType::vehicleTypeCode);
    }
    const auto numbers = [](const ZoneLane *lane) {
        return std::make_pair(lane->laneNumber, lane->toLaneNumber);
    };
    for (const auto &zone : traffic.accidentZones)
        sortBy(zone->mlLane, numbers);
    for (const auto &zone : traffic.roadWorkZones)
        sortBy(zone->mlLane, numbers);
    for (const auto &line : traffic.busLines)
        arrangeStops(*line, traffic.busStations);
}

} // namespace differential
