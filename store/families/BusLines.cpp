#include "store/families/BusLines.h"

#include "model/BusLine.h"
#include "model/BusStation.h"
#include "model/BusStationLine.h"
#include "model/Description.h"
#include "model/Link.h"
#include "model/PassengerArriving.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/core/StorableValue.h"
#include "store/families/CurrentNet.h"
#include "store/families/Wholeness.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <algorithm>
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

constexpr std::tuple kColumns = {
    Column{":busLineID", &BusLine::busLineID},
    Column{":name", &BusLine::name},
    Column{":length", &BusLine::length},
    Column{":dischargeFreq", &BusLine::dischargeFreq},
    Column{":dischargeStartTime", &BusLine::dischargeStartTime},
    Column{":dischargeEndTime", &BusLine::dischargeEndTime},
    Column{":startX", &BusLine::startX},
    Column{":startY", &BusLine::startY},
    Column{":endX", &BusLine::endX},
    Column{":endY", &BusLine::endY},
    Column{":desirSpeed", &BusLine::desirSpeed},
    Column{":speedSD", &BusLine::speedSD},
    Column{":passCountAtStartTime", &BusLine::passCountAtStartTime},
};

constexpr std::tuple kStopColumns = {
    Column{":stationLineID", &BusStationLine::stationLineID},
    Column{":busStationID", &BusStationLine::busStationID},
    Column{":busLineID", &BusStationLine::busLineID},
    Column{":parkingTime", &BusStationLine::parkingTime},
    Column{":leavingPercent", &BusStationLine::leavingPercent},
    Column{":getOnTimePerson", &BusStationLine::getOnTimePerson},
    Column{":getOutTimePerson", &BusStationLine::getOutTimePerson},
};

constexpr std::tuple kArrivalColumns = {
    Column{":passengerArrivingID", &PassengerArriving::passengerArrivingID},
    Column{":stationLineID", &BusStationLine::stationLineID},
    Column{":startTime", &PassengerArriving::startTime},
    Column{":endTime", &PassengerArriving::endTime},
    Column{":passengerCount", &PassengerArriving::passengerCount},
};

template <class Row>
Row &bindRoad(Row &row, const BusLine &line, const Link &road, int serialNumber) {
    return row.bind(":busLineID", line.busLineID)
        .bind(":serialNumber", serialNumber)
        .bind(":roadID", road.linkID);
}

template <class Row>
std::unique_ptr<BusLine> readRow(Row &row) {
    auto line = std::make_unique<BusLine>(row.store().net());
    readAll(row, kColumns, *line);
    // Fractions of a second are cut off, not rounded.
    line->dischargeStartTime = static_cast<int>(storablevalue::wholePart(row.number("dischargeStartTime")));
    return line;
}

/// Appends the road of a row to the route when the current network knows it.
template <class Row>
bool readRoad(Row &row, BusLine &line) {
    const long roadId = row.id("roadID");
    Link *link = row.store().net().getLinkById(roadId);
    if (!link)
        return false;
    line.mlLink.append(link);
    line.mlRoadId.append(roadId);
    return true;
}

template <class Row>
PassengerArriving *readArrival(Row &row) {
    auto arrival = std::make_unique<PassengerArriving>(0, 0, 0, 0);
    readAll(row, kArrivalColumns, *arrival);
    return arrival.release();
}

bool insertRow(const Store &store, const BusLine &line) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, line).exec();
}

bool insertArrivals(Query &insert, const BusStationLine &stop) {
    for (const PassengerArriving *arrival : stop.mlPassengerArriving) {
        if (!bindAll(insert.bindNet(), kArrivalColumns, *arrival, stop).exec())
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
        if (!bindRoad(insert.bindNet(), line, *link, ++serialNumber).exec())
            return false;
    }
    return true;
}

/// The roads that the current network knows.
void readRoads(const Store &store, BusLine &line, long lineId) {
    if (!isCurrentNet(store))
        return;
    Query rows(store, kSelectRoads, {lineId});
    if (!rows.execPart())
        return;
    while (rows.next())
        readRoad(rows, line);
}

