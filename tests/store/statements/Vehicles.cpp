#include "model/DeparturePoint.h"
#include "model/VehicleType.h"
#include "tests/support/StatementList.h"

#include <memory>

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void recordDeparturePoints(StatementList &list) {
    DeparturePoint point;
    point.departurePointID = 5;
    DepartureInterval interval;
    interval.departureIntervalD = 51;
    point.mlInterval = {interval, interval};
    point.mlInterval.last().departureIntervalD = 52;
    list.addWrite("insertDeparturePoint",
                  [&](bool flag) { Tools::insertDeparturePoint(gDB, kNet, point, flag); });
    list.add("selectDeparturePoint", [] {
        QHash<long, VehicleComposition> compositions;
        std::unique_ptr<DeparturePoint>(Tools::selectDeparturePoint(gDB, kNet, compositions, 5));
    });
    list.add("selectDeparturePointIds", [] {
        QList<long> ids;
        Tools::selectDeparturePointIds(gDB, kNet, ids);
    });
}

template <class Tools>
void record(StatementList &list) {
    VehicleType type;
    type.vehicleTypeCode = 901;
    list.addWrite("insertVehicleType", [&](bool flag) { Tools::insertVehicleType(gDB, kNet, type, flag); });
    list.add("selectVehicleType", [] {
        QHash<long, VehicleType> types;
        Tools::selectVehicleType(gDB, kNet, types);
    });

    VehicleComposition composition;
    composition.vehicleConsCode = 902;
    composition.mlDetail = {{902, 901, 100}};
    list.addWrite("insertVehicleConstitutent",
                  [&](bool flag) { Tools::insertVehicleConstitutent(gDB, kNet, composition, flag); });
    list.add("selectVehicleConstitutent", [] {
        QHash<long, VehicleComposition> compositions;
        Tools::selectVehicleConstitutent(gDB, kNet, compositions);
    });
    list.add("selectVehicleComposition", [] { Tools::selectVehicleComposition(gDB, kNet, 902); });
    list.addWrite("insertVehicleConsDetail", [](bool flag) {
        Tools::insertVehicleConsDetail(gDB, kNet, {902, 2, 0}, flag);
    });
    list.add("selectVehicleConsDetail", [] { Tools::selectVehicleConsDetail(gDB, kNet, 902); });
    recordDeparturePoints<Tools>(list);
}

const StatementFamily kVehicles("Vehicles", record<DBTools>, record<DBTools_V6>);

} // namespace
