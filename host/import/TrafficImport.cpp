#include "host/import/TrafficImport.h"

#include "host/import/DemandBuilder.h"
#include "host/import/DetectorBuilder.h"
#include "host/import/IncidentBuilder.h"
#include "host/import/Refusal.h"
#include "host/import/SignalBuilder.h"
#include "host/import/TransitBuilder.h"
#include "host/store/Kinds.h"
#include "host/store/ZoneWriter.h"
#include "store/DBTools.h"

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

/// Writes `objects` from place `first` on.
template <class T, class Insert>
void write(const Objects<T> &objects, std::size_t first, const char *what, const Insert &insert) {
    for (std::size_t i = first; i < objects.size(); ++i)
        requireWritten(insert(*objects[i]), what);
}

/// Inserts are called without a transaction of their own: they are part of the import's, and that of some
/// would be rolled back.
void writeDemand(long netId, const TrafficObjects &traffic, std::size_t firstType,
                 std::size_t firstComposition) {
    write(traffic.vehicleTypes, firstType, "vehicle types",
          [netId](VehicleType &type) { return DBTools::insertVehicleType(gDB, netId, type, false); });
    write(traffic.compositions, firstComposition, "vehicle compositions",
          [netId](VehicleComposition &composition) {
              return DBTools::insertVehicleConstitutent(gDB, netId, composition, false);
          });
    write(traffic.departurePoints, 0, "departure points",
          [netId](DeparturePoint &point) { return DBTools::insertDeparturePoint(gDB, netId, point, false); });
    write(traffic.decisionPoints, 0, "decision points",
          [netId](DecisionPoint &point) { return DBTools::insertDecisionPoint(gDB, netId, &point, false); });
}

void writeDevices(long netId, const TrafficObjects &traffic) {
    write(traffic.signalGroups, 0, "signal groups",
          [netId](SignalGroup &group) { return DBTools::insertSignalGroup(gDB, netId, &group, false); });
    write(traffic.signalLamps, 0, "signal lamps",
          [netId](SignalLamp &lamp) { return DBTools::insertSignalLamp(gDB, netId, &lamp, false); });
    write(traffic.queueCounters, 0, "queue counters", [netId](VehicleQueueCounter &counter) {
        return DBTools::insertVehicleQueueCounter(gDB, netId, &counter, false);
    });
    write(traffic.travelDetectors, 0, "travel-time detectors", [netId](VehicleTravelDetector &detector) {
        return DBTools::insertVehicleTravelDetector(gDB, netId, &detector, false);
    });
    write(traffic.collectors, 0, "driving-data collectors", [netId](VehicleDrivInfoCollector &collector) {
        return DBTools::insertDrivInfoCollector(gDB, netId, collector, false);
    });
}

void writeTransitAndIncidents(long netId, const TrafficObjects &traffic) {
    write(traffic.busStations, 0, "bus stations",
          [netId](BusStation &station) { return DBTools::insertBusStation(gDB, netId, &station, false); });
    write(traffic.busLines, 0, "bus lines",
          [netId](BusLine &line) { return DBTools::insertBusLine(gDB, netId, &line, false); });
    write(traffic.speedAreas, 0, "speed reduction areas", [netId](ReduceSpeedArea &area) {
        return DBTools::insertReduceSpeedArea(gDB, netId, &area, false);
    });
    for (const auto &zone : traffic.accidentZones)
        zonewriter::insert(gDB, netId, *zone);
    for (const auto &zone : traffic.roadWorkZones)
        zonewriter::insert(gDB, netId, *zone);
}

} // namespace

void importTraffic(const SumoNet &net, const CompanionPlan &plan, IdSource &ids, NetworkObjects &network) {
    TrafficObjects &traffic = network.traffic;
    const long netId = network.record.netId;
    traffic.vehicleTypes = readAll<VehicleType>(netId);
    traffic.compositions = readAll<VehicleComposition>(netId);
    const std::size_t firstType = traffic.vehicleTypes.size();
    const std::size_t firstComposition = traffic.compositions.size();
    build(net, plan, ids, network);
    writeDemand(netId, traffic, firstType, firstComposition);
    writeDevices(netId, traffic);
    writeTransitAndIncidents(netId, traffic);
}
