#include "store/families/DeparturePoints.h"

#include "model/Description.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

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

constexpr std::tuple kColumns = {
    Column{":departurePointID", &DeparturePoint::departurePointID},
    Column{":linkID", &DeparturePoint::linkID},
    Column{":name", &DeparturePoint::name},
};
/// But for the composition, which the object holds itself.
constexpr std::tuple kIntervalColumns = {
    Column{":departureIntervalD", &DepartureInterval::departureIntervalD},
    Column{":departurePointID", &DeparturePoint::departurePointID},
    Column{":interval", &DepartureInterval::interval},
    Column{":vehiCount", &DepartureInterval::vehiCount},
};

template <class Row>
Row &bindInterval(Row &row, const DeparturePoint &point, const DepartureInterval &interval) {
    return bindAll(row, kIntervalColumns, interval, point)
        .bind(":vehiCons", interval.vehiCons.vehicleConsCode);
}

template <class Row>
DepartureInterval readInterval(Row &row, const QHash<long, VehicleComposition> &compositions) {
    DepartureInterval interval;
    readAll(row, kIntervalColumns, interval);
    interval.vehiCons = VehicleComposition::findVcByCode(compositions, row.id("vehiCons"));
    return interval;
}

bool insertRow(const Store &store, const DeparturePoint &point) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, point).exec();
}

bool insertIntervals(const Store &store, const DeparturePoint &point) {
    bool written = true;
    Query insert(store, kInsertInterval);
    for (const DepartureInterval &interval : point.mlInterval) {
        written = bindInterval(insert.bindNet(), point, interval).exec() && written;
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
    OperationTransaction transaction(store, useTransaction);
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
    readAll(row, kColumns, *point);
    point->departurePointID = pointId;
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
        readAll(row, kColumns, *points.back());
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
                  [](RowWriter &row, const DeparturePoint &point) { bindAll(row, kColumns, point); });
    net.writeOwned("DepartureInterval", points, &DeparturePoint::mlInterval,
                   [](RowWriter &row, const DeparturePoint &point, const DepartureInterval &interval) {
                       bindInterval(row, point, interval);
                   });
}

} // namespace departurepoints

Description describe(const DeparturePoint &point) {
    using namespace departurepoints;
    QVariantMap fields = describeAll(kColumns, point);
    fields.insert(QStringLiteral("intervals"),
                  describeEach(point.mlInterval, [](const DepartureInterval &interval) {
                      QVariantMap part = describeAll(kIntervalColumns, interval);
                      part.insert(QStringLiteral("vehiCons"), qlonglong(interval.vehiCons.vehicleConsCode));
                      return part;
                  }));
    return {point.departurePointID, point.name, fields};
}
