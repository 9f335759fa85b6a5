#include "model/VehicleDetector.h"
#include "model/VehicleDrivInfoCollector.h"
#include "model/VehicleQueueCounter.h"
#include "model/VehicleTravelDetector.h"
#include "tests/support/StatementList.h"

#include <memory>

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void recordDevices(StatementList &list) {
    VehicleQueueCounter counter;
    counter.queueCounterID = 5;
    list.addWrite("insertVehicleQueueCounter",
                  [&](bool flag) { Tools::insertVehicleQueueCounter(gDB, kNet, &counter, flag); });
    list.add("selectVehicleQueueCounter",
             [] { std::unique_ptr<VehicleQueueCounter>(Tools::selectVehicleQueueCounter(gDB, kNet, 5)); });
    list.add("selectVehicleQueueCounterIds", [] {
        QList<long> ids;
        Tools::selectVehicleQueueCounterIds(gDB, kNet, ids);
    });

    VehicleTravelDetector travel;
    travel.detectorId = 5;
    list.addWrite("insertVehicleTravelDetector",
                  [&](bool flag) { Tools::insertVehicleTravelDetector(gDB, kNet, &travel, flag); });
    list.add("selectVehicleTravelDetector", [] {
        std::unique_ptr<VehicleTravelDetector>(Tools::selectVehicleTravelDetector(gDB, kNet, 5));
    });
    list.add("selectVehicleTravelDetectorIds", [] {
        QList<long> ids;
        Tools::selectVehicleTravelDetectorIds(gDB, kNet, ids);
    });

    VehicleDrivInfoCollector collector;
    collector.collecterID = 5;
    list.addWrite("insertDrivInfoCollector",
                  [&](bool flag) { Tools::insertDrivInfoCollector(gDB, kNet, collector, flag); });
    list.add("selectVehicleDrivInfoCollector", [] { Tools::selectVehicleDrivInfoCollector(gDB, kNet, 5); });
    list.add("selectVehicleDrivInfoCollectorIds", [] {
        QList<long> ids;
        Tools::selectVehicleDrivInfoCollectorIds(gDB, kNet, ids);
    });
}

template <class Tools>
void record(StatementList &list) {
    VehicleDetector detector;
    detector.vehicleDetectorId = 5;
    detector.mlVehiTypeCode = {2, 3};
    const auto insert = [&](bool flag) { Tools::insertVehicleDetector(gDB, kNet, &detector, flag); };
    list.addWrite("insertVehicleDetector", insert);
    insert(false);
    list.add("selectVehicleDetector",
             [] { std::unique_ptr<VehicleDetector>(Tools::selectVehicleDetector(gDB, kNet, 5)); });
    list.add("selectVehicleDetectorIds", [] {
        QList<long> ids;
        Tools::selectVehicleDetectorIds(gDB, kNet, ids);
    });
    recordDevices<Tools>(list);
}

const StatementFamily kDetectors("Detectors", record<DBTools>, record<DBTools_V6>);

} // namespace
