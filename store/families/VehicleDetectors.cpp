#include "store/families/VehicleDetectors.h"

#include "model/VehicleDetector.h"
#include "model/VehicleType.h"
#include "store/core/Columns.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"

#include <memory>

namespace vehicledetectors {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleDetector(vehicleDetectorId, name, signalGroupID, phaseNumber, roadId, roadType, laneNumber, toLaneNumber, length, distToTerminal, [type], maxGreen) values(:vehicleDetectorId, :name, :signalGroupID, :phaseNumber, :roadId, :roadType, :laneNumber, :toLaneNumber, :length, :distToTerminal, :type, :maxGreen)",
    "insert into VehicleDetector(NetId, vehicleDetectorId, name, signalGroupID, phaseNumber, roadId, roadType, laneNumber, toLaneNumber, length, distToTerminal, [type], maxGreen) values(:NetId, :vehicleDetectorId, :name, :signalGroupID, :phaseNumber, :roadId, :roadType, :laneNumber, :toLaneNumber, :length, :distToTerminal, :type, :maxGreen)"};
// The rows carry no network id in either generation. Generation 6 requires one and refuses them: its
// detectors register no types, and hosts know a detector with types by that verdict.
constexpr const char *kInsertType =
    "insert into DetectorVehiType(vehicleDetectorId,vehicleTypeCode) values(:vehicleDetectorId,:vehicleTypeCode)";

constexpr Sql kSelect = {"select * from VehicleDetector where vehicleDetectorId = %1",
                         "select * from VehicleDetector where netId = %0 and vehicleDetectorId = %1"};
constexpr Sql kSelectTypes = {"select * from DetectorVehiType where vehicleDetectorId = %1",
                              "select * from DetectorVehiType where NetId = %0 and vehicleDetectorId = %1"};
constexpr Sql kSelectIds = {
    "select vehicleDetectorId from VehicleDetector order by vehicleDetectorId",
    "select vehicleDetectorId from VehicleDetector where NetId = %0 order by vehicleDetectorId"};

constexpr Column<VehicleDetector> kColumns[] = {
    {":vehicleDetectorId", &VehicleDetector::vehicleDetectorId},
    {":name", &VehicleDetector::name},
    {":signalGroupID", &VehicleDetector::signalGroupID},
    {":phaseNumber", &VehicleDetector::phaseNumber},
    {":roadId", &VehicleDetector::roadId},
    {":roadType", &VehicleDetector::roadType},
    {":laneNumber", &VehicleDetector::laneNumber},
    {":toLaneNumber", &VehicleDetector::toLaneNumber},
    {":length", &VehicleDetector::length},
    {":distToTerminal", &VehicleDetector::distToTerminal},
    {":type", &VehicleDetector::type},
    {":maxGreen", &VehicleDetector::maxGreen},
};

bool insertRow(const Store &store, const VehicleDetector &detector) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, detector).exec();
}

bool insertTypes(const Store &store, const VehicleDetector &detector) {
    bool written = true;
    Query insert(store, kInsertType);
    for (const long code : detector.mlVehiTypeCode) {
        insert.bind(":vehicleDetectorId", detector.vehicleDetectorId).bind(":vehicleTypeCode", code);
        written = insert.exec() && written;
    }
    return written;
}

/// A code that is not in the catalogue becomes that of the default type.
void readTypes(const Store &store, VehicleDetector &detector, long detectorId) {
    Query rows(store, kSelectTypes, {detectorId});
    if (!rows.exec())
        return;
    while (rows.next()) {
        const long code = rows.id("vehicleTypeCode");
        detector.mlVehiTypeCode.append(VehicleType::findVeicleType(ghVehicleType, code).vehicleTypeCode);
    }
}

} // namespace

bool insert(const Store &store, const VehicleDetector *detector, bool inTransaction) {
    if (!detector)
        return true;
    Transaction transaction(store, inTransaction);
    bool written = insertRow(store, *detector);
    written = insertTypes(store, *detector) && written;
    return transaction.discard(written);
}

VehicleDetector *read(const Store &store, long detectorId) {
    Query row(store, kSelect, {detectorId});
    if (!row.execAndNext())
        return nullptr;
    auto detector = std::make_unique<VehicleDetector>();
    readAll(row, kColumns, *detector);
    if (row.isNull("toLaneNumber"))
        detector->toLaneNumber = -1;
    row.finish();
    readTypes(store, *detector, detectorId);
    return detector.release();
}

bool listIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

} // namespace vehicledetectors
