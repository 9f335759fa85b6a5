#include "store/StoreOperations.h"

#include "store/DBTools_V6.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Store.h"
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
#include "store/families/QueueCounters.h"
#include "store/families/ReduceSpeedAreas.h"
#include "store/families/Routings.h"
#include "store/families/SceneConfigurations.h"
#include "store/families/SignalGroups.h"
#include "store/families/SignalLamps.h"
#include "store/families/SimulateConfigurations.h"
#include "store/families/TravelDetectors.h"
#include "store/families/UsageLog.h"
#include "store/families/VehicleCompositions.h"
#include "store/families/VehicleDetectors.h"
#include "store/families/VehicleTypes.h"
#include "store/families/Zones.h"
#include "store/opening/ProcessStore.h"
#include "store/schema/Dictionaries.h"
#include "store/whole/NetworkRemoval.h"
#include "store/whole/WholeNet.h"

#include <type_traits>

namespace {

/// What a class has for itself of the process's store.
template <class Facade>
StoreFacts &facts() {
    if constexpr (std::is_same_v<Facade, DBTools>)
        return processStore().state;
    else
        return processStore().severalNets;
}

} // namespace

template <class Facade>
QString &StoreOperations<Facade>::mDbDriver = facts<Facade>().settings.driver;
template <class Facade>
QString &StoreOperations<Facade>::mDbHost = facts<Facade>().settings.host;
template <class Facade>
int &StoreOperations<Facade>::mDbPort = facts<Facade>().settings.port;
template <class Facade>
QString &StoreOperations<Facade>::mDbName = facts<Facade>().settings.name;
template <class Facade>
QString &StoreOperations<Facade>::mDbUser = facts<Facade>().settings.user;
template <class Facade>
QString &StoreOperations<Facade>::mDbPassword = facts<Facade>().settings.password;
template <class Facade>
int &StoreOperations<Facade>::mDbVer = facts<Facade>().version;
template <class Facade>
bool &StoreOperations<Facade>::mbInter = facts<Facade>().isInternational;
template <class Facade>
QList<CallDbResult> &StoreOperations<Facade>::mlCallDbResult = facts<Facade>().failures;
template <class Facade>
QStringList &StoreOperations<Facade>::mlTableName = facts<Facade>().tableNames;
template <class Facade>
QHash<QString, QString> &StoreOperations<Facade>::mhTablePK = facts<Facade>().keyColumns;

template <class Facade>
bool StoreOperations<Facade>::validateDatabase(QSqlDatabase &db) {
    const OperationName operation(__func__);
    return checkConnection(db, Facade::failuresOf(db.driver()));
}

template <class Facade>
bool StoreOperations<Facade>::validateQuery(QSqlQuery &query) {
    const OperationName operation(__func__);
    return checkStatement(query, Facade::failuresOf(query.driver()));
}

