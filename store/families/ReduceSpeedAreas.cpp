#include "store/families/ReduceSpeedAreas.h"

#include "model/Description.h"
#include "model/ReduceSpeedArea.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/Wholeness.h"

#include <algorithm>
#include <memory>

namespace reducespeedareas {

namespace {

constexpr Sql kInsert = {
    "insert into ReduceSpeedArea(reduceSpeedAreaID, name, location, areaLength, roadID, laneNumber, toLaneNumber) values(:reduceSpeedAreaID, :name, :location, :areaLength, :roadID, :laneNumber, :toLaneNumber)",
    "insert into ReduceSpeedArea(NetId, reduceSpeedAreaID, name, location, areaLength, roadID, laneNumber, toLaneNumber) values(:NetId, :reduceSpeedAreaID, :name, :location, :areaLength, :roadID, :laneNumber, :toLaneNumber)"};
constexpr Sql kInsertInterval = {
    "insert into ReduceSpeedInterval(intervalID, reduceSpeedAreaID, startTime, endTime) values(:intervalID, :reduceSpeedAreaID, :startTime, :endTime)",
    "insert into ReduceSpeedInterval(NetId, intervalID, reduceSpeedAreaID, startTime, endTime) values(:NetId, :intervalID, :reduceSpeedAreaID, :startTime, :endTime)"};
constexpr Sql kInsertVehiType = {
    "insert into ReduceSpeedVehiType(reduceSpeedAreaID, vehicleTypeCode, avgSpeed, speedSD) values(:reduceSpeedAreaID, :vehicleTypeCode, :avgSpeed, :speedSD)",
    "insert into ReduceSpeedVehiType(NetId, reduceSpeedAreaID, vehicleTypeCode, avgSpeed, speedSD) values(:NetId, :reduceSpeedAreaID, :vehicleTypeCode, :avgSpeed, :speedSD)"};

constexpr Sql kSelect = {"select * from ReduceSpeedArea where reduceSpeedAreaID = %1",
                         "select * from ReduceSpeedArea where NetId = %0 and reduceSpeedAreaID = %1"};
constexpr Sql kSelectIntervals = {
    "select * from ReduceSpeedInterval where reduceSpeedAreaID = %1",
    "select * from ReduceSpeedInterval where NetId = %0 and reduceSpeedAreaID = %1"};
constexpr Sql kSelectVehiTypes = {
    "select * from ReduceSpeedVehiType where reduceSpeedAreaID = %1",
    "select * from ReduceSpeedVehiType where NetId = %0 and reduceSpeedAreaID = %1"};
constexpr Sql kSelectIds = {
    "select reduceSpeedAreaID from ReduceSpeedArea order by reduceSpeedAreaID",
    "select reduceSpeedAreaID from ReduceSpeedArea where NetId = %0 order by reduceSpeedAreaID"};

constexpr std::tuple kColumns = {
    Column{":reduceSpeedAreaID", &ReduceSpeedArea::reduceSpeedAreaID},
    Column{":name", &ReduceSpeedArea::name},
    Column{":location", &ReduceSpeedArea::location},
    Column{":areaLength", &ReduceSpeedArea::areaLength},
    Column{":roadID", &ReduceSpeedArea::roadID},
    Column{":laneNumber", &ReduceSpeedArea::laneNumber},
    Column{":toLaneNumber", &ReduceSpeedArea::toLaneNumber},
};
constexpr std::tuple kIntervalColumns = {
    Column{":intervalID", &ReduceSpeedInterval::intervalID},
    Column{":reduceSpeedAreaID", &ReduceSpeedInterval::reduceSpeedAreaID},
    Column{":startTime", &ReduceSpeedInterval::startTime},
    Column{":endTime", &ReduceSpeedInterval::endTime},
};
constexpr std::tuple kVehiTypeColumns = {
    Column{":reduceSpeedAreaID", &ReduceSpeedVehiType::reduceSpeedAreaID},
    Column{":vehicleTypeCode", &ReduceSpeedVehiType::vehicleTypeCode},
    Column{":avgSpeed", &ReduceSpeedVehiType::avgSpeed},
    Column{":speedSD", &ReduceSpeedVehiType::speedSD},
};

template <class Entity, class Columns>
bool insertRow(Query &insert, const Columns &columns, const Entity &entity) {
    return bindAll(insert.bindNet(), columns, entity).exec();
}

/// Writes what belongs to an area. Each row carries the area id of its own object.
template <class Child, class Columns>
bool insertChildren(const Store &store, const Sql &sql, const Columns &columns,
                    const QList<Child *> &children) {
    bool written = true;
    Query insert(store, sql);
    for (const Child *child : children)
        written = insertRow(insert, columns, *child) && written;
    return written;
}

/// Appends what belongs to an area; each object carries the id that was asked for.
template <class Child, class Columns>
void readChildren(const Store &store, const Sql &sql, const Columns &columns, long areaId,
                  QList<Child *> &children) {
    Query rows(store, sql, {areaId});
    if (!rows.execPart())
        return;
    while (rows.next()) {
        auto child = std::make_unique<Child>();
        readAll(rows, columns, *child);
        child->reduceSpeedAreaID = areaId;
        children.append(child.release());
    }
}

template <class Child, class Columns>
void loadChildren(NetLoad &net, const char *table, const char *order, const Columns &columns,
                  OwningList<Child> ReduceSpeedArea::*children) {
    Owners areaOf(net, net.contents.traffic.speedAreas, &ReduceSpeedArea::reduceSpeedAreaID, table,
                  "belongs to no speed reduction area");
    net.forEachRowAsWritten(table, order, [&](Rows &row) {
        if (ReduceSpeedArea *area = areaOf.of(row, "reduceSpeedAreaID")) {
            auto child = std::make_unique<Child>();
            readAll(row, columns, *child);
            (area->*children).append(child.release());
        }
    });
}

/// What belongs to an area that has got its id only now takes it over.
template <class Child, class Columns>
void saveChildren(NetSave &net, const char *table, const Columns &columns,
                  OwningList<Child> ReduceSpeedArea::*children) {
    net.writeOwned(table, net.contents.traffic.speedAreas, children,
                   [&](RowWriter &row, const ReduceSpeedArea &area, Child *child) {
                       net.setIfUnset(child->reduceSpeedAreaID, area.reduceSpeedAreaID);
                       bindAll(row, columns, *child);
                   });
}

/// The key of generation 6 gives them in this order on SQLite; a server takes its rows in the order that
/// suits it.
void sortByCode(QList<ReduceSpeedVehiType *> &types) {
    std::sort(types.begin(), types.end(), [](const ReduceSpeedVehiType *a, const ReduceSpeedVehiType *b) {
        return a->vehicleTypeCode < b->vehicleTypeCode;
    });
}

} // namespace

bool insertReduceSpeedArea(const Store &store, const ReduceSpeedArea *area, bool inTransaction) {
    if (!area)
        return true;
    if (!wholeness::isWhole(store, *area))
        return false;
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    bool written = insertRow(insert, kColumns, *area);
    written = insertChildren(store, kInsertInterval, kIntervalColumns, area->mlSpeedInterval) && written;
    written = insertChildren(store, kInsertVehiType, kVehiTypeColumns, area->mlSpeedVehiType) && written;
    return transaction.discard(written);
}

ReduceSpeedArea *readReduceSpeedArea(const Store &store, long areaId) {
    Query row(store, kSelect, {areaId});
    if (!row.execAndNext())
        return nullptr;
    auto area = std::make_unique<ReduceSpeedArea>();
    readAll(row, kColumns, *area);
    row.finish();
    readChildren(store, kSelectIntervals, kIntervalColumns, areaId, area->mlSpeedInterval);
    readChildren(store, kSelectVehiTypes, kVehiTypeColumns, areaId, area->mlSpeedVehiType);
    if (store.hasSeveralNets())
        sortByCode(area->mlSpeedVehiType);
    return store.whole(std::move(area));
}

bool listReduceSpeedAreaIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllReduceSpeedAreas(NetLoad &net) {
    Objects<ReduceSpeedArea> &areas = net.contents.traffic.speedAreas;
    net.forEachObject("ReduceSpeedArea", "reduceSpeedAreaID", [&areas](Rows &row) {
        areas.push_back(std::make_unique<ReduceSpeedArea>());
        readAll(row, kColumns, *areas.back());
    });
    loadChildren(net, "ReduceSpeedInterval", "reduceSpeedAreaID", kIntervalColumns,
                 &ReduceSpeedArea::mlSpeedInterval);
    loadChildren(net, "ReduceSpeedVehiType",
                 net.store.hasSeveralNets() ? "reduceSpeedAreaID, vehicleTypeCode" : "reduceSpeedAreaID",
                 kVehiTypeColumns, &ReduceSpeedArea::mlSpeedVehiType);
}

void saveAllReduceSpeedAreas(NetSave &net) {
    const Objects<ReduceSpeedArea> &areas = net.contents.traffic.speedAreas;
    net.giveIds("ReduceSpeedArea", areas, &ReduceSpeedArea::reduceSpeedAreaID);
    net.giveIds("ReduceSpeedInterval", areas, &ReduceSpeedArea::mlSpeedInterval,
                &ReduceSpeedInterval::intervalID);
    net.writeEach("ReduceSpeedArea", areas,
                  [](RowWriter &row, const ReduceSpeedArea &area) { bindAll(row, kColumns, area); });
    saveChildren(net, "ReduceSpeedInterval", kIntervalColumns, &ReduceSpeedArea::mlSpeedInterval);
    saveChildren(net, "ReduceSpeedVehiType", kVehiTypeColumns, &ReduceSpeedArea::mlSpeedVehiType);
}

} // namespace reducespeedareas

Description describe(const ReduceSpeedArea &area) {
    using namespace reducespeedareas;
    const auto describePart = [](const auto &columns) {
        return [&columns](const auto &part) {
            QVariantMap fields = describeAll(columns, part);
            fields.remove(QStringLiteral("reduceSpeedAreaID"));
            return fields;
        };
    };
    QVariantMap fields = describeAll(kColumns, area);
    fields.insert(QStringLiteral("intervals"),
                  describeEach(area.mlSpeedInterval, describePart(kIntervalColumns)));
    fields.insert(QStringLiteral("vehicleTypes"),
                  describeEach(area.mlSpeedVehiType, describePart(kVehiTypeColumns)));
    return {area.reduceSpeedAreaID, area.name, fields};
}
