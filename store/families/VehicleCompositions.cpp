#include "store/families/VehicleCompositions.h"

#include "model/Description.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/VehicleTypes.h"

#include <QSet>

#include <algorithm>

namespace vehiclecompositions {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleConstitutent(VehicleConsCode, name, IsDefault) values(:VehicleConsCode, :name, :IsDefault)",
    "insert into VehicleConstitutent(NetId, VehicleConsCode, name, IsDefault) values(:NetId, :VehicleConsCode, :name, :IsDefault)"};
constexpr Sql kSelectAll = {"select * from VehicleConstitutent order by vehicleConsCode",
                            "select * from VehicleConstitutent where NetId = %1 order by vehicleConsCode"};
constexpr Sql kSelect = {
    "select * from VehicleConstitutent where VehicleConsCode = %1 order by vehicleConsCode",
    "select * from VehicleConstitutent where NetId = %0 and VehicleConsCode = %1 order by vehicleConsCode"};

constexpr Sql kInsertDetail = {
    "insert into VehicleConsDetail(vehicleConsCode, vehicleTypeCode, proportion) values(:vehicleConsCode, :vehicleTypeCode, :proportion)",
    "insert into VehicleConsDetail(NetId, vehicleConsCode, vehicleTypeCode, proportion) values(:NetId, :vehicleConsCode, :vehicleTypeCode, :proportion)"};
constexpr Sql kSelectDetails = {
    "select * from VehicleConsDetail where vehicleConsCode = %1 order by vehicleTypeCode",
    "select * from VehicleConsDetail where NetId = %0 and vehicleConsCode = %1 order by vehicleTypeCode"};

constexpr Sql kSelectStaying = {
    "select d.*, c.name from VehicleConsDetail d left join VehicleConstitutent c on c.vehicleConsCode = d.vehicleConsCode",
    "select d.*, c.name from VehicleConsDetail d left join VehicleConstitutent c on c.NetId = d.NetId and c.vehicleConsCode = d.vehicleConsCode where d.NetId = %0"};

constexpr std::tuple kColumns = {
    Column{":VehicleConsCode", &VehicleComposition::vehicleConsCode, "vehicleConsCode"},
    Column{":name", &VehicleComposition::name},
    Column{":IsDefault", &VehicleComposition::isDefault, "isDefault"},
};
constexpr std::tuple kDetailColumns = {
    Column{":vehicleConsCode", &VehicleConsDetail::vehicleConsCode},
    Column{":vehicleTypeCode", &VehicleConsDetail::vehicleTypeCode},
    Column{":proportion", &VehicleConsDetail::proportion},
};

bool isYes(const QString &flag) {
    return flag.startsWith(QLatin1Char('T')) || flag.startsWith(QLatin1Char('Y'));
}

template <class Row>
void readRow(Row &row, VehicleComposition &composition) {
    ::readAll(row, kColumns, composition);
    composition.isDefault = isYes(row.text("IsDefault"));
}

/// The details of the compositions in the store. One with a type that is not among the new ones refuses the
/// save.
QList<VehicleConsDetail> stayingDetails(NetSave &net) {
    QSet<long> types;
    for (const auto &type : net.contents.traffic.vehicleTypes)
        types.insert(type->vehicleTypeCode);
    QList<VehicleConsDetail> details;
    Query rows(net.store, kSelectStaying);
    net.check(rows.exec());
    while (rows.next()) {
        VehicleConsDetail detail;
        ::readAll(rows, kDetailColumns, detail);
        details.append(detail);
        if (!types.contains(detail.vehicleTypeCode)) {
            net.refuse(
                detail.vehicleConsCode,
                QStringLiteral("Vehicle composition %1 of the store (%2) consists of type %3, which is not "
                               "among the types to save: save compositions with them.")
                    .arg(QString::number(detail.vehicleConsCode), rows.text("name"),
                         QString::number(detail.vehicleTypeCode)));
            break;
        }
    }
    net.check(rows.isComplete());
    return details;
}

void saveCompositions(NetSave &net) {
    const Objects<VehicleComposition> &compositions = net.contents.traffic.compositions;
    std::vector<long> codes;
    codes.reserve(compositions.size());
    for (const auto &composition : compositions)
        codes.push_back(composition->vehicleConsCode);
    net.keepIds("VehicleConstitutent", codes);
    net.writeEach(
        "VehicleConstitutent", compositions,
        [](RowWriter &row, const VehicleComposition &composition) { bindAll(row, kColumns, composition); });
    net.writeOwned("VehicleConsDetail", compositions, &VehicleComposition::mlDetail,
                   [](RowWriter &row, const VehicleComposition &, const VehicleConsDetail &detail) {
                       bindAll(row, kDetailColumns, detail);
                   });
}

} // namespace