template <class Facade>
bool StoreOperations<Facade>::initDictionary(QSqlDatabase &db, long netId, bool useTransaction) {
    Store store = Facade::storeOf(db, netId);
    // Each preparation is a message to the server, and so is its end.
    if (store.isPostgreSql())
        store.keepStatements();
    return dictionaries::seedDictionaries(store, useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::removeNetData(QSqlDatabase &db, long netId, bool useTransaction) {
    return networkremoval::removeNetworkData(Facade::storeOf(db, netId), useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction) {
    return links::insertLink(Facade::storeOf(db, netId), link, inTransaction);
}

template <class Facade>
Link *StoreOperations<Facade>::selectLinkByID(QSqlDatabase &db, long netId, long linkId) {
    return links::readLink(Facade::storeOf(db, netId), linkId);
}

template <class Facade>
bool StoreOperations<Facade>::selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return links::listLinkIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertConnector(QSqlDatabase &db, long netId, Connector *connector,
                                              bool inTransaction) {
    return connectors::insertConnector(Facade::storeOf(db, netId), connector, inTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                                               bool inTransaction) {
    const Store frame = Facade::storeOf(db, netId);
    OperationTransaction transaction(frame, inTransaction);
    bool written = frame.isUsable();
    if (written && !connectors.isEmpty()) {
        // In a store of one network the inserts ask for the version, not their frame alone.
        Store store = frame.hasSeveralNets() ? Store(db, frame.state(), netId, Generation::SeveralNets,
                                                     frame.schemaVersion(), frame.failures())
                                             : Facade::storeOf(db, netId);
        store.setOwnTransaction(frame.hasOwnTransaction());
        written = connectors::insertConnectors(store, connectors);
    }
    return transaction.commit(written);
}

template <class Facade>
Connector *StoreOperations<Facade>::selectConnectorByID(QSqlDatabase &db, long netId, long connectorId) {
    return connectors::readConnector(Facade::storeOf(db, netId), connectorId);
}

template <class Facade>
bool StoreOperations<Facade>::selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return connectors::listConnectorIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types) {
    return linktypes::readLinkTypes(Facade::storeOf(db, netId), types);
}

template <class Facade>
bool StoreOperations<Facade>::insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow,
                                               bool inTransaction) {
    return guidearrows::insertGuideArrow(Facade::storeOf(db, netId), arrow, inTransaction);
}

template <class Facade>
GuideArrow *StoreOperations<Facade>::selectGuideArrowByID(QSqlDatabase &db, long netId, long id) {
    return guidearrows::readGuideArrow(Facade::storeOf(db, netId), id);
}

template <class Facade>
bool StoreOperations<Facade>::selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return guidearrows::listGuideArrowIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertSignalGroup(QSqlDatabase &db, long netId, SignalGroup *group,
                                                bool inTransaction) {
    return signalgroups::insertSignalGroup(Facade::storeOf(db, netId), group, inTransaction);
}

template <class Facade>
SignalGroup *StoreOperations<Facade>::selectSignalGroupByID(QSqlDatabase &db, long netId, long id) {
    return signalgroups::readSignalGroup(Facade::storeOf(db, netId), id);
}

template <class Facade>
bool StoreOperations<Facade>::selectSignalGroupIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return signalgroups::listSignalGroupIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertSignalLamp(QSqlDatabase &db, long netId, SignalLamp *lamp,
                                               bool inTransaction) {
    return signallamps::insertSignalLamp(Facade::storeOf(db, netId), lamp, inTransaction);
}

template <class Facade>
SignalLamp *StoreOperations<Facade>::selectSignalLampByID(QSqlDatabase &db, long netId, long id) {
    return signallamps::readSignalLamp(Facade::storeOf(db, netId), id);
}

template <class Facade>
bool StoreOperations<Facade>::selectSignalLampIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return signallamps::listSignalLampIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertDecisionPoint(QSqlDatabase &db, long netId, DecisionPoint *point,
                                                  bool useTransaction) {
    return decisionpoints::insertDecisionPoint(Facade::storeOf(db, netId), point, useTransaction);
}

template <class Facade>
DecisionPoint *StoreOperations<Facade>::selectDecisionPointByID(QSqlDatabase &db, long netId, long id) {
    return decisionpoints::readDecisionPoint(Facade::storeOf(db, netId), id);
}

template <class Facade>
bool StoreOperations<Facade>::selectDecisionPointIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return decisionpoints::listDecisionPointIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertRouting(QSqlDatabase &db, long netId, Routing *route,
                                            bool useTransaction) {
    return routings::insertRouting(Facade::storeOf(db, netId), route, useTransaction);
}

template <class Facade>
Routing *StoreOperations<Facade>::selectRoutingByID(QSqlDatabase &db, long netId, long routingId) {
    return routings::readRouting(Facade::storeOf(db, netId), routingId);
}

template <class Facade>
bool StoreOperations<Facade>::selectRoutingIDs(QSqlDatabase &db, long netId, long deciPointId,
                                               QList<long> &ids) {
    return routings::listRoutingIds(Facade::storeOf(db, netId), deciPointId, ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertRoutingFlowRatio(QSqlDatabase &db, long netId, long start,
                                                     RoutingFlowByInterval *interval, bool useTransaction) {
    return routings::insertFlowRatios(Facade::storeOf(db, netId), start, interval, useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectRoutingPartitionByID(QSqlDatabase &db, long netId,
                                                         QList<RoutingFLowRatio *> &ratios, long routingId) {
    return routings::readFlowRatios(Facade::storeOf(db, netId), ratios, routingId);
}

template <class Facade>
bool StoreOperations<Facade>::insertRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId,
                                                         long connId, long laneId1, long laneId2,
                                                         bool useTransaction) {
    return routings::insertLanePair(Facade::storeOf(db, netId), routingId, connId, {laneId1, laneId2},
                                    useTransaction);
}

template <class Facade>
QList<LCStruct *> StoreOperations<Facade>::selectRoutingLaneConnector(QSqlDatabase &db, long netId,
                                                                      long routingId, long connId) {
    return routings::readLanePairs(Facade::storeOf(db, netId), routingId, connId);
}

template <class Facade>
bool StoreOperations<Facade>::insertVehicleDetector(QSqlDatabase &db, long netId, VehicleDetector *detector,
                                                    bool inTransaction) {
    return vehicledetectors::insertVehicleDetector(Facade::storeOf(db, netId), detector, inTransaction);
}

template <class Facade>
VehicleDetector *StoreOperations<Facade>::selectVehicleDetector(QSqlDatabase &db, long netId,
                                                                long detectorId) {
    return vehicledetectors::readVehicleDetector(Facade::storeOf(db, netId), detectorId);
}

template <class Facade>
bool StoreOperations<Facade>::selectVehicleDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return vehicledetectors::listVehicleDetectorIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertVehicleQueueCounter(QSqlDatabase &db, long netId,
                                                        VehicleQueueCounter *counter, bool inTransaction) {
    return queuecounters::insertQueueCounter(Facade::storeOf(db, netId), counter, inTransaction);
}

template <class Facade>
VehicleQueueCounter *StoreOperations<Facade>::selectVehicleQueueCounter(QSqlDatabase &db, long netId,
                                                                        long counterId) {
    return queuecounters::readQueueCounter(Facade::storeOf(db, netId), counterId);
}

template <class Facade>
bool StoreOperations<Facade>::selectVehicleQueueCounterIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return queuecounters::listQueueCounterIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertVehicleTravelDetector(QSqlDatabase &db, long netId,
                                                          VehicleTravelDetector *detector,
                                                          bool inTransaction) {
    return traveldetectors::insertTravelDetector(Facade::storeOf(db, netId), detector, inTransaction);
}

template <class Facade>
VehicleTravelDetector *StoreOperations<Facade>::selectVehicleTravelDetector(QSqlDatabase &db, long netId,
                                                                            long detectorId) {
    return traveldetectors::readTravelDetector(Facade::storeOf(db, netId), detectorId);
}

template <class Facade>
bool StoreOperations<Facade>::selectVehicleTravelDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return traveldetectors::listTravelDetectorIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertDrivInfoCollector(QSqlDatabase &db, long netId,
                                                      VehicleDrivInfoCollector collector,
                                                      bool inTransaction) {
    return drivinfocollectors::insertDrivInfoCollector(Facade::storeOf(db, netId), collector, inTransaction);
}

template <class Facade>
VehicleDrivInfoCollector StoreOperations<Facade>::selectVehicleDrivInfoCollector(QSqlDatabase &db, long netId,
                                                                                 long collectorId) {
    return drivinfocollectors::readDrivInfoCollector(Facade::storeOf(db, netId), collectorId);
}

template <class Facade>
bool StoreOperations<Facade>::selectVehicleDrivInfoCollectorIds(QSqlDatabase &db, long netId,
                                                                QList<long> &ids) {
    return drivinfocollectors::listDrivInfoCollectorIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertBusLine(QSqlDatabase &db, long netId, BusLine *line, bool inTransaction) {
    return buslines::insertBusLine(Facade::storeOf(db, netId), line, inTransaction);
}

template <class Facade>
BusLine *StoreOperations<Facade>::selectBusLine(QSqlDatabase &db, long netId, long lineId) {
    return buslines::readBusLine(Facade::storeOf(db, netId), lineId);
}

template <class Facade>
bool StoreOperations<Facade>::selectBusLineIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return buslines::listBusLineIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertBusStation(QSqlDatabase &db, long netId, BusStation *station,
                                               bool inTransaction) {
    return busstations::insertBusStation(Facade::storeOf(db, netId), station, inTransaction);
}

template <class Facade>
BusStation *StoreOperations<Facade>::selectBusStation(QSqlDatabase &db, long netId, long stationId) {
    return busstations::readBusStation(Facade::storeOf(db, netId), stationId);
}

template <class Facade>
bool StoreOperations<Facade>::selectBusStationIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return busstations::listBusStationIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
AccidentZone *StoreOperations<Facade>::selectAccidentZone(QSqlDatabase &db, long netId, long zoneId) {
    // Never forwarded: on a generation-6 store it finds the zone of that id in whichever network.
    return zones::readAccidentZone(Facade::ownStore(db, netId), zoneId);
}

template <class Facade>
bool StoreOperations<Facade>::selectAccidentZoneIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return zones::listAccidentZoneIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
RoadWorkZone *StoreOperations<Facade>::selectRoadWorkZone(QSqlDatabase &db, long netId, long zoneId) {
    return zones::readRoadWorkZone(Facade::storeOf(db, netId), zoneId);
}

template <class Facade>
bool StoreOperations<Facade>::selectRoadWorkZoneIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return zones::listRoadWorkZoneIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertReduceSpeedArea(QSqlDatabase &db, long netId, ReduceSpeedArea *area,
                                                    bool inTransaction) {
    return reducespeedareas::insertReduceSpeedArea(Facade::storeOf(db, netId), area, inTransaction);
}

template <class Facade>
ReduceSpeedArea *StoreOperations<Facade>::selectReduceSpeedArea(QSqlDatabase &db, long netId, long areaId) {
    return reducespeedareas::readReduceSpeedArea(Facade::storeOf(db, netId), areaId);
}

template <class Facade>
bool StoreOperations<Facade>::selectReduceSpeedAreaIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return reducespeedareas::listReduceSpeedAreaIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::insertVehicleType(QSqlDatabase &db, long netId, VehicleType type,
                                                bool useTransaction) {
    return vehicletypes::insertVehicleType(Facade::storeOf(db, netId), type, useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectVehicleType(QSqlDatabase &db, long netId,
                                                QHash<long, VehicleType> &types) {
    return vehicletypes::readVehicleTypes(Facade::storeOf(db, netId), types);
}

template <class Facade>
bool StoreOperations<Facade>::insertVehicleConstitutent(QSqlDatabase &db, long netId,
                                                        VehicleComposition composition, bool useTransaction) {
    return vehiclecompositions::insertVehicleComposition(Facade::storeOf(db, netId), composition,
                                                         useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectVehicleConstitutent(QSqlDatabase &db, long netId,
                                                        QHash<long, VehicleComposition> &compositions) {
    return vehiclecompositions::readVehicleCompositions(Facade::storeOf(db, netId), compositions);
}

template <class Facade>
VehicleComposition StoreOperations<Facade>::selectVehicleComposition(QSqlDatabase &db, long netId,
                                                                     long consCode) {
    return vehiclecompositions::readVehicleComposition(Facade::storeOf(db, netId), consCode);
}

template <class Facade>
bool StoreOperations<Facade>::insertVehicleConsDetail(QSqlDatabase &db, long netId, VehicleConsDetail detail,
                                                      bool useTransaction) {
    return vehiclecompositions::insertCompositionDetail(Facade::storeOf(db, netId), detail, useTransaction);
}

template <class Facade>
QList<VehicleConsDetail> StoreOperations<Facade>::selectVehicleConsDetail(QSqlDatabase &db, long netId,
                                                                          long consCode) {
    return vehiclecompositions::readCompositionDetails(Facade::storeOf(db, netId), consCode);
}

template <class Facade>
bool StoreOperations<Facade>::insertDeparturePoint(QSqlDatabase &db, long netId, DeparturePoint point,
                                                   bool useTransaction) {
    return departurepoints::insertDeparturePoint(Facade::storeOf(db, netId), point, useTransaction);
}

template <class Facade>
DeparturePoint *StoreOperations<Facade>::selectDeparturePoint(QSqlDatabase &db, long netId,
                                                              QHash<long, VehicleComposition> &compositions,
                                                              long departurePointId) {
    return departurepoints::readDeparturePoint(Facade::storeOf(db, netId), compositions, departurePointId);
}

template <class Facade>
bool StoreOperations<Facade>::selectDeparturePointIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return departurepoints::listDeparturePointIds(Facade::storeOf(db, netId), ids);
}

template <class Facade>
bool StoreOperations<Facade>::saveSimuConfiguration(QSqlDatabase &db, long netId,
                                                    SimulateConfiguration &configuration,
                                                    bool useTransaction) {
    return simulateconfigurations::saveSimulateConfiguration(Facade::storeOf(db, netId), configuration,
                                                             useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectSimuConfiguration(QSqlDatabase &db, long netId,
                                                      SimulateConfiguration &configuration) {
    return simulateconfigurations::readSimulateConfiguration(Facade::storeOf(db, netId), configuration);
}

template <class Facade>
bool StoreOperations<Facade>::saveConfiguration(QSqlDatabase &db, long netId, bool useTransaction) {
    const Store store = Facade::storeOf(db, netId);
    return sceneconfigurations::saveSceneConfiguration(store, store.net().config(), useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectConfiguration(QSqlDatabase &db, long netId,
                                                  Configuration &configuration) {
    return sceneconfigurations::readSceneConfiguration(Facade::storeOf(db, netId), configuration);
}

template <class Facade>
bool StoreOperations<Facade>::updateConfigIfShowGrid(QSqlDatabase &db, bool useTransaction) {
    const Store store = Facade::currentStoreOf(db);
    return sceneconfigurations::updateShowGrid(store, store.net().config().showGrid, useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::updateConfigIfShowBackgroundMap(QSqlDatabase &db, bool useTransaction) {
    const Store store = Facade::currentStoreOf(db);
    return sceneconfigurations::updateShowBackgroundMap(store, store.net().config().showBackgroundMap,
                                                        useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::saveDriveFollowedModelParam(QSqlDatabase &db, long netId,
                                                          DriveFollowedModelParam &param,
                                                          bool useTransaction) {
    return drivermodels::saveFollowedModelParam(Facade::storeOf(db, netId), param, useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectDriveFollowedModelParam(QSqlDatabase &db, long netId,
                                                            DriveFollowedModelParam &first,
                                                            DriveFollowedModelParam &second) {
    return drivermodels::readFollowedModelParams(Facade::storeOf(db, netId), first, second);
}

template <class Facade>
bool StoreOperations<Facade>::saveChangeLaneParam(QSqlDatabase &db, long netId,
                                                  QList<ChangeLaneModelParam> &params, bool useTransaction) {
    return drivermodels::saveChangeLaneParams(Facade::storeOf(db, netId), params, useTransaction);
}

template <class Facade>
bool StoreOperations<Facade>::selectChangeLaneParam(QSqlDatabase &db, long netId,
                                                    QList<ChangeLaneModelParam> &params) {
    return drivermodels::readChangeLaneParams(Facade::storeOf(db, netId), params);
}

template <class Facade>
bool StoreOperations<Facade>::loadNet(QSqlDatabase &db, long netId, NetContents &contents,
                                      const NetProgress &progress) {
    return wholenet::loadWholeNet(Facade::storeOf(db, netId), contents, progress);
}

template <class Facade>
bool StoreOperations<Facade>::saveNet(QSqlDatabase &db, long netId, NetContents &contents,
                                      bool useTransaction, const NetProgress &progress) {
    return wholenet::saveWholeNet(Facade::storeOf(db, netId), contents, useTransaction, progress);
}

template <class Facade>
bool StoreOperations<Facade>::logInfo(QSqlDatabase &db, long netId, Logger event) {
    return usagelog::appendEvent(Facade::storeOf(db, netId), event);
}

template <class Facade>
bool StoreOperations<Facade>::logInfoWithPlugin(QSqlDatabase &db, long netId, Logger event,
                                                QString pluginName, QString pluginVersion,
                                                QString pluginOperation) {
    event.pluginName = pluginName;
    event.pluginVersion = pluginVersion;
    event.pluginOperation = pluginOperation;
    return logInfo(db, netId, event);
}

template <class Facade>
bool StoreOperations<Facade>::selectLogger(QSqlDatabase &db, long netId, QList<Logger> &events, int limit) {
    return usagelog::readEvents(Facade::storeOf(db, netId), events, limit);
}

template class StoreOperations<DBTools>;
template class StoreOperations<DBTools_V6>;
