#include "store/families/DeparturePoints.h"

#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"

#include <memory>

namespace departurepoints {

namespace {

constexpr Sql kInsert = {
    "insert into DeparturePoint(departurePointID,linkID,name) values(:departurePointID,:linkID,:name)",
    "insert into DeparturePoint(NetId, departurePointID,linkID,name) values(:NetId, :departurePointID,:linkID,:name)"};
constexpr Sql kSelect = {"select * from DeparturePoint where departurePointID = %1",
                         "select * from DeparturePoint where NetId = %0 and departurePointID = %1"};
constexpr Sql kSelectIds = {
    "select departurePointID from DeparturePoint order by departurePointID",
    "select departurePointID from DeparturePoint where NetId = %0 order by departurePointID"};

// The id column of the intervals lacks its I in every store.
constexpr Sql kInsertInterval = {
    "insert into DepartureInterval(departureIntervalD,departurePointID,interval,vehiCount,vehiCons) values(:departureIntervalD,:departurePointID,:interval,:vehiCount,:vehiCons)",
    "insert into DepartureInterval(NetId, departureIntervalD,departurePointID,interval,vehiCount,vehiCons) values(:NetId, :departureIntervalD,:departurePointID,:interval,:vehiCount,:vehiCons)"};
constexpr Sql kSelectIntervals = {
    "select * from DepartureInterval where departurePointID = %1 order by departureIntervalD",
    "select * from DepartureInterval where NetId = %0 and departurePointID = %1 order by departureIntervalD"};

template <class Row>
Row &bindRow(Row &row, const DeparturePoint &point) {
    return row.bind(":departurePointID", point.departurePointID)
        .bind(":linkID", point.linkID)
        .bind(":name", point.name);
}

template <class Row>
Row &bindRow(Row &row, const DeparturePoint &point, const DepartureInterval &interval) {
    return row.bind(":departureIntervalD", interval.departureIntervalD)
        .bind(":departurePointID", point.departurePointID)
        .bind(":interval", interval.interval)
        .bind(":vehiCount", interval.vehiCount)
        .bind(":vehiCons", interval.vehiCons.vehicleConsCode);
}

template <class Row>
void readRow(Row &row, DeparturePoint &point) {
    point.name = row.text("name");
    point.linkID = row.id("linkID");
}

template <class Row>
DepartureInterval readInterval(Row &row, const QHash<long, VehicleComposition> &compositions) {
    DepartureInterval interval;
    interval.departureIntervalD = row.id("departureIntervalD");
    interval.interval = row.integer("interval");
    interval.vehiCount = row.integer("vehiCount");
    interval.vehiCons = VehicleComposition::findVcByCode(compositions, row.id("vehiCons"));
    return interval;
}

bool insertRow(const Store &store, const DeparturePoint &point) {
    Query insert(store, kInsert);
    return bindRow(insert.bindNet(), point).exec();
}

bool insertIntervals(const Store &store, const DeparturePoint &point) {
    bool written = true;
    Query insert(store, kInsertInterval);
    for (const DepartureInterval &interval : point.mlInterval) {
        written = bindRow(insert.bindNet(), point, interval).exec() && written;
    }
    return written;
}

void readIntervals(const Store &store, const QHash<long, VehicleComposition> &compositions,
                   DeparturePoint &point) {
    Query rows(store, kSelectIntervals, {point.departurePointID});
    if (!rows.execPart())
        return;
    while (rows.next())
        point.mlInterval.append(readInterval(rows, compositions));
}

} // namespace

bool insertDeparturePoint(const Store &store, const DeparturePoint &point, bool useTransaction) {
    Transaction transaction(store, useTransaction);
    bool written = insertRow(store, point);
    written = insertIntervals(store, point) && written;
    return transaction.commit(written);
}

DeparturePoint *readDeparturePoint(const Store &store, const QHash<long, VehicleComposition> &compositions,
                                   long pointId) {
    auto point = std::make_unique<DeparturePoint>();
    Query row(store, kSelect, {pointId});
    if (!row.execAndNext())
        return nullptr;
    point->departurePointID = pointId;
    readRow(row, *point);
    row.finish();
    readIntervals(store, compositions, *point);
    return store.whole(std::move(point));
}

bool listDeparturePointIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllDeparturePoints(NetLoad &net) {
    Objects<DeparturePoint> &points = net.contents.traffic.departurePoints;
    net.forEachObject("DeparturePoint", "departurePointID", [&](Rows &row) {
        points.push_back(std::make_unique<DeparturePoint>());
        points.back()->departurePointID = row.id("departurePointID");
        readRow(row, *points.back());
    });
    Owners owner(net, points, &DeparturePoint::departurePointID, "DepartureInterval",
                 "belongs to no departure point");
    net.forEachRow("DepartureInterval", "departurePointID, departureIntervalD", [&](Rows &row) {
        DeparturePoint *point = owner.of(row, "departurePointID");
        if (!point)
            return;
        point->mlInterval.append(readInterval(row, net.store.compositions()));
        if (point->mlInterval.last().vehiCons.vehicleConsCode != row.id("vehiCons"))
            net.skip("DepartureInterval", point->mlInterval.last().departureIntervalD,
                     "names a composition that is missing and reads as none");
    });
}

void saveAllDeparturePoints(NetSave &net) {
    const Objects<DeparturePoint> &points = net.contents.traffic.departurePoints;
    net.giveIds("DeparturePoint", points, &DeparturePoint::departurePointID);
    std::vector<long *> intervalIds;
    for (const auto &point : points) {
        for (DepartureInterval &interval : point->mlInterval)
            intervalIds.push_back(&interval.departureIntervalD);
    }
    net.giveIds("DepartureInterval", intervalIds);
    net.writeEach("DeparturePoint", points,
                  [](RowWriter &row, const DeparturePoint &point) { bindRow(row, point); });
    net.writeOwned("DepartureInterval", points, &DeparturePoint::mlInterval,
                   [](RowWriter &row, const DeparturePoint &point, const DepartureInterval &interval) {
                       bindRow(row, point, interval);
                   });
}

} // namespace departurepoints
