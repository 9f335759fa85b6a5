#include "store/DBTools_V6.h"

#include "store/core/Store.h"
#include "store/core/Transaction.h"
#include "store/families/BusLines.h"
#include "store/families/BusStations.h"
#include "store/families/Connectors.h"
#include "store/families/DecisionPoints.h"
#include "store/families/DeparturePoints.h"
#include "store/families/DrivInfoCollectors.h"
#include "store/families/DriverModels.h"
#include "store/families/GuideArrows.h"
#include "store/families/Identifiers.h"
#include "store/families/LinkTypes.h"
#include "store/families/Links.h"
#include "store/families/NetworkRemoval.h"
#include "store/families/Networks.h"
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
#include "store/schema/Dictionaries.h"
#include "store/whole/WholeNet.h"

#include <QSysInfo>

QString DBTools_V6::mDbDriver = QStringLiteral("QSQLITE");
QString DBTools_V6::mDbHost = QSysInfo::machineHostName();
int DBTools_V6::mDbPort = 5432;
QString DBTools_V6::mDbName;
QString DBTools_V6::mDbUser;
QString DBTools_V6::mDbPassword;
int DBTools_V6::mDbVer = 2;
bool DBTools_V6::mbInter = false;
QList<CallDbResult> DBTools_V6::mlCallDbResult;
QStringList DBTools_V6::mlTableName;
QHash<QString, QString> DBTools_V6::mhTablePK;

namespace {

Store storeOf(QSqlDatabase &db, long netId) {
    return {db, netId, Generation::SeveralNets, 6, DBTools_V6::mlCallDbResult};
}

} // namespace

bool DBTools_V6::validateDatabase(QSqlDatabase &db) {
    return checkConnection(db, mlCallDbResult);
}

bool DBTools_V6::validateQuery(QSqlQuery &query) {
    return checkStatement(query, mlCallDbResult);
}

bool DBTools_V6::initDictionary(QSqlDatabase &db, long netId, bool useTransaction) {
    return dictionaries::seed(storeOf(db, netId), useTransaction);
}

bool DBTools_V6::getIDByTableName(QSqlDatabase &db, long netId, QString table, long &id) {
    return identifiers::next(storeOf(db, netId), table, id);
}

bool DBTools_V6::insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                           QString backgroundUrl, QString otherAttrsJson, bool isDefault,
                           bool useTransaction) {
    networks::Record record;
    record.id = id;
    record.name = name;
    record.centerX = center.x();
    record.centerY = center.y();
    record.sourceType = sourceType;
    record.backgroundUrl = backgroundUrl;
    record.otherAttrsJson = otherAttrsJson;
    record.isDefault = isDefault;
    return networks::insert(storeOf(db, id), record, useTransaction);
}

bool DBTools_V6::updateNet(QSqlDatabase &db, long id, QString name, QString sourceUrl, QString sourceType,
                           QString backgroundUrl, double centerX, double centerY, QString caption,
                           QString otherAttrsJson, bool isDefault, bool useTransaction) {
    const networks::Record record{id,      name,    sourceUrl, sourceType,     backgroundUrl,
                                  centerX, centerY, caption,   otherAttrsJson, isDefault,
                                  {}};
    return networks::update(storeOf(db, id), record, useTransaction);
}

bool DBTools_V6::removeNetData(QSqlDatabase &db, long netId, bool useTransaction) {
    return networkremoval::removeData(storeOf(db, netId), useTransaction);
}

bool DBTools_V6::insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction) {
    return links::insert(storeOf(db, netId), link, inTransaction);
}

Link *DBTools_V6::selectLinkByID(QSqlDatabase &db, long netId, long linkId) {
    return links::read(storeOf(db, netId), linkId);
}

bool DBTools_V6::selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return links::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertConnector(QSqlDatabase &db, long netId, Connector *connector, bool inTransaction) {
    return connectors::insert(storeOf(db, netId), connector, inTransaction);
}

bool DBTools_V6::insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                                  bool inTransaction) {
    const Store frame = storeOf(db, netId);
    Transaction transaction(frame, inTransaction);
    bool written = frame.isUsable();
    if (written && !connectors.isEmpty()) {
        Store store = storeOf(db, netId);
        store.setOwnTransaction(frame.hasOwnTransaction());
        written = connectors::insertAll(store, connectors);
    }
    return transaction.commit(written);
}

