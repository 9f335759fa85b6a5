#include "store/families/VehicleTypes.h"

#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/StoredWord.h"
#include "store/core/Columns.h"
#include "store/core/Transaction.h"

namespace vehicletypes {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleType(vehicleTypeCode, vehicleTypeName, Length, lengthSD, width, widthSD, avgSpeed, speedSD, maxSpeed, avgAcce, acceSD, maxAcce, avgDece, deceSD, maxDece) values(:vehicleTypeCode, :vehicleTypeName, :Length, :lengthSD, :width, :widthSD, :avgSpeed, :speedSD, :maxSpeed, :avgAcce, :acceSD, :maxAcce, :avgDece, :deceSD, :maxDece)",
    "insert into VehicleType(NetId, vehicleTypeCode, vehicleTypeName, Length, lengthSD, width, widthSD, avgSpeed, speedSD, maxSpeed, avgAcce, acceSD, maxAcce, avgDece, deceSD, maxDece) values(:NetId, :vehicleTypeCode, :vehicleTypeName, :Length, :lengthSD, :width, :widthSD, :avgSpeed, :speedSD, :maxSpeed, :avgAcce, :acceSD, :maxAcce, :avgDece, :deceSD, :maxDece)"};
constexpr Sql kSelect = {"select * from VehicleType order by vehicleTypeCode",
                         "select * from VehicleType where NetId = %1 order by vehicleTypeCode"};

/// All columns but the name, which passes through the dictionary.
constexpr Column<VehicleType> kColumns[] = {
    {":vehicleTypeCode", &VehicleType::vehicleTypeCode},
    {":Length", &VehicleType::length},
    {":lengthSD", &VehicleType::lengthSD},
    {":width", &VehicleType::width},
    {":widthSD", &VehicleType::widthSD},
    {":avgSpeed", &VehicleType::avgSpeed},
    {":speedSD", &VehicleType::speedSD},
    {":maxSpeed", &VehicleType::maxSpeed},
    {":avgAcce", &VehicleType::avgAcce},
    {":acceSD", &VehicleType::acceSD},
    {":maxAcce", &VehicleType::maxAcce},
    {":avgDece", &VehicleType::avgDece},
    {":deceSD", &VehicleType::deceSD},
    {":maxDece", &VehicleType::maxDece},
};

template <class Row>
Row &bindRow(Row &row, const VehicleType &type, const QString &storedName) {
    return bindAll(row, kColumns, type).bind(":vehicleTypeName", storedName);
}

template <class Row>
void readRow(Row &row, VehicleType &type) {
    ::readAll(row, kColumns, type);
    type.vehicleTypeName = row.store().words().trEnToZh(row.text("vehicleTypeName"));
}

} // namespace

bool insertVehicleType(const Store &store, const VehicleType &type, bool useTransaction) {
    Transaction transaction(store, useTransaction);
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
        type->storedTypeName =
            storedword::kept(row.store().words(), row.text("vehicleTypeName"), type->vehicleTypeName);
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
