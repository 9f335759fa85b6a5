#include "store/families/Zones.h"

#include "model/AccidentZone.h"
#include "model/Description.h"
#include "model/RoadWorkZone.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/core/StorableValue.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zones {

namespace {

// The texts of generation 6 are no SQL ("nad", a missing "and"): the database refuses the first, so a
// generation-6 read finds no accident zone and the second never runs. Hosts count on that answer and read
// these zones as those of a store of one network.
constexpr Sql kSelectAccident = {"select * from AccidentZone where accidentZoneId = %1",
                                 "select * from AccidentZone where NetId = %0 nad accidentZoneId = %2"};
constexpr Sql kSelectAccidentLanes = {
    "select * from AccidentZoneWithLane where accidentZoneId = %1 order by laneNumber",
    "select * from AccidentZoneWithLane where NetId = %0 accidentZoneId = %1 order by laneNumber"};
/// The same for who asks for a zone of one network.
constexpr Sql kSelectOwnAccident = {"select * from AccidentZone where accidentZoneId = %1",
                                    "select * from AccidentZone where NetId = %0 and accidentZoneId = %1"};
constexpr Sql kSelectOwnAccidentLanes = {
    "select * from AccidentZoneWithLane where accidentZoneId = %1 order by laneNumber",
    "select * from AccidentZoneWithLane where NetId = %0 and accidentZoneId = %1 order by laneNumber"};
constexpr Sql kSelectAccidentIds = {
    "select accidentZoneId from AccidentZone order by accidentZoneId",
    "select accidentZoneId from AccidentZone where NetId = %0 order by accidentZoneId"};

constexpr Sql kSelectRoadWork = {"select * from RoadWorkZone where roadWorkZoneId = %1",
                                 "select * from RoadWorkZone where NetId = %0 and roadWorkZoneId = %1"};
constexpr Sql kSelectRoadWorkLanes = {
    "select * from RoadWorkZoneWithLane where roadWorkZoneId = %1  order by laneNumber",
    "select * from RoadWorkZoneWithLane where NetId = %0 and roadWorkZoneId = %1  order by laneNumber"};
constexpr Sql kSelectRoadWorkIds = {
    "select roadWorkZoneId from RoadWorkZone order by roadWorkZoneId",
    "select roadWorkZoneId from RoadWorkZone where NetId = %1 order by roadWorkZoneId"};

/// @{ A new zone of a store, before its row is read.
void make(const Store &, std::unique_ptr<AccidentZone> &zone) {
    zone = std::make_unique<AccidentZone>();
}
void make(const Store &store, std::unique_ptr<RoadWorkZone> &zone) {
    zone = std::make_unique<RoadWorkZone>(store.net());
}
/// @}

constexpr std::tuple kAccidentColumns = {
    Column{":accidentZoneId", &AccidentZone::accidentZoneId},
    Column{":name", &AccidentZone::name},
    Column{":location", &AccidentZone::location},
    Column{":zoneLength", &AccidentZone::zoneLength},
    Column{":roadId", &AccidentZone::roadId},
    Column{":roadType", &AccidentZone::roadType},
};
/// But for the road.
constexpr std::tuple kRoadWorkColumns = {
    Column{":roadWorkZoneId", &RoadWorkZone::roadWorkZoneId},
    Column{":name", &RoadWorkZone::name},
    Column{":location", &RoadWorkZone::location},
    Column{":zoneLength", &RoadWorkZone::zoneLength},
    Column{":limitSpeed", &RoadWorkZone::limitSpeed},
    Column{":roadName", &RoadWorkZone::roadName},
    Column{":roadType", &RoadWorkZone::roadType},
};
constexpr std::tuple kLaneColumns = {
    Column{":laneNumber", &ZoneLane::laneNumber},
    Column{":toLaneNumber", &ZoneLane::toLaneNumber},
};

template <class Row>
void readRow(Row &row, AccidentZone &zone) {
    readAll(row, kAccidentColumns, zone);
}

template <class Row>
Row &bindRow(Row &row, const AccidentZone &zone) {
    return bindAll(row, kAccidentColumns, zone);
}

template <class Row>
void readRow(Row &row, RoadWorkZone &zone) {
    readAll(row, kRoadWorkColumns, zone);
    // Some writers store the road as a real number: its fraction is cut off, not rounded.
    zone.roadID = Query::narrowedId(storablevalue::wholePart(row.number("roadID")));
}

template <class Row>
Row &bindRow(Row &row, const RoadWorkZone &zone) {
    return bindAll(row, kRoadWorkColumns, zone).bind(":roadID", zone.roadID);
}

template <class Row>
ZoneLane *readLane(Row &row, long zoneId) {
    auto lane = std::make_unique<ZoneLane>();
    lane->zoneId = zoneId;
    readAll(row, kLaneColumns, *lane);
    return lane.release();
}

void readLanes(const Store &store, const Sql &select, long zoneId, QList<ZoneLane *> &lanes) {
    Query rows(store, select, {zoneId});
    if (!rows.execPart())
        return;
    while (rows.next())
        lanes.append(readLane(rows, zoneId));
    // The paths from one lane come in the order of the lanes that they lead to, whatever serves the read.
    std::sort(lanes.begin(), lanes.end(), [](const ZoneLane *a, const ZoneLane *b) {
        return std::make_pair(a->laneNumber, a->toLaneNumber) <
               std::make_pair(b->laneNumber, b->toLaneNumber);
    });
}

/// Older stores get the tables when they are upgraded; those of generation 6 have always had them.
bool lacksTable(const Store &store, const char *table) {
    if (store.hasSeveralNets() || !store.isUsable())
        return false;
    const auto isThere = probes::hasTable(store.db(), QLatin1String(table), store.failures());
    store.requireAnswer(isThere.has_value());
    return !isThere.value_or(true);
}

/// The names of a kind of zone.
struct ZoneTables {
    const char *zones;
    const char *lanes;
    const char *id;            ///< column of both tables
    const char *idPlaceholder; ///< in the rows of lanes
    const char *order;         ///< of the lanes
};

constexpr ZoneTables kAccident = {"AccidentZone", "AccidentZoneWithLane", "accidentZoneId", ":accidentZoneId",
                                  "accidentZoneId, laneNumber, toLaneNumber"};
constexpr ZoneTables kRoadWork = {"RoadWorkZone", "RoadWorkZoneWithLane", "roadWorkZoneId", ":roadWorkZoneId",
                                  "roadWorkZoneId, laneNumber, toLaneNumber"};

template <class Zone>
void loadZones(NetLoad &net, const ZoneTables &tables, Objects<Zone> &zones, long Zone::*id) {
    net.forEachObject(tables.zones, tables.id, [&zones](Rows &row) {
        make(row.store(), zones.emplace_back());
        readRow(row, *zones.back());
    });
    Owners zoneOf(net, zones, id, tables.lanes, "belongs to no zone");
    net.forEachRow(tables.lanes, tables.order, [&](Rows &row) {
        if (Zone *zone = zoneOf.of(row, tables.id))
            zone->mlLane.append(readLane(row, (*zone).*id));
    });
}

template <class Zone>
void saveZones(NetSave &net, const ZoneTables &tables, const Objects<Zone> &zones, long Zone::*id) {
    net.giveIds(tables.zones, zones, id);
    net.writeEach(tables.zones, zones, [](RowWriter &row, const Zone &zone) { bindRow(row, zone); });
    net.writeOwned(tables.lanes, zones, &Zone::mlLane, [&](RowWriter &row, const Zone &zone, ZoneLane *lane) {
        if (lane->zoneId != zone.*id)
            net.set(lane->zoneId, zone.*id);
        bindAll(row.bind(tables.idPlaceholder, zone.*id), kLaneColumns, *lane);
    });
}

AccidentZone *readAccident(const Store &store, const Sql &select, const Sql &selectLanes, long zoneId) {
    Query row(store, select, {zoneId});
    if (!row.execAndNext())
        return nullptr;
    auto zone = std::make_unique<AccidentZone>();
    readRow(row, *zone);
    row.finish();
    readLanes(store, selectLanes, zoneId, zone->mlLane);
    return store.whole(std::move(zone));
}

} // namespace

