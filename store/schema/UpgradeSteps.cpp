#include "store/schema/UpgradeSteps.h"

#include "store/core/OperationTransaction.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"

#include <MoraInterfaces/MoraInterfaces.h>

namespace upgrade {

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

namespace {

bool isNo(const Store &store, const probes::Answer &answer) {
    store.requireAnswer(answer.has_value());
    return !answer.value_or(true);
}

} // namespace

bool isMissing(const Store &store, const QString &table) {
    return !store.isGivenUp() && isNo(store, probes::hasTable(store.db(), table, store.failures()));
}

bool isMissing(const Store &store, const ColumnStep &step) {
    return !store.isGivenUp() && isNo(store, hasColumn(store.db(), step, store.failures()));
}

std::optional<bool> hasColumn(const QSqlDatabase &db, const ColumnStep &step, FailureList &failures) {
    const QString sql = QStringLiteral(
        "select * from sqlite_master where type = 'table' and name = '%1' and sql like('%%2%')");
    return probes::returnsRow(db, sql.arg(QLatin1String(step.table), QLatin1String(step.column)), failures);
}

void addTable(const Store &store, const TableStep &step) {
    if (!isMissing(store, QLatin1String(step.table)))
        return;
    OperationTransaction transaction(store, true);
    if (Query(store, step.create).exec()) {
        for (const char *sql : step.then)
            Query(store, sql).exec();
    }
    transaction.commit(true);
}

void addColumns(const Store &store, const std::vector<ColumnStep> &steps) {
    for (const ColumnStep &step : steps) {
        if (isMissing(store, step))
            Query(store, step.add).exec();
    }
}

namespace {

void addPluginTable(const Store &store, const QString &table, const QString &create) {
    if (!isMissing(store, table))
        return;
    OperationTransaction transaction(store, true);
    const QString counter =
        QStringLiteral("select * from IDGenerater where TableName = '%1'").arg(quoted(table));
    if (Query(store, create).exec() &&
        isNo(store, probes::returnsRow(store.db(), counter, store.failures()))) {
        const QString insert = QStringLiteral("insert into IDGenerater(TableName, id) values('%1', 0)");
        Query(store, insert.arg(quoted(table))).exec();
    }
    transaction.commit(true);
}

} // namespace

void addPluginTables(const Store &store) {
    if (!gpMoraPlugin || !gpMoraPlugin->tableProvider())
        return;
    const auto tables = gpMoraPlugin->tableProvider()->tables();
    for (const auto &[table, create] : tables)
        addPluginTable(store, table, create);
}

} // namespace upgrade