/// Appends the stops at the stations of one link of the route.
void readStops(const Store &store, BusLine &line, long lineId, long linkId) {
    Query rows(store, store.hasSeveralNets() ? store.text(kSelectStops, {lineId, store.netId(), linkId})
                                             : store.text(kSelectStops, {lineId, linkId}));
    if (!rows.execPart())
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
    if (!rows.execPart())
        return;
    while (rows.next())
        stop.mlPassengerArriving.append(readArrival(rows));
}

/// Stops as a load reads them, before they are at their lines.
struct LoadedStop {
    BusStationLine stop;
    const Link *link = nullptr; ///< where its station stands; null when that is not known
    bool isTaken = false;
};

/// Appends to the line, for each link of its route, the stops at stations of that link. A link that the route
/// passes twice gives its stops twice.
void addStops(BusLine &line, const std::vector<LoadedStop *> &stops) {
    for (const Link *link : qAsConst(line.mlLink)) {
        for (LoadedStop *loaded : stops) {
            if (loaded->link != link)
                continue;
            line.mlStationLine.append(new BusStationLine(loaded->stop));
            line.mlStationLine.last()->linkID = link->linkID;
            loaded->isTaken = true;
        }
    }
}

/// Each stop once, however often a read gave it.
std::vector<BusStationLine *> distinctStops(const BusLine &line) {
    std::vector<BusStationLine *> stops;
    QSet<long> ids;
    for (BusStationLine *stop : line.mlStationLine) {
        if (stop->stationLineID == 0 || !ids.contains(stop->stationLineID))
            stops.push_back(stop);
        ids.insert(stop->stationLineID);
    }
    return stops;
}

/// The stops of all lines, each line's as they were written, with their arrivals.
std::vector<std::unique_ptr<LoadedStop>> loadStops(NetLoad &net) {
    QHash<long, const Link *> linkOfStation;
    for (const auto &station : net.contents.traffic.busStations)
        linkOfStation.insert(station->busStationID, station->mpLink);
    std::vector<std::unique_ptr<LoadedStop>> stops;
    std::vector<BusStationLine *> byId;
    net.forEachRowAsWritten("BusStationLine", "busLineID", [&](Rows &row) {
        stops.push_back(std::make_unique<LoadedStop>());
        BusStationLine &stop = stops.back()->stop;
        readAll(row, kStopColumns, stop);
        stops.back()->link = linkOfStation.value(stop.busStationID, nullptr);
        byId.push_back(&stop);
    });
    Owners stopOf(net, byId, &BusStationLine::stationLineID, "BusStationPassengerArriving",
                  "belongs to no stop");
    net.forEachRowAsWritten("BusStationPassengerArriving", "stationLineID", [&stopOf](Rows &row) {
        if (BusStationLine *stop = stopOf.of(row, "stationLineID"))
            stop->mlPassengerArriving.append(readArrival(row));
    });
    return stops;
}

/// Reports a stop that no line took, and its arrivals.
void skipStop(NetLoad &net, const LoadedStop &loaded, bool hasLine) {
    net.skip("BusStationLine", loaded.stop.stationLineID,
             !hasLine       ? "belongs to no bus line"
             : !loaded.link ? "names a station that is missing"
                            : "stands off the route of its line");
    for (int i = loaded.stop.mlPassengerArriving.size(); i > 0; --i)
        net.skip("BusStationPassengerArriving", loaded.stop.stationLineID, "belongs to no stop");
}

} // namespace

bool insertBusLine(const Store &store, const BusLine *line, bool inTransaction) {
    if (!line)
        return true;
    if (!wholeness::isWhole(store, *line))
        return false;
    OperationTransaction transaction(store, inTransaction);
    return transaction.commitIfGood(insertRow(store, *line) && insertStops(store, *line) &&
                                    insertRoads(store, *line));
}

BusLine *readBusLine(const Store &store, long lineId) {
    Query row(store, kSelect, {lineId});
    if (!row.execAndNext())
        return nullptr;
    std::unique_ptr<BusLine> line = readRow(row);
    row.finish();
    readRoads(store, *line, lineId);
    if (line->mlLink.isEmpty())
        return nullptr;
    // A link that the route passes twice gives its stops twice.
    for (const long linkId : qAsConst(line->mlRoadId))
        readStops(store, *line, lineId, linkId);
    for (BusStationLine *stop : qAsConst(line->mlStationLine))
        readArrivals(store, *stop);
    return store.whole(std::move(line));
}

