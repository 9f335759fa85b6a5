#include "store/schema/Upgrade.h"

#include "model/Net.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/families/Networks.h"
#include "store/schema/UpgradeSteps.h"

namespace upgrade {

namespace {

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

const std::vector<ColumnStep> kColumnsOfNet = {
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

/// The columns belong to the creation of Net: a store that has the table already is not asked for them.
void addNet(const Store &store) {
    if (!isMissing(store, QStringLiteral("Net")))
        return;
    OperationTransaction transaction(store, true);
    if (Query(store, kCreateNet).exec()) {
        networks::insertNetwork(store, networks::recordOf(store.net()), false);
        addColumns(store, kColumnsOfNet);
    }
    transaction.commit(true);
}

} // namespace

bool toCurrentSchema(const Store &store) {
    addTable(store, kVehicleDetector);
    addTable(store, kDetectorVehiType);
    addNet(store);
    addTable(store, kRsu);
    addTable(store, kRoadWorkZone);
    addTable(store, kAccidentZone);
    addPluginTables(store);
    return !store.lacksAnswer();
}

std::optional<bool> isPending(const QSqlDatabase &db, FailureList &failures) {
    for (const char *table : {kVehicleDetector.table, kDetectorVehiType.table, "Net", kRsu.table,
                              kRoadWorkZone.table, kAccidentZone.table}) {
        const auto isThere = probes::hasTable(db, QLatin1String(table), failures);
        if (!isThere.value_or(false))
            return isThere ? std::make_optional(true) : std::nullopt;
    }
    return false;
}

} // namespace upgrade
