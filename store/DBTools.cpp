#include "store/DBTools.h"

#include "store/DBTools_V6.h"
#include "store/core/FailureLog.h"
#include "store/core/Probes.h"
#include "store/core/StorableValue.h"
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
#include "store/families/Sequences.h"
#include "store/families/SignalGroups.h"
#include "store/families/SignalLamps.h"
#include "store/families/SimulateConfigurations.h"
#include "store/families/TravelDetectors.h"
#include "store/families/UsageLog.h"
#include "store/families/VehicleCompositions.h"
#include "store/families/VehicleDetectors.h"
#include "store/families/VehicleTypes.h"
#include "store/families/Zones.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/SchemaGuard.h"
#include "store/protection/FileProtection.h"
#include "store/schema/Dictionaries.h"
#include "store/schema/Upgrade.h"
#include "store/whole/WholeNet.h"

#include <QDir>
#include <QSysInfo>

#include <algorithm>
#include <optional>

QSqlDatabase gDB;
QSqlDatabase gDBForBackup;
QString gsDbPath;

QString DBTools::mDbDriver = QStringLiteral("QSQLITE");
QString DBTools::mDbHost = QSysInfo::machineHostName();
int DBTools::mDbPort = 5432;
QString DBTools::mDbName;
QString DBTools::mDbUser;
QString DBTools::mDbPassword;
int DBTools::mDbVer = 2;
bool DBTools::mbLinkHasRouadId = true;
bool DBTools::mbInter = false;
QList<CallDbResult> DBTools::mlCallDbResult;
QStringList DBTools::mlTableName;
QHash<QString, QString> DBTools::mhTablePK;
QHash<long, QHash<QString, QList<long>>> DBTools::mhId;
QHash<long, QHash<QString, long>> DBTools::mhNetMaxId;

namespace {

/// A store of one network, whatever its version says: for the operations that never forward.
Store oneNetStore(QSqlDatabase &db, long netId = 0) {
    return {db, netId, Generation::OneNet, DBTools::dbVer(), DBTools::mlCallDbResult};
}

/// The choice between the generations: from version 6 on the operation runs as that of DBTools_V6. Where the
/// version cannot be read nothing of the operation runs.
Store storeOf(QSqlDatabase &db, long netId) {
    const std::optional<long> version = probes::dbVersion(db, DBTools::mlCallDbResult);
    if (version.value_or(0) >= 6)
        return {db, netId, Generation::SeveralNets, static_cast<int>(*version), DBTools_V6::mlCallDbResult};
    Store store = oneNetStore(db, netId);
    // Statements for one network would reach the rows of all networks.
    if (!version)
        store.giveUp();
    return store;
}

/// Databases of a server are never upgraded.
bool isPostgreSql(const QSqlDatabase &db) {
    return db.driverName() == QLatin1String("QPSQL");
}

networks::Record networkRecord(long id, const QString &name, const QPointF &center, const QString &sourceType,
                               const QString &backgroundUrl) {
    networks::Record record;
    record.id = id;
    record.name = name;
    record.centerX = center.x();
    record.centerY = center.y();
    record.sourceType = sourceType;
    record.backgroundUrl = backgroundUrl;
    return record;
}

} // namespace

int DBTools::dbVer() {
    return mDbVer;
}

void DBTools::setDbVersion(int version) {
    mDbVer = version;
}

bool DBTools::isInternational() {
    return mbInter;
}

bool DBTools::validateDatabase(QSqlDatabase &db) {
    return checkConnection(db, mlCallDbResult);
}

bool DBTools::validateQuery(QSqlQuery &query) {
    return checkStatement(query, mlCallDbResult);
}

void DBTools::logError(QSqlDatabase &db) {
    if (db.isOpen())
        writeFailureLog(db.databaseName(), mlCallDbResult + DBTools_V6::mlCallDbResult);
}

long DBTools::selectDbVersion(QSqlDatabase &db) {
    return probes::dbVersion(db, mlCallDbResult).value_or(0);
}

bool DBTools::hasTable(QSqlDatabase &db, QString table) {
    return probes::hasTable(db, table, mlCallDbResult).value_or(false);
}

bool DBTools::tableHasField(QSqlDatabase &db, QString table, QString field) {
    return probes::tableHasField(db, table, field, mlCallDbResult).value_or(false);
}