Connector *DBTools_V6::selectConnectorByID(QSqlDatabase &db, long netId, long connectorId) {
    return connectors::read(storeOf(db, netId), connectorId);
}

bool DBTools_V6::selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return connectors::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types) {
    return linktypes::readAll(storeOf(db, netId), types);
}

bool DBTools_V6::insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow, bool inTransaction) {
    return guidearrows::insert(storeOf(db, netId), arrow, inTransaction);
}

GuideArrow *DBTools_V6::selectGuideArrowByID(QSqlDatabase &db, long netId, long id) {
    return guidearrows::read(storeOf(db, netId), id);
}

bool DBTools_V6::selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return guidearrows::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertSignalGroup(QSqlDatabase &db, long netId, SignalGroup *group, bool inTransaction) {
    return signalgroups::insert(storeOf(db, netId), group, inTransaction);
}

SignalGroup *DBTools_V6::selectSignalGroupByID(QSqlDatabase &db, long netId, long id) {
    return signalgroups::read(storeOf(db, netId), id);
}

bool DBTools_V6::selectSignalGroupIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return signalgroups::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertSignalLamp(QSqlDatabase &db, long netId, SignalLamp *lamp, bool inTransaction) {
    return signallamps::insert(storeOf(db, netId), lamp, inTransaction);
}

SignalLamp *DBTools_V6::selectSignalLampByID(QSqlDatabase &db, long netId, long id) {
    return signallamps::read(storeOf(db, netId), id);
}

bool DBTools_V6::selectSignalLampIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return signallamps::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertDecisionPoint(QSqlDatabase &db, long netId, DecisionPoint *point,
                                     bool useTransaction) {
    return decisionpoints::insert(storeOf(db, netId), point, useTransaction);
}

DecisionPoint *DBTools_V6::selectDecisionPointByID(QSqlDatabase &db, long netId, long id) {
    return decisionpoints::read(storeOf(db, netId), id);
}

bool DBTools_V6::selectDecisionPointIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return decisionpoints::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertRouting(QSqlDatabase &db, long netId, Routing *route, bool useTransaction) {
    return routings::insert(storeOf(db, netId), route, useTransaction);
}

Routing *DBTools_V6::selectRoutingByID(QSqlDatabase &db, long netId, long routingId) {
    return routings::read(storeOf(db, netId), routingId);
}

bool DBTools_V6::selectRoutingIDs(QSqlDatabase &db, long netId, long deciPointId, QList<long> &ids) {
    return routings::listIds(storeOf(db, netId), deciPointId, ids);
}

bool DBTools_V6::insertRoutingFlowRatio(QSqlDatabase &db, long netId, long start,
                                        RoutingFlowByInterval *interval, bool useTransaction) {
    return routings::insertFlowRatios(storeOf(db, netId), start, interval, useTransaction);
}

bool DBTools_V6::selectRoutingPartitionByID(QSqlDatabase &db, long netId, QList<RoutingFLowRatio *> &ratios,
                                            long routingId) {
    return routings::readFlowRatios(storeOf(db, netId), ratios, routingId);
}

bool DBTools_V6::insertRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId, long connId,
                                            long laneId1, long laneId2, bool useTransaction) {
    return routings::insertLanePair(storeOf(db, netId), routingId, connId, {laneId1, laneId2},
                                    useTransaction);
}

QList<LCStruct *> DBTools_V6::selectRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId,
                                                         long connId) {
    return routings::readLanePairs(storeOf(db, netId), routingId, connId);
}

bool DBTools_V6::insertVehicleDetector(QSqlDatabase &db, long netId, VehicleDetector *detector,
                                       bool inTransaction) {
    return vehicledetectors::insert(storeOf(db, netId), detector, inTransaction);
}

VehicleDetector *DBTools_V6::selectVehicleDetector(QSqlDatabase &db, long netId, long detectorId) {
    return vehicledetectors::read(storeOf(db, netId), detectorId);
}

bool DBTools_V6::selectVehicleDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return vehicledetectors::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertVehicleQueueCounter(QSqlDatabase &db, long netId, VehicleQueueCounter *counter,
                                           bool inTransaction) {
    return queuecounters::insert(storeOf(db, netId), counter, inTransaction);
}

