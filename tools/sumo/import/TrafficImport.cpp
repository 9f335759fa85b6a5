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
#include <memory>

namespace moratools {

namespace {

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

} // namespace

void buildTraffic(const StoreSession &store, const SumoNet &net, const CompanionPlan &plan, IdSource &ids,
                  NetworkObjects &network) {
    readCatalogue(store, network.record.netId, network.traffic);
    build(net, plan, ids, network);
}

} // namespace moratools