bool DBTools::checkConstraint(QSqlDatabase &db, QString sql) {
    return probes::returnsRow(db, sql, mlCallDbResult).value_or(false);
}

bool DBTools::hasErrorFieldName(QSqlDatabase &db) {
    return probes::hasMisspeltColumn(db, mlCallDbResult).value_or(false);
}

void DBTools::metadata(QSqlDatabase &db) {
    if (!mlTableName.isEmpty())
        return;
    const auto tables = probes::tables(db, mlCallDbResult);
    const auto keys = tables ? probes::keyColumns(db, tables->plain, mlCallDbResult) : std::nullopt;
    // What could not be read is read the next time.
    if (!keys)
        return;
    mlTableName = tables->names;
    mhTablePK = *keys;
}

QHash<QString, QString> DBTools::tablePK() {
    return mhTablePK;
}

void DBTools::updateDatabase(QSqlDatabase &db) {
    if (!isPostgreSql(db))
        bringForward(db);
}

bool DBTools::bringForward(QSqlDatabase &db) {
    const bool isAnswered = upgrade::toCurrentSchema(oneNetStore(db));
    metadata(db);
    return isAnswered;
}

void DBTools::updateDatabase1x(QSqlDatabase &db) {
    if (isPostgreSql(db))
        return;
    // A host opens such a store by itself.
    connectionguard::harden(db);
    const QString name = QDir::toNativeSeparators(db.databaseName());
    if (!schemaguard::hasPlainTables(db, name, mlCallDbResult) ||
        !schemaguard::hasFittingVersion(db, name, mlCallDbResult))
        return;
    const auto version = probes::dbVersion(db, mlCallDbResult);
    // No store of several networks has ever been of the first generation.
    if (!version || *version >= 6)
        return;
    upgrade::firstGeneration(oneNetStore(db));
    mDbVer = static_cast<int>(selectDbVersion(db));
}

bool DBTools::initDictionary(QSqlDatabase &db, long netId, bool useTransaction) {
    return dictionaries::seed(storeOf(db, netId), useTransaction);
}

bool DBTools::getIDByTableName(QSqlDatabase &db, QString table, long &id) {
    return identifiers::next(storeOf(db, gNet.netId), table, id);
}

bool DBTools::getID(QSqlDatabase &db, long &id) {
    return identifiers::nextGeneral(db, id);
}

QString DBTools::getIDName(QString table) {
    return identifiers::idColumn(table);
}

long DBTools::getMaxID(QSqlDatabase &db, long netId, QString table) {
    const qint64 largest = identifiers::largestInUse(db, netId, table, mlCallDbResult).value_or(0);
    return identifiers::requireId(oneNetStore(db, netId), table, largest)
               ? static_cast<long>(largest)
               : static_cast<long>(storablevalue::kLargestId);
}

bool DBTools::updateIds(QSqlDatabase &db, bool useTransaction) {
    return identifiers::giveBackUnused(oneNetStore(db, gNet.netId), useTransaction);
}

bool DBTools::getMaxIdByAllTables(QSqlDatabase &db, long &maxId, QString schema) {
    return sequences::largestKey(oneNetStore(db), schema, maxId);
}

bool DBTools::initSequence(QSqlDatabase &db, QString schema) {
    return sequences::rebase(oneNetStore(db), schema);
}

bool DBTools::insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                        QString backgroundUrl, QJsonObject otherAttrs, bool useTransaction) {
    networks::Record record = networkRecord(id, name, center, sourceType, backgroundUrl);
    record.setAttributes(StoredJson(otherAttrs));
    return networks::insert(oneNetStore(db, id), record, useTransaction);
}

bool DBTools::insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                        QString backgroundUrl, QString otherAttrsJson, bool useTransaction) {
    // Never forwarded: on a generation-6 store the row lacks isDefault and is refused.
    networks::Record record = networkRecord(id, name, center, sourceType, backgroundUrl);
    record.otherAttrsJson = otherAttrsJson;
    return networks::insert(oneNetStore(db, id), record, useTransaction);
}

bool DBTools::insertNet(QSqlDatabase &db, bool useTransaction) {
    return networks::insert(oneNetStore(db, gNet.netId), networks::recordOf(gNet), useTransaction);
}

