#include "store/families/SimulateConfigurations.h"

#include "model/Description.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

namespace simulateconfigurations {

namespace {

constexpr Sql kCount = {"select count(*) from SimulateConfiguration",
                        "select count(*) from SimulateConfiguration where NetId = :NetId"};
constexpr Sql kInsertStandard = {
    "insert into SimulateConfiguration(simuTimeInterval, recordTrace, vehiCollectDataInterval, vehiQueueDataInterval, vehiTravelDataInterval, acceMultiples, simuAccuracy, randSeed) values(3600, 'F', 0, 0, 0, 1, 20, 0)",
    "insert into SimulateConfiguration(NetId, simuTimeInterval, recordTrace, vehiCollectDataInterval, vehiQueueDataInterval, vehiTravelDataInterval, acceMultiples, simuAccuracy, randSeed) values(%0, 3600, 'F', 0, 0, 0, 1, 20, 0)"};
// Generation 6 issues its update without "set" and every store refuses it: settings of a network stay at the
// standard row, which is what hosts of that generation run on.
constexpr Sql kUpdate = {
    "update SimulateConfiguration set simuTimeInterval = :simuTimeInterval, recordTrace = :recordTrace, vehiCollectDataInterval = :vehiCollectDataInterval, vehiQueueDataInterval = :vehiQueueDataInterval, vehiTravelDataInterval = :vehiTravelDataInterval, acceMultiples = :acceMultiples, simuAccuracy = :simuAccuracy, randSeed = :randSeed",
    "update SimulateConfiguration simuTimeInterval = :simuTimeInterval, recordTrace = :recordTrace, vehiCollectDataInterval = :vehiCollectDataInterval, vehiQueueDataInterval = :vehiQueueDataInterval, vehiTravelDataInterval = :vehiTravelDataInterval, acceMultiples = :acceMultiples, simuAccuracy = :simuAccuracy, randSeed = :randSeed where NetId = :NetId"};
constexpr Sql kSelect = {"select * from SimulateConfiguration",
                         "select * from SimulateConfiguration where NetId = %0"};

/// All columns but the acceleration multiple, which is a whole number in the store alone.
constexpr std::tuple kColumns = {
    Column{":simuTimeInterval", &SimulateConfiguration::simuTimeInterval},
    Column{":recordTrace", &SimulateConfiguration::recordTrace},
    Column{":vehiCollectDataInterval", &SimulateConfiguration::vehiCollectDataInterval},
    Column{":vehiQueueDataInterval", &SimulateConfiguration::vehiQueueDataInterval},
    Column{":vehiTravelDataInterval", &SimulateConfiguration::vehiTravelDataInterval},
    Column{":simuAccuracy", &SimulateConfiguration::simuAccuracy},
    Column{":randSeed", &SimulateConfiguration::randSeed},
};

template <class Row>
Row &bindRow(Row &row, const SimulateConfiguration &configuration) {
    return bindAll(row, kColumns, configuration).bind(":acceMultiples", configuration.acceMultiples());
}

template <class Row>
void readRow(Row &row, SimulateConfiguration &configuration) {
    readAll(row, kColumns, configuration);
    configuration.mAcceMultiples = row.integer("acceMultiples");
}

/// The number of rows; negative when they could not be counted.
long countRows(const Store &store) {
    Query count(store, kCount);
    count.bindNet();
    return count.execAndNext() ? count.firstId() : -1;
}

bool update(const Store &store, const SimulateConfiguration &configuration) {
    Query update(store, kUpdate);
    return bindRow(update, configuration).bindNet().exec();
}

bool insertStandard(const Store &store) {
    return Query(store, kInsertStandard).exec();
}

/// Without exactly one row the store gets the standard one, whatever the caller's values are; hosts save a
/// second time to write theirs.
bool saveToOneNet(const Store &store, const SimulateConfiguration &configuration, long count) {
    if (count == 1)
        return update(store, configuration);
    return Query(store, "delete from SimulateConfiguration").exec() && insertStandard(store);
}

bool saveToNet(const Store &store, const SimulateConfiguration &configuration, long count) {
    const bool seeded = count > 0 || insertStandard(store);
    return update(store, configuration) && seeded;
}

} // namespace

bool saveSimulateConfiguration(const Store &store, const SimulateConfiguration &configuration,
                               bool useTransaction) {
    const long count = countRows(store);
    if (count < 0)
        return false;
    OperationTransaction transaction(store, useTransaction);
    return transaction.commitIfGood(store.hasSeveralNets() ? saveToNet(store, configuration, count)
                                                           : saveToOneNet(store, configuration, count));
}

bool readSimulateConfiguration(const Store &store, SimulateConfiguration &configuration) {
    Query row(store, kSelect);
    if (!row.exec())
        return false;
    if (row.next())
        readRow(row, configuration);
    return row.isComplete();
}

void loadAllSimulateConfigurations(NetLoad &net) {
    std::optional<SimulateConfiguration> &simulation = net.contents.settings.simulation;
    // The first row counts. There is no order in which single reads take it, and so none here.
    net.forEachRow("SimulateConfiguration", "", [&](Rows &row) {
        if (!simulation)
            readRow(row, simulation.emplace());
        else
            net.skip("SimulateConfiguration", net.store.netId(), "stands behind another row of settings");
    });
}

void saveAllSimulateConfigurations(NetSave &net) {
    const std::optional<SimulateConfiguration> &simulation = net.contents.settings.simulation;
    if (!simulation)
        return;
    net.empty("SimulateConfiguration");
    net.write("SimulateConfiguration", 1,
              [&simulation](RowWriter &row) { bindRow(row.bindNet(), *simulation).exec(); });
}

} // namespace simulateconfigurations

Description describe(const SimulateConfiguration &configuration) {
    QVariantMap fields = describeAll(simulateconfigurations::kColumns, configuration);
    fields.insert(QStringLiteral("acceMultiples"), configuration.acceMultiples());
    return {1, {}, fields};
}