VehicleQueueCounter *DBTools_V6::selectVehicleQueueCounter(QSqlDatabase &db, long netId, long counterId) {
    return queuecounters::read(storeOf(db, netId), counterId);
}

bool DBTools_V6::selectVehicleQueueCounterIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return queuecounters::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertVehicleTravelDetector(QSqlDatabase &db, long netId, VehicleTravelDetector *detector,
                                             bool inTransaction) {
    return traveldetectors::insert(storeOf(db, netId), detector, inTransaction);
}

VehicleTravelDetector *DBTools_V6::selectVehicleTravelDetector(QSqlDatabase &db, long netId,
                                                               long detectorId) {
    return traveldetectors::read(storeOf(db, netId), detectorId);
}

bool DBTools_V6::selectVehicleTravelDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return traveldetectors::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertDrivInfoCollector(QSqlDatabase &db, long netId, VehicleDrivInfoCollector collector,
                                         bool inTransaction) {
    return drivinfocollectors::insert(storeOf(db, netId), collector, inTransaction);
}

VehicleDrivInfoCollector DBTools_V6::selectVehicleDrivInfoCollector(QSqlDatabase &db, long netId,
                                                                    long collectorId) {
    return drivinfocollectors::read(storeOf(db, netId), collectorId);
}

bool DBTools_V6::selectVehicleDrivInfoCollectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return drivinfocollectors::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertBusLine(QSqlDatabase &db, long netId, BusLine *line, bool inTransaction) {
    return buslines::insert(storeOf(db, netId), line, inTransaction);
}

BusLine *DBTools_V6::selectBusLine(QSqlDatabase &db, long netId, long lineId) {
    return buslines::read(storeOf(db, netId), lineId);
}

bool DBTools_V6::selectBusLineIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return buslines::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertBusStation(QSqlDatabase &db, long netId, BusStation *station, bool inTransaction) {
    return busstations::insert(storeOf(db, netId), station, inTransaction);
}

BusStation *DBTools_V6::selectBusStation(QSqlDatabase &db, long netId, long stationId) {
    return busstations::read(storeOf(db, netId), stationId);
}

bool DBTools_V6::selectBusStationIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return busstations::listIds(storeOf(db, netId), ids);
}

AccidentZone *DBTools_V6::selectAccidentZone(QSqlDatabase &db, long netId, long zoneId) {
    return zones::readAccident(storeOf(db, netId), zoneId);
}

bool DBTools_V6::selectAccidentZoneIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return zones::listAccidentIds(storeOf(db, netId), ids);
}

RoadWorkZone *DBTools_V6::selectRoadWorkZone(QSqlDatabase &db, long netId, long zoneId) {
    return zones::readRoadWork(storeOf(db, netId), zoneId);
}

bool DBTools_V6::selectRoadWorkZoneIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return zones::listRoadWorkIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertReduceSpeedArea(QSqlDatabase &db, long netId, ReduceSpeedArea *area,
                                       bool inTransaction) {
    return reducespeedareas::insert(storeOf(db, netId), area, inTransaction);
}

ReduceSpeedArea *DBTools_V6::selectReduceSpeedArea(QSqlDatabase &db, long netId, long areaId) {
    return reducespeedareas::read(storeOf(db, netId), areaId);
}

bool DBTools_V6::selectReduceSpeedAreaIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return reducespeedareas::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertVehicleType(QSqlDatabase &db, long netId, VehicleType type, bool useTransaction) {
    return vehicletypes::insert(storeOf(db, netId), type, useTransaction);
}

bool DBTools_V6::selectVehicleType(QSqlDatabase &db, long netId, QHash<long, VehicleType> &types) {
    return vehicletypes::readAll(storeOf(db, netId), types);
}

bool DBTools_V6::insertVehicleConstitutent(QSqlDatabase &db, long netId, VehicleComposition composition,
                                           bool useTransaction) {
    return vehiclecompositions::insert(storeOf(db, netId), composition, useTransaction);
}

bool DBTools_V6::selectVehicleConstitutent(QSqlDatabase &db, long netId,
                                           QHash<long, VehicleComposition> &compositions) {
    return vehiclecompositions::readAll(storeOf(db, netId), compositions);
}