bool DBTools::updateNet(QSqlDatabase &db, long id, bool useTransaction) {
    const Store store = storeOf(db, id);
    if (!store.hasSeveralNets())
        return !store.isGivenUp();
    return networks::update(store, networks::recordOf(gNet), useTransaction);
}

Net *DBTools::selectNetById(QSqlDatabase &db, long id) {
    return networks::load(oneNetStore(db, id));
}

Net *DBTools::selectNetIdByName(QSqlDatabase &db, QString name) {
    return networks::loadByName(oneNetStore(db), name);
}

bool DBTools::selectNetId(QSqlDatabase &db, long id) {
    return networks::exists(oneNetStore(db, id)).value_or(false);
}

long DBTools::selectMaxNetId(QSqlDatabase &db) {
    return networks::largestId(oneNetStore(db));
}

QList<Net> DBTools::selectNets(QSqlDatabase &db) {
    return networks::all(oneNetStore(db));
}

QByteArray DBTools::selectBackgroundMap(QSqlDatabase &db, long netId) {
    return networks::backgroundMap(storeOf(db, netId));
}

bool DBTools::removeNetData(QSqlDatabase &db, long netId, bool useTransaction) {
    return networkremoval::removeData(storeOf(db, netId), useTransaction);
}

bool DBTools::insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction) {
    return links::insert(storeOf(db, netId), link, inTransaction);
}

bool DBTools::insertLinks(QSqlDatabase &db, long netId, QList<Link *> &links, bool inTransaction) {
    // The frame's own failures are recorded in this class whatever the generation.
    const Store frame = oneNetStore(db, netId);
    Transaction transaction(frame, inTransaction);
    bool written = frame.isUsable();
    if (written && !links.isEmpty()) {
        Store store = storeOf(db, netId);
        store.setOwnTransaction(frame.hasOwnTransaction());
        written = links::insertAll(store, links);
    }
    return transaction.commitOrRecord(written);
}

Link *DBTools::selectLinkByID(QSqlDatabase &db, long netId, long linkId) {
    return links::read(storeOf(db, netId), linkId);
}

bool DBTools::selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return links::listIds(storeOf(db, netId), ids);
}

bool DBTools::checkLinkVertex(QSqlDatabase &db, long linkId, long vertexId) {
    return links::hasVertex(db, linkId, vertexId, mlCallDbResult).value_or(false);
}

QString DBTools::breakPoints(QJsonObject geometry) {
    return links::breakPoints(geometry);
}

bool DBTools::insertConnector(QSqlDatabase &db, long netId, Connector *connector, bool inTransaction) {
    return connectors::insert(storeOf(db, netId), connector, inTransaction);
}

bool DBTools::insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                               bool inTransaction) {
    const Store frame = storeOf(db, netId);
    if (frame.hasSeveralNets())
        return DBTools_V6::insertConnectors(db, netId, connectors, inTransaction);
    Transaction transaction(frame, inTransaction);
    bool written = frame.isUsable();
    if (written && !connectors.isEmpty()) {
        Store store = storeOf(db, netId);
        store.setOwnTransaction(frame.hasOwnTransaction());
        written = connectors::insertAll(store, connectors);
    }
    return transaction.commit(written);
}

Connector *DBTools::selectConnectorByID(QSqlDatabase &db, long netId, long connectorId) {
    return connectors::read(storeOf(db, netId), connectorId);
}

bool DBTools::selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return connectors::listIds(storeOf(db, netId), ids);
}

bool DBTools::checkNodeVertex(QSqlDatabase &db, long nodeId, long vertexId) {
    return links::nodeStandsOn(db, nodeId, vertexId, mlCallDbResult).value_or(false);
}

bool DBTools::selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types) {
    return linktypes::readAll(storeOf(db, netId), types);
}

bool DBTools::insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow, bool inTransaction) {
    return guidearrows::insert(storeOf(db, netId), arrow, inTransaction);
}

GuideArrow *DBTools::selectGuideArrowByID(QSqlDatabase &db, long netId, long id) {
    return guidearrows::read(storeOf(db, netId), id);
}

