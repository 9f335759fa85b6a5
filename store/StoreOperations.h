#pragma once

#include "model/CallDbResult.h"
#include "model/GuideArrow.h"
#include "model/LinkType.h"
#include "model/Logger.h"
#include "model/MoraStoreExport.h"
#include "model/Net.h"
#include "model/NetProgress.h"
#include "model/VehicleDrivInfoCollector.h"

#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>

class AccidentZone;
class BusLine;
class BusStation;
class ChangeLaneModelParam;
class Connector;
class DecisionPoint;
class Link;
class ReduceSpeedArea;
class RoadWorkZone;
class Routing;
class RoutingFLowRatio;
class SignalGroup;
class SignalLamp;
class SimulateConfiguration;
class Store;
class VehicleComposition;
class VehicleDetector;
class VehicleQueueCounter;
class VehicleTravelDetector;
class VehicleType;
struct DeparturePoint;
struct DriveFollowedModelParam;
struct LCStruct;
struct NetContents;
struct RoutingFlowByInterval;
struct VehicleConsDetail;

/// The operations that DBTools and DBTools_V6 have in common, with the state that each keeps for itself.
///
/// They have one body. What differs is where they run: those of DBTools ask the store for its version and,
/// from generation 6 on, run as the operation of the same name of DBTools_V6 with the same arguments,
/// recording their failures there. Those of DBTools_V6 work on network @p netId of a generation-6 store
/// without asking. A read for a network that is not the current one neither answers from gNet's tables nor
/// enters into them.
///
/// Common to all operations:
/// - The first argument is an open connection. Operations on a connection that is not usable do nothing and
///   give their failure result; validateDatabase() says what usable means.
/// - @p netId is the network; stores of one network do not use it.
/// - A trailing flag asks for a transaction of the operation's own. Without it the caller owns the
///   transaction. With it no transaction may be open on the connection.
/// - Nothing is thrown. A failed statement is appended to mlCallDbResult of the class whose body ran, and the
///   result is false, null or empty. Inserts go on after a failed row unless their description says
///   otherwise.
/// - An object that is not whole (a null in one of its lists, or no link, lane or phase where a row names
///   one) is refused: nothing of it is written, and a record names it and what it lacks. Null in place of
///   an object is nothing to write, and a success.
/// - Identifiers are the caller's: inserts write the ids that the objects carry (getIDByTableName() hands
///   them out).
/// - Lists of ids are appended to in ascending order and not cleared.
/// - An operation on the connection of an OpenStore works on what that knows and holds: where these
///   descriptions speak of gNet, the registries, gSpecialWords, mlCallDbResult or another static member, its
///   own is meant. Any other connection is one of the process's store, which these statics belong to.
/// - One thread at a time uses a store.
template <class Facade>
class StoreOperations {
public:
    StoreOperations() = delete;

    /// @name Connection settings
    /// Each class has its own. DBTools::openDatabase() reads those of DBTools; the host's JSON settings
    /// overwrite them.
    /// @{
    static QString &mDbDriver;   ///< Qt driver: "QSQLITE" (default) or "QPSQL".
    static QString &mDbHost;     ///< Server host (PostgreSQL); default: the name of this machine.
    static int &mDbPort;         ///< Server port (PostgreSQL); default 5432.
    static QString &mDbName;     ///< Database name; for SQLite the file path.
    static QString &mDbUser;     ///< User name (PostgreSQL).
    static QString &mDbPassword; ///< Password (PostgreSQL).
    /// @}

    /// Failed calls of this class since the last opening, of the process's store.
    static QList<CallDbResult> &mlCallDbResult;
    /// Table names, filled by DBTools::metadata().
    static QStringList &mlTableName;
    /// Table name to the column of its own id, filled by DBTools::metadata().
    static QHash<QString, QString> &mhTablePK;

    /// @name Opening and checking
    /// @{
    /// Whether @p db is usable: no driver error is pending and, on SQLite, table IDGenerater can be read.
    /// Records a failure. A driver error from a failed commit stays pending until the store is
    /// opened again.
    static bool validateDatabase(QSqlDatabase &db);
    /// Whether the last statement of @p query succeeded; records a failure.
    static bool validateQuery(QSqlQuery &query);
    /// @}