VehicleComposition DBTools_V6::selectVehicleComposition(QSqlDatabase &db, long netId, long consCode) {
    return vehiclecompositions::read(storeOf(db, netId), consCode);
}

bool DBTools_V6::insertVehicleConsDetail(QSqlDatabase &db, long netId, VehicleConsDetail detail,
                                         bool useTransaction) {
    return vehiclecompositions::insertDetail(storeOf(db, netId), detail, useTransaction);
}

QList<VehicleConsDetail> DBTools_V6::selectVehicleConsDetail(QSqlDatabase &db, long netId, long consCode) {
    return vehiclecompositions::readDetails(storeOf(db, netId), consCode);
}

bool DBTools_V6::insertDeparturePoint(QSqlDatabase &db, long netId, DeparturePoint point,
                                      bool useTransaction) {
    return departurepoints::insert(storeOf(db, netId), point, useTransaction);
}

DeparturePoint *DBTools_V6::selectDeparturePoint(QSqlDatabase &db, long netId,
                                                 QHash<long, VehicleComposition> &compositions,
                                                 long departurePointId) {
    return departurepoints::read(storeOf(db, netId), compositions, departurePointId);
}

bool DBTools_V6::selectDeparturePointIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return departurepoints::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::saveSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration,
                                       bool useTransaction) {
    return simulateconfigurations::save(storeOf(db, netId), configuration, useTransaction);
}

bool DBTools_V6::selectSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration) {
    return simulateconfigurations::read(storeOf(db, netId), configuration);
}

bool DBTools_V6::saveConfiguration(QSqlDatabase &db, long netId, bool useTransaction) {
    return sceneconfigurations::save(storeOf(db, netId), gNet.config(), useTransaction);
}

bool DBTools_V6::selectConfiguration(QSqlDatabase &db, long netId, Configuration &configuration) {
    return sceneconfigurations::read(storeOf(db, netId), configuration);
}

bool DBTools_V6::updateConfigIfShowGrid(QSqlDatabase &db, bool useTransaction) {
    return sceneconfigurations::updateShowGrid(storeOf(db, gNet.netId), gNet.config().showGrid,
                                               useTransaction);
}

bool DBTools_V6::updateConfigIfShowBackgroundMap(QSqlDatabase &db, bool useTransaction) {
    return sceneconfigurations::updateShowBackgroundMap(storeOf(db, gNet.netId),
                                                        gNet.config().showBackgroundMap, useTransaction);
}

bool DBTools_V6::saveDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &param,
                                             bool useTransaction) {
    return drivermodels::save(storeOf(db, netId), param, useTransaction);
}

bool DBTools_V6::selectDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &first,
                                               DriveFollowedModelParam &second) {
    return drivermodels::read(storeOf(db, netId), first, second);
}

bool DBTools_V6::saveChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params,
                                     bool useTransaction) {
    return drivermodels::saveAll(storeOf(db, netId), params, useTransaction);
}

bool DBTools_V6::selectChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params) {
    return drivermodels::readAll(storeOf(db, netId), params);
}

bool DBTools_V6::logInfo(QSqlDatabase &db, long netId, Logger event) {
    return usagelog::append(storeOf(db, netId), event);
}

bool DBTools_V6::logInfoWithPlugin(QSqlDatabase &db, long netId, Logger event, QString pluginName,
                                   QString pluginVersion, QString pluginOperation) {
    event.pluginName = pluginName;
    event.pluginVersion = pluginVersion;
    event.pluginOperation = pluginOperation;
    return logInfo(db, netId, event);
}

bool DBTools_V6::selectLogger(QSqlDatabase &db, long netId, QList<Logger> &events, int limit) {
    return usagelog::read(storeOf(db, netId), events, limit);
}

bool DBTools_V6::loadNet(QSqlDatabase &db, long netId, NetContents &contents, const NetProgress &progress) {
    return wholenet::load(storeOf(db, netId), contents, progress);
}

bool DBTools_V6::saveNet(QSqlDatabase &db, long netId, NetContents &contents, bool useTransaction,
                         const NetProgress &progress) {
    return wholenet::save(storeOf(db, netId), contents, useTransaction, progress);
}
