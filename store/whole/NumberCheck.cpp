#include "store/whole/NumberCheck.h"

#include <algorithm>

namespace {

/// In the order of kText.
enum Naming {
    ArrowLane,
    LampLane,
    RouteLanesRoute,
    RouteLanesConnector,
    RouteLanesLane,
    DepartureLink,
    IntervalComposition,
    ShareType,
    LaneType,
    ConnectorType,
    DetectorRoad,
    DetectorGroup,
    DetectorType,
    CounterRoad,
    TravelRoad,
    CollectorRoad,
    StopStation,
    StopLine,
    AccidentRoad,
    WorkRoad,
    AreaRoad,
    AreaType
};

/// What stands before and behind the object's id.
struct Text {
    const char *kind;
    const char *names;
};

constexpr Text kText[] = {
    {"Guide arrow", "is painted on lane"},
    {"Signal lamp", "stands on lane"},
    {"Lanes of route", "name route"},
    {"Lanes of route", "name connector"},
    {"Lanes of route", "name lane"},
    {"Departure point", "stands on link"},
    {"Departure point", "releases vehicle composition"},
    {"Vehicle composition", "has a share of vehicle type"},
    {"Lane", "is closed to vehicle type"},
    {"Connector", "is closed to vehicle type"},
    {"Vehicle detector", "is on road"},
    {"Vehicle detector", "serves signal group"},
    {"Vehicle detector", "registers vehicle type"},
    {"Queue counter", "is on road"},
    {"Travel-time detector", "is on road"},
    {"Driving-data collector", "is on road"},
    {"Bus line", "has a stop at bus station"},
    {"Bus line", "has a stop of bus line"},
    {"Accident zone", "is on road"},
    {"Road-work zone", "is on road"},
    {"Speed reduction area", "is on road"},
    {"Speed reduction area", "slows vehicle type"},
};

/// Identifiers to be looked for once all are there: whole networks have hundreds of thousands, mostly in order.
class Ids {
public:
    void insert(long id) { mIds.push_back(id); }
    void insert(const Ids &others) { mIds.insert(mIds.end(), others.mIds.begin(), others.mIds.end()); }
    void settle() {
        if (!std::is_sorted(mIds.begin(), mIds.end()))
            std::sort(mIds.begin(), mIds.end());
    }
    bool isEmpty() const { return mIds.empty(); }
    bool contains(long id) const { return std::binary_search(mIds.begin(), mIds.end(), id); }

private:
    std::vector<long> mIds;
};

class NumberCheck {
public:
    explicit NumberCheck(const NetContents &contents) : mContents(contents), mTraffic(contents.traffic) {
        for (const auto &link : contents.links) {
            mLinks.insert(link->linkID);
            for (const Lane *lane : qAsConst(link->mlLane))
                mLanes.insert(lane->laneID);
        }
        collect(mConnectors, contents.connectors, &Connector::connID);
        collect(mTypes, mTraffic.vehicleTypes, &VehicleType::vehicleTypeCode);
        collect(mCompositions, mTraffic.compositions, &VehicleComposition::vehicleConsCode);
        collect(mGroups, mTraffic.signalGroups, &SignalGroup::signalGroupID);
        for (const auto &point : mTraffic.decisionPoints)
            collect(mRoutes, point->mlRouting, &Routing::routingID);
        collect(mStations, mTraffic.busStations, &BusStation::busStationID);
        collect(mLines, mTraffic.busLines, &BusLine::busLineID);
        mRoads = mLinks;
        mRoads.insert(mConnectors);
        for (Ids *ids : {&mLinks, &mLanes, &mConnectors, &mTypes, &mCompositions, &mGroups, &mRoutes,
                         &mStations, &mLines, &mRoads})
            ids->settle();
    }

    std::vector<UnmatchedNumber> run() {
        checkRoads();
        checkDemand();
        checkDevices();
        checkTransit();
        checkPlaces();
        std::sort(mUnmatched.begin(), mUnmatched.end());
        return std::move(mUnmatched);
    }

private:
    template <class List, class Entity>
    static void collect(Ids &ids, const List &objects, long Entity::*id) {
        for (const auto &object : objects)
            ids.insert((*object).*id);
    }

    void check(Naming reference, long id, long number, const Ids &ids) {
        if (number != 0 && !ids.contains(number))
            mUnmatched.push_back({reference, id, number});
    }
    void checkType(Naming reference, long id, long code) {
        if (!mTypes.isEmpty())
            check(reference, id, code, mTypes);
    }