AccidentZone *readAccidentZone(const Store &store, long zoneId) {
    // The statement of several networks is never well-formed: the read fails and is recorded.
    return readAccident(store, kSelectAccident, kSelectAccidentLanes, zoneId);
}

AccidentZone *readOwnAccidentZone(const Store &store, long zoneId) {
    return readAccident(store, kSelectOwnAccident, kSelectOwnAccidentLanes, zoneId);
}

RoadWorkZone *readRoadWorkZone(const Store &store, long zoneId) {
    Query row(store, kSelectRoadWork, {zoneId});
    if (!row.execAndNext())
        return nullptr;
    auto zone = std::make_unique<RoadWorkZone>(store.net());
    readRow(row, *zone);
    row.finish();
    readLanes(store, kSelectRoadWorkLanes, zoneId, zone->mlLane);
    return store.whole(std::move(zone));
}

bool listAccidentZoneIds(const Store &store, QList<long> &ids) {
    return lacksTable(store, "AccidentZone") || appendIds(store, kSelectAccidentIds, ids);
}

bool listRoadWorkZoneIds(const Store &store, QList<long> &ids) {
    return lacksTable(store, "RoadWorkZone") || appendIds(store, kSelectRoadWorkIds, ids);
}

void loadAllZones(NetLoad &net) {
    TrafficObjects &traffic = net.contents.traffic;
    loadZones(net, kAccident, traffic.accidentZones, &AccidentZone::accidentZoneId);
    loadZones(net, kRoadWork, traffic.roadWorkZones, &RoadWorkZone::roadWorkZoneId);
}

void saveAllZones(NetSave &net) {
    const TrafficObjects &traffic = net.contents.traffic;
    saveZones(net, kAccident, traffic.accidentZones, &AccidentZone::accidentZoneId);
    saveZones(net, kRoadWork, traffic.roadWorkZones, &RoadWorkZone::roadWorkZoneId);
}

} // namespace zones

Description describe(const AccidentZone &zone) {
    QVariantMap fields = describeAll(zones::kAccidentColumns, zone);
    fields.insert(QStringLiteral("lanes"), describeEach(zone.mlLane, zones::kLaneColumns));
    return {zone.accidentZoneId, zone.name, fields};
}

Description describe(const RoadWorkZone &zone) {
    QVariantMap fields = describeAll(zones::kRoadWorkColumns, zone);
    fields.insert(QStringLiteral("roadID"), qlonglong(zone.roadID));
    fields.insert(QStringLiteral("lanes"), describeEach(zone.mlLane, zones::kLaneColumns));
    return {zone.roadWorkZoneId, zone.name, fields};
}
