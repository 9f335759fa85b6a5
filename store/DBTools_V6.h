#pragma once

#include "store/DBTools.h"

/// The operations for stores of generation 6, which hold several networks.
///
/// Each operation does what its namesake of DBTools describes, for network @p netId of a generation-6 store,
/// without asking for the version; its failures go to the list of this class. A read for a network that is
/// not the current one neither answers from gNet's tables nor enters into them.
class MORASTORE_EXPORT DBTools_V6 {
public:
    DBTools_V6() = delete;

    /// @name Connection settings of this class
    /// Independent of those of DBTools.
    /// @{
    static QString mDbDriver;
    static QString mDbHost;
    static int mDbPort;
    static QString mDbName;
    static QString mDbUser;
    static QString mDbPassword;
    /// @}
    /// Failed calls of this class since the last opening.
    static QList<CallDbResult> mlCallDbResult;
    static QStringList mlTableName;
    static QHash<QString, QString> mhTablePK;

    /// Opens an SQLite file for a backup copy on Qt's default connection (so it replaces the open one),
    /// without upgrading it or reading its version, and empties gNet's tables. A path that does not exist is
    /// refused and no file is made.
    /// @return validateDatabase() of the connection. The flag is not used.
    static bool openDatabaseForBackup(QSqlDatabase &db, QString path, bool);
    /// As DBTools::validateDatabase(), recorded in this class.
    static bool validateDatabase(QSqlDatabase &db);
    /// As DBTools::validateQuery(), recorded in this class.
    static bool validateQuery(QSqlQuery &query);

    static bool initDictionary(QSqlDatabase &db, long netId, bool useTransaction);

    static bool getIDByTableName(QSqlDatabase &db, long netId, QString table, long &id);

