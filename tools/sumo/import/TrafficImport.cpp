#include "tools/sumo/import/TrafficImport.h"

#include "tools/kinds/Kinds.h"
#include "tools/sumo/import/DemandBuilder.h"
#include "tools/sumo/import/DetectorBuilder.h"
#include "tools/sumo/import/IncidentBuilder.h"
#include "tools/sumo/import/SignalBuilder.h"
#include "tools/sumo/import/TransitBuilder.h"

namespace moratools {

namespace {

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

} // namespace

void buildTraffic(const SumoNet &net, const CompanionPlan &plan, IdSource &ids, NetworkObjects &network) {
    network.traffic.vehicleTypes = readAll<VehicleType>(network.record.netId);
    network.traffic.compositions = readAll<VehicleComposition>(network.record.netId);
    build(net, plan, ids, network);
}

} // namespace moratools
