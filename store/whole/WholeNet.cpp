#include "store/whole/WholeNet.h"

#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/OperationSavepoint.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/core/Savepoint.h"
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
#include "store/families/Wholeness.h"
#include "store/families/Zones.h"
#include "store/ids/Identifiers.h"
#include "store/whole/NumberCheck.h"
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

/// How the objects of a kind are loaded and saved with the others.
struct Kind {
    void (*load)(NetLoad &);
    void (*save)(NetSave &);
};

/// Later kinds refer to what earlier ones entered into the current network's tables and the registries, and later rows to
/// earlier ones.
constexpr Kind kKinds[] = {
    {vehiclecompositions::loadCatalogue, vehiclecompositions::saveCatalogue},
    {linktypes::loadAllLinkTypes, linktypes::saveAllLinkTypes},
    {links::loadAllLinks, links::saveAllLinks},
    {guidearrows::loadAllGuideArrows, guidearrows::saveAllGuideArrows},
    {connectors::loadAllConnectors, connectors::saveAllConnectors},
    {signalgroups::loadAllSignalGroups, signalgroups::saveAllSignalGroups},
    {signallamps::loadAllSignalLamps, signallamps::saveAllSignalLamps},
    {departurepoints::loadAllDeparturePoints, departurepoints::saveAllDeparturePoints},
    {decisionpoints::loadAllDecisionPoints, decisionpoints::saveAllDecisionPoints},
    {vehicledetectors::loadAllVehicleDetectors, vehicledetectors::saveAllVehicleDetectors},
    {queuecounters::loadAllQueueCounters, queuecounters::saveAllQueueCounters},
    {traveldetectors::loadAllTravelDetectors, traveldetectors::saveAllTravelDetectors},
    {drivinfocollectors::loadAllDrivInfoCollectors, drivinfocollectors::saveAllDrivInfoCollectors},
    {busstations::loadAllBusStations, busstations::saveAllBusStations},
    {buslines::loadAllBusLines, buslines::saveAllBusLines},
    {zones::loadAllZones, zones::saveAllZones},
    {reducespeedareas::loadAllReduceSpeedAreas, reducespeedareas::saveAllReduceSpeedAreas},
    {drivermodels::loadAllDriverModels, drivermodels::saveAllDriverModels},
    {simulateconfigurations::loadAllSimulateConfigurations,
     simulateconfigurations::saveAllSimulateConfigurations},
    {sceneconfigurations::loadAllSceneConfigurations, sceneconfigurations::saveAllSceneConfigurations},
};

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
    emptyWhatRemovalLeaves(net);
    for (const Kind &kind : kKinds)
        kind.save(net);
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
    for (const Kind &kind : kKinds)
        kind.load(net);
    if (!net.isGood()) {
        forget(store, contents);
        return false;
    }
    contents.setStored();
    contents.stored.unmatched = unmatchedNumbers(contents);
    return true;
}

bool saveWholeNet(const Store &store, NetContents &contents, bool useTransaction,
                  const NetProgress &progress) {
    if (!wholeness::isWhole(store, contents))
        return false;
    // Without a transaction around it a save on PostgreSQL could not take back what it wrote.
    const bool ownTransaction =
        useTransaction || (store.isPostgreSql() && !Savepoint::isInsideTransaction(store.db()));
    identifiers::Reservations reserved(store);
    OperationTransaction transaction(store, ownTransaction, OperationTransaction::Lock::AtOnce);
    NetSave net(store, contents, progress);
    std::optional<OperationSavepoint> savepoint;
    if (!ownTransaction)
        savepoint.emplace(store);
    {
        const WithoutSavepoints without(store.db());
        saveAll(net);
    }
    const bool isKept = savepoint ? savepoint->end(net.isGood()) : transaction.commitIfGood(net.isGood());
    if (!isKept)
        return false;
    net.keep();
    reserved.keep();
    contents.setStored();
    return true;
}

} // namespace wholenet