    /// @name Schema
    /// @{
    /// Seeds the dictionaries of a network where it has none yet: link types, vehicle types, the standard
    /// composition, driver-model sets and the scene configuration. A second call changes nothing.
    static bool initDictionary(QSqlDatabase &db, long netId, bool useTransaction);
    /// @}

    /// @name Networks
    /// @{
    /// Deletes all objects of a network (of the store, below generation 6), children before parents. The
    /// network's record, its counters, configuration and the usage log stay; generation 6 also leaves the
    /// vehicle restrictions of lanes and connectors. A failed group of tables ends the removal with false;
    /// what was deleted before it stays deleted, also with a transaction of the operation's own. Once rows of
    /// the current network may be gone, gNet's tables are empty.
    static bool removeNetData(QSqlDatabase &db, long netId, bool useTransaction);
    /// @}

    /// @name Links and lanes
    /// @{
    /// Writes a link with its end nodes, vertices, lanes, lane restrictions and geometry. An end node without
    /// a name takes its id as name and a link without a road id its own id, on the objects too. Generation 6
    /// stores neither lane restrictions nor lane attributes: a lane that has attributes makes the result
    /// false.
    static bool insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction);
    /// The link that gNet holds already, or one read from the store, which is entered into gNet with its
    /// lanes. A link that was read belongs to the caller; one that gNet held belongs to whom it was given
    /// before.
    /// @return null when the store has no such link.
    static Link *selectLinkByID(QSqlDatabase &db, long netId, long linkId);
    /// Appends all link ids.
    static bool selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Connectors
    /// @{
    /// Writes a connector with its restrictions and lane connectors. A connector without a road id takes its
    /// own id, on the object too. Generation 6 stores neither restrictions nor the geometry of lane
    /// connectors.
    static bool insertConnector(QSqlDatabase &db, long netId, Connector *connector, bool inTransaction);
    /// Writes connectors in order, going on after one that fails.
    static bool insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                                 bool inTransaction);
    /// Reads a connector with its lane connectors into a new object of the caller's, entered into gNet. Links
    /// and lanes are resolved through gNet, so they are read first; lane connectors whose lanes are unknown
    /// are left out, restrictions are not read.
    /// @return null when the store has no such connector or gNet does not know its links.
    static Connector *selectConnectorByID(QSqlDatabase &db, long netId, long connectorId);
    /// Appends all connector ids.
    static bool selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Nodes, link types and guide arrows
    /// @{
    /// Appends all link types by id, names in the host's language; true in every case.
    static bool selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types);
    static bool insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow, bool inTransaction);
    /// A new guide arrow of the caller's; null when the store has no such arrow.
    static GuideArrow *selectGuideArrowByID(QSqlDatabase &db, long netId, long id);
    /// Appends the ids of all guide arrows whose lane exists.
    static bool selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Signal groups and lamps
    /// @{
    /// Writes a group with its phases and their colours. Colours are display words and are stored as
    /// gSpecialWords translates them.
    static bool insertSignalGroup(QSqlDatabase &db, long netId, SignalGroup *group, bool inTransaction);
    /// Reads a group with its phases, in the store's row order, and their colours into a new object of the
    /// caller's. The phases, which the group owns, are entered into gNet.
    /// @return null when the store has no such group.
    static SignalGroup *selectSignalGroupByID(QSqlDatabase &db, long netId, long id);
    /// Appends all group ids.
    static bool selectSignalGroupIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertSignalLamp(QSqlDatabase &db, long netId, SignalLamp *lamp, bool inTransaction);
    /// Reads a lamp into a new object of the caller's and enters it into the lamps of its phase, in place of
    /// an earlier read of the same lamp. The phase is resolved through gNet, so signal groups are read first.
    /// @return null when the store has no such lamp, its lane is gone, or gNet does not know its phase.
    static SignalLamp *selectSignalLampByID(QSqlDatabase &db, long netId, long id);
    /// Appends all lamp ids, also of lamps that cannot be read.
    static bool selectSignalLampIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Decision points and routes
    /// Links are resolved through gNet, so they are read first. Times are in the host's unit.
    /// @{
    /// Writes a point with its routes, their chains of links and its flow intervals, which stand in ascending
    /// order of their ends: the first starts at 1, each later one after the end of the one before. A route
    /// that leads back to no point gets this one. Ratio records of routes that are not the point's are taken
    /// out of the caller's intervals and deleted.
    static bool insertDecisionPoint(QSqlDatabase &db, long netId, DecisionPoint *point, bool useTransaction);
    /// Reads a point with its routes and flow intervals, which it owns, into a new object of the caller's. Of
    /// several ratio records of a route with the same end the first is read. A link that gNet does not know
    /// is null.
    /// @return null when the store has no such point.
    static DecisionPoint *selectDecisionPointByID(QSqlDatabase &db, long netId, long id);
    /// Appends all point ids; true in every case.
    static bool selectDecisionPointIDs(QSqlDatabase &db, long netId, QList<long> &ids);
    /// Writes a route, under the id of the point it leads back to, with its chains of links.
    static bool insertRouting(QSqlDatabase &db, long netId, Routing *route, bool useTransaction);
    /// Reads a route with its chains of links into a new object of the caller's, without its point. Links
    /// that gNet does not know are left out, and so are chains of nothing but such links.
    /// @return null when the store has no such route.
    static Routing *selectRoutingByID(QSqlDatabase &db, long netId, long routingId);
    /// Appends the ids of a point's routes; true in every case.
    static bool selectRoutingIDs(QSqlDatabase &db, long netId, long deciPointId, QList<long> &ids);
    /// Writes the ratio records of an interval from @p start to the interval's end; the times in the records
    /// are not used.
    static bool insertRoutingFlowRatio(QSqlDatabase &db, long netId, long start,
                                       RoutingFlowByInterval *interval, bool useTransaction);
    /// Appends the ratio records of a route by their ends, each a new object of the caller's.
    static bool selectRoutingPartitionByID(QSqlDatabase &db, long netId, QList<RoutingFLowRatio *> &ratios,
                                           long routingId);
    /// Writes a pair of lanes that a route may use on a connector.
    static bool insertRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId, long connId,
                                           long laneId1, long laneId2, bool useTransaction);
    /// The pairs of lanes that a route may use on a connector, by their lane ids, each a new object of the
    /// caller's.
    static QList<LCStruct *> selectRoutingLaneConnector(QSqlDatabase &db, long netId, long routingId,
                                                        long connId);
    /// @}

    /// @name Detectors
    /// The inserts are trial runs when their flag is set: their transaction is rolled back on purpose, and
    /// the result tells whether the rows would have been written. To keep the rows, call them without the
    /// flag. The lists of ids give true in every case.
    /// @{
    /// Writes a detector and the vehicle types that it registers. Generation 6 refuses the types: a detector
    /// that has some gives false, and its own row stays.
    static bool insertVehicleDetector(QSqlDatabase &db, long netId, VehicleDetector *detector,
                                      bool inTransaction);
    /// A new detector of the caller's; null when the store has no such detector. A vehicle type that
    /// ghVehicleType does not know reads as the default type's code.
    static VehicleDetector *selectVehicleDetector(QSqlDatabase &db, long netId, long detectorId);
    static bool selectVehicleDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertVehicleQueueCounter(QSqlDatabase &db, long netId, VehicleQueueCounter *counter,
                                          bool inTransaction);
    /// A new queue counter of the caller's, never null: without such a row its id is 0 and the rest as in a
    /// new one.
    static VehicleQueueCounter *selectVehicleQueueCounter(QSqlDatabase &db, long netId, long counterId);
    /// Appends the counters whose road exists; in generation 6 all.
    static bool selectVehicleQueueCounterIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertVehicleTravelDetector(QSqlDatabase &db, long netId, VehicleTravelDetector *detector,
                                            bool inTransaction);
    /// A new travel-time detector of the caller's; null when the store has no such detector.
    static VehicleTravelDetector *selectVehicleTravelDetector(QSqlDatabase &db, long netId, long detectorId);
    /// Appends the detectors both of whose roads exist; in generation 6 all.
    static bool selectVehicleTravelDetectorIds(QSqlDatabase &db, long netId, QList<long> &ids);
    static bool insertDrivInfoCollector(QSqlDatabase &db, long netId, VehicleDrivInfoCollector collector,
                                        bool inTransaction);
    /// A driving-data collector; a new one, of id 0, when the store has no such collector.
    static VehicleDrivInfoCollector selectVehicleDrivInfoCollector(QSqlDatabase &db, long netId,
                                                                   long collectorId);
    /// Appends the collectors whose road exists; in generation 6 all.
    static bool selectVehicleDrivInfoCollectorIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Public transport
    /// Stations are written before the lines that stop there. Links are resolved through gNet, so they are
    /// read first. The lists of ids give true in every case.
    /// @{
    /// Writes a bus line with its stops, their arrivals and its roads, and stops at the first row that fails;
    /// with the flag nothing of the line is then left. Stops carry the ids of line and station of their own.
    static bool insertBusLine(QSqlDatabase &db, long netId, BusLine *line, bool inTransaction);
    /// A new bus line of the caller's with its stops in the order of the route; stops away from the route are
    /// left out, and a link that the route passes twice gives its stops twice.
    /// @return null when the store has no such line or gNet knows none of its links.
    static BusLine *selectBusLine(QSqlDatabase &db, long netId, long lineId);
    static bool selectBusLineIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// Writes a station, which must have its link. With the flag a trial run: the transaction is rolled back
    /// on purpose, and the result tells whether the row would have been written.
    static bool insertBusStation(QSqlDatabase &db, long netId, BusStation *station, bool inTransaction);
    /// A new station of the caller's, without a link when gNet does not know it; null when the store has no
    /// such station.
    static BusStation *selectBusStation(QSqlDatabase &db, long netId, long stationId);
    /// Appends the stations whose link exists.
    static bool selectBusStationIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Accident and road-work zones
    /// Other programs write them. The lists of ids are false when their query failed, and add nothing where a
    /// store of one network has no table for the zones yet.
    /// @{
    /// A new zone of the caller's, its lanes by number; null when the store has no such zone. Runs alike on
    /// every store: in generation 6 it takes the zone of that id of whichever network, while the operation of
    /// DBTools_V6 finds none.
    static AccidentZone *selectAccidentZone(QSqlDatabase &db, long netId, long zoneId);
    static bool selectAccidentZoneIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// A new zone of the caller's, its lanes by number; null when the store has no such zone.
    static RoadWorkZone *selectRoadWorkZone(QSqlDatabase &db, long netId, long zoneId);
    static bool selectRoadWorkZoneIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Speed reduction areas
    /// @{
    /// Writes an area, its intervals and the speeds of vehicle types; these carry the area id of their own.
    /// With the flag a trial run: the transaction is rolled back on purpose, and the result tells whether the
    /// rows would have been written.
    static bool insertReduceSpeedArea(QSqlDatabase &db, long netId, ReduceSpeedArea *area,
                                      bool inTransaction);
    /// A new area of the caller's; null when the store has no such area.
    static ReduceSpeedArea *selectReduceSpeedArea(QSqlDatabase &db, long netId, long areaId);
    /// Appends all area ids; true in every case.
    static bool selectReduceSpeedAreaIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Vehicle types and compositions
    /// Vehicle types are stored under stored words and held in memory under display words; names of
    /// compositions stay as they are. Hosts use the names of the operations as spelled.
    /// @{
    static bool insertVehicleType(QSqlDatabase &db, long netId, VehicleType type, bool useTransaction);
    /// Adds all vehicle types by code, in place of entries of the same code. @return true in every case.
    static bool selectVehicleType(QSqlDatabase &db, long netId, QHash<long, VehicleType> &types);
    /// Writes a composition, then its details up to the first that fails. With a transaction of its own a
    /// composition that lacks a detail leaves nothing.
    static bool insertVehicleConstitutent(QSqlDatabase &db, long netId, VehicleComposition composition,
                                          bool useTransaction);
    /// Adds all compositions with their details by code, in place of entries of the same code. None of them
    /// is marked as default: selectVehicleComposition() alone tells. @return true in every case.
    static bool selectVehicleConstitutent(QSqlDatabase &db, long netId,
                                          QHash<long, VehicleComposition> &compositions);
    /// A composition with its details; a new record, of code 0, when the store has no such composition.
    static VehicleComposition selectVehicleComposition(QSqlDatabase &db, long netId, long consCode);
    static bool insertVehicleConsDetail(QSqlDatabase &db, long netId, VehicleConsDetail detail,
                                        bool useTransaction);
    /// The details of a composition by vehicle type code.
    static QList<VehicleConsDetail> selectVehicleConsDetail(QSqlDatabase &db, long netId, long consCode);
    /// @}

    /// @name Departure points
    /// @{
    /// Writes a departure point with its intervals, going on after one that fails; also with a transaction of
    /// its own the good rows stay. Of an interval's composition the code is stored.
    static bool insertDeparturePoint(QSqlDatabase &db, long netId, DeparturePoint point, bool useTransaction);
    /// A new departure point of the caller's with its intervals by id, or null when the store has none.
    /// Compositions are taken from @p compositions; one that is not there reads as a new record, of code 0.
    static DeparturePoint *selectDeparturePoint(QSqlDatabase &db, long netId,
                                                QHash<long, VehicleComposition> &compositions,
                                                long departurePointId);
    /// Appends all departure point ids. @return true in every case.
    static bool selectDeparturePointIds(QSqlDatabase &db, long netId, QList<long> &ids);
    /// @}

    /// @name Simulation and scene configuration
    /// @{
    /// Writes the stored fields over the row. Where there is not exactly one row, all rows give way to the
    /// standard row (3600 seconds, accuracy 20, multiple 1, all else off or 0), and only a second save writes
    /// the caller's values. All or nothing with a transaction of its own.
    ///
    /// Generation 6 gives a network without a row the standard one, then issues an update that the engine
    /// refuses: the result is always false, the failure is recorded and the row stays as it was. With a
    /// transaction of its own the roll back takes back a standard row just given, too.
    static bool saveSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration,
                                      bool useTransaction);
    /// Reads the stored fields; without a row the record stays as it was. @return false when the statement
    /// failed.
    static bool selectSimuConfiguration(QSqlDatabase &db, long netId, SimulateConfiguration &configuration);
    /// Writes gNet's scene configuration in place of the row of network @p netId. With a transaction of its
    /// own a failure leaves the old row. Stores of one network keep the date and time of saving, generation 6
    /// the date.
    static bool saveConfiguration(QSqlDatabase &db, long netId, bool useTransaction);
    /// Reads the scene configuration; without a row the record stays as it was. @return false when the
    /// statement failed.
    static bool selectConfiguration(QSqlDatabase &db, long netId, Configuration &configuration);
    /// Writes the grid switch of gNet's scene configuration into the row of every network.
    static bool updateConfigIfShowGrid(QSqlDatabase &db, bool useTransaction);
    /// Writes the background map switch of gNet's scene configuration into the row of every network.
    static bool updateConfigIfShowBackgroundMap(QSqlDatabase &db, bool useTransaction);
    /// @}

    /// @name Driver models
    /// @{
    /// Writes a car-following set over the stored one of its id; without such a row nothing is written and
    /// the result is true.
    static bool saveDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &param,
                                            bool useTransaction);
    /// Reads the car-following sets 1 and 2; one without a row stays as it was. @return false when a
    /// statement failed.
    static bool selectDriveFollowedModelParam(QSqlDatabase &db, long netId, DriveFollowedModelParam &first,
                                              DriveFollowedModelParam &second);
    /// Writes lane-changing sets in place of all stored ones, going on after one that fails; also with a
    /// transaction of its own the good rows stay.
    static bool saveChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params,
                                    bool useTransaction);
    /// Appends all stored lane-changing sets by id. @return false when the statement failed.
    static bool selectChangeLaneParam(QSqlDatabase &db, long netId, QList<ChangeLaneModelParam> &params);
    /// @}

    /// @name Whole networks
    /// @{
    /// Loads all of a network: record, catalogues, roads, traffic and settings, one ordered pass per table.
    ///
    /// The objects are those that the single reads would give, and besides what no single read does: the
    /// restrictions that generation 6 and connectors have tables for. The network becomes the current one:
    /// gNet's tables hold these objects, in place of any others, and the single reads answer from them; the
    /// registries ghVehicleType, ghVehicleComposition and glLinkType hold its catalogues; gNet.config() is
    /// its scene configuration, or a new one where it has none. The load never takes VehicleType::mlock: a
    /// host whose other threads look types up holds it for writing around the call. The tables are read one
    /// after the other: inside a transaction of the caller's, as they are at one moment.
    /// @param contents takes the objects and owns them; what it held before is destroyed. Its `skipped`
    ///        reports every row that was left out, or was taken in part (NetContents.h says what is left
    ///        out).
    /// @param progress hears, now and then, how far the load has come; it must not use the store.
    /// @return false when there is no such network, a statement failed or the load was cancelled. Then
    ///         @p contents, gNet (record, configuration and tables) and the registries are empty.
    static bool loadNet(QSqlDatabase &db, long netId, NetContents &contents,
                        const NetProgress &progress = {});
    /// Saves all of a network under @p netId, as a whole or not at all.
    ///
    /// Network @p netId must not have links yet, and must be the one of a store that holds one network. Its
    /// record is written unless there is one. Vehicle types and compositions that @p contents has replace
    /// those that initDictionary() gives a network; where it has types alone, the store's compositions must
    /// consist of them. Rows hold what the single inserts write (so a link's break points are those of its
    /// outer lanes, and flow ratios start where the slice before ends) and, in generation 6, what those leave
    /// out: attributes and restrictions of lanes, restrictions of connectors, the geometry of lane
    /// connectors, detectors' vehicle types. Words that were loaded with the network and not changed are
    /// written as they were stored. Restrictions that a removal left are emptied.
    ///
    /// Before anything is written @p contents is looked through: what objects point to is part of it, and
    /// what they name by id has an id.
    /// @param contents objects whose id is 0 get one from a block of new identifiers; ids that they bring
    ///        along are not given out again. A guide arrow in the list of a lane, and flow ratios of a point
    ///        with one new route, follow those. On false all objects are as they were.
    /// @param useTransaction save in a transaction of the operation's own. Without it the save joins the
    ///        caller's, and on false takes back what it wrote there. Outside a transaction it has one of its
    ///        own all the same.
    /// @param progress as for loadNet().
    /// @return false when the network is there already, an object was refused, a statement failed (the first
    ///         one ends the save) or the save was cancelled. The store is as it was then.
    static bool saveNet(QSqlDatabase &db, long netId, NetContents &contents, bool useTransaction,
                        const NetProgress &progress = {});
    /// @}

    /// @name Usage log
    /// Events of the host and of its plug-ins; the removal of a network leaves them. No store password, key
    /// or other setting is ever added to an event: what is secret stays out as long as callers keep it out of
    /// their texts.
    /// @{
    /// Appends an event of the host. The log gives the id; what the event leaves empty is filled in: version
    /// and date with the newest of AppVersionManager::ofLibrary(), the time with now, user and machine with
    /// those of the process, the remark with operating system, Qt version and driver. Columns that an older
    /// store lacks are left out.
    ///
    /// Joins a transaction that is open on the connection. A failure is recorded and ends neither that
    /// transaction nor the use of the connection.
    static bool logInfo(QSqlDatabase &db, long netId, Logger event);
    /// As logInfo(), for an event of a plug-in.
    static bool logInfoWithPlugin(QSqlDatabase &db, long netId, Logger event, QString pluginName,
                                  QString pluginVersion, QString pluginOperation);
    /// Appends the newest @p limit events to @p events, newest first; all when @p limit is not positive.
    static bool selectLogger(QSqlDatabase &db, long netId, QList<Logger> &events, int limit);
    /// @}

protected:
    static int &mDbVer;
    static bool &mbInter;
};

class DBTools;
class DBTools_V6;
extern template class MORASTORE_EXPORT StoreOperations<DBTools>;
extern template class MORASTORE_EXPORT StoreOperations<DBTools_V6>;
