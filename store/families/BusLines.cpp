#include "store/families/BusLines.h"

#include "model/BusLine.h"
#include "model/BusStationLine.h"
#include "model/Link.h"
#include "model/PassengerArriving.h"
#include "store/core/Columns.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"
#include "store/families/CurrentNet.h"

#include <memory>

namespace buslines {

namespace {

constexpr Sql kInsert = {
    "insert into BusLine(busLineID, name, length, dischargeFreq, dischargeStartTime, dischargeEndTime, startX, startY, endX, endY, desirSpeed, speedSD, passCountAtStartTime) values(:busLineID, :name, :length, :dischargeFreq, :dischargeStartTime, :dischargeEndTime, :startX, :startY, :endX, :endY, :desirSpeed, :speedSD, :passCountAtStartTime)",
    "insert into BusLine(NetId, busLineID, name, length, dischargeFreq, dischargeStartTime, dischargeEndTime, startX, startY, endX, endY, desirSpeed, speedSD, passCountAtStartTime) values(:NetId, :busLineID, :name, :length, :dischargeFreq, :dischargeStartTime, :dischargeEndTime, :startX, :startY, :endX, :endY, :desirSpeed, :speedSD, :passCountAtStartTime)"};
constexpr Sql kInsertStop = {
    "insert into BusStationLine(stationLineID, busStationID, busLineID, parkingTime, leavingPercent, getOnTimePerson, getOutTimePerson) values(:stationLineID, :busStationID, :busLineID, :parkingTime, :leavingPercent, :getOnTimePerson, :getOutTimePerson)",
    "insert into BusStationLine(NetId, stationLineID, busStationID, busLineID, parkingTime, leavingPercent, getOnTimePerson, getOutTimePerson) values(:NetId, :stationLineID, :busStationID, :busLineID, :parkingTime, :leavingPercent, :getOnTimePerson, :getOutTimePerson)"};
constexpr Sql kInsertArrival = {
    "insert into BusStationPassengerArriving(passengerArrivingID, stationLineID, startTime, endTime, passengerCount) values(:passengerArrivingID, :stationLineID, :startTime, :endTime, :passengerCount)",
    "insert into BusStationPassengerArriving(NetId, passengerArrivingID, stationLineID, startTime, endTime, passengerCount) values(:NetId, :passengerArrivingID, :stationLineID, :startTime, :endTime, :passengerCount)"};
constexpr Sql kInsertRoad = {
    "insert into BusLineRoad(busLineID, serialNumber, roadID) values(:busLineID, :serialNumber, :roadID)",
    "insert into BusLineRoad(NetId, busLineID, serialNumber, roadID) values(:NetId, :busLineID, :serialNumber, :roadID)"};

constexpr Sql kSelect = {"select * from BusLine where busLineID = %1",
                         "select * from BusLine where NetId = %0 and busLineID = %1"};
constexpr Sql kSelectRoads = {
    "select roadID from BusLineRoad where busLineID = %1 order by serialNumber",
    "select roadID from BusLineRoad where NetId = %0 and busLineID = %1 order by serialNumber"};
constexpr Sql kSelectStops = {
    "select * from BusStationLine where busLineID = %0 and busStationID in (select busStationId from BusStation where linkId = %1)",
    "select * from BusStationLine where NetId = %0 and busLineID = %1 and busStationID in (select busStationId from BusStation where NetId = %2 and linkId = %3)"};
constexpr Sql kSelectArrivals = {
    "select * from BusStationPassengerArriving where stationLineID = %1",
    "select * from BusStationPassengerArriving where NetId = %0 and stationLineID = %1"};
constexpr Sql kSelectIds = {"select busLineID from BusLine order by busLineID",
                            "select busLineID from BusLine where NetId = %0 order by busLineID"};

constexpr Column<BusLine> kColumns[] = {
    {":busLineID", &BusLine::busLineID},
    {":name", &BusLine::name},
    {":length", &BusLine::length},
    {":dischargeFreq", &BusLine::dischargeFreq},
    {":dischargeStartTime", &BusLine::dischargeStartTime},
    {":dischargeEndTime", &BusLine::dischargeEndTime},
    {":startX", &BusLine::startX},
    {":startY", &BusLine::startY},
    {":endX", &BusLine::endX},
    {":endY", &BusLine::endY},
    {":desirSpeed", &BusLine::desirSpeed},
    {":speedSD", &BusLine::speedSD},
    {":passCountAtStartTime", &BusLine::passCountAtStartTime},
};

constexpr Column<BusStationLine> kStopColumns[] = {
    {":stationLineID", &BusStationLine::stationLineID},
    {":busStationID", &BusStationLine::busStationID},
    {":busLineID", &BusStationLine::busLineID},
    {":parkingTime", &BusStationLine::parkingTime},
    {":leavingPercent", &BusStationLine::leavingPercent},
    {":getOnTimePerson", &BusStationLine::getOnTimePerson},
    {":getOutTimePerson", &BusStationLine::getOutTimePerson},
};

bool insertRow(const Store &store, const BusLine &line) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, line).exec();
}

