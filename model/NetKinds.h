#pragma once

#include "NetLists.h"

#include <type_traits>

/// The class of the objects of a list, by the member that is the list.
template <class Member>
struct NetListMember;
template <class T, class Lists>
struct NetListMember<Objects<T> Lists::*> {
    using Object = T;
};

/// What a container knows of a kind of object: where its list, its ids and its names are.
/// @tparam objects the list, a member of NetLists or of TrafficObjects.
/// @tparam id the member with the object's id.
/// @tparam text the member with its name; none for a kind without.
template <auto objects, auto id, auto text = nullptr>
struct NetKindOf {
    using Object = typename NetListMember<decltype(objects)>::Object;

    /// The list of @p lists, constant for constant ones.
    template <class Lists>
    static auto &list(Lists &lists) {
        if constexpr (std::is_invocable_v<decltype(objects), Lists &>)
            return lists.*objects;
        else
            return lists.traffic.*objects;
    }
    static long idOf(const Object &object) { return object.*id; }
    /// Empty for a kind without names.
    static QString nameOf(const Object &object) {
        if constexpr (std::is_null_pointer_v<decltype(text)>)
            return {};
        else
            return object.*text;
    }
};

/// The kinds of objects that NetContents owns one by one, each with its table and what it is called.
template <class T>
struct NetKind {
    static_assert(sizeof(T) == 0,
                  "This is no kind that NetContents has a list of pointers for. Of a part, edit the "
                  "object that owns it; link types, sets of driver models and lanes of routes are "
                  "values: edit their lists.");
};

template <>
struct NetKind<Link> : NetKindOf<&NetLists::links, &Link::linkID, &Link::linkName> {
    static constexpr const char *table = "Link";
    static constexpr const char *word = "link";
};
template <>
struct NetKind<GuideArrow> : NetKindOf<&NetLists::guideArrows, &GuideArrow::guideArrowID> {
    static constexpr const char *table = "GuideArrow";
    static constexpr const char *word = "guide arrow";
};
template <>
struct NetKind<Connector> : NetKindOf<&NetLists::connectors, &Connector::connID, &Connector::connName> {
    static constexpr const char *table = "Connector";
    static constexpr const char *word = "connector";
};
template <>
struct NetKind<VehicleType>
    : NetKindOf<&TrafficObjects::vehicleTypes, &VehicleType::vehicleTypeCode, &VehicleType::vehicleTypeName> {
    static constexpr const char *table = "VehicleType";
    static constexpr const char *word = "vehicle type";
};
template <>
struct NetKind<VehicleComposition>
    : NetKindOf<&TrafficObjects::compositions, &VehicleComposition::vehicleConsCode,
                &VehicleComposition::name> {
    static constexpr const char *table = "VehicleConstitutent";
    static constexpr const char *word = "vehicle composition";
};
template <>
struct NetKind<DeparturePoint>
    : NetKindOf<&TrafficObjects::departurePoints, &DeparturePoint::departurePointID, &DeparturePoint::name> {
    static constexpr const char *table = "DeparturePoint";
    static constexpr const char *word = "departure point";
};
template <>
struct NetKind<DecisionPoint>
    : NetKindOf<&TrafficObjects::decisionPoints, &DecisionPoint::deciPointID, &DecisionPoint::deciPointName> {
    static constexpr const char *table = "DecisionPoint";
    static constexpr const char *word = "decision point";
};
template <>
struct NetKind<SignalGroup>
    : NetKindOf<&TrafficObjects::signalGroups, &SignalGroup::signalGroupID, &SignalGroup::name> {
    static constexpr const char *table = "SignalGroup";
    static constexpr const char *word = "signal group";
};
template <>
struct NetKind<SignalLamp>
    : NetKindOf<&TrafficObjects::signalLamps, &SignalLamp::signalLampID, &SignalLamp::name> {
    static constexpr const char *table = "SignalLamp";
    static constexpr const char *word = "signal lamp";
};
template <>
struct NetKind<VehicleDetector> : NetKindOf<&TrafficObjects::vehicleDetectors,
                                            &VehicleDetector::vehicleDetectorId, &VehicleDetector::name> {
    static constexpr const char *table = "VehicleDetector";
    static constexpr const char *word = "vehicle detector";
};
template <>
struct NetKind<VehicleQueueCounter>
    : NetKindOf<&TrafficObjects::queueCounters, &VehicleQueueCounter::queueCounterID,
                &VehicleQueueCounter::name> {
    static constexpr const char *table = "VehicleQueueCounter";
    static constexpr const char *word = "queue counter";
};
template <>
struct NetKind<VehicleTravelDetector>
    : NetKindOf<&TrafficObjects::travelDetectors, &VehicleTravelDetector::detectorId,
                &VehicleTravelDetector::name> {
    static constexpr const char *table = "VehicleTravelDetector";
    static constexpr const char *word = "travel-time detector";
};
template <>
struct NetKind<VehicleDrivInfoCollector>
    : NetKindOf<&TrafficObjects::collectors, &VehicleDrivInfoCollector::collecterID,
                &VehicleDrivInfoCollector::name> {
    static constexpr const char *table = "VehicleDrivInfoCollecter";
    static constexpr const char *word = "driving-data collector";
};
template <>
struct NetKind<BusStation>
    : NetKindOf<&TrafficObjects::busStations, &BusStation::busStationID, &BusStation::name> {
    static constexpr const char *table = "BusStation";
    static constexpr const char *word = "bus station";
};
template <>
struct NetKind<BusLine> : NetKindOf<&TrafficObjects::busLines, &BusLine::busLineID, &BusLine::name> {
    static constexpr const char *table = "BusLine";
    static constexpr const char *word = "bus line";
};
template <>
struct NetKind<ReduceSpeedArea>
    : NetKindOf<&TrafficObjects::speedAreas, &ReduceSpeedArea::reduceSpeedAreaID, &ReduceSpeedArea::name> {
    static constexpr const char *table = "ReduceSpeedArea";
    static constexpr const char *word = "speed reduction area";
};
template <>
struct NetKind<AccidentZone>
    : NetKindOf<&TrafficObjects::accidentZones, &AccidentZone::accidentZoneId, &AccidentZone::name> {
    static constexpr const char *table = "AccidentZone";
    static constexpr const char *word = "accident zone";
};
template <>
struct NetKind<RoadWorkZone>
    : NetKindOf<&TrafficObjects::roadWorkZones, &RoadWorkZone::roadWorkZoneId, &RoadWorkZone::name> {
    static constexpr const char *table = "RoadWorkZone";
    static constexpr const char *word = "road-work zone";
};

/// Calls `visit` with the NetKind of each kind of pointers, in the order in which kinds are written: what
/// refers to others comes behind them.
template <class Visit>
void forEachNetKind(const Visit &visit) {
    visit(NetKind<VehicleType>());
    visit(NetKind<VehicleComposition>());
    visit(NetKind<Link>());
    visit(NetKind<GuideArrow>());
    visit(NetKind<Connector>());
    visit(NetKind<SignalGroup>());
    visit(NetKind<SignalLamp>());
    visit(NetKind<DeparturePoint>());
    visit(NetKind<DecisionPoint>());
    visit(NetKind<VehicleDetector>());
    visit(NetKind<VehicleQueueCounter>());
    visit(NetKind<VehicleTravelDetector>());
    visit(NetKind<VehicleDrivInfoCollector>());
    visit(NetKind<BusStation>());
    visit(NetKind<BusLine>());
    visit(NetKind<AccidentZone>());
    visit(NetKind<RoadWorkZone>());
    visit(NetKind<ReduceSpeedArea>());
}
