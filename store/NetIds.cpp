#include "store/NetIds.h"

#include "model/AccidentZone.h"
#include "model/BusLine.h"
#include "model/BusStation.h"
#include "model/BusStationLine.h"
#include "model/Connector.h"
#include "model/DecisionPoint.h"
#include "model/DeparturePoint.h"
#include "model/GuideArrow.h"
#include "model/Link.h"
#include "model/Net.h"
#include "model/ReduceSpeedArea.h"
#include "model/RoadWorkZone.h"
#include "model/Routing.h"
#include "model/RoutingFLowRatio.h"
#include "model/RoutingFlowByInterval.h"
#include "model/SignalGroup.h"
#include "model/SignalLamp.h"
#include "model/SignalPhase.h"
#include "model/VehicleComposition.h"
#include "model/VehicleDetector.h"
#include "model/VehicleDrivInfoCollector.h"
#include "model/VehicleQueueCounter.h"
#include "model/VehicleTravelDetector.h"
#include "model/VehicleType.h"
#include "store/core/StorableValue.h"
#include "store/families/Networks.h"
#include "store/ids/IdSlots.h"
#include "store/ids/Identifiers.h"
#include "store/opening/ProcessStore.h"
#include "store/opening/StoreOpening.h"

#include <algorithm>
#include <unordered_set>

namespace {

/// By Table.
constexpr const char *kTableNames[] = {
    "VehicleType",
    "VehicleConstitutent",
    "Vertex",
    "Node",
    "Link",
    "Lane",
    "GuideArrow",
    "Connector",
    "LaneConnector",
    "SignalGroup",
    "SignalPhase",
    "SignalLamp",
    "DeparturePoint",
    "DepartureInterval",
    "DecisionPoint",
    "Routing",
    "RoutingFLowRatio",
    "VehicleDetector",
    "VehicleQueueCounter",
    "VehicleTravelDetector",
    "VehicleDrivInfoCollecter",
    "BusLine",
    "BusStation",
    "BusStationLine",
    "BusStationPassengerArriving",
    "AccidentZone",
    "RoadWorkZone",
    "ReduceSpeedArea",
    "ReduceSpeedInterval",
};

QString nameOf(Table table) {
    return QLatin1String(kTableNames[static_cast<int>(table)]);
}

/// @p part is named after @p whole once that has a number.
template <class Whole, class Part>
void follow(IdSlots &slots, Whole &whole, long Whole::*id, Part &part, long Part::*owner) {
    slots.afterwards([&whole, id, &part, owner] {
        if (part.*owner == 0)
            part.*owner = whole.*id;
    });
}

template <class Whole, class List, class Part>
void followEach(IdSlots &slots, Whole &whole, long Whole::*id, const List &parts, long Part::*owner) {
    for (Part *part : parts) {
        if (part)
            follow(slots, whole, id, *part, owner);
    }
}

void collect(IdSlots &slots, VehicleType &type) {
    slots.add("VehicleType", type.vehicleTypeCode);
}

void collect(IdSlots &slots, VehicleComposition &composition) {
    slots.add("VehicleConstitutent", composition.vehicleConsCode);
    for (VehicleConsDetail &detail : composition.mlDetail)
        follow(slots, composition, &VehicleComposition::vehicleConsCode, detail,
               &VehicleConsDetail::vehicleConsCode);
}

void collect(IdSlots &slots, Link &link) {
    slots.add("Link", link.linkID);
    slots.addEach("Vertex", link.mlVertex, &Vertex::vertexID);
    for (Node *node : {link.mpStartNode, link.mpEndNode}) {
        if (!node)
            continue;
        if (node->mpVertex)
            slots.add("Vertex", node->mpVertex->vertexID);
        slots.add("Node", node->nodeID);
    }
    slots.addEach("Lane", link.mlLane, &Lane::laneID);
    followEach(slots, link, &Link::linkID, link.mlLane, &Lane::linkID);
}

void collect(IdSlots &slots, GuideArrow &arrow) {
    slots.add("GuideArrow", arrow.guideArrowID);
}

void collect(IdSlots &slots, Connector &connector) {
    slots.add("Connector", connector.connID);
    slots.addEach("LaneConnector", connector.mlLaneConnector, &LaneConnector::laneConnId);
}

void collect(IdSlots &slots, SignalGroup &group) {
    slots.add("SignalGroup", group.signalGroupID);
    slots.addEach("SignalPhase", group.mlPhase, &SignalPhase::signalPhaseID);
}

void collect(IdSlots &slots, SignalLamp &lamp) {
    slots.add("SignalLamp", lamp.signalLampID);
}

void collect(IdSlots &slots, DeparturePoint &point) {
    slots.add("DeparturePoint", point.departurePointID);
    slots.addEach("DepartureInterval", point.mlInterval, &DepartureInterval::departureIntervalD);
}

void collect(IdSlots &slots, DecisionPoint &point) {
    slots.add("DecisionPoint", point.deciPointID);
    slots.addEach("Routing", point.mlRouting, &Routing::routingID);
    for (RoutingFlowByInterval *interval : qAsConst(point.mlFlowByInterval)) {
        if (interval)
            slots.addEach("RoutingFLowRatio", interval->mlFlowRatio, &RoutingFLowRatio::routingFLowRatioID);
    }
}

void collect(IdSlots &slots, Routing &route) {
    slots.add("Routing", route.routingID);
}

void collect(IdSlots &slots, VehicleDetector &detector) {
    slots.add("VehicleDetector", detector.vehicleDetectorId);
}

void collect(IdSlots &slots, VehicleQueueCounter &counter) {
    slots.add("VehicleQueueCounter", counter.queueCounterID);
}

void collect(IdSlots &slots, VehicleTravelDetector &detector) {
    slots.add("VehicleTravelDetector", detector.detectorId);
}

void collect(IdSlots &slots, VehicleDrivInfoCollector &collector) {
    slots.add("VehicleDrivInfoCollecter", collector.collecterID);
}

void collect(IdSlots &slots, BusLine &line) {
    slots.add("BusLine", line.busLineID);
    slots.addEach("BusStationLine", line.mlStationLine, &BusStationLine::stationLineID);
    followEach(slots, line, &BusLine::busLineID, line.mlStationLine, &BusStationLine::busLineID);
    for (BusStationLine *stop : qAsConst(line.mlStationLine)) {
        if (stop)
            slots.addEach("BusStationPassengerArriving", stop->mlPassengerArriving,
                          &PassengerArriving::passengerArrivingID);
    }
}

void collect(IdSlots &slots, BusStation &station) {
    slots.add("BusStation", station.busStationID);
}

void collect(IdSlots &slots, AccidentZone &zone) {
    slots.add("AccidentZone", zone.accidentZoneId);
    followEach(slots, zone, &AccidentZone::accidentZoneId, zone.mlLane, &ZoneLane::zoneId);
}

void collect(IdSlots &slots, RoadWorkZone &zone) {
    slots.add("RoadWorkZone", zone.roadWorkZoneId);
    followEach(slots, zone, &RoadWorkZone::roadWorkZoneId, zone.mlLane, &ZoneLane::zoneId);
}

void collect(IdSlots &slots, ReduceSpeedArea &area) {
    slots.add("ReduceSpeedArea", area.reduceSpeedAreaID);
    slots.addEach("ReduceSpeedInterval", area.mlSpeedInterval, &ReduceSpeedInterval::intervalID);
    followEach(slots, area, &ReduceSpeedArea::reduceSpeedAreaID, area.mlSpeedInterval,
               &ReduceSpeedInterval::reduceSpeedAreaID);
    followEach(slots, area, &ReduceSpeedArea::reduceSpeedAreaID, area.mlSpeedVehiType,
               &ReduceSpeedVehiType::reduceSpeedAreaID);
}

} // namespace

