#include "store/editing/OwningRead.h"

#include "model/NetContents.h"
#include "store/core/Query.h"
#include "store/families/BusLines.h"
#include "store/families/BusStations.h"
#include "store/families/Connectors.h"
#include "store/families/DecisionPoints.h"
#include "store/families/DeparturePoints.h"
#include "store/families/DrivInfoCollectors.h"
#include "store/families/GuideArrows.h"
#include "store/families/Links.h"
#include "store/families/QueueCounters.h"
#include "store/families/ReduceSpeedAreas.h"
#include "store/families/SignalGroups.h"
#include "store/families/SignalLamps.h"
#include "store/families/TravelDetectors.h"
#include "store/families/VehicleCompositions.h"
#include "store/families/VehicleDetectors.h"
#include "store/families/VehicleTypes.h"
#include "store/families/Zones.h"

namespace {

// The ids of what an object refers to by pointer, in one column.
constexpr Sql kLinksOfConnector = {
    "select StartlinkID from Connector where ConnID = %1 union select EndlinkID from Connector where ConnID = %1",
    "select StartlinkID from Connector where NetId = %0 and ConnID = %1 union select EndlinkID from Connector where NetId = %0 and ConnID = %1"};
constexpr Sql kGroupOfLamp = {
    "select signalGroupID from SignalPhase where signalPhaseID in (select signalPhaseID from SignalLamp where signalLampID = %1)",
    "select signalGroupID from SignalPhase where NetId = %0 and signalPhaseID in (select signalPhaseID from SignalLamp where NetId = %0 and signalLampID = %1)"};
constexpr Sql kLinksOfPoint = {
    "select linkID from DecisionPoint where deciPointID = %1 union select linkID from RoutingLink where routingID in (select routingID from Routing where deciPointID = %1)",
    "select linkID from DecisionPoint where NetId = %0 and deciPointID = %1 union select linkID from RoutingLink where NetId = %0 and routingID in (select routingID from Routing where NetId = %0 and deciPointID = %1)"};
constexpr Sql kLinkOfStation = {"select linkID from BusStation where busStationID = %1",
                                "select linkID from BusStation where NetId = %0 and busStationID = %1"};
constexpr Sql kLinksOfLine = {"select distinct roadID from BusLineRoad where busLineID = %1",
                              "select distinct roadID from BusLineRoad where NetId = %0 and busLineID = %1"};

// Single reads of generation 6 leave out what lanes are closed to, those of connectors do so in both.
constexpr const char *kRestrictionsOfLanes =
    "select r.laneID, r.vehicleTypeCode, t.vehicleTypeName from LaneLimitVehicle r join VehicleType t on r.NetId = t.NetId and r.vehicleTypeCode = t.vehicleTypeCode join Lane l on r.NetId = l.NetId and r.laneID = l.laneID where l.NetId = %1 and l.linkID = %2 order by r.laneID, r.vehicleTypeCode";
constexpr Sql kRestrictionsOfConnector = {
    "select vehicleTypeCode from ConnectorLimitVehicle where connID = %1 order by vehicleTypeCode",
    "select vehicleTypeCode from ConnectorLimitVehicle where NetId = %0 and connID = %1 order by vehicleTypeCode"};

/// What an object refers to, and the scope in which a read finds it.
struct Surroundings {
    explicit Surroundings(const Store &store) {
        scope.net.netId = store.netId();
        // New objects take their first lengths and speeds from it; those that are read have their own.
        scope.net.config() = store.state().net.config();
    }

    NetScope scope;
    Objects<Link> links;
    Objects<SignalGroup> groups;
};

class OwningRead {
public:
    explicit OwningRead(const Store &store)
        : mAround(std::make_shared<Surroundings>(store)), mStore(store.in(mAround->scope)) {}

    /// The object, with what was read around it.
    template <class T>
    Owned<T> own(T *object) const {
        std::unique_ptr<T> read(object);
        mAround->scope.net.releaseNet();
        if (!read || mStore.isGivenUp())
            return nullptr;
        return Owned<T>(read.release(), OwnedDelete{mAround});
    }

