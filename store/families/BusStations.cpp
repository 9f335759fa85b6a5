#include "store/families/BusStations.h"

#include "model/BusStation.h"
#include "model/Description.h"
#include "model/Link.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Wholeness.h"

#include <memory>

namespace busstations {

namespace {

constexpr Sql kInsert = {
    "insert into BusStation(busStationID, linkID, name, laneNumber, length, x, y, type) values(:busStationID, :linkID, :name, :laneNumber, :length, :x, :y, :type)",
    "insert into BusStation(NetId, busStationID, linkID, name, laneNumber, length, x, y, type) values(:NetId, :busStationID, :linkID, :name, :laneNumber, :length, :x, :y, :type)"};
constexpr Sql kSelect = {"select * from BusStation where busStationID = %1",
                         "select * from BusStation where NetId = %0 and busStationID = %1"};
constexpr Sql kSelectIds = {
    "select busStationID from BusStation where linkID in (select linkID from Link) order by busStationID",
    "select busStationID from BusStation a join Link b on a.NetId = b.NetId and a.linkID = b.linkID where a.NetId = %0 order by busStationID"};

constexpr std::tuple kColumns = {
    Reference{":linkID", &BusStation::mpLink, &Link::linkID},
    Column{":busStationID", &BusStation::busStationID},
    Column{":name", &BusStation::name},
    Column{":laneNumber", &BusStation::laneNumber},
    Column{":length", &BusStation::length},
    Column{":x", &BusStation::x},
    Column{":y", &BusStation::y},
    Column{":type", &BusStation::type},
};

} // namespace

bool insertBusStation(const Store &store, const BusStation *station, bool inTransaction) {
    if (!station)
        return true;
    if (!wholeness::isWhole(store, *station))
        return false;
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    return transaction.discard(bindAll(insert.bindNet(), kColumns, *station).exec());
}

BusStation *readBusStation(const Store &store, long stationId) {
    Query row(store, kSelect, {stationId});
    if (!row.execAndNext())
        return nullptr;
    auto station = std::make_unique<BusStation>(store.net(), store.words());
    readAll(row, kColumns, *station);
    if (isCurrentNet(store))
        station->mpLink = store.net().getLinkById(row.id("linkID"));
    return station.release();
}

bool listBusStationIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllBusStations(NetLoad &net) {
    net.forEachObject("BusStation", "busStationID", [&net](Rows &row) {
        auto station = std::make_unique<BusStation>(net.store.net(), net.store.words());
        readAll(row, kColumns, *station);
        station->mpLink = net.store.net().getLinkById(row.id("linkID"));
        if (station->mpLink)
            net.contents.traffic.busStations.push_back(std::move(station));
        else
            net.skip("BusStation", station->busStationID, "stands on a link that is missing");
    });
}

void saveAllBusStations(NetSave &net) {
    const Objects<BusStation> &stations = net.contents.traffic.busStations;
    net.giveIds("BusStation", stations, &BusStation::busStationID);
    net.writeEach("BusStation", stations,
                  [](RowWriter &row, const BusStation &station) { bindAll(row, kColumns, station); });
}

} // namespace busstations

Description describe(const BusStation &station) {
    return {station.busStationID, station.name, describeAll(busstations::kColumns, station)};
}