    void checkRoads() {
        for (const auto &link : mContents.links) {
            for (const Lane *lane : qAsConst(link->mlLane)) {
                for (const auto &restriction : lane->mlLimitVehicle)
                    checkType(LaneType, lane->laneID, restriction.first);
            }
        }
        for (const auto &arrow : mContents.guideArrows)
            check(ArrowLane, arrow->guideArrowID, arrow->laneID, mLanes);
        for (const auto &connector : mContents.connectors) {
            for (const long code : qAsConst(connector->mlLimitVehicle))
                checkType(ConnectorType, connector->connID, code);
        }
        for (const auto &lamp : mTraffic.signalLamps)
            check(LampLane, lamp->signalLampID, lamp->laneID, mLanes);
    }

    void checkDemand() {
        for (const auto &composition : mTraffic.compositions) {
            for (const VehicleConsDetail &share : qAsConst(composition->mlDetail))
                checkType(ShareType, composition->vehicleConsCode, share.vehicleTypeCode);
        }
        for (const auto &point : mTraffic.departurePoints) {
            check(DepartureLink, point->departurePointID, point->linkID, mLinks);
            for (const DepartureInterval &interval : qAsConst(point->mlInterval)) {
                if (!mCompositions.isEmpty())
                    check(IntervalComposition, point->departurePointID, interval.vehiCons.vehicleConsCode,
                          mCompositions);
            }
        }
        for (const RouteLanes &pair : mTraffic.routeLanes) {
            check(RouteLanesRoute, pair.routingID, pair.routingID, mRoutes);
            check(RouteLanesConnector, pair.routingID, pair.connID, mConnectors);
            check(RouteLanesLane, pair.routingID, pair.lanes.laneID1, mLanes);
            check(RouteLanesLane, pair.routingID, pair.lanes.laneID2, mLanes);
        }
    }

    void checkDevices() {
        for (const auto &detector : mTraffic.vehicleDetectors) {
            check(DetectorRoad, detector->vehicleDetectorId, detector->roadId, mRoads);
            check(DetectorGroup, detector->vehicleDetectorId, detector->signalGroupID, mGroups);
            for (const long code : qAsConst(detector->mlVehiTypeCode))
                checkType(DetectorType, detector->vehicleDetectorId, code);
        }
        for (const auto &counter : mTraffic.queueCounters)
            check(CounterRoad, counter->queueCounterID, counter->roadID, mRoads);
        for (const auto &detector : mTraffic.travelDetectors) {
            check(TravelRoad, detector->detectorId, detector->startRoadId, mRoads);
            check(TravelRoad, detector->detectorId, detector->teminalRoadId, mRoads);
        }
        for (const auto &collector : mTraffic.collectors)
            check(CollectorRoad, collector->collecterID, collector->roadID, mRoads);
    }

    void checkTransit() {
        for (const auto &line : mTraffic.busLines) {
            for (const BusStationLine *stop : qAsConst(line->mlStationLine)) {
                check(StopStation, line->busLineID, stop->busStationID, mStations);
                check(StopLine, line->busLineID, stop->busLineID, mLines);
            }
        }
    }

    void checkPlaces() {
        for (const auto &zone : mTraffic.accidentZones)
            check(AccidentRoad, zone->accidentZoneId, zone->roadId, mRoads);
        for (const auto &zone : mTraffic.roadWorkZones)
            check(WorkRoad, zone->roadWorkZoneId, zone->roadID, mRoads);
        for (const auto &area : mTraffic.speedAreas) {
            check(AreaRoad, area->reduceSpeedAreaID, area->roadID, mRoads);
            for (const ReduceSpeedVehiType *type : qAsConst(area->mlSpeedVehiType))
                checkType(AreaType, area->reduceSpeedAreaID, type->vehicleTypeCode);
        }
    }

    const NetContents &mContents;
    const TrafficObjects &mTraffic;
    Ids mTypes;
    Ids mCompositions;
    Ids mLinks;
    Ids mLanes;
    Ids mConnectors;
    Ids mRoads; ///< links and connectors
    Ids mGroups;
    Ids mRoutes;
    Ids mStations;
    Ids mLines;
    std::vector<UnmatchedNumber> mUnmatched;
};

} // namespace

std::vector<UnmatchedNumber> unmatchedNumbers(const NetContents &contents) {
    return NumberCheck(contents).run();
}

QString textOf(const UnmatchedNumber &number) {
    const Text &text = kText[number.reference];
    return QStringLiteral("%1 %2 %3 %4, which is not part of the network.")
        .arg(QLatin1String(text.kind), QString::number(number.id), QLatin1String(text.names),
             QString::number(number.number));
}
