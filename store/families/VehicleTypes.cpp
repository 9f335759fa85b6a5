#include "store/families/VehicleTypes.h"

#include "model/SpecialWords.h"
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

} // namespace

bool insert(const Store &store, const VehicleType &type, bool useTransaction) {
    Transaction transaction(store, useTransaction);
    Query insert(store, kInsert);
    insert.bindNet();
    bindAll(insert, kColumns, type);
    insert.bind(":vehicleTypeName", gSpecialWords.trZhToEn(type.vehicleTypeName));
    return transaction.commit(insert.exec());
}

bool readAll(const Store &store, QHash<long, VehicleType> &types) {
    Query rows(store, kSelect);
    if (!rows.exec())
        return true;
    while (rows.next()) {
        VehicleType type;
        ::readAll(rows, kColumns, type);
        type.vehicleTypeName = gSpecialWords.trEnToZh(rows.text("vehicleTypeName"));
        types.insert(type.vehicleTypeCode, type);
    }
    return true;
}

} // namespace vehicletypes
