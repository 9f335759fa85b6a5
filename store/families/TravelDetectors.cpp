#include "store/families/TravelDetectors.h"

#include "model/Description.h"
#include "model/VehicleTravelDetector.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

#include <memory>

namespace traveldetectors {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleTravelDetector(detectorId,name,startRoadId,start_laneNumber,start_toLaneNumber,startDist,startX,startY,teminalRoadId,teminal_laneNumber,teminal_toLaneNumber,teminalDist,teminalX,teminalY,startTime,endTime,dataInterval,shortestDistance) values(:detectorId,:name,:startRoadId,:start_laneNumber,:start_toLaneNumber,:startDist,:startX,:startY,:teminalRoadId,:teminal_laneNumber,:teminal_toLaneNumber,:teminalDist,:teminalX,:teminalY,:startTime,:endTime,:dataInterval,:shortestDistance)",
    "insert into VehicleTravelDetector(NetId, detectorId,name,startRoadId,start_laneNumber,start_toLaneNumber,startDist,startX,startY,teminalRoadId,teminal_laneNumber,teminal_toLaneNumber,teminalDist,teminalX,teminalY,startTime,endTime,dataInterval,shortestDistance) values(:NetId, :detectorId,:name,:startRoadId,:start_laneNumber,:start_toLaneNumber,:startDist,:startX,:startY,:teminalRoadId,:teminal_laneNumber,:teminal_toLaneNumber,:teminalDist,:teminalX,:teminalY,:startTime,:endTime,:dataInterval,:shortestDistance)"};
constexpr Sql kSelect = {"select * from VehicleTravelDetector where detectorId = %1",
                         "select * from VehicleTravelDetector where NetId = %0 and detectorId = %1"};
// Generation 6 lists the detectors of vanished roads too.
constexpr Sql kSelectIds = {
    "select detectorId from VehicleTravelDetector where (startRoadID in (select linkID from link) or startRoadID in (select ConnID from Connector)) and (TeminalRoadID in (select linkID from link) or TeminalRoadID in (select ConnID from Connector)) order by detectorId",
    "select detectorId from VehicleTravelDetector where NetId = %0 order by detectorId"};

constexpr std::tuple kColumns = {
    Column{":detectorId", &VehicleTravelDetector::detectorId},
    Column{":name", &VehicleTravelDetector::name},
    Column{":startRoadId", &VehicleTravelDetector::startRoadId},
    Column{":start_laneNumber", &VehicleTravelDetector::start_laneNumber},
    Column{":start_toLaneNumber", &VehicleTravelDetector::start_toLaneNumber},
    Column{":startDist", &VehicleTravelDetector::startDist},
    Column{":startX", &VehicleTravelDetector::startX},
    Column{":startY", &VehicleTravelDetector::startY},
    Column{":teminalRoadId", &VehicleTravelDetector::teminalRoadId},
    Column{":teminal_laneNumber", &VehicleTravelDetector::teminal_laneNumber},
    Column{":teminal_toLaneNumber", &VehicleTravelDetector::teminal_toLaneNumber},
    Column{":teminalDist", &VehicleTravelDetector::teminalDist},
    Column{":teminalX", &VehicleTravelDetector::teminalX},
    Column{":teminalY", &VehicleTravelDetector::teminalY},
    Column{":startTime", &VehicleTravelDetector::startTime},
    Column{":endTime", &VehicleTravelDetector::endTime},
    Column{":dataInterval", &VehicleTravelDetector::dataInterval},
    Column{":shortestDistance", &VehicleTravelDetector::shortestDistance},
};

} // namespace

bool insertTravelDetector(const Store &store, const VehicleTravelDetector *detector, bool inTransaction) {
    if (!detector)
        return true;
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    return transaction.discard(bindAll(insert.bindNet(), kColumns, *detector).exec());
}

VehicleTravelDetector *readTravelDetector(const Store &store, long detectorId) {
    Query row(store, kSelect, {detectorId});
    if (!row.execAndNext())
        return nullptr;
    auto detector = std::make_unique<VehicleTravelDetector>();
    readAll(row, kColumns, *detector);
    return detector.release();
}

bool listTravelDetectorIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllTravelDetectors(NetLoad &net) {
    net.forEachObject("VehicleTravelDetector", "detectorId", [&net](Rows &row) {
        auto detector = std::make_unique<VehicleTravelDetector>();
        readAll(row, kColumns, *detector);
        if (net.store.hasSeveralNets() ||
            (net.isLoaded(detector->startRoadId) && net.isLoaded(detector->teminalRoadId)))
            net.contents.traffic.travelDetectors.push_back(std::move(detector));
        else
            net.skip("VehicleTravelDetector", detector->detectorId, "stands on a road that is missing");
    });
}

void saveAllTravelDetectors(NetSave &net) {
    const Objects<VehicleTravelDetector> &detectors = net.contents.traffic.travelDetectors;
    net.giveIds("VehicleTravelDetector", detectors, &VehicleTravelDetector::detectorId);
    net.writeEach(
        "VehicleTravelDetector", detectors,
        [](RowWriter &row, const VehicleTravelDetector &detector) { bindAll(row, kColumns, detector); });
}

} // namespace traveldetectors

Description describe(const VehicleTravelDetector &detector) {
    return {detector.detectorId, detector.name, describeAll(traveldetectors::kColumns, detector)};
}