bool DBTools::selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return guidearrows::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertSignalGroup(QSqlDatabase &db, long netId, SignalGroup *group, bool inTransaction) {
    return signalgroups::insert(storeOf(db, netId), group, inTransaction);
}

SignalGroup *DBTools::selectSignalGroupByID(QSqlDatabase &db, long netId, long id) {
    return signalgroups::read(storeOf(db, netId), id);
}

bool DBTools::selectSignalGroupIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return signalgroups::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertSignalLamp(QSqlDatabase &db, long netId, SignalLamp *lamp, bool inTransaction) {
    return signallamps::insert(storeOf(db, netId), lamp, inTransaction);
}

SignalLamp *DBTools::selectSignalLampByID(QSqlDatabase &db, long netId, long id) {
    return signallamps::read(storeOf(db, netId), id);
}

bool DBTools::selectSignalLampIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return signallamps::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertDecisionPoint(QSqlDatabase &db, long netId, DecisionPoint *point, bool useTransaction) {
    return decisionpoints::insert(storeOf(db, netId), point, useTransaction);
}

DecisionPoint *DBTools::selectDecisionPointByID(QSqlDatabase &db, long netId, long id) {
    return decisionpoints::read(storeOf(db, netId), id);
}

bool DBTools::selectDecisionPointIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return decisionpoints::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertRouting(QSqlDatabase &db, long netId, Routing *route, bool useTransaction) {
    return routings::insert(storeOf(db, netId), route, useTransaction);
}

Routing *DBTools::selectRoutingByID(QSqlDatabase &db, long netId, long routingId) {
    return routings::read(storeOf(db, netId), routingId);
}

bool DBTools::selectRoutingIDs(QSqlDatabase &db, long netId, long deciPointId, QList<long> &ids) {
    return routings::listIds(storeOf(db, netId), deciPointId, ids);
}

bool DBTools::insertRoutingFlowRatio(QSqlDatabase &db, long netId, long start,
                                     RoutingFlowByInterval *interval, bool useTransaction) {
    return routings::insertFlowRatios(storeOf(db, netId), start, interval, useTransaction);
}

bool DBTools::selectRoutingPartitionByID(QSqlDatabase &db, long netId, QList<RoutingFLowRatio *> &ratios,
                                         long routingId) {
    return routings::readFlowRatios(storeOf(db, netId), ratios, routingId);
}

bool DBTools::insertRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId, long connId,
                                         long laneId1, long laneId2, bool useTransaction) {
    return routings::insertLanePair(storeOf(db, netId), routingId, connId, {laneId1, laneId2},
                                    useTransaction);
}

QList<LCStruct *> DBTools::selectRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId,
                                                      long connId) {
    return routings::readLanePairs(storeOf(db, netId), routingId, connId);
}

bool DBTools::insertVehicleDetector(QSqlDatabase &db, long netId, VehicleDetector *detector,
                                    bool inTransaction) {
    return vehicledetectors::insert(storeOf(db, netId), detector, inTransaction);
}

VehicleDetector *DBTools::selectVehicleDetector(QSqlDatabase &db, long netId, long detectorId) {
    return vehicledetectors::read(storeOf(db, netId), detectorId);
}

bool DBTools::selectVehicleDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return vehicledetectors::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertVehicleQueueCounter(QSqlDatabase &db, long netId, VehicleQueueCounter *counter,
                                        bool inTransaction) {
    return queuecounters::insert(storeOf(db, netId), counter, inTransaction);
}

VehicleQueueCounter *DBTools::selectVehicleQueueCounter(QSqlDatabase &db, long netId, long counterId) {
    return queuecounters::read(storeOf(db, netId), counterId);
}

bool DBTools::selectVehicleQueueCounterIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return queuecounters::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertVehicleTravelDetector(QSqlDatabase &db, long netId, VehicleTravelDetector *detector,
                                          bool inTransaction) {
    return traveldetectors::insert(storeOf(db, netId), detector, inTransaction);
}

VehicleTravelDetector *DBTools::selectVehicleTravelDetector(QSqlDatabase &db, long netId, long detectorId) {
    return traveldetectors::read(storeOf(db, netId), detectorId);
}