bool insertVehicleComposition(const Store &store, const VehicleComposition &composition,
                              bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    Query insert(store, kInsert);
    bindAll(insert.bindNet(), kColumns, composition);
    // The first detail that fails ends the operation: a mix that lacks one of its types is of no use.
    const bool complete =
        insert.run() &&
        std::all_of(composition.mlDetail.cbegin(), composition.mlDetail.cend(),
                    [&](const auto &detail) { return insertCompositionDetail(store, detail, false); });
    // A composition that is not complete is undone. A driver that ran the statement and reports an error
    // beside it only spoils the verdict: what it wrote stays, as with every other insert.
    const bool good = insert.check();
    return complete ? transaction.commit(good) : transaction.rollBack();
}

bool insertCompositionDetail(const Store &store, const VehicleConsDetail &detail, bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    Query insert(store, kInsertDetail);
    insert.bindNet();
    bindAll(insert, kDetailColumns, detail);
    return transaction.commit(insert.exec());
}

bool readVehicleCompositions(const Store &store, QHash<long, VehicleComposition> &compositions) {
    QList<VehicleComposition> read;
    Query rows(store, kSelectAll);
    if (!rows.exec())
        return true;
    while (rows.next()) {
        // The default flag is not read here: hosts expect every composition of a whole catalogue without it
        // and ask for a single composition where it matters.
        VehicleComposition composition;
        readRow(rows, composition);
        composition.isDefault = false;
        read.append(composition);
    }
    rows.finish();
    for (VehicleComposition &composition : read) {
        composition.mlDetail = readCompositionDetails(store, composition.vehicleConsCode);
        if (!store.lacksAnswer())
            compositions.insert(composition.vehicleConsCode, composition);
    }
    return true;
}

VehicleComposition readVehicleComposition(const Store &store, long consCode) {
    VehicleComposition composition;
    Query row(store, kSelect, {consCode});
    if (!row.execAndNext())
        return composition;
    readRow(row, composition);
    row.finish();
    composition.mlDetail = readCompositionDetails(store, consCode);
    return store.lacksAnswer() ? VehicleComposition() : composition;
}

QList<VehicleConsDetail> readCompositionDetails(const Store &store, long consCode) {
    QList<VehicleConsDetail> details;
    Query rows(store, kSelectDetails, {consCode});
    if (!rows.execPart())
        return details;
    while (rows.next()) {
        VehicleConsDetail detail;
        ::readAll(rows, kDetailColumns, detail);
        details.append(detail);
    }
    return details;
}

void loadCatalogue(NetLoad &net) {
    vehicletypes::loadAllVehicleTypes(net);
    Objects<VehicleComposition> &compositions = net.contents.traffic.compositions;
    net.forEachObject("VehicleConstitutent", "vehicleConsCode", [&](Rows &row) {
        compositions.push_back(std::make_unique<VehicleComposition>());
        readRow(row, *compositions.back());
    });
    Owners owner(net, compositions, &VehicleComposition::vehicleConsCode, "VehicleConsDetail",
                 "belongs to no composition");
    net.forEachRow("VehicleConsDetail", "vehicleConsCode, vehicleTypeCode", [&](Rows &row) {
        if (VehicleComposition *composition = owner.of(row, "vehicleConsCode")) {
            composition->mlDetail.append(VehicleConsDetail());
            ::readAll(row, kDetailColumns, composition->mlDetail.last());
        }
    });
    net.store.compositions().clear();
    for (const auto &composition : compositions) {
        VehicleComposition &registered =
            net.store.compositions().insert(composition->vehicleConsCode, *composition).value();
        registered.isDefault = false;
    }
}

void saveCatalogue(NetSave &net) {
    const TrafficObjects &traffic = net.contents.traffic;
    const bool withTypes = !traffic.vehicleTypes.empty();
    const bool withCompositions = !traffic.compositions.empty();
    if (!net.isGood() || (!withTypes && !withCompositions))
        return;
    // Engines that enforce their keys let go of a type only without the details that refer to it.
    const QList<VehicleConsDetail> staying =
        withCompositions || net.isRecorded() ? QList<VehicleConsDetail>() : stayingDetails(net);
    net.empty("VehicleConsDetail");
    if (withCompositions)
        net.empty("VehicleConstitutent");
    if (withTypes) {
        net.empty("VehicleType");
        vehicletypes::saveAllVehicleTypes(net);
    }
    saveCompositions(net);
    net.write("VehicleConsDetail", staying.size(), [&staying](RowWriter &row) {
        for (const VehicleConsDetail &detail : staying)
            bindAll(row.bindNet(), kDetailColumns, detail).exec();
    });
}

} // namespace vehiclecompositions

Description describe(const VehicleComposition &composition) {
    using namespace vehiclecompositions;
    QVariantMap fields = describeAll(kColumns, composition);
    fields.insert(QStringLiteral("details"),
                  describeEach(composition.mlDetail, [](const VehicleConsDetail &detail) {
                      QVariantMap part = describeAll(kDetailColumns, detail);
                      part.remove(QStringLiteral("vehicleConsCode"));
                      return part;
                  }));
    return {composition.vehicleConsCode, composition.name, fields};
}
