#include "store/families/DrivInfoCollectors.h"

#include "model/Description.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

namespace drivinfocollectors {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleDrivInfoCollecter(collecterID,name,roadID,laneNumber,toLaneNumber,x,y,z,distance,dataInterval,startTime,endTime) values(:collecterID,:name,:roadID,:laneNumber,:toLaneNumber,:x,:y,:z,:distance,:dataInterval,:startTime,:endTime)",
    "insert into VehicleDrivInfoCollecter(NetId, collecterID,name,roadID,laneNumber,toLaneNumber,x,y,z,distance,dataInterval,startTime,endTime) values(:NetId, :collecterID,:name,:roadID,:laneNumber,:toLaneNumber,:x,:y,:z,:distance,:dataInterval,:startTime,:endTime)"};
constexpr Sql kSelect = {"select * from VehicleDrivInfoCollecter where collecterID = %1",
                         "select * from VehicleDrivInfoCollecter where NetId = %0 and collecterID = %1"};
// Generation 6 lists the collectors of vanished roads too.
constexpr Sql kSelectIds = {
    "select collecterID from VehicleDrivInfoCollecter where roadID in (select linkID from link) or roadID in (select ConnID from Connector) order by collecterID",
    "select collecterID from VehicleDrivInfoCollecter where NetId = %0 order by collecterID"};

constexpr std::tuple kColumns = {
    Column{":collecterID", &VehicleDrivInfoCollector::collecterID},
    Column{":name", &VehicleDrivInfoCollector::name},
    Column{":roadID", &VehicleDrivInfoCollector::roadID},
    Column{":laneNumber", &VehicleDrivInfoCollector::laneNumber},
    Column{":toLaneNumber", &VehicleDrivInfoCollector::toLaneNumber},
    Column{":x", &VehicleDrivInfoCollector::x},
    Column{":y", &VehicleDrivInfoCollector::y},
    Column{":z", &VehicleDrivInfoCollector::z},
    Column{":distance", &VehicleDrivInfoCollector::distance},
    Column{":dataInterval", &VehicleDrivInfoCollector::dataInterval},
    Column{":startTime", &VehicleDrivInfoCollector::startTime},
    Column{":endTime", &VehicleDrivInfoCollector::endTime},
};

} // namespace

bool insertDrivInfoCollector(const Store &store, const VehicleDrivInfoCollector &collector,
                             bool inTransaction) {
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    return transaction.discard(bindAll(insert.bindNet(), kColumns, collector).exec());
}

VehicleDrivInfoCollector readDrivInfoCollector(const Store &store, long collectorId) {
    VehicleDrivInfoCollector collector;
    Query row(store, kSelect, {collectorId});
    if (row.execAndNext())
        readAll(row, kColumns, collector);
    return collector;
}

bool listDrivInfoCollectorIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllDrivInfoCollectors(NetLoad &net) {
    net.forEachObject("VehicleDrivInfoCollecter", "collecterID", [&net](Rows &row) {
        auto collector = std::make_unique<VehicleDrivInfoCollector>();
        readAll(row, kColumns, *collector);
        if (net.store.hasSeveralNets() || net.isLoaded(collector->roadID))
            net.contents.traffic.collectors.push_back(std::move(collector));
        else
            net.skip("VehicleDrivInfoCollecter", collector->collecterID, "stands on a road that is missing");
    });
}

void saveAllDrivInfoCollectors(NetSave &net) {
    const Objects<VehicleDrivInfoCollector> &collectors = net.contents.traffic.collectors;
    net.giveIds("VehicleDrivInfoCollecter", collectors, &VehicleDrivInfoCollector::collecterID);
    net.writeEach(
        "VehicleDrivInfoCollecter", collectors,
        [](RowWriter &row, const VehicleDrivInfoCollector &collector) { bindAll(row, kColumns, collector); });
}

} // namespace drivinfocollectors

Description describe(const VehicleDrivInfoCollector &collector) {
    return {collector.collecterID, collector.name, describeAll(drivinfocollectors::kColumns, collector)};
}
