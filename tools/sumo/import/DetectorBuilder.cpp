#include "tools/sumo/import/DetectorBuilder.h"

#include "tools/session/StoreSession.h"
#include <algorithm>
#include <cmath>
#include <map>

namespace moratools {

namespace {

constexpr int kEndOfDay = 86400;

/// Sets the period over which a device adds up, a day at most; without one the device keeps its default.
void setPeriod(double seconds, int &dataInterval) {
    if (seconds >= 1)
        dataInterval = int(std::lround(std::min<double>(seconds, kEndOfDay)));
}

std::unique_ptr<VehicleDrivInfoCollector> buildCollector(const SumoLoop &loop, const NetworkMap &network,
                                                         IdSource &ids) {
    const LanePlace place = network.lane(loop.lane);
    auto collector = std::make_unique<VehicleDrivInfoCollector>();
    collector->collecterID = ids.next("VehicleDrivInfoCollecter");
    collector->name = loop.id;
    collector->roadID = place.link->linkID;
    collector->laneNumber = place.lane->serialNumber;
    collector->distance = place.along(loop.pos);
    const GeometryPoint point = place.pointAt(collector->distance);
    collector->x = point.x;
    collector->y = point.y;
    collector->z = point.z;
    collector->endTime = kEndOfDay;
    setPeriod(loop.period, collector->dataInterval);
    return collector;
}

/// Where an area detector starts on its first lane and ends on its last one.
struct Stretch {
    double start = 0;
    double end = 0;
};

Stretch stretchOf(const SumoAreaDetector &detector, const LanePlace &first, const LanePlace &last) {
    if (detector.pos && detector.endPos)
        return {first.along(*detector.pos), last.along(*detector.endPos)};
    const double length = detector.length.value_or(last.source->length);
    if (detector.endPos)
        return {first.along(std::max(0.0, last.along(*detector.endPos) - length)),
                last.along(*detector.endPos)};
    // The start may lie before the lane, the length counts from there.
    const double given = detector.pos.value_or(0);
    const double start = given < 0 ? first.source->length + given : given;
    return {std::clamp(start, 0.0, first.source->length),
            std::clamp(start + length, 0.0, last.source->length)};
}

std::unique_ptr<VehicleQueueCounter> buildCounter(const SumoAreaDetector &detector, const NetworkMap &network,
                                                  IdSource &ids) {
    const LanePlace first = network.lane(detector.lanes.first());
    const LanePlace last = network.lane(detector.lanes.last());
    const Stretch stretch = stretchOf(detector, first, last);
    auto counter = std::make_unique<VehicleQueueCounter>(ids.store().net());
    counter->queueCounterID = ids.next("VehicleQueueCounter");
    counter->name = detector.id;
    counter->roadID = last.link->linkID;
    counter->laneNumber = last.lane->serialNumber;
    counter->distance = stretch.end;
    const GeometryPoint point = last.pointAt(stretch.end);
    counter->x = point.x;
    counter->y = point.y;
    counter->z = point.z;
    counter->maxQueueLength = stretch.end - stretch.start;
    for (int i = 0; i + 1 < detector.lanes.size(); ++i)
        counter->maxQueueLength += network.lane(detector.lanes.at(i)).source->length;
    counter->speedLowLimit = detector.speedThreshold.value_or(counter->speedLowLimit);
    counter->maxDistInterval = detector.jamDistance.value_or(counter->maxDistInterval);
    counter->endTime = kEndOfDay;
    setPeriod(detector.period, counter->dataInterval);
    return counter;
}

/// A cross-section for each link, by the first of the lanes that it names.
std::vector<std::pair<LanePlace, double>> sectionsByLink(const std::vector<SumoCrossSection> &sections,
                                                         const NetworkMap &network) {
    std::vector<std::pair<LanePlace, double>> places;
    for (const SumoCrossSection &section : sections) {
        const LanePlace place = network.lane(section.lane);
        const bool known = std::any_of(places.begin(), places.end(), [&place](const auto &other) {
            return other.first.link == place.link;
        });
        if (!known)
            places.emplace_back(place, place.along(section.pos));
    }
    return places;
}

void addTravelDetectors(const SumoPassageDetector &source, const NetworkMap &network, IdSource &ids,
                        Objects<VehicleTravelDetector> &into) {
    const auto entries = sectionsByLink(source.entries, network);
    const auto exits = sectionsByLink(source.exits, network);
    for (const auto &entry : entries) {
        for (const auto &exit : exits) {
            auto detector = std::make_unique<VehicleTravelDetector>();
            detector->detectorId = ids.next("VehicleTravelDetector");
            detector->name = entries.size() * exits.size() == 1
                                 ? source.id
                                 : QStringLiteral("%1 %2->%3")
                                       .arg(source.id, entry.first.link->linkName, exit.first.link->linkName);
            detector->startRoadId = entry.first.link->linkID;
            detector->startDist = entry.second;
            const GeometryPoint start = entry.first.pointAt(entry.second);
            detector->startX = start.x;
            detector->startY = start.y;
            detector->teminalRoadId = exit.first.link->linkID;
            detector->teminalDist = exit.second;
            const GeometryPoint terminal = exit.first.pointAt(exit.second);
            detector->teminalX = terminal.x;
            detector->teminalY = terminal.y;
            detector->endTime = kEndOfDay;
            setPeriod(source.period, detector->dataInterval);
            into.push_back(std::move(detector));
        }
    }
}

} // namespace

void buildDetectors(const SumoCompanions &companions, const NetworkMap &network, IdSource &ids,
                    TrafficObjects &into) {
    for (const SumoLoop &loop : companions.loops)
        into.collectors.push_back(buildCollector(loop, network, ids));
    for (const SumoAreaDetector &detector : companions.areaDetectors)
        into.queueCounters.push_back(buildCounter(detector, network, ids));
    for (const SumoPassageDetector &detector : companions.passageDetectors)
        addTravelDetectors(detector, network, ids, into.travelDetectors);
}

} // namespace moratools
