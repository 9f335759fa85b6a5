#include "store/whole/WholeNet.h"

#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/OperationSavepoint.h"
#include "store/core/Query.h"
#include "store/core/Savepoint.h"
#include "store/core/Transaction.h"
#include "store/families/BusLines.h"
#include "store/families/BusStations.h"
#include "store/families/Connectors.h"
#include "store/families/DecisionPoints.h"
#include "store/families/DeparturePoints.h"
#include "store/families/DrivInfoCollectors.h"
#include "store/families/DriverModels.h"
#include "store/families/GuideArrows.h"
#include "store/families/LinkTypes.h"
#include "store/families/Links.h"
#include "store/families/Networks.h"
#include "store/families/QueueCounters.h"
#include "store/families/ReduceSpeedAreas.h"
#include "store/families/SceneConfigurations.h"
#include "store/families/SignalGroups.h"
#include "store/families/SignalLamps.h"
#include "store/families/SimulateConfigurations.h"
#include "store/families/TravelDetectors.h"
#include "store/families/VehicleCompositions.h"
#include "store/families/VehicleDetectors.h"
#include "store/families/VehicleTypes.h"
#include "store/families/Wholeness.h"
#include "store/families/Zones.h"
#include "store/ids/Identifiers.h"
#include "store/whole/SaveCheck.h"

#include <optional>

namespace wholenet {

namespace {

constexpr Sql kAnyLink = {"select LinkID from Link limit 1",
                          "select linkID from Link where NetId = %0 limit 1"};

/// Removing a network of generation 6 leaves these rows, and they would fall to roads of the same ids.
void emptyWhatRemovalLeaves(NetSave &net) {
    if (!net.store.hasSeveralNets())
        return;
    for (const char *table : {"LaneLimitVehicle", "ConnectorLimitVehicle"})
        net.empty(table);
}

/// Later kinds refer to what earlier ones entered into the current network's tables and the registries.
void loadKinds(NetLoad &net) {
    vehicletypes::loadAllVehicleTypes(net);
    vehiclecompositions::loadAllVehicleCompositions(net);
    linktypes::loadAllLinkTypes(net);
    links::loadAllLinks(net);
    guidearrows::loadAllGuideArrows(net);
    connectors::loadAllConnectors(net);
    signalgroups::loadAllSignalGroups(net);
    signallamps::loadAllSignalLamps(net);
    departurepoints::loadAllDeparturePoints(net);
    decisionpoints::loadAllDecisionPoints(net);
    vehicledetectors::loadAllVehicleDetectors(net);
    queuecounters::loadAllQueueCounters(net);
    traveldetectors::loadAllTravelDetectors(net);
    drivinfocollectors::loadAllDrivInfoCollectors(net);
    busstations::loadAllBusStations(net);
    buslines::loadAllBusLines(net);
    zones::loadAllZones(net);
    reducespeedareas::loadAllReduceSpeedAreas(net);
    drivermodels::loadAllDriverModels(net);
    simulateconfigurations::loadAllSimulateConfigurations(net);
    sceneconfigurations::loadAllSceneConfigurations(net);
}

/// Later rows refer to earlier ones.
void saveKinds(NetSave &net) {
    emptyWhatRemovalLeaves(net);
    vehiclecompositions::saveCatalogue(net);
    linktypes::saveAllLinkTypes(net);
    links::saveAllLinks(net);
    guidearrows::saveAllGuideArrows(net);
    connectors::saveAllConnectors(net);
    signalgroups::saveAllSignalGroups(net);
    signallamps::saveAllSignalLamps(net);
    departurepoints::saveAllDeparturePoints(net);
    decisionpoints::saveAllDecisionPoints(net);
    vehicledetectors::saveAllVehicleDetectors(net);
    queuecounters::saveAllQueueCounters(net);
    traveldetectors::saveAllTravelDetectors(net);
    drivinfocollectors::saveAllDrivInfoCollectors(net);
    busstations::saveAllBusStations(net);
    buslines::saveAllBusLines(net);
    zones::saveAllZones(net);
    reducespeedareas::saveAllReduceSpeedAreas(net);
    drivermodels::saveAllDriverModels(net);
    simulateconfigurations::saveAllSimulateConfigurations(net);
    sceneconfigurations::saveAllSceneConfigurations(net);
}

/// A network that is in the store already would be mixed with the new one.
bool isFree(NetSave &net) {
    const Store &store = net.store;
    const auto holdsLinks = Query(store, kAnyLink).returnsRow();
    if (!holdsLinks.value_or(true))
        return true;
    return holdsLinks &&
           net.refuse(store.netId(),
                      store.hasSeveralNets()
                          ? QStringLiteral("The store holds links of network %1 already: remove it, or "
                                           "save under another id.")
                                .arg(store.netId())
                          : QStringLiteral("The store holds one network and has one: save into a new "
                                           "store."));
}

/// What is saved beside the record of a store of one network could not be loaded.
bool hasNoOtherRecord(NetSave &net) {
    const Store &store = net.store;
    const auto isThere =
        store.hasSeveralNets() ? std::optional<bool>(false) : networks::isAnyNetworkThere(store);
    if (!isThere.value_or(true))
        return true;
    return isThere &&
           net.refuse(store.netId(),
                      QStringLiteral("The store holds one network, whose id is %1: save under that id.")
                          .arg(networks::readNetworks(store).value(0).netId));
}

/// The record under the network's id, unless there is one.
bool saveRecord(NetSave &net) {
    const Store &store = net.store;
    const auto isThere = networks::networkExists(store);
    if (isThere.value_or(true))
        return isThere.has_value();
    if (!hasNoOtherRecord(net))
        return false;
    networks::Record record = networks::recordOf(net.contents.record);
    record.id = store.netId();
    return networks::insertNetwork(store, record, false) &&
           (!store.hasSeveralNets() || networks::updateNetwork(store, record, false));
}

void saveAll(NetSave &net) {
    net.check(refersToItself(net.store, net.contents) && isFree(net) && saveRecord(net));
    saveKinds(net);
}

void forget(const Store &store, NetContents &contents) {
    contents = NetContents();
    // By itself: the record of another network empties the tables, one of the same id does not.
    store.net().releaseNet();
    store.net() = Net();
    store.vehicleTypes().clear();
    store.compositions().clear();
    store.linkTypes().clear();
}

} // namespace

bool loadWholeNet(const Store &store, NetContents &contents, const NetProgress &progress) {
    forget(store, contents);
    if (!networks::loadNetworkById(store))
        return false;
    contents.record = store.net().record();
    NetLoad net(store, contents, progress);
    loadKinds(net);
    if (!net.isGood())
        forget(store, contents);
    return net.isGood();
}

bool saveWholeNet(const Store &store, NetContents &contents, bool useTransaction,
                  const NetProgress &progress) {
    if (!wholeness::isWhole(store, contents))
        return false;
    // Without a transaction around it a save on PostgreSQL could not take back what it wrote.
    const bool ownTransaction =
        useTransaction || (store.isPostgreSql() && !Savepoint::isInsideTransaction(store.db()));
    identifiers::Reservations reserved(store);
    Transaction transaction(store, ownTransaction);
    NetSave net(store, contents, progress);
    std::optional<OperationSavepoint> savepoint;
    if (!ownTransaction)
        savepoint.emplace(store);
    saveAll(net);
    const bool isKept = savepoint ? savepoint->end(net.isGood()) : transaction.commitIfGood(net.isGood());
    if (!isKept)
        return false;
    net.keep();
    reserved.keep();
    return true;
}

} // namespace wholenet
