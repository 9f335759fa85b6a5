#include "tools/sumo/import/TransitBuilder.h"

#include "tools/session/StoreSession.h"
#include <QHash>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// The length of a stop that says only where it ends, as SUMO assumes it.
constexpr double kStopLength = 10;

/// The middle of a stop along its lane; a stop that reaches beyond its lane is cut off.
std::unique_ptr<BusStation> buildStation(const SumoBusStop &stop, const NetworkMap &network, IdSource &ids) {
    const LanePlace place = network.lane(stop.lane);
    const double end = place.along(stop.endPos.value_or(place.source->length));
    const double start =
        std::min(stop.startPos ? place.along(*stop.startPos) : std::max(0.0, end - kStopLength), end);
    const GeometryPoint middle = place.pointAt((start + end) / 2);
    auto station = std::make_unique<BusStation>(ids.store().net(), ids.store().words());
    station->mpLink = place.link;
    station->laneNumber = place.lane->serialNumber;
    station->busStationID = ids.next("BusStation");
    station->name = stop.id;
    station->length = end - start;
    station->x = middle.x;
    station->y = middle.y;
    return station;
}

std::unique_ptr<BusStationLine> buildStop(const PlannedStop &planned, const BusStation &station,
                                          IdSource &ids) {
    auto stop = std::make_unique<BusStationLine>();
    stop->stationLineID = ids.next("BusStationLine");
    stop->busStationID = station.busStationID;
    stop->linkID = station.mpLink->linkID;
    if (planned.stop.duration > 0)
        stop->parkingTime = int(std::lround(planned.stop.duration));
    for (const SumoPassengers *waiting : planned.arrivals) {
        const long first = long(waiting->begin) + 1;
        stop->mlPassengerArriving.append(new PassengerArriving(ids.next("BusStationPassengerArriving"), first,
                                                               std::max(first, std::lround(waiting->end)),
                                                               waiting->count));
    }
    return stop;
}

void setTimetable(BusLine &line, const PlannedLine &planned) {
    line.dischargeStartTime = int(std::lround(planned.firstDeparture));
    line.dischargeEndTime = int(std::lround(planned.lastDeparture));
    const int span = line.dischargeEndTime - line.dischargeStartTime;
    if (planned.runs > 1 && span >= planned.runs - 1)
        line.dischargeFreq = int(span / (planned.runs - 1));
}

void setRoute(BusLine &line, const QList<Link *> &links) {
    line.mlLink = links;
    for (const Link *link : links) {
        line.mlRoadId.append(link->linkID);
        line.length += link->length;
    }
    line.startX = links.first()->mlVertex.first()->x;
    line.startY = links.first()->mlVertex.first()->y;
    line.endX = links.last()->mlVertex.last()->x;
    line.endY = links.last()->mlVertex.last()->y;
}

} // namespace

void buildTransit(const std::vector<PlannedLine> &lines, const SumoCompanions &companions,
                  const NetworkMap &network, IdSource &ids, TrafficObjects &into) {
    QHash<QString, const BusStation *> stations;
    for (const SumoBusStop &stop : companions.busStops) {
        into.busStations.push_back(buildStation(stop, network, ids));
        stations.insert(stop.id, into.busStations.back().get());
    }
    for (const PlannedLine &planned : lines) {
        auto line = std::make_unique<BusLine>(ids.store().net());
        line->busLineID = ids.next("BusLine");
        line->name = planned.name;
        setTimetable(*line, planned);
        setRoute(*line, network.links(companions.routes[std::size_t(planned.route)].edges));
        for (const PlannedStop &stop : planned.stops) {
            line->mlStationLine.append(buildStop(stop, *stations.value(stop.stop.busStop), ids).release());
            line->mlStationLine.last()->busLineID = line->busLineID;
        }
        into.busLines.push_back(std::move(line));
    }
}

} // namespace moratools
