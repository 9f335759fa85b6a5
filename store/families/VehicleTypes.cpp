#include "store/families/VehicleTypes.h"

#include "model/Description.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/StoredWord.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

namespace vehicletypes {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleType(vehicleTypeCode, vehicleTypeName, Length, lengthSD, width, widthSD, avgSpeed, speedSD, maxSpeed, avgAcce, acceSD, maxAcce, avgDece, deceSD, maxDece) values(:vehicleTypeCode, :vehicleTypeName, :Length, :lengthSD, :width, :widthSD, :avgSpeed, :speedSD, :maxSpeed, :avgAcce, :acceSD, :maxAcce, :avgDece, :deceSD, :maxDece)",
    "insert into VehicleType(NetId, vehicleTypeCode, vehicleTypeName, Length, lengthSD, width, widthSD, avgSpeed, speedSD, maxSpeed, avgAcce, acceSD, maxAcce, avgDece, deceSD, maxDece) values(:NetId, :vehicleTypeCode, :vehicleTypeName, :Length, :lengthSD, :width, :widthSD, :avgSpeed, :speedSD, :maxSpeed, :avgAcce, :acceSD, :maxAcce, :avgDece, :deceSD, :maxDece)"};
constexpr Sql kSelect = {"select * from VehicleType order by vehicleTypeCode",
                         "select * from VehicleType where NetId = %1 order by vehicleTypeCode"};

constexpr Word kName{":vehicleTypeName", &VehicleType::vehicleTypeName};
constexpr std::tuple kColumns = {
    Column{":vehicleTypeCode", &VehicleType::vehicleTypeCode},
    kName,
    Column{":Length", &VehicleType::length, "length"},
    Column{":lengthSD", &VehicleType::lengthSD},
    Column{":width", &VehicleType::width},
    Column{":widthSD", &VehicleType::widthSD},
    Column{":avgSpeed", &VehicleType::avgSpeed},
    Column{":speedSD", &VehicleType::speedSD},
    Column{":maxSpeed", &VehicleType::maxSpeed},
    Column{":avgAcce", &VehicleType::avgAcce},
    Column{":acceSD", &VehicleType::acceSD},
    Column{":maxAcce", &VehicleType::maxAcce},
    Column{":avgDece", &VehicleType::avgDece},
    Column{":deceSD", &VehicleType::deceSD},
    Column{":maxDece", &VehicleType::maxDece},
};

template <class Row>
Row &bindRow(Row &row, const VehicleType &type, const QString &storedName) {
    return bindAll(row, kColumns, type).bind(kName.placeholder, storedName);
}

template <class Row>
void readRow(Row &row, VehicleType &type) {
    ::readAll(row, kColumns, type);
    const QString stored = type.vehicleTypeName;
    type.vehicleTypeName = row.store().words().trEnToZh(stored);
    type.storedTypeName = storedword::kept(row.store().words(), stored, type.vehicleTypeName);
}

} // namespace

bool insertVehicleType(const Store &store, const VehicleType &type, bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    Query insert(store, kInsert);
    const QString storedName = store.words().trZhToEn(type.vehicleTypeName);
    return transaction.commit(bindRow(insert.bindNet(), type, storedName).exec());
}

bool readVehicleTypes(const Store &store, QHash<long, VehicleType> &types) {
    Query rows(store, kSelect);
    if (!rows.exec())
        return true;
    while (rows.next()) {
        VehicleType type;
        readRow(rows, type);
        types.insert(type.vehicleTypeCode, type);
    }
    return true;
}

void loadAllVehicleTypes(NetLoad &net) {
    net.store.vehicleTypes().clear();
    net.forEachObject("VehicleType", "vehicleTypeCode", [&net](Rows &row) {
        auto type = std::make_unique<VehicleType>();
        readRow(row, *type);
        net.store.vehicleTypes().insert(type->vehicleTypeCode, *type);
        net.contents.traffic.vehicleTypes.push_back(std::move(type));
    });
}

void saveAllVehicleTypes(NetSave &net) {
    const Objects<VehicleType> &types = net.contents.traffic.vehicleTypes;
    net.writeEach("VehicleType", types, [](RowWriter &row, const VehicleType &type) {
        bindRow(row, type, storedword::of(row.store().words(), type.vehicleTypeName, type.storedTypeName));
    });
}

} // namespace vehicletypes

Description describe(const VehicleType &type) {
    return {type.vehicleTypeCode, type.vehicleTypeName, describeAll(vehicletypes::kColumns, type)};
}