bool listBusLineIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllBusLines(NetLoad &net) {
    Objects<BusLine> &lines = net.contents.traffic.busLines;
    net.forEachObject("BusLine", "busLineID", [&lines](Rows &row) { lines.push_back(readRow(row)); });
    Owners lineOf(net, lines, &BusLine::busLineID, "BusLineRoad", "belongs to no bus line");
    net.forEachRow("BusLineRoad", "busLineID, serialNumber, roadID", [&](Rows &row) {
        BusLine *line = lineOf.of(row, "busLineID");
        if (line && !readRoad(row, *line))
            net.skip("BusLineRoad", line->busLineID, "names a link that is missing");
    });
    const auto stops = loadStops(net);
    QMap<long, std::vector<LoadedStop *>> stopsOfLine;
    for (const auto &stop : stops)
        stopsOfLine[stop->stop.busLineID].push_back(stop.get());
    Objects<BusLine> found;
    for (auto &line : lines) {
        const std::vector<LoadedStop *> own = stopsOfLine.take(line->busLineID);
        addStops(*line, own);
        for (const LoadedStop *stop : own) {
            if (!stop->isTaken)
                skipStop(net, *stop, true);
        }
        if (line->mlLink.isEmpty())
            net.skip("BusLine", line->busLineID, "has no road");
        else
            found.push_back(std::move(line));
    }
    for (const auto &stopsOfNone : qAsConst(stopsOfLine)) {
        for (const LoadedStop *stop : stopsOfNone)
            skipStop(net, *stop, false);
    }
    lines = std::move(found);
}

void saveAllBusLines(NetSave &net) {
    const Objects<BusLine> &lines = net.contents.traffic.busLines;
    net.giveIds("BusLine", lines, &BusLine::busLineID);
    std::vector<BusStationLine *> stops;
    for (const auto &line : lines) {
        for (BusStationLine *stop : distinctStops(*line)) {
            net.setIfUnset(stop->busLineID, line->busLineID);
            stops.push_back(stop);
        }
    }
    net.giveIds("BusStationLine", stops, &BusStationLine::stationLineID);
    net.giveIds("BusStationPassengerArriving", stops, &BusStationLine::mlPassengerArriving,
                &PassengerArriving::passengerArrivingID);
    net.writeEach("BusLine", lines,
                  [](RowWriter &row, const BusLine &line) { bindAll(row, kColumns, line); });
    net.writeEach("BusStationLine", stops,
                  [](RowWriter &row, const BusStationLine &stop) { bindAll(row, kStopColumns, stop); });
    net.writeOwned("BusStationPassengerArriving", stops, &BusStationLine::mlPassengerArriving,
                   [](RowWriter &row, const BusStationLine &stop, const PassengerArriving *arrival) {
                       bindAll(row, kArrivalColumns, *arrival, stop);
                   });
    const BusLine *of = nullptr;
    int serialNumber = 0;
    net.writeOwned("BusLineRoad", lines, &BusLine::mlLink,
                   [&](RowWriter &row, const BusLine &line, const Link *link) {
                       serialNumber = of == &line ? serialNumber + 1 : 1;
                       of = &line;
                       bindRoad(row, line, *link, serialNumber);
                   });
}

} // namespace buslines

Description describe(const BusLine &line) {
    using namespace buslines;
    QVariantMap fields = describeAll(kColumns, line);
    fields.insert(QStringLiteral("roads"),
                  describeEach(line.mlRoadId, [](long id) { return qlonglong(id); }));
    fields.insert(QStringLiteral("links"),
                  describeEach(line.mlLink, [](const Link &link) { return qlonglong(link.linkID); }));
    std::vector<BusStationLine *> stops = distinctStops(line);
    std::sort(stops.begin(), stops.end(), [](const BusStationLine *a, const BusStationLine *b) {
        return a->stationLineID < b->stationLineID;
    });
    fields.insert(QStringLiteral("stops"), describeEach(stops, [](const BusStationLine &stop) {
                      QVariantMap part = describeAll(kStopColumns, stop);
                      part.remove(QStringLiteral("busLineID"));
                      part.insert(QStringLiteral("linkID"), qlonglong(stop.linkID));
                      part.insert(QStringLiteral("arrivals"),
                                  describeEach(stop.mlPassengerArriving, kArrivalColumns));
                      return part;
                  }));
    return {line.busLineID, line.name, fields};
}