    const Store &store() const { return mStore; }
    /// @{ The same, with what a select names the ids of, or with the catalogue, in its scope.
    const Store &withLinks(const Sql &select, long id) const {
        keep(mAround->links, links::readLink, select, id);
        return mStore;
    }
    const Store &withGroups(const Sql &select, long id) const {
        keep(mAround->groups, signalgroups::readSignalGroup, select, id);
        return mStore;
    }
    const Store &withVehicleTypes() const {
        vehicletypes::readVehicleTypes(mStore, mStore.vehicleTypes());
        return mStore;
    }
    const Store &withCompositions() const {
        vehiclecompositions::readVehicleCompositions(mStore, mStore.compositions());
        return mStore;
    }
    /// @}

private:
    template <class T>
    void keep(Objects<T> &objects, T *(*readOne)(const Store &, long), const Sql &select, long id) const {
        QList<long> ids;
        Query rows(mStore, select, {id});
        if (!rows.execPart())
            return;
        while (rows.next()) {
            if (!ids.contains(rows.firstId()))
                ids.append(rows.firstId());
        }
        rows.finish();
        for (const long each : qAsConst(ids)) {
            if (T *object = readOne(mStore, each))
                objects.emplace_back(object);
        }
    }

    std::shared_ptr<Surroundings> mAround;
    Store mStore;
};

Link *readLink(const Store &store, long id) {
    std::unique_ptr<Link> link(links::readLink(store, id));
    if (!link || !store.hasSeveralNets())
        return link.release();
    Query rows(store, kRestrictionsOfLanes, {store.netId(), id});
    if (!rows.execPart())
        return store.whole(std::move(link));
    while (rows.next()) {
        for (Lane *lane : qAsConst(link->mlLane)) {
            if (lane->laneID == rows.id("laneID"))
                lane->mlLimitVehicle.append({rows.id("vehicleTypeCode"), rows.text("vehicleTypeName")});
        }
    }
    return store.whole(std::move(link));
}

Connector *readConnector(const Store &store, long id) {
    std::unique_ptr<Connector> connector(connectors::readConnector(store, id));
    if (!connector)
        return nullptr;
    Query rows(store, kRestrictionsOfConnector, {id});
    if (!rows.execPart())
        return store.whole(std::move(connector));
    while (rows.next())
        connector->mlLimitVehicle.append(rows.firstId());
    return store.whole(std::move(connector));
}

} // namespace

template <>
Owned<Link> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(readLink(read.store(), id));
}

template <>
Owned<Connector> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(readConnector(read.withLinks(kLinksOfConnector, id), id));
}

template <>
Owned<GuideArrow> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(guidearrows::readGuideArrow(read.store(), id));
}

template <>
Owned<SignalGroup> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(signalgroups::readSignalGroup(read.store(), id));
}

template <>
Owned<SignalLamp> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(signallamps::readSignalLamp(read.withGroups(kGroupOfLamp, id), id));
}

template <>
Owned<VehicleType> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    const Store &types = read.withVehicleTypes();
    const auto found = types.vehicleTypes().constFind(id);
    return read.own(found != types.vehicleTypes().constEnd() ? new VehicleType(*found) : nullptr);
}

template <>
Owned<VehicleComposition> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    auto composition =
        std::make_unique<VehicleComposition>(vehiclecompositions::readVehicleComposition(read.store(), id));
    return read.own(composition->vehicleConsCode == id ? composition.release() : nullptr);
}

template <>
Owned<DeparturePoint> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    const Store &compositions = read.withCompositions();
    return read.own(departurepoints::readDeparturePoint(compositions, compositions.compositions(), id));
}

template <>
Owned<DecisionPoint> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(decisionpoints::readDecisionPoint(read.withLinks(kLinksOfPoint, id), id));
}

template <>
Owned<VehicleDetector> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(vehicledetectors::readVehicleDetector(read.withVehicleTypes(), id));
}

template <>
Owned<VehicleQueueCounter> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    // Without a row the single read gives a new counter.
    std::unique_ptr<VehicleQueueCounter> counter(queuecounters::readQueueCounter(read.store(), id));
    return read.own(counter && counter->queueCounterID == id ? counter.release() : nullptr);
}

template <>
Owned<VehicleTravelDetector> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(traveldetectors::readTravelDetector(read.store(), id));
}

template <>
Owned<VehicleDrivInfoCollector> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    auto collector = std::make_unique<VehicleDrivInfoCollector>(
        drivinfocollectors::readDrivInfoCollector(read.store(), id));
    return read.own(collector->collecterID == id ? collector.release() : nullptr);
}

template <>
Owned<BusStation> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(busstations::readBusStation(read.withLinks(kLinkOfStation, id), id));
}

template <>
Owned<BusLine> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(buslines::readBusLine(read.withLinks(kLinksOfLine, id), id));
}

template <>
Owned<ReduceSpeedArea> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(reducespeedareas::readReduceSpeedArea(read.store(), id));
}

template <>
Owned<AccidentZone> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(zones::readOwnAccidentZone(read.store(), id));
}

template <>
Owned<RoadWorkZone> readOwned(const Store &store, long id) {
    const OwningRead read(store);
    return read.own(zones::readRoadWorkZone(read.store(), id));
}
