#include "model/SimulateConfiguration.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/families/SimulateConfigurations.h"
#include "store/ids/Identifiers.h"
#include "store/schema/Dictionaries.h"
#include "store/schema/Upgrade.h"
#include "store/schema/UpgradeSteps.h"

#include <algorithm>

namespace upgrade {

namespace {

/// Counters of the tables that first-generation stores know. "General" counts what belongs to no table.
constexpr const char *kCounters[] = {"RoutingFLowRatio",
                                     "ParkingLot",
                                     "EventArea",
                                     "BusStationLine",
                                     "SignalLamp",
                                     "General",
                                     "VehicleTravelDetector",
                                     "VehicleQueueCounter",
                                     "VehicleDrivInfoCollecter",
                                     "VehicleConstitutent",
                                     "SignalPhase",
                                     "SignalGroup",
                                     "Routing",
                                     "ReduceSpeedInterval",
                                     "ReduceSpeedArea",
                                     "DriveFollowModelParam",
                                     "DepartureInterval",
                                     "ChangeLaneModelParam",
                                     "BusStation",
                                     "BusLine",
                                     "DeparturePoint",
                                     "DecisionPoint",
                                     "LaneConnector",
                                     "Connector",
                                     "Link",
                                     "Vertex"};

const TableStep kRoutingFlowRatio = {
    "RoutingFLowRatio",
    "create table RoutingFLowRatio ("
    "RoutingFLowRatioID Bigint not null,"
    "routingID Bigint not null,"
    "startDateTime Bigint not null,"
    "endDateTime Bigint not null,"
    "ratio Numeric(9, 2) not null,"
    "constraint PK_ROUTINGFLOWRATIO primary key(RoutingFLowRatioID),"
    "constraint FK_ROUTINGF_R32_ROUTING foreign key(routingID) references Routing(routingID) "
    "on update restrict on delete restrict"
    ");",
    {}};

const TableStep kSimulateConfiguration = {"SimulateConfiguration",
                                          "create table SimulateConfiguration ("
                                          "simuTimeInterval Integer not null,"
                                          "recordTrace Char(1) not null default 'F',"
                                          "vehiCollectDataInterval Integer not null default 0,"
                                          "vehiQueueDataInterval Integer not null default 0,"
                                          "vehiTravelDataInterval Integer not null default 0,"
                                          "acceMultiples Integer not null default 1,"
                                          "simuAccuracy Integer not null default 20,"
                                          "randSeed Integer not null default 0"
                                          ");",
                                          {}};

const TableStep kDbVersion = {"DbVersion",
                              "create table DbVersion ("
                              "versionId Bigint not null,"
                              "appVersion Varchar(32) not null,"
                              "updateContent Text not null,"
                              "updateDate Varchar(8) not null,"
                              "constraint PK_DBVERSION primary key (versionId)"
                              ");",
                              {}};

// The key takes the name of the lane table's; the names of constraints are part of the format.
const TableStep kGuideArrow = {"GuideArrow",
                               "create table GuideArrow ("
                               "guideArrowID Bigint not null,"
                               "laneID Bigint not null,"
                               "length Numeric(6,2) not null,"
                               "distToTerminal Numeric(6,2) not null,"
                               "arrowType int not null,"
                               "constraint PK_LANE primary key(guideArrowID),"
                               "constraint FK_GuideArrow_R2_Lane foreign key(laneID) references Lane(laneID) "
                               "on update restrict on delete restrict"
                               ");",
                               {"insert into IDGenerater([TableName], [ID]) values('GuideArrow', 0)"}};

const TableStep kLogger = {"Logger",
                           "create table Logger ("
                           "[logID] Bigint NOT NULL,"
                           "[appVersionName] Varchar(32) NOT NULL,"
                           "[appVersionDate] Varchar(32) NOT NULL,"
                           "[operation] Varchar(1000) NOT NULL,"
                           "[operDate] Char(14) NOT NULL,"
                           "primary key (logID)"
                           ");",
                           {}};

const std::vector<ColumnStep> kLaterColumnsOfLogger = {
    {"Logger", "userName", "ALTER TABLE Logger ADD userName Varchar(64)"},
    {"Logger", "hostName", "ALTER TABLE Logger ADD hostName Varchar(64)"},
    {"Logger", "pluginName", "ALTER TABLE Logger ADD pluginName Varchar(64)"},
    {"Logger", "pluginVersion", "ALTER TABLE Logger ADD pluginVersion Varchar(32)"},
    {"Logger", "pluginOperation", "ALTER TABLE Logger ADD pluginOperation Varchar(1000)"},
    {"Logger", "remark", "ALTER TABLE Logger ADD remark Varchar(1000)"},
};

QString withTable(const char *sql, const char *table) {
    return QString::fromLatin1(sql).arg(QLatin1String(table));
}

QString moveCounter(const char *table, long id) {
    const QString sql = QStringLiteral("update IDGenerater set ID = %1 where TableName = '%2'");
    return fillNumber(sql, id).arg(QLatin1String(table));
}

/// First-generation stores count everything in one row; later ones have a row per table. A counter starts
/// with the first column of its table's first row.
void rebuildCounters(const Store &store) {
    Query count(store, "select count(*) from IDGenerater");
    if (!count.execAndNext() || count.firstId() > 1)
        return;
    count.finish();
    OperationTransaction transaction(store, true);
    Query(store, "drop table IDGenerater").exec();
    Query(store, "CREATE TABLE [IDGenerater] ([TableName] VARCHAR(32) NOT NULL, [ID] Bigint NOT NULL)")
        .exec();
    for (const char *table : kCounters)
        Query(store, withTable("insert into IDGenerater(TableName, ID) values('%1', 0)", table)).exec();
    for (const char *table : kCounters) {
        // Not every store has every table, so this is a probe: one that is missing is no failure.
        if (isMissing(store, QLatin1String(table)))
            continue;
        Query rows(store, withTable("select * from '%1'", table));
        if (!rows.execAndNext())
            continue;
        const long first = rows.firstId();
        rows.finish();
        Query(store, moveCounter(table, first)).exec();
    }
    transaction.commitIfGood(!store.isGivenUp());
}

void ensureFlowRatioCounter(const Store &store) {
    Query counter(store, "select * from IDGenerater where [TableName] = 'RoutingFLowRatio'");
    if (counter.returnsRow().value_or(true))
        return;
    counter.finish();
    Query(store, "insert into IDGenerater(TableName, ID) values('RoutingFLowRatio', 0)").exec();
}

/// Every route gets its share for the whole of the standard time span, seconds 1 to 3600.
void addFlowRatios(const Store &store) {
    if (!isMissing(store, QLatin1String(kRoutingFlowRatio.table)))
        return;
    OperationTransaction transaction(store, true);
    QList<QPair<long, double>> routes;
    if (Query(store, kRoutingFlowRatio.create).exec()) {
        Query rows(store, "select routingID, proportion from Routing");
        const bool isRead = rows.exec();
        while (rows.next())
            routes.append({rows.id("routingID"), rows.number("proportion")});
        // The table is filled once, when it is made: without the routes it has to wait for the next run.
        if ((!isRead || !rows.isComplete()) && !isMissing(store, QStringLiteral("Routing"))) {
            transaction.rollBack();
            return;
        }
    }
    Query insert(
        store,
        "insert into RoutingFLowRatio(RoutingFLowRatioID, routingID, startDateTime, endDateTime, ratio) values(:RoutingFLowRatioID, :routingID, :startDateTime, :endDateTime, :ratio)");
    for (const auto &[routingID, proportion] : qAsConst(routes)) {
        long id = 0;
        if (!identifiers::next(store, QStringLiteral("RoutingFLowRatio"), id))
            continue;
        insert.bind(":RoutingFLowRatioID", id).bind(":routingID", routingID);
        insert.bind(":startDateTime", 1).bind(":endDateTime", 3600).bind(":ratio", proportion).exec();
    }
    transaction.commit(true);
}

void addSimulateConfiguration(const Store &store) {
    if (!isMissing(store, QLatin1String(kSimulateConfiguration.table)))
        return;
    OperationTransaction transaction(store, true);
    if (Query(store, kSimulateConfiguration.create).exec())
        simulateconfigurations::saveSimulateConfiguration(store, SimulateConfiguration(), false);
    transaction.commit(true);
}

/// Sets of the car-following model, where there are none.
void addFollowingSets(const Store &store) {
    OperationTransaction transaction(store, true);
    transaction.commit(dictionaries::seedFollowingSets(store));
}

bool loggerLacksColumns(const Store &store) {
    return std::any_of(kLaterColumnsOfLogger.cbegin(), kLaterColumnsOfLogger.cend(),
                       [&store](const ColumnStep &step) { return isMissing(store, step); });
}

void addLogger(const Store &store) {
    addTable(store, kLogger);
    if (!loggerLacksColumns(store))
        return;
    OperationTransaction transaction(store, true);
    addColumns(store, kLaterColumnsOfLogger);
    transaction.commit(true);
}

/// Whether a name or the version says that columns are misspelt.
bool isMisspelt(const Store &store) {
    const auto hasColumn = probes::hasMisspeltColumn(store.db(), store.failures());
    const auto version = probes::dbVersion(store.db(), store.failures());
    store.requireAnswer(hasColumn && version);
    return !store.isGivenUp() && (*hasColumn || *version == 1);
}

bool respell(const Store &store, const QString &table) {
    const auto misspelt =
        probes::columnsContaining(store.db(), table, QStringLiteral("Nnumber"), store.failures());
    bool respelled = misspelt.has_value();
    for (const QString &column : misspelt.value_or(QStringList())) {
        QString spelled = column;
        spelled.replace(QStringLiteral("Nnumber"), QStringLiteral("Number"));
        Query rename(store, QStringLiteral("ALTER TABLE %1 RENAME COLUMN %2 TO %3")
                                .arg(identifierAsStored(table), identifierAsStored(column),
                                     identifierAsStored(spelled)));
        respelled = rename.exec() && respelled;
    }
    return respelled;
}

/// Spells the columns as every later version does, and takes the store off version 1, so that its statements
/// agree.
void repairMisspeltColumns(const Store &store) {
    if (store.isGivenUp() || !isMisspelt(store))
        return;
    const auto tables = probes::tables(store.db(), store.failures());
    OperationTransaction transaction(store, true);
    bool repaired = tables.has_value();
    for (const QString &table : tables.value_or(probes::Tables()).plain)
        repaired = respell(store, table) && repaired;
    if (repaired)
        repaired = Query(store, "update DbVersion set versionId = 2 where versionId = 1").exec();
    transaction.commitIfGood(repaired);
}

} // namespace

void firstGeneration(const Store &store) {
    rebuildCounters(store);
    ensureFlowRatioCounter(store);
    addFollowingSets(store);
    addFlowRatios(store);
    addSimulateConfiguration(store);
    addTable(store, kDbVersion);
    addTable(store, kGuideArrow);
    addLogger(store);
    addTable(store, kVehicleDetector);
    addTable(store, kDetectorVehiType);
    addPluginTables(store);
    repairMisspeltColumns(store);
}

std::optional<bool> isFirstGeneration(const QSqlDatabase &db, FailureList &failures) {
    const auto version = probes::dbVersion(db, failures);
    if (!version || *version == 1 || probes::hasSeveralNets(*version))
        return version ? std::make_optional(*version == 1) : std::nullopt;
    for (const TableStep *step :
         {&kRoutingFlowRatio, &kSimulateConfiguration, &kDbVersion, &kGuideArrow, &kLogger}) {
        const auto isThere = probes::hasTable(db, QLatin1String(step->table), failures);
        if (!isThere.value_or(false))
            return isThere ? std::make_optional(true) : std::nullopt;
    }
    for (const ColumnStep &step : kLaterColumnsOfLogger) {
        const auto isThere = hasColumn(db, step, failures);
        if (!isThere.value_or(false))
            return isThere ? std::make_optional(true) : std::nullopt;
    }
    return probes::hasMisspeltColumn(db, failures);
}

} // namespace upgrade
