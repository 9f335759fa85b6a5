#include "store/families/VehicleDetectors.h"

#include "model/Description.h"
#include "model/VehicleDetector.h"
#include "model/VehicleType.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

#include <algorithm>
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

constexpr std::tuple kColumns = {
    Column{":vehicleDetectorId", &VehicleDetector::vehicleDetectorId},
    Column{":name", &VehicleDetector::name},
    Column{":signalGroupID", &VehicleDetector::signalGroupID},
    Column{":phaseNumber", &VehicleDetector::phaseNumber},
    Column{":roadId", &VehicleDetector::roadId},
    Column{":roadType", &VehicleDetector::roadType},
    Column{":laneNumber", &VehicleDetector::laneNumber},
    Column{":toLaneNumber", &VehicleDetector::toLaneNumber},
    Column{":length", &VehicleDetector::length},
    Column{":distToTerminal", &VehicleDetector::distToTerminal},
    Column{":type", &VehicleDetector::type},
    Column{":maxGreen", &VehicleDetector::maxGreen},
};

template <class Row>
void readRow(Row &row, VehicleDetector &detector) {
    readAll(row, kColumns, detector);
    if (row.isNull("toLaneNumber"))
        detector.toLaneNumber = -1;
}

template <class Row>
Row &bindType(Row &row, const VehicleDetector &detector, long code) {
    return row.bind(":vehicleDetectorId", detector.vehicleDetectorId).bind(":vehicleTypeCode", code);
}

/// A code that is not in the catalogue becomes that of the default type.
long knownCode(const Store &store, long code) {
    return VehicleType::findVeicleType(store.vehicleTypes(), code).vehicleTypeCode;
}

bool insertRow(const Store &store, const VehicleDetector &detector) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, detector).exec();
}

bool insertTypes(const Store &store, const VehicleDetector &detector) {
    bool written = true;
    Query insert(store, kInsertType);
    for (const long code : detector.mlVehiTypeCode) {
        written = bindType(insert, detector, code).exec() && written;
    }
    return written;
}

void readTypes(const Store &store, VehicleDetector &detector, long detectorId) {
    Query rows(store, kSelectTypes, {detectorId});
    if (!rows.execPart())
        return;
    QList<long> codes;
    while (rows.next())
        codes.append(rows.id("vehicleTypeCode"));
    // The key gives them in this order on SQLite; a server takes its rows in the order that suits it.
    std::sort(codes.begin(), codes.end());
    for (const long code : qAsConst(codes))
        detector.mlVehiTypeCode.append(knownCode(store, code));
}

QList<long> distinct(const QList<long> &codes) {
    QList<long> once;
    for (const long code : codes) {
        if (!once.contains(code))
            once.append(code);
    }
    return once;
}

} // namespace

bool insertVehicleDetector(const Store &store, const VehicleDetector *detector, bool inTransaction) {
    if (!detector)
        return true;
    OperationTransaction transaction(store, inTransaction);
    bool written = insertRow(store, *detector);
    written = insertTypes(store, *detector) && written;
    return transaction.discard(written);
}

VehicleDetector *readVehicleDetector(const Store &store, long detectorId) {
    Query row(store, kSelect, {detectorId});
    if (!row.execAndNext())
        return nullptr;
    auto detector = std::make_unique<VehicleDetector>(store.net(), store.words());
    readRow(row, *detector);
    row.finish();
    readTypes(store, *detector, detectorId);
    return store.whole(std::move(detector));
}

bool listVehicleDetectorIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllVehicleDetectors(NetLoad &net) {
    Objects<VehicleDetector> &detectors = net.contents.traffic.vehicleDetectors;
    net.forEachObject("VehicleDetector", "vehicleDetectorId", [&](Rows &row) {
        detectors.push_back(std::make_unique<VehicleDetector>(net.store.net(), net.store.words()));
        readRow(row, *detectors.back());
    });
    Owners owner(net, detectors, &VehicleDetector::vehicleDetectorId, "DetectorVehiType",
                 "belongs to no detector");
    net.forEachRow("DetectorVehiType", "vehicleDetectorId, vehicleTypeCode", [&](Rows &row) {
        VehicleDetector *detector = owner.of(row, "vehicleDetectorId");
        if (!detector)
            return;
        const long code = row.id("vehicleTypeCode");
        // Without the registry's lock: the load has changed the registry, and its caller may hold the lock
        // for writing.
        detector->mlVehiTypeCode.append(net.store.vehicleTypes().value(code).vehicleTypeCode);
        if (detector->mlVehiTypeCode.last() != code)
            net.skip("DetectorVehiType", detector->vehicleDetectorId,
                     "names a vehicle type that is missing and reads as the default one");
    });
}

void saveAllVehicleDetectors(NetSave &net) {
    const Objects<VehicleDetector> &detectors = net.contents.traffic.vehicleDetectors;
    net.giveIds("VehicleDetector", detectors, &VehicleDetector::vehicleDetectorId);
    net.writeEach("VehicleDetector", detectors,
                  [](RowWriter &row, const VehicleDetector &detector) { bindAll(row, kColumns, detector); });
    // With the network, unlike those of single inserts, and each once: a load gives the default type for
    // every one that is unknown.
    std::vector<QList<long>> codes;
    qint64 total = 0;
    for (const auto &detector : detectors) {
        codes.push_back(distinct(detector->mlVehiTypeCode));
        total += codes.back().size();
    }
    net.write("DetectorVehiType", total, [&](RowWriter &row) {
        for (std::size_t i = 0; i < detectors.size(); ++i) {
            for (const long code : qAsConst(codes[i])) {
                if (!bindType(row.bindNet(), *detectors[i], code).exec())
                    return;
            }
        }
    });
}

} // namespace vehicledetectors

Description describe(const VehicleDetector &detector) {
    QVariantMap fields = describeAll(vehicledetectors::kColumns, detector);
    fields.insert(QStringLiteral("vehicleTypeCodes"),
                  describeEach(detector.mlVehiTypeCode, [](long code) { return qlonglong(code); }));
    return {detector.vehicleDetectorId, detector.name, fields};
}