bool insertArrivals(Query &insert, const BusStationLine &stop) {
    for (const PassengerArriving *arrival : stop.mlPassengerArriving) {
        insert.bindNet()
            .bind(":passengerArrivingID", arrival->passengerArrivingID)
            .bind(":stationLineID", stop.stationLineID)
            .bind(":startTime", arrival->startTime)
            .bind(":endTime", arrival->endTime)
            .bind(":passengerCount", arrival->passengerCount);
        if (!insert.exec())
            return false;
    }
    return true;
}

bool insertStops(const Store &store, const BusLine &line) {
    Query insert(store, kInsertStop);
    Query insertArrival(store, kInsertArrival);
    for (const BusStationLine *stop : line.mlStationLine) {
        if (!bindAll(insert.bindNet(), kStopColumns, *stop).exec() || !insertArrivals(insertArrival, *stop))
            return false;
    }
    return true;
}

bool insertRoads(const Store &store, const BusLine &line) {
    int serialNumber = 0;
    Query insert(store, kInsertRoad);
    for (const Link *link : line.mlLink) {
        insert.bindNet()
            .bind(":busLineID", line.busLineID)
            .bind(":serialNumber", ++serialNumber)
            .bind(":roadID", link->linkID);
        if (!insert.exec())
            return false;
    }
    return true;
}

std::unique_ptr<BusLine> readRow(const Store &store, long lineId) {
    Query row(store, kSelect, {lineId});
    if (!row.execAndNext())
        return nullptr;
    auto line = std::make_unique<BusLine>();
    readAll(row, kColumns, *line);
    // Fractions of a second are cut off, not rounded.
    line->dischargeStartTime = static_cast<int>(row.number("dischargeStartTime"));
    return line;
}

/// The roads that gNet knows, which holds the current network alone.
void readRoads(const Store &store, BusLine &line, long lineId) {
    if (!isCurrentNet(store))
        return;
    Query rows(store, kSelectRoads, {lineId});
    if (!rows.exec())
        return;
    while (rows.next()) {
        const long roadId = rows.id("roadID");
        if (Link *link = gNet.getLinkById(roadId)) {
            line.mlLink.append(link);
            line.mlRoadId.append(roadId);
        }
    }
}

/// Appends the stops at the stations of one link of the route.
void readStops(const Store &store, BusLine &line, long lineId, long linkId) {
    Query rows(store, store.hasSeveralNets() ? store.text(kSelectStops, {lineId, store.netId(), linkId})
                                             : store.text(kSelectStops, {lineId, linkId}));
    if (!rows.exec())
        return;
    while (rows.next()) {
        auto stop = std::make_unique<BusStationLine>();
        readAll(rows, kStopColumns, *stop);
        stop->linkID = linkId;
        line.mlStationLine.append(stop.release());
    }
}

void readArrivals(const Store &store, BusStationLine &stop) {
    Query rows(store, kSelectArrivals, {stop.stationLineID});
    if (!rows.exec())
        return;
    while (rows.next()) {
        auto arrival =
            std::make_unique<PassengerArriving>(rows.id("passengerArrivingID"), rows.id("startTime"),
                                                rows.id("endTime"), rows.integer("passengerCount"));
        stop.mlPassengerArriving.append(arrival.release());
    }
}

} // namespace

bool insert(const Store &store, const BusLine *line, bool inTransaction) {
    if (!line)
        return true;
    Transaction transaction(store, inTransaction);
    return transaction.commitIfGood(insertRow(store, *line) && insertStops(store, *line) &&
                                    insertRoads(store, *line));
}

BusLine *read(const Store &store, long lineId) {
    std::unique_ptr<BusLine> line = readRow(store, lineId);
    if (!line)
        return nullptr;
    readRoads(store, *line, lineId);
    if (line->mlLink.isEmpty())
        return nullptr;
    // A link that the route passes twice gives its stops twice.
    for (const long linkId : qAsConst(line->mlRoadId))
        readStops(store, *line, lineId, linkId);
    for (BusStationLine *stop : qAsConst(line->mlStationLine))
        readArrivals(store, *stop);
    return line.release();
}

bool listIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

} // namespace buslines