NetIds::NetIds(QSqlDatabase &db, long netId) : mDb(db), mNetId(netId) {}

NetIds NetIds::ofCurrentNet(QSqlDatabase &db) {
    return {db, stateOf(db).net.netId};
}

std::optional<long> NetIds::next(Table table) const {
    const QList<long> one = next(table, 1);
    return one.isEmpty() ? std::nullopt : std::make_optional(one.first());
}

std::optional<long> NetIds::next(const QString &table) const {
    for (int i = 0; i <= static_cast<int>(Table::ReduceSpeedInterval); ++i) {
        if (table.compare(QLatin1String(kTableNames[i]), Qt::CaseInsensitive) == 0)
            return next(static_cast<Table>(i));
    }
    const OperationName operation("nextId");
    recordFailure(
        stateOf(mDb).failures, {},
        QStringLiteral("Table \"%1\" numbers no rows: the ones that do are those of enum Table").arg(table),
        0, FailureKind::NotFound);
    return std::nullopt;
}

QList<long> NetIds::next(Table table, int count) const {
    const Store store = opening::storeByVersion(stateOf(mDb), mDb, mNetId, "nextId");
    QList<long> ids;
    if (count > 0 && networks::requireNetwork(store) &&
        !identifiers::draw(store, nameOf(table), {}, count, ids))
        ids.clear();
    return ids;
}

std::optional<long> NetIds::lastGiven(const QString &table) const {
    const Store store = opening::storeByVersion(stateOf(mDb), mDb, mNetId, "nextId");
    const auto last = identifiers::lastGiven(store, table);
    return last ? std::make_optional(long(std::min(*last, storablevalue::kLargestId))) : std::nullopt;
}

QList<long> NetIds::nextAbove(const QString &table, long floor, int count) const {
    const Store store = opening::storeByVersion(stateOf(mDb), mDb, mNetId, "nextId");
    QList<long> ids;
    if (count > 0 && networks::requireNetwork(store) && !identifiers::take(store, table, floor, count, ids))
        ids.clear();
    return ids;
}

template <class Object>
bool NetIds::drawFor(const QList<Object *> &objects) const {
    const Store store = opening::storeByVersion(stateOf(mDb), mDb, mNetId, "drawIds");
    IdSlots slots;
    std::unordered_set<const Object *> collected;
    for (Object *object : objects) {
        if (collected.insert(object).second)
            collect(slots, *object);
    }
    return networks::requireNetwork(store) && slots.fill(store);
}

template MORASTORE_EXPORT bool NetIds::drawFor(const QList<VehicleType *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<VehicleComposition *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<Link *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<GuideArrow *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<Connector *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<SignalGroup *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<SignalLamp *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<DeparturePoint *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<DecisionPoint *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<Routing *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<VehicleDetector *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<VehicleQueueCounter *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<VehicleTravelDetector *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<VehicleDrivInfoCollector *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<BusLine *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<BusStation *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<AccidentZone *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<RoadWorkZone *> &) const;
template MORASTORE_EXPORT bool NetIds::drawFor(const QList<ReduceSpeedArea *> &) const;
