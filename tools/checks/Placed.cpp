#include "tools/checks/Placed.h"

#include "tools/checks/LinkGraph.h"

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

std::optional<QPointF> pointAt(double x, double y) {
    return QPointF(x, y);
}

} // namespace

std::optional<double> Placed::roadLength() const {
    if (link)
        return link->length;
    return connector ? std::optional<double>(connector->length) : std::nullopt;
}

QString Placed::calledRoad() const {
    return link ? calledObject(*link) : connector ? calledObject(*connector) : QString();
}

std::optional<QPointF> Placed::mark() const {
    if (link)
        return placeOf(*link);
    return connector ? placeOf(*connector->mpStartLink) : std::nullopt;
}

/// Brings each kind to one form.
class Places::Maker {
public:
    Maker(Places &places, const LinkGraph &graph) : mPlaces(places), mGraph(graph) {}

    void add(const VehicleDetector &detector) {
        Placed placed =
            on(detector, detector.roadId, detector.isOnLink(), detector.laneNumber, detector.toLaneNumber);
        const double road = placed.roadLength().value_or(0);
        placed.start = road - detector.distToTerminal;
        placed.end = placed.start;
        mPlaces.mPlaced.push_back(placed);
    }
    void add(const VehicleQueueCounter &counter) {
        Placed placed =
            on(counter, counter.roadID, counter.isOnLink(), counter.laneNumber, counter.toLaneNumber);
        placed.start = placed.end = counter.distance;
        placed.at = pointAt(counter.x, counter.y);
        mPlaces.mPlaced.push_back(placed);
        addPeriod(counter);
    }
    void add(const VehicleDrivInfoCollector &collector) {
        Placed placed = on(collector, collector.roadID, collector.toLaneNumber < 1, collector.laneNumber,
                           collector.toLaneNumber);
        placed.start = placed.end = collector.distance;
        placed.at = pointAt(collector.x, collector.y);
        mPlaces.mPlaced.push_back(placed);
        addPeriod(collector);
    }
    void add(const VehicleTravelDetector &detector) {
        Placed start = on(detector, detector.startRoadId, detector.isOnLinkStart(), detector.start_laneNumber,
                          detector.start_toLaneNumber);
        start.called = QStringLiteral("the start of ") + start.called;
        start.start = start.end = detector.startDist;
        start.at = pointAt(detector.startX, detector.startY);
        Placed end = on(detector, detector.teminalRoadId, detector.isOnLinkTeminal(),
                        detector.teminal_laneNumber, detector.teminal_toLaneNumber);
        end.called = QStringLiteral("the end of ") + end.called;
        end.start = end.end = detector.teminalDist;
        end.at = pointAt(detector.teminalX, detector.teminalY);
        mPlaces.mPlaced.push_back(start);
        mPlaces.mPlaced.push_back(end);
        addPeriod(detector);
    }
    void add(const ReduceSpeedArea &area) {
        Placed placed = on(area, area.roadID, area.isOnLink(), area.laneNumber, area.toLaneNumber);
        placed.start = area.location;
        placed.end = area.location + area.areaLength;
        mPlaces.mPlaced.push_back(placed);
    }
    /// A zone has a place for each of its lanes.
    template <class Zone>
    void addZone(const Zone &zone, long road) {
        for (const ZoneLane *lane : zone.mlLane) {
            Placed placed = on(zone, road, zone.isOnLink(), lane->laneNumber, lane->toLaneNumber);
            placed.start = double(zone.location);
            placed.end = double(zone.location) + double(zone.zoneLength);
            mPlaces.mPlaced.push_back(placed);
        }
    }

private:
    /// The number of a road may be that of a link and of a connector: the object's lanes say which.
    template <class T>
    Placed on(const T &object, long road, bool isOnLink, int lane, int toLane) const {
        const Link *link = mGraph.link(road);
        const Connector *connector = mGraph.connector(road);
        const bool takesLink = link && (isOnLink || !connector);
        return {NetKind<T>::table,
                NetKind<T>::idOf(object),
                calledObject(object),
                takesLink ? link : nullptr,
                takesLink ? nullptr : connector,
                lane,
                toLane,
                0,
                0,
                std::nullopt};
    }
    template <class T>
    void addPeriod(const T &device) {
        mPlaces.mPeriods.push_back({NetKind<T>::table, NetKind<T>::idOf(device), calledObject(device),
                                    device.startTime, device.endTime, device.dataInterval});
    }

    Places &mPlaces;
    const LinkGraph &mGraph;
};

Places::Places(const Checked &checked) {
    Maker maker(*this, checked.made<LinkGraph>());
    const TrafficObjects &traffic = checked.network().traffic;
    for (const auto &detector : traffic.vehicleDetectors)
        maker.add(*detector);
    for (const auto &counter : traffic.queueCounters)
        maker.add(*counter);
    for (const auto &detector : traffic.travelDetectors)
        maker.add(*detector);
    for (const auto &collector : traffic.collectors)
        maker.add(*collector);
    for (const auto &area : traffic.speedAreas)
        maker.add(*area);
    for (const auto &zone : traffic.accidentZones)
        maker.addZone(*zone, zone->roadId);
    for (const auto &zone : traffic.roadWorkZones)
        maker.addZone(*zone, zone->roadID);
}

} // namespace moratools