bool DBTools::selectVehicleTravelDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return traveldetectors::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertDrivInfoCollector(QSqlDatabase &db, long netId, VehicleDrivInfoCollector collector,
                                      bool inTransaction) {
    return drivinfocollectors::insert(storeOf(db, netId), collector, inTransaction);
}

VehicleDrivInfoCollector DBTools::selectVehicleDrivInfoCollector(QSqlDatabase &db, long netId,
                                                                 long collectorId) {
    return drivinfocollectors::read(storeOf(db, netId), collectorId);
}

bool DBTools::selectVehicleDrivInfoCollectorIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return drivinfocollectors::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertBusLine(QSqlDatabase &db, long netId, BusLine *line, bool inTransaction) {
    return buslines::insert(storeOf(db, netId), line, inTransaction);
}

BusLine *DBTools::selectBusLine(QSqlDatabase &db, long netId, long lineId) {
    return buslines::read(storeOf(db, netId), lineId);
}

bool DBTools::selectBusLineIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return buslines::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertBusStation(QSqlDatabase &db, long netId, BusStation *station, bool inTransaction) {
    return busstations::insert(storeOf(db, netId), station, inTransaction);
}

BusStation *DBTools::selectBusStation(QSqlDatabase &db, long netId, long stationId) {
    return busstations::read(storeOf(db, netId), stationId);
}

bool DBTools::selectBusStationIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return busstations::listIds(storeOf(db, netId), ids);
}

AccidentZone *DBTools::selectAccidentZone(QSqlDatabase &db, long netId, long zoneId) {
    // Never forwarded: on a generation-6 store it finds the zone of that id in whichever network.
    return zones::readAccident(oneNetStore(db, netId), zoneId);
}

bool DBTools::selectAccidentZoneIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return zones::listAccidentIds(storeOf(db, netId), ids);
}

RoadWorkZone *DBTools::selectRoadWorkZone(QSqlDatabase &db, long netId, long zoneId) {
    return zones::readRoadWork(storeOf(db, netId), zoneId);
}

bool DBTools::selectRoadWorkZoneIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return zones::listRoadWorkIds(storeOf(db, netId), ids);
}

bool DBTools::insertReduceSpeedArea(QSqlDatabase &db, long netId, ReduceSpeedArea *area, bool inTransaction) {
    return reducespeedareas::insert(storeOf(db, netId), area, inTransaction);
}

ReduceSpeedArea *DBTools::selectReduceSpeedArea(QSqlDatabase &db, long netId, long areaId) {
    return reducespeedareas::read(storeOf(db, netId), areaId);
}

bool DBTools::selectReduceSpeedAreaIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return reducespeedareas::listIds(storeOf(db, netId), ids);
}

bool DBTools::insertVehicleType(QSqlDatabase &db, long netId, VehicleType type, bool useTransaction) {
    return vehicletypes::insert(storeOf(db, netId), type, useTransaction);
}

bool DBTools::selectVehicleType(QSqlDatabase &db, long netId, QHash<long, VehicleType> &types) {
    return vehicletypes::readAll(storeOf(db, netId), types);
}

bool DBTools::insertVehicleConstitutent(QSqlDatabase &db, long netId, VehicleComposition composition,
                                        bool useTransaction) {
    return vehiclecompositions::insert(storeOf(db, netId), composition, useTransaction);
}

bool DBTools::selectVehicleConstitutent(QSqlDatabase &db, long netId,
                                        QHash<long, VehicleComposition> &compositions) {
    return vehiclecompositions::readAll(storeOf(db, netId), compositions);
}

VehicleComposition DBTools::selectVehicleComposition(QSqlDatabase &db, long netId, long consCode) {
    return vehiclecompositions::read(storeOf(db, netId), consCode);
}

bool DBTools::insertVehicleConsDetail(QSqlDatabase &db, long netId, VehicleConsDetail detail,
                                      bool useTransaction) {
    return vehiclecompositions::insertDetail(storeOf(db, netId), detail, useTransaction);
}

QList<VehicleConsDetail> DBTools::selectVehicleConsDetail(QSqlDatabase &db, long netId, long consCode) {
    return vehiclecompositions::readDetails(storeOf(db, netId), consCode);
}

