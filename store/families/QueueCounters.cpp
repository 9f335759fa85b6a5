#include "store/families/QueueCounters.h"

#include "model/Description.h"
#include "model/VehicleQueueCounter.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"

#include <memory>

namespace queuecounters {

namespace {

constexpr Sql kInsert = {
    "insert into VehicleQueueCounter(queueCounterID, name, roadID, laneNumber, toLaneNumber, x, y, z, distance, speedLowLimit, speedUpLimit, maxDistInterval, maxQueueLength, startTime, endTime, dataInterval,countInterval) values(:queueCounterID, :name, :roadID, :laneNumber, :toLaneNumber, :x, :y, :z, :distance, :speedLowLimit, :speedUpLimit, :maxDistInterval, :maxQueueLength, :startTime, :endTime, :dataInterval,:countInterval)",
    "insert into VehicleQueueCounter(NetId, queueCounterID, name, roadID, laneNumber, toLaneNumber, x, y, z, distance, speedLowLimit, speedUpLimit, maxDistInterval, maxQueueLength, startTime, endTime, dataInterval,countInterval) values(:NetId, :queueCounterID, :name, :roadID, :laneNumber, :toLaneNumber, :x, :y, :z, :distance, :speedLowLimit, :speedUpLimit, :maxDistInterval, :maxQueueLength, :startTime, :endTime, :dataInterval,:countInterval)"};
constexpr Sql kSelect = {"select * from VehicleQueueCounter where queueCounterID = %1",
                         "select * from VehicleQueueCounter where NetId = %0 and queueCounterID = %1"};
// Generation 6 lists the counters of vanished roads too.
constexpr Sql kSelectIds = {
    "select QueueCounterID from VehicleQueueCounter where roadID in (select linkID from link) or roadID in (select ConnID from Connector) order by queueCounterID",
    "select QueueCounterID from VehicleQueueCounter where NetId = %0 order by queueCounterID"};

constexpr std::tuple kColumns = {
    Column{":queueCounterID", &VehicleQueueCounter::queueCounterID},
    Column{":name", &VehicleQueueCounter::name},
    Column{":roadID", &VehicleQueueCounter::roadID},
    Column{":laneNumber", &VehicleQueueCounter::laneNumber},
    Column{":toLaneNumber", &VehicleQueueCounter::toLaneNumber},
    Column{":x", &VehicleQueueCounter::x},
    Column{":y", &VehicleQueueCounter::y},
    Column{":z", &VehicleQueueCounter::z},
    Column{":distance", &VehicleQueueCounter::distance},
    Column{":speedLowLimit", &VehicleQueueCounter::speedLowLimit},
    Column{":speedUpLimit", &VehicleQueueCounter::speedUpLimit},
    Column{":maxDistInterval", &VehicleQueueCounter::maxDistInterval},
    Column{":maxQueueLength", &VehicleQueueCounter::maxQueueLength},
    Column{":startTime", &VehicleQueueCounter::startTime},
    Column{":endTime", &VehicleQueueCounter::endTime},
    Column{":dataInterval", &VehicleQueueCounter::dataInterval},
    Column{":countInterval", &VehicleQueueCounter::countInterval},
};

} // namespace

bool insertQueueCounter(const Store &store, const VehicleQueueCounter *counter, bool inTransaction) {
    if (!counter)
        return true;
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    return transaction.discard(bindAll(insert.bindNet(), kColumns, *counter).exec());
}

VehicleQueueCounter *readQueueCounter(const Store &store, long counterId) {
    auto counter = std::make_unique<VehicleQueueCounter>(store.net());
    Query row(store, kSelect, {counterId});
    if (row.execAndNext())
        readAll(row, kColumns, *counter);
    return counter.release();
}

bool listQueueCounterIds(const Store &store, QList<long> &ids) {
    appendIds(store, kSelectIds, ids);
    return true;
}

void loadAllQueueCounters(NetLoad &net) {
    net.forEachObject("VehicleQueueCounter", "queueCounterID", [&net](Rows &row) {
        auto counter = std::make_unique<VehicleQueueCounter>(net.store.net());
        readAll(row, kColumns, *counter);
        if (net.store.hasSeveralNets() || net.isLoaded(counter->roadID))
            net.contents.traffic.queueCounters.push_back(std::move(counter));
        else
            net.skip("VehicleQueueCounter", counter->queueCounterID, "stands on a road that is missing");
    });
}

void saveAllQueueCounters(NetSave &net) {
    const Objects<VehicleQueueCounter> &counters = net.contents.traffic.queueCounters;
    net.giveIds("VehicleQueueCounter", counters, &VehicleQueueCounter::queueCounterID);
    net.writeEach("VehicleQueueCounter", counters, [](RowWriter &row, const VehicleQueueCounter &counter) {
        bindAll(row, kColumns, counter);
    });
}

} // namespace queuecounters

Description describe(const VehicleQueueCounter &counter) {
    return {counter.queueCounterID, counter.name, describeAll(queuecounters::kColumns, counter)};
}
