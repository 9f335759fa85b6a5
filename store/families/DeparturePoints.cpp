#include "store/families/DeparturePoints.h"

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

bool insertRow(const Store &store, const DeparturePoint &point) {
    Query insert(store, kInsert);
    return insert.bindNet()
        .bind(":departurePointID", point.departurePointID)
        .bind(":linkID", point.linkID)
        .bind(":name", point.name)
        .exec();
}

bool insertIntervals(const Store &store, const DeparturePoint &point) {
    bool written = true;
    Query insert(store, kInsertInterval);
    for (const DepartureInterval &interval : point.mlInterval) {
        insert.bindNet()
            .bind(":departureIntervalD", interval.departureIntervalD)
            .bind(":departurePointID", point.departurePointID)
            .bind(":interval", interval.interval)
            .bind(":vehiCount", interval.vehiCount)
            .bind(":vehiCons", interval.vehiCons.vehicleConsCode);
        written = insert.exec() && written;
    }
    return written;
}

void readIntervals(const Store &store, const QHash<long, VehicleComposition> &compositions,
                   DeparturePoint &point) {
    Query rows(store, kSelectIntervals, {point.departurePointID});
    if (!rows.exec())
        return;
    while (rows.next()) {
        DepartureInterval interval;
        interval.departureIntervalD = rows.id("departureIntervalD");
        interval.interval = rows.integer("interval");
        interval.vehiCount = rows.integer("vehiCount");
        interval.vehiCons = VehicleComposition::findVcByCode(compositions, rows.id("vehiCons"));
        point.mlInterval.append(interval);
    }
}

} // namespace

bool insert(const Store &store, const DeparturePoint &point, bool useTransaction) {
    Transaction transaction(store, useTransaction);
    bool written = insertRow(store, point);
    written = insertIntervals(store, point) && written;
    return transaction.commit(written);
}

DeparturePoint *read(const Store &store, const QHash<long, VehicleComposition> &compositions, long pointId) {
    auto point = std::make_unique<DeparturePoint>();
    Query row(store, kSelect, {pointId});
    if (!row.execAndNext())
        return nullptr;
    point->departurePointID = pointId;
    point->name = row.text("name");
    point->linkID = row.id("linkID");
    row.finish();
    readIntervals(store, compositions, *point);
    return point.release();
}

bool listIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

} // namespace departurepoints
