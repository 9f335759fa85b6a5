#include "tools/sumo/export/ExportedDevices.h"
#include "tools/sumo/kept/SumoUnits.h"

#include "model/GeometryJson.h"
#include "model/Words.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <set>
#include <utility>

namespace moratools {

namespace {

constexpr int kEndOfDay = 86400;
constexpr double kShortestStop = 0.1; // metres; SUMO takes none that is shorter

const QString kYes = QStringLiteral("true");

/// Metres from the start of a link at which a point beside it is nearest to one of its lanes.
double along(const ExportedRoads &roads, const Link &link, int lane, double x, double y) {
    const std::vector<const Lane *> lanes = roads.lanes(link);
    GeometryLine line = lane < int(lanes.size())
                            ? geometryjson::points(lanes[std::size_t(lane)]->centerLinePointsJson)
                            : lineOf(link);
    if (line.size() < 2)
        line = lineOf(link);
    double nearest = std::numeric_limits<double>::max();
    double at = 0;
    double passed = 0;
    for (int i = 0; i + 1 < line.size(); ++i) {
        const double dx = line[i + 1].x - line[i].x;
        const double dy = line[i + 1].y - line[i].y;
        const double length = std::hypot(dx, dy);
        const double share =
            length > 0
                ? std::clamp(((x - line[i].x) * dx + (y - line[i].y) * dy) / (length * length), 0.0, 1.0)
                : 0;
        const double away = std::hypot(line[i].x + share * dx - x, line[i].y + share * dy - y);
        if (away < nearest) {
            nearest = away;
            at = passed + share * length;
        }
        passed += length;
    }
    return passed > 0 ? at / passed * link.length : 0;
}

QString metres(double position) {
    return QString::number(position, 'f', 2);
}

/// Where something of a length ends that is centred on a point: within the link.
std::pair<double, double> stretchAround(double middle, double length, const Link &link) {
    const double whole = std::min(std::max(length, kShortestStop), link.length);
    const double start = std::clamp(middle - whole / 2, 0.0, link.length - whole);
    return {start, start + whole};
}

template <class T, class Number>
std::vector<Names::Named> namedObjects(const Objects<T> &objects, Number T::*number) {
    std::vector<Names::Named> named;
    for (const auto &object : objects)
        named.push_back({object.get(), object->name, long((*object).*number), true});
    return named;
}

} // namespace

ExportedDevices::ExportedDevices(const ExportedRoads &roads, ExportedVehicles &vehicles, Names &names,
                                 LeftOut &leftOut, QString output)
    : mRoads(roads), mVehicles(vehicles), mNames(names), mLeftOut(leftOut), mOutput(std::move(output)) {
    addStops();
    addLoops();
    addSignalDetectors();
    addAreaDetectors();
    addTravelDetectors();
    addSpeedAreas();
    addRoadWorks();
}

void ExportedDevices::leaveOut(const char *kind, long number, const QString &name, const char *why) {
    mLeftOut.add(QLatin1String(kind),
                 QStringLiteral("%1 (%2: %3)").arg(QString::number(number), name, QLatin1String(why)));
}

std::optional<ExportedDevices::Place> ExportedDevices::placeOf(const Wanted &wanted) {
    const Link *link = mRoads.link(wanted.roadId);
    if (!wanted.isOnLink || !link) {
        leaveOut(wanted.kind, wanted.number, wanted.name,
                 wanted.isOnLink ? "its link is not exported" : "SUMO has no places within junctions");
        return std::nullopt;
    }
    Place place{link, {}};
    if (wanted.lane < 1) {
        for (int lane = 0; lane < mRoads.laneCount(*link); ++lane)
            place.lanes.push_back(lane);
        return place;
    }
    const int lane = mRoads.laneIndex(*link, wanted.lane);
    if (lane < 0) {
        leaveOut(wanted.kind, wanted.number, wanted.name, "its link has no such lane");
        return std::nullopt;
    }
    place.lanes.push_back(lane);
    return place;
}

void ExportedDevices::addStops() {
    const auto &stations = mRoads.network().traffic.busStations;
    mNames.give(QStringLiteral("busStops"), QStringLiteral("stop"),
                namedObjects(stations, &BusStation::busStationID));
    for (const auto &station : stations) {
        const auto place =
            placeOf({"bus stations", station->busStationID, station->name,
                     station->mpLink ? station->mpLink->linkID : 0, std::max(1, station->laneNumber), true});
        if (!place)
            continue;
        const auto [start, end] =
            stretchAround(along(mRoads, *place->link, place->lanes.front(), station->x, station->y),
                          station->length, *place->link);
        add(makeElement("busStop", {{"id", mNames.of(station.get())},
                                    {"lane", place->lane(mRoads)},
                                    {"startPos", metres(start)},
                                    {"endPos", metres(end)},
                                    {"friendlyPos", kYes}}),
            station->name);
    }
}

void ExportedDevices::addLoops() {
    const auto &collectors = mRoads.network().traffic.collectors;
    mNames.give(QStringLiteral("inductionLoops"), QStringLiteral("loop"),
                namedObjects(collectors, &VehicleDrivInfoCollector::collecterID));
    for (const auto &collector : collectors) {
        const auto place = placeOf({"driving-data collectors", collector->collecterID, collector->name,
                                    collector->roadID, collector->laneNumber, collector->toLaneNumber < 1});
        if (!place)
            continue;
        for (const int lane : place->lanes) {
            QString id = mNames.of(collector.get());
            if (place->lanes.size() > 1)
                id = mNames.unused(QStringLiteral("inductionLoops"),
                                   QStringLiteral("%1_%2").arg(id, QString::number(lane)));
            add(makeElement("inductionLoop", {{"id", id},
                                              {"lane", mRoads.laneId(*place->link, lane)},
                                              {"pos", metres(collector->distance)},
                                              {"period", QString::number(collector->dataInterval)},
                                              {"file", outputFile("loops")},
                                              {"friendlyPos", kYes}}),
                collector->name);
        }
    }
}

void ExportedDevices::addSignalDetectors() {
    // As loops of SUMO they see who passes; which signal they call is not said.
    const auto &detectors = mRoads.network().traffic.vehicleDetectors;
    mNames.give(QStringLiteral("inductionLoops"), QStringLiteral("detector"),
                namedObjects(detectors, &VehicleDetector::vehicleDetectorId));
    for (const auto &detector : detectors) {
        const auto place =
            placeOf({"vehicle detectors", detector->vehicleDetectorId, detector->name, detector->roadId,
                     std::max(1, detector->laneNumber), detector->isOnLink()});
        if (!place)
            continue;
        add(makeElement("inductionLoop",
                        {{"id", mNames.of(detector.get())},
                         {"lane", place->lane(mRoads)},
                         {"pos", metres(std::max(0.0, place->link->length - detector->distToTerminal))},
                         {"period", QString::number(kEndOfDay)},
                         {"file", outputFile("loops")},
                         {"friendlyPos", kYes}}),
            detector->name);
        leaveOut("calls of signals by vehicle detectors", detector->vehicleDetectorId, detector->name,
                 "a loop of SUMO calls no signal");
    }
}

void ExportedDevices::addAreaDetectors() {
    const auto &counters = mRoads.network().traffic.queueCounters;
    mNames.give(QStringLiteral("laneAreaDetectors"), QStringLiteral("queue"),
                namedObjects(counters, &VehicleQueueCounter::queueCounterID));
    for (const auto &counter : counters) {
        const auto place = placeOf({"queue counters", counter->queueCounterID, counter->name, counter->roadID,
                                    std::max(1, counter->laneNumber), counter->isOnLink()});
        if (!place)
            continue;
        const double end =
            std::clamp(counter->distance, kShortestStop, std::max(kShortestStop, place->link->length));
        const double length = counter->maxQueueLength > 0 ? std::min(counter->maxQueueLength, end) : end;
        add(makeElement("laneAreaDetector",
                        {{"id", mNames.of(counter.get())},
                         {"lane", place->lane(mRoads)},
                         {"endPos", metres(end)},
                         {"length", metres(length)},
                         {"period", QString::number(counter->dataInterval)},
                         {"speedThreshold",
                          counter->speedLowLimit > 0 ? numberText(counter->speedLowLimit) : QString()},
                         {"jamThreshold",
                          counter->maxDistInterval > 0 ? numberText(counter->maxDistInterval) : QString()},
                         {"file", outputFile("queues")},
                         {"friendlyPos", kYes}}),
            counter->name);
    }
}

void ExportedDevices::addTravelDetectors() {
    const auto &detectors = mRoads.network().traffic.travelDetectors;
    mNames.give(QStringLiteral("entryExitDetectors"), QStringLiteral("travel"),
                namedObjects(detectors, &VehicleTravelDetector::detectorId));
    for (const auto &detector : detectors) {
        const char *kind = "travel-time detectors";
        const auto start = placeOf({kind, detector->detectorId, detector->name, detector->startRoadId, 0,
                                    detector->isOnLinkStart()});
        const auto terminal = start ? placeOf({kind, detector->detectorId, detector->name,
                                               detector->teminalRoadId, 0, detector->isOnLinkTeminal()})
                                    : std::nullopt;
        if (!terminal)
            continue;
        KeptElement element =
            makeElement("entryExitDetector", {{"id", mNames.of(detector.get())},
                                              {"period", QString::number(detector->dataInterval)},
                                              {"file", outputFile("travels")}});
        const auto addSections = [&](const Place &place, const char *name, double position) {
            for (const int lane : place.lanes)
                element.children.push_back(makeElement(name, {{"lane", mRoads.laneId(*place.link, lane)},
                                                              {"pos", metres(position)},
                                                              {"friendlyPos", kYes}}));
        };
        addSections(*start, "detEntry", detector->startDist);
        addSections(*terminal, "detExit", detector->teminalDist);
        add(std::move(element), detector->name);
    }
}

void ExportedDevices::addSpeedAreas() {
    const auto &areas = mRoads.network().traffic.speedAreas;
    mNames.give(QStringLiteral("variableSpeedSigns"), QStringLiteral("speed"),
                namedObjects(areas, &ReduceSpeedArea::reduceSpeedAreaID));
    for (const auto &area : areas) {
        const auto place = placeOf({"speed reduction areas", area->reduceSpeedAreaID, area->name,
                                    area->roadID, area->laneNumber, area->isOnLink()});
        if (!place)
            continue;
        if (area->location > kShortestStop || area->areaLength < place->link->length - kShortestStop)
            leaveOut("bounds of speed reduction areas", area->reduceSpeedAreaID, area->name,
                     "a sign of SUMO holds for the whole edge");
        QStringList lanes;
        for (const int lane : place->lanes)
            lanes.append(mRoads.laneId(*place->link, lane));
        std::map<double, QList<long>> types; // by speed
        for (const ReduceSpeedVehiType *type : area->mlSpeedVehiType)
            types[type->avgSpeed].append(type->vehicleTypeCode);
        const bool forAll = types.size() == 1 &&
                            types.begin()->second.size() >= int(mRoads.network().traffic.vehicleTypes.size());
        for (const auto &[speed, codes] : types) {
            QStringList of;
            if (!forAll)
                std::transform(codes.begin(), codes.end(), std::back_inserter(of),
                               [this](long code) { return mVehicles.typeId(code); });
            QString id = mNames.of(area.get());
            if (types.size() > 1)
                id = mNames.unused(QStringLiteral("variableSpeedSigns"),
                                   QStringLiteral("%1_%2").arg(id, QString::number(std::lround(speed))));
            KeptElement sign = makeElement(
                "variableSpeedSign",
                {{"id", id}, {"lanes", lanes.join(QLatin1Char(' '))}, {"vTypes", of.join(QLatin1Char(' '))}});
            for (const ReduceSpeedInterval *interval : area->mlSpeedInterval) {
                sign.children.push_back(
                    makeElement("step", {{"time", QString::number(std::max(0L, interval->startTime - 1))},
                                         {"speed", numberText(speed / kKmhPerMs)}}));
                sign.children.push_back(makeElement(
                    "step", {{"time", QString::number(interval->endTime)}, {"speed", QStringLiteral("-1")}}));
            }
            add(std::move(sign), area->name);
        }
    }
}

void ExportedDevices::addRoadWorks() {
    const auto &zones = mRoads.network().traffic.roadWorkZones;
    mNames.give(QStringLiteral("rerouters"), QStringLiteral("works"),
                namedObjects(zones, &RoadWorkZone::roadWorkZoneId));
    for (const auto &zone : zones) {
        const auto place =
            placeOf({"road-work zones", zone->roadWorkZoneId, zone->name, zone->roadID, 0, zone->isOnLink()});
        if (!place)
            continue;
        std::set<int> lanes;
        for (const ZoneLane *lane : zone->mlLane)
            lanes.insert(mRoads.laneIndex(*place->link, lane->laneNumber));
        lanes.erase(-1);
        if (lanes.empty()) {
            leaveOut("road-work zones", zone->roadWorkZoneId, zone->name, "it has none of its link's lanes");
            continue;
        }
        if (zone->location > kShortestStop || zone->zoneLength < place->link->length - kShortestStop)
            leaveOut("bounds of road-work zones", zone->roadWorkZoneId, zone->name,
                     "SUMO closes whole lanes");
        add(closing(*zone, *place->link, std::vector<int>(lanes.begin(), lanes.end())), zone->name);
    }
}

KeptElement ExportedDevices::closing(const RoadWorkZone &zone, const Link &link,
                                     const std::vector<int> &lanes) const {
    const QString id = mNames.of(&zone);
    if (zone.limitSpeed > 0) { // nobody is kept out
        QStringList slow;
        for (const int lane : lanes)
            slow.append(mRoads.laneId(link, lane));
        KeptElement sign =
            makeElement("variableSpeedSign", {{"id", id}, {"lanes", slow.join(QLatin1Char(' '))}});
        sign.children.push_back(
            makeElement("step", {{"time", QStringLiteral("0")}, {"speed", numberText(zone.limitSpeed)}}));
        return sign;
    }
    QStringList before; // those who come are to look for another way
    for (const Link *other : mRoads.from(link).in)
        before.append(mNames.of(other));
    if (before.isEmpty())
        before.append(mNames.of(&link));
    KeptElement rerouter = makeElement("rerouter", {{"id", id}, {"edges", before.join(QLatin1Char(' '))}});
    KeptElement interval =
        makeElement("interval", {{"begin", QStringLiteral("0")}, {"end", QString::number(kEndOfDay)}});
    if (int(lanes.size()) == mRoads.laneCount(link)) {
        interval.children.push_back(makeElement("closingReroute", {{"id", mNames.of(&link)}}));
    } else {
        for (const int lane : lanes)
            interval.children.push_back(
                makeElement("closingLaneReroute", {{"id", mRoads.laneId(link, lane)}}));
    }
    rerouter.children.push_back(std::move(interval));
    return rerouter;
}

} // namespace moratools
