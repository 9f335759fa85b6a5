#include "tools/checks/Repair.h"

#include "tools/checks/Checked.h"
#include "tools/checks/RepairPlan.h"
#include "tools/reports/Failure.h"
#include "tools/rows/StoreReader.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreBackup.h"
#include "tools/session/StoreSession.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>

#include <iterator>

namespace moratools {

namespace {

void append(std::vector<PlannedRepair> &plan, std::vector<PlannedRepair> more) {
    std::move(more.begin(), more.end(), std::back_inserter(plan));
}

std::vector<PlannedRepair> planFor(const StoreAddress &address, const std::vector<std::string> &networks) {
    const StoreReader rows(address);
    std::vector<PlannedRepair> plan = repairsOfStore(Checked(rows));
    if (networks.empty() && isEmpty(rows))
        return plan;
    for (const StoreReader::Network &network : rows.networksOf(networks)) {
        const Checked checked(rows, network, nullptr, {});
        for (const auto repairs : {repairsOfCounters, repairsOfOrphans, repairsOfShares, repairsOfLines})
            append(plan, repairs(checked));
    }
    return plan;
}

void run(const StoreSession &store, const RepairStep &step) {
    QSqlQuery query(store.db());
    query.prepare(step.sql);
    for (const QVariant &value : step.values)
        query.addBindValue(value);
    if (query.exec())
        return;
    requireServer(query);
    throw Failure(QStringLiteral("the store refuses a repair (%1); nothing was changed")
                      .arg(query.lastError().databaseText().simplified()));
}

void carryOut(const StoreAddress &address, const std::vector<std::string> &networks, Repairs &repairs) {
    const StoreSession store(address, Access::Write);
    GuardedTransaction transaction(store);
    // Nobody else writes from here on: what is repaired is what is there now.
    for (const PlannedRepair &repair : planFor(address, networks)) {
        for (const RepairStep &step : repair.steps)
            run(store, step);
        repairs.done.append(repair.text);
    }
    transaction.commit();
}

} // namespace

Repairs repairStore(const StoreAddress &address, const std::vector<std::string> &networks, bool keepsCopy) {
    Repairs repairs;
    if (planFor(address, networks).empty())
        return repairs;
    StoreSession::require(address, Access::Write);
    if (keepsCopy && !address.isServer())
        repairs.copy = keepCopy(address.path(), QStringLiteral("fix"));
    try {
        carryOut(address, networks, repairs);
    } catch (...) {
        // It would be a copy of what is there.
        if (!repairs.copy.isEmpty())
            QFile::remove(repairs.copy);
        throw;
    }
    return repairs;
}

} // namespace moratools