    /// Writes a network record. An empty @p name becomes "MoraSim".
    /// @return false, with nothing written or recorded, when the id is taken already.
    static bool insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                          QString backgroundUrl, QString otherAttrsJson, bool isDefault, bool useTransaction);
    /// Writes the given record over the row of network @p id. An empty @p name becomes "MoraSim".
    static bool updateNet(QSqlDatabase &db, long id, QString name, QString sourceUrl, QString sourceType,
                          QString backgroundUrl, double centerX, double centerY, QString caption,
                          QString otherAttrsJson, bool isDefault, bool useTransaction);

    static bool removeNetData(QSqlDatabase &db, long netId, bool useTransaction);

    static bool insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction);
    static Link *selectLinkByID(QSqlDatabase &db, long netId, long linkId);
    static bool selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertConnector(QSqlDatabase &db, long netId, Connector *connector, bool inTransaction);
    static bool insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                                 bool inTransaction);
    static Connector *selectConnectorByID(QSqlDatabase &db, long netId, long connectorId);
    static bool selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types);
    static bool insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow, bool inTransaction);
    static GuideArrow *selectGuideArrowByID(QSqlDatabase &db, long netId, long id);
    static bool selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertSignalGroup(QSqlDatabase &db, long netId, SignalGroup *group, bool inTransaction);
    static SignalGroup *selectSignalGroupByID(QSqlDatabase &db, long netId, long id);
    static bool selectSignalGroupIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertSignalLamp(QSqlDatabase &db, long netId, SignalLamp *lamp, bool inTransaction);
    static SignalLamp *selectSignalLampByID(QSqlDatabase &db, long netId, long id);
    static bool selectSignalLampIDs(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertDecisionPoint(QSqlDatabase &db, long netId, DecisionPoint *point, bool useTransaction);
    static DecisionPoint *selectDecisionPointByID(QSqlDatabase &db, long netId, long id);
    static bool selectDecisionPointIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertRouting(QSqlDatabase &db, long netId, Routing *route, bool useTransaction);
    static Routing *selectRoutingByID(QSqlDatabase &db, long netId, long routingId);
    static bool selectRoutingIDs(QSqlDatabase &db, long netId, long deciPointId, QList<long> &ids);
    static bool insertRoutingFlowRatio(QSqlDatabase &db, long netId, long start,
                                       RoutingFlowByInterval *interval, bool useTransaction);
    static bool selectRoutingPartitionByID(QSqlDatabase &db, long netId, QList<RoutingFLowRatio *> &ratios,
                                           long routingId);
    static bool insertRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId, long connId,
                                           long laneId1, long laneId2, bool useTransaction);
    static QList<LCStruct *> selectRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId,
                                                        long connId);

    static bool insertVehicleDetector(QSqlDatabase &db, long netId, VehicleDetector *detector,
                                      bool inTransaction);
    static VehicleDetector *selectVehicleDetector(QSqlDatabase &db, long netId, long detectorId);
    static bool selectVehicleDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertVehicleQueueCounter(QSqlDatabase &db, long netId, VehicleQueueCounter *counter,
                                          bool inTransaction);
    static VehicleQueueCounter *selectVehicleQueueCounter(QSqlDatabase &db, long netId, long counterId);
    static bool selectVehicleQueueCounterIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertVehicleTravelDetector(QSqlDatabase &db, long netId, VehicleTravelDetector *detector,
                                            bool inTransaction);
    static VehicleTravelDetector *selectVehicleTravelDetector(QSqlDatabase &db, long netId, long detectorId);
    static bool selectVehicleTravelDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertDrivInfoCollector(QSqlDatabase &db, long netId, VehicleDrivInfoCollector collector,
                                        bool inTransaction);
    static VehicleDrivInfoCollector selectVehicleDrivInfoCollector(QSqlDatabase &db, long netId,
                                                                   long collectorId);
    static bool selectVehicleDrivInfoCollectorIds(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertBusLine(QSqlDatabase &db, long netId, BusLine *line, bool inTransaction);
    static BusLine *selectBusLine(QSqlDatabase &db, long netId, long lineId);
    static bool selectBusLineIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertBusStation(QSqlDatabase &db, long netId, BusStation *station, bool inTransaction);
    static BusStation *selectBusStation(QSqlDatabase &db, long netId, long stationId);
    static bool selectBusStationIds(QSqlDatabase &db, long netId, QList<long> &ids);

    /// Finds no zone: the database refuses its statement, and the refusal is recorded.
    /// DBTools::selectAccidentZone() reads them.
    static AccidentZone *selectAccidentZone(QSqlDatabase &db, long netId, long zoneId);
    static bool selectAccidentZoneIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static RoadWorkZone *selectRoadWorkZone(QSqlDatabase &db, long netId, long zoneId);
    static bool selectRoadWorkZoneIds(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertReduceSpeedArea(QSqlDatabase &db, long netId, ReduceSpeedArea *area,
                                      bool inTransaction);
    static ReduceSpeedArea *selectReduceSpeedArea(QSqlDatabase &db, long netId, long areaId);
    static bool selectReduceSpeedAreaIds(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool insertVehicleType(QSqlDatabase &db, long netId, VehicleType type, bool useTransaction);
    static bool selectVehicleType(QSqlDatabase &db, long netId, QHash<long, VehicleType> &types);
    static bool insertVehicleConstitutent(QSqlDatabase &db, long netId, VehicleComposition composition,
                                          bool useTransaction);
    static bool selectVehicleConstitutent(QSqlDatabase &db, long netId,
                                          QHash<long, VehicleComposition> &compositions);
    static VehicleComposition selectVehicleComposition(QSqlDatabase &db, long netId, long consCode);
    static bool insertVehicleConsDetail(QSqlDatabase &db, long netId, VehicleConsDetail detail,
                                        bool useTransaction);
    static QList<VehicleConsDetail> selectVehicleConsDetail(QSqlDatabase &db, long netId, long consCode);

    static bool insertDeparturePoint(QSqlDatabase &db, long netId, DeparturePoint point, bool useTransaction);
    static DeparturePoint *selectDeparturePoint(QSqlDatabase &db, long netId,
                                                QHash<long, VehicleComposition> &compositions,
                                                long departurePointId);
    static bool selectDeparturePointIds(QSqlDatabase &db, long netId, QList<long> &ids);

    static bool saveSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration,
                                      bool useTransaction);
    static bool selectSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration);
    static bool saveConfiguration(QSqlDatabase &db, long netId, bool useTransaction);
    static bool selectConfiguration(QSqlDatabase &db, long netId, Configuration &configuration);
    static bool updateConfigIfShowGrid(QSqlDatabase &db, bool useTransaction);
    static bool updateConfigIfShowBackgroundMap(QSqlDatabase &db, bool useTransaction);

    static bool saveDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &param,
                                            bool useTransaction);
    static bool selectDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &first,
                                              DriveFollowedModelParam &second);
    static bool saveChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params,
                                    bool useTransaction);
    static bool selectChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params);

    static bool logInfo(QSqlDatabase &db, long netId, Logger event);
    static bool logInfoWithPlugin(QSqlDatabase &db, long netId, Logger event, QString pluginName,
                                  QString pluginVersion, QString pluginOperation);
    static bool selectLogger(QSqlDatabase &db, long netId, QList<Logger> &events, int limit);

    static bool loadNet(QSqlDatabase &db, long netId, NetContents &contents,
                        const NetProgress &progress = {});
    static bool saveNet(QSqlDatabase &db, long netId, NetContents &contents, bool useTransaction,
                        const NetProgress &progress = {});

private:
    static int mDbVer;
    static bool mbInter;
};
