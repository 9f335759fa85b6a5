#include "store/schema/Upgrade.h"

#include "model/Net.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"
#include "store/families/Networks.h"

#include <MoraInterfaces/MoraInterfaces.h>

#include <vector>

namespace upgrade {

namespace {

/// A table that older stores lack: the statement that creates it and, once it has succeeded, those that
/// follow.
struct TableStep {
    const char *table;
    const char *create;
    std::vector<const char *> then;
};

const TableStep kVehicleDetector = {
    "VehicleDetector",
    "create table VehicleDetector ("
    "vehicleDetectorId Bigint not null,"
    "signalGroupID Bigint not null,"
    "name Varchar(32) not null,"
    "phaseNumber Integer not null,"
    "roadId Bigint not null,"
    "roadType Varchar(32) not null,"
    "laneNumber Integer not null,"
    "toLaneNumber Integer null,"
    "length Numeric(9,4) not null,"
    "distToTerminal Numeric(9,4) not null,"
    "[type] Varchar(32) not null,"
    "maxGreen Integer not null,"
    "constraint PK_VEHICLEDETECTOR primary key (vehicleDetectorId),"
    "constraint FK_VEHICLED_R_33_SIGNALGR foreign key (signalGroupID) references SignalGroup (signalGroupID) "
    "on update restrict "
    "on delete restrict"
    ");",
    {"insert into IDGenerater([TableName], [ID]) values('VehicleDetector', 0)"}};

const TableStep kDetectorVehiType = {
    "DetectorVehiType",
    "create table DetectorVehiType ("
    "vehicleDetectorId Bigint not null,"
    "vehicleTypeCode Bigint not null,"
    "constraint PK_DETECTORVEHITYPE primary key (vehicleDetectorId, vehicleTypeCode),"
    "constraint FK_DETECTOR_DETECTORV_VEHICLED foreign key (vehicleDetectorId) references VehicleDetector (vehicleDetectorId) "
    "on update restrict "
    "on delete restrict,"
    "constraint FK_DETECTOR_DETECTORV_VEHICLET foreign key (vehicleTypeCode) references VehicleType (vehicleTypeCode) "
    "on update restrict "
    "on delete restrict"
    ");",
    {}};

const char *const kCreateNet = "create table Net ("
                               "NetId Bigint not null,"
                               "name Varchar(128) not null,"
                               "sourceUrl Varchar(256) null,"
                               "sourceType Varchar(64) not null,"
                               "backgroundUrl Varchar(256) null,"
                               "centerX NUMBER(12, 6) DEFAULT 0,"
                               "centerY NUMBER(12, 6) DEFAULT 0,"
                               "otherAttrsJson Varchar(102400) null,"
                               "constraint PK_NET primary key(NetId)"
                               ");";

const TableStep kRsu = {"Rsu",
                        "create table Rsu ("
                        "rsuID Bigint not null,"
                        "name Varchar(32) not null,"
                        "roadID Bigint not null,"
                        "roadName Varchar(32) null,"
                        "roadType Varchar(32) not null,"
                        "detectDist Numeric(9, 2) not null,"
                        "x Numeric(15, 5) not null,"
                        "y Numeric(15, 5) not null,"
                        "z Numeric(9, 2) not null,"
                        "angle Numeric(9, 2) not null,"
                        "constraint PK_RSU primary key(rsuID)"
                        ");",
                        {"insert into IDGenerater([TableName], [ID]) values('Rsu', 0)"}};

// The constraint names of the lane table lack the second R of WORK in every store.
const TableStep kRoadWorkZone = {
    "RoadWorkZone",
    "CREATE TABLE RoadWorkZone("
    "roadWorkZoneId BIGINT not null,"
    "name VARCHAR(32) not null,"
    "location Numeric(12, 2) not null,"
    "zoneLength Numeric(12, 2) not null,"
    "limitSpeed Numeric(12, 2) not null,"
    "roadID BIGINT not null,"
    "roadName VARCHAR(32) null,"
    "roadType VARCHAR(32) not null,"
    "constraint PK_RoadWorkZone primary key(roadWorkZoneId)"
    ");",
    {"insert into IDGenerater([TableName], [ID]) values('RoadWorkZone', 0)",
     "create table RoadWorkZoneWithLane("
     "roadWorkZoneId Bigint not null,"
     "laneNumber Integer not null,"
     "toLaneNumber Integer not null,"
     "constraint PK_ROADWOKZONEWITHLANE primary key(roadWorkZoneId,laneNumber, toLaneNumber),"
     "constraint FK_ROADWOKZ_R_31_ROADWORK foreign key (roadWorkZoneId) references RoadWorkZone(roadWorkZoneId)"
     ");"}};

const TableStep kAccidentZone = {
    "AccidentZone",
    "create table AccidentZone ("
    "accidentZoneId Bigint not null,"
    "name Varchar(32) not null,"
    "location Float not null,"
    "zoneLength Float not null,"
    "roadId Bigint not null,"
    "roadType Varchar(32) not null,"
    "constraint PK_ACCIDENTZONE primary key (accidentZoneId)"
    ");",
    {"insert into IDGenerater([TableName], [ID]) values('AccidentZone', 0)",
     "create table AccidentZoneWithLane ("
     "accidentZoneId Bigint not null,"
     "laneNumber Integer not null,"
     "toLaneNumber Integer not null,"
     "constraint PK_ACCIDENTZONEWITHLANE primary key (accidentZoneId, laneNumber, toLaneNumber),"
     "constraint FK_ACCIDENT_R_32_ACCIDENT foreign key (accidentZoneId) references AccidentZone (accidentZoneId)"
     ");"}};

/// A column that comes with the network table.
struct ColumnStep {
    const char *table;
    const char *column;
    const char *add;
};

constexpr ColumnStep kColumnsOfNet[] = {
    {"Link", "NetId", "ALTER TABLE Link ADD NetId BIGINT NOT NULL ON CONFLICT IGNORE DEFAULT 0"},
    {"Link", "centerLinePointsJson", "ALTER TABLE Link ADD centerLinePointsJson BINARY(102400)"},
    {"Link", "leftBreakPointsJson", "ALTER TABLE Link ADD leftBreakPointsJson BINARY(102400)"},
    {"Link", "rightBreakPointsJson", "ALTER TABLE Link ADD rightBreakPointsJson BINARY(102400)"},
    {"Link", "otherAttrsJson", "ALTER TABLE Link ADD otherAttrsJson BINARY(102400)"},
    {"Connector", "leftBreakPointsJson", "ALTER TABLE Connector ADD leftBreakPointsJson BINARY(102400)"},
    {"Connector", "rightBreakPointsJson", "ALTER TABLE Connector ADD rightBreakPointsJson BINARY(102400)"},
    {"Connector", "otherAttrsJson", "ALTER TABLE Connector ADD otherAttrsJson BINARY(102400)"},
    {"Lane", "centerLinePointsJson", "ALTER TABLE Lane ADD centerLinePointsJson BINARY(102400)"},
    {"Lane", "leftBreakPointsJson", "ALTER TABLE Lane ADD leftBreakPointsJson BINARY(102400)"},
    {"Lane", "rightBreakPointsJson", "ALTER TABLE Lane ADD rightBreakPointsJson BINARY(102400)"},
    {"Lane", "otherAttrsJson", "ALTER TABLE Lane ADD otherAttrsJson BINARY(102400)"},
    {"LaneConnector", "centerLinePointsJson",
     "ALTER TABLE LaneConnector ADD centerLinePointsJson BINARY(102400)"},
    {"LaneConnector", "otherAttrsJson", "ALTER TABLE LaneConnector ADD otherAttrsJson BINARY(102400)"},
};

bool isMissing(const Store &store, const QString &table) {
    return !probes::hasTable(store.db(), table);
}

/// A column is there when the stored CREATE text of its table contains its name anywhere.
bool isMissing(const Store &store, const ColumnStep &step) {
    const QString sql = QStringLiteral(
        "select * from sqlite_master where type = 'table' and name = '%1' and sql like('%%2%')");
    return !probes::returnsRow(store.db(), sql.arg(QLatin1String(step.table), QLatin1String(step.column)));
}

void addTable(const Store &store, const TableStep &step) {
    if (!isMissing(store, QLatin1String(step.table)))
        return;
    Transaction transaction(store, true);
    if (Query(store, step.create).exec()) {
        for (const char *sql : step.then)
            Query(store, sql).exec();
    }
    transaction.commit(true);
}

/// The columns belong to the creation of Net: a store that has the table already is not asked for them.
void addNet(const Store &store) {
    if (!isMissing(store, QStringLiteral("Net")))
        return;
    Transaction transaction(store, true);
    if (Query(store, kCreateNet).exec()) {
        networks::insert(store, networks::recordOf(gNet), false);
        for (const ColumnStep &step : kColumnsOfNet) {
            if (isMissing(store, step))
                Query(store, step.add).exec();
        }
    }
    transaction.commit(true);
}

void addPluginTable(const Store &store, const QString &table, const QString &create) {
    if (!isMissing(store, table))
        return;
    Transaction transaction(store, true);
    const QString counter =
        QStringLiteral("select * from IDGenerater where TableName = '%1'").arg(quoted(table));
    if (Query(store, create).exec() && !probes::returnsRow(store.db(), counter)) {
        const QString insert = QStringLiteral("insert into IDGenerater(TableName, id) values('%1', 0)");
        Query(store, insert.arg(quoted(table))).exec();
    }
    transaction.commit(true);
}

void addPluginTables(const Store &store) {
    if (!gpMoraPlugin || !gpMoraPlugin->tableProvider())
        return;
    const auto tables = gpMoraPlugin->tableProvider()->tables();
    for (const auto &[table, create] : tables)
        addPluginTable(store, table, create);
}

} // namespace

void toCurrentSchema(const Store &store) {
    addTable(store, kVehicleDetector);
    addTable(store, kDetectorVehiType);
    addNet(store);
    addTable(store, kRsu);
    addTable(store, kRoadWorkZone);
    addTable(store, kAccidentZone);
    addPluginTables(store);
}

} // namespace upgrade