bool DBTools::insertDeparturePoint(QSqlDatabase &db, long netId, DeparturePoint point, bool useTransaction) {
    return departurepoints::insert(storeOf(db, netId), point, useTransaction);
}

DeparturePoint *DBTools::selectDeparturePoint(QSqlDatabase &db, long netId,
                                              QHash<long, VehicleComposition> &compositions,
                                              long departurePointId) {
    return departurepoints::read(storeOf(db, netId), compositions, departurePointId);
}

bool DBTools::selectDeparturePointIds(QSqlDatabase &db, long netId, QList<long> &ids) {
    return departurepoints::listIds(storeOf(db, netId), ids);
}

bool DBTools::saveSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration,
                                    bool useTransaction) {
    return simulateconfigurations::save(storeOf(db, netId), configuration, useTransaction);
}

bool DBTools::selectSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration) {
    return simulateconfigurations::read(storeOf(db, netId), configuration);
}

bool DBTools::saveConfiguration(QSqlDatabase &db, long netId, bool useTransaction) {
    return sceneconfigurations::save(storeOf(db, netId), gNet.config(), useTransaction);
}

bool DBTools::selectConfiguration(QSqlDatabase &db, long netId, Configuration &configuration) {
    return sceneconfigurations::read(storeOf(db, netId), configuration);
}

bool DBTools::updateConfigIfShowGrid(QSqlDatabase &db, bool useTransaction) {
    return sceneconfigurations::updateShowGrid(storeOf(db, gNet.netId), gNet.config().showGrid,
                                               useTransaction);
}

bool DBTools::updateConfigIfShowBackgroundMap(QSqlDatabase &db, bool useTransaction) {
    return sceneconfigurations::updateShowBackgroundMap(storeOf(db, gNet.netId),
                                                        gNet.config().showBackgroundMap, useTransaction);
}

bool DBTools::saveDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &param,
                                          bool useTransaction) {
    return drivermodels::save(storeOf(db, netId), param, useTransaction);
}

bool DBTools::selectDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &first,
                                            DriveFollowedModelParam &second) {
    return drivermodels::read(storeOf(db, netId), first, second);
}

bool DBTools::saveChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params,
                                  bool useTransaction) {
    return drivermodels::saveAll(storeOf(db, netId), params, useTransaction);
}

bool DBTools::selectChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params) {
    return drivermodels::readAll(storeOf(db, netId), params);
}

bool DBTools::loadNet(QSqlDatabase &db, long netId, NetContents &contents, const NetProgress &progress) {
    return wholenet::load(storeOf(db, netId), contents, progress);
}

bool DBTools::saveNet(QSqlDatabase &db, long netId, NetContents &contents, bool useTransaction,
                      const NetProgress &progress) {
    return wholenet::save(storeOf(db, netId), contents, useTransaction, progress);
}

bool DBTools::logInfo(QSqlDatabase &db, long netId, Logger event) {
    return usagelog::append(storeOf(db, netId), event);
}

bool DBTools::logInfoWithPlugin(QSqlDatabase &db, long netId, Logger event, QString pluginName,
                                QString pluginVersion, QString pluginOperation) {
    event.pluginName = pluginName;
    event.pluginVersion = pluginVersion;
    event.pluginOperation = pluginOperation;
    return logInfo(db, netId, event);
}

bool DBTools::selectLogger(QSqlDatabase &db, long netId, QList<Logger> &events, int limit) {
    return usagelog::read(storeOf(db, netId), events, limit);
}

bool DBTools::encryptFile(QString path) {
    return fileprotection::protect(path, storekeys::preferred(), mlCallDbResult);
}

bool DBTools::decryptFile(QString path) {
    return fileprotection::unprotect(path, {}, mlCallDbResult);
}

bool DBTools::encryptDecryptFile(QString path) {
    return fileprotection::toggle(path, {}, mlCallDbResult);
}

bool DBTools::encryptDecryptFileByKey1(QString path) {
    return fileprotection::toggle(path, storekeys::Key::Library1, mlCallDbResult);
}

bool DBTools::encryptDecryptFileByKey2(QString path) {
    return fileprotection::toggle(path, storekeys::Key::Library2, mlCallDbResult);
}

bool DBTools::isFileEncrypted(QString path) {
    return fileprotection::isProtected(path);
}
