#include "tools/sumo/import/TrafficImport.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/DemandBuilder.h"
#include "tools/sumo/import/DetectorBuilder.h"
#include "tools/sumo/import/IncidentBuilder.h"
#include "tools/sumo/import/SignalBuilder.h"
#include "tools/sumo/import/TransitBuilder.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace moratools {

namespace {

constexpr int kStandardRun = 3600; // seconds; what every network starts with

template <class T>
QList<long> ascending(const QHash<long, T> &byCode) {
    QList<long> codes = byCode.keys();
    std::sort(codes.begin(), codes.end());
    return codes;
}

void build(const SumoNet &net, const CompanionPlan &plan, IdSource &ids, NetworkObjects &network) {
    const NetworkMap map(net, network.links);
    const SumoCompanions &companions = *plan.companions;
    TrafficObjects &traffic = network.traffic;
    DemandBuilder demand(companions, map, ids, traffic);
    demand.buildTypes();
    demand.buildDemand(plan.demand);
    buildSignals(plan.signalPlan, map, ids, traffic);
    buildDetectors(companions, map, ids, traffic);
    buildTransit(plan.lines, companions, map, ids, traffic);
    buildSpeedAreas(companions, demand, map, ids, traffic);
    buildZones(companions, plan.obstacles, map, ids, traffic);
}

/// The types and compositions that the store has, by code.
void readCatalogue(const StoreSession &store, long netId, TrafficObjects &traffic) {
    QHash<long, VehicleType> types;
    DBTools::selectVehicleType(store.db(), netId, types);
    for (const long code : ascending(types))
        traffic.vehicleTypes.push_back(std::make_unique<VehicleType>(types.value(code)));
    QHash<long, VehicleComposition> compositions;
    DBTools::selectVehicleConstitutent(store.db(), netId, compositions);
    for (const long code : ascending(compositions)) {
        // Only the single read tells which composition is the default.
        traffic.compositions.push_back(
            std::make_unique<VehicleComposition>(DBTools::selectVehicleComposition(store.db(), netId, code)));
        if (traffic.compositions.back()->vehicleConsCode != code)
            store.refuseReading(QStringLiteral("vehicle composition %1 of network \"%2\"")
                                    .arg(QString::number(code), store.net().netName()));
    }
}

/// How long a run lasts and the seed, where the configuration says so. Its other figures have no column.
void buildSettings(const SumoScenario &scenario, NetSettings &settings) {
    if (!scenario.end && !scenario.seed)
        return;
    SimulateConfiguration &simulation = settings.simulation.emplace();
    simulation.simuTimeInterval = kStandardRun;
    if (scenario.end)
        simulation.simuTimeInterval =
            int(std::lround(std::max(0.0, *scenario.end - scenario.begin.value_or(0))));
    simulation.randSeed = scenario.seed.value_or(0);
}

} // namespace

void buildTraffic(const StoreSession &store, const SumoNet &net, const CompanionPlan &plan, IdSource &ids,
                  NetworkObjects &network) {
    readCatalogue(store, network.record.netId, network.traffic);
    build(net, plan, ids, network);
    buildSettings(plan.scenario, network.settings);
}

} // namespace moratools
