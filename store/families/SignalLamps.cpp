#include "store/families/SignalLamps.h"

#include "model/Description.h"
#include "model/SignalLamp.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Wholeness.h"

#include <algorithm>
#include <memory>

namespace signallamps {

namespace {

constexpr Sql kInsert = {
    "insert into SignalLamp(signalLampID, signalPhaseID, laneID, toLaneID, name, x, y, z) values(:signalLampID, :signalPhaseID, :laneID, :toLaneID, :name, :x, :y, :z)",
    "insert into SignalLamp(NetId, signalLampID, signalPhaseID, laneID, toLaneID, name, x, y, z) values(:NetId, :signalLampID, :signalPhaseID, :laneID, :toLaneID, :name, :x, :y, :z)"};
// A lamp on a lane that is gone is not found. In generation 6 the lane may be one of any network, so that one
// lamp can come in several rows; the columns that both tables have are the lamp's first.
constexpr Sql kSelect = {
    "select * from SignalLamp where laneID in (select LaneID from Lane) and signalLampID = %1",
    "select * from SignalLamp as a join Lane as b on a.laneID = b.laneID where a.NetId = %0 and a.signalLampID = %1"};
constexpr Sql kSelectIds = {"select signalLampID from SignalLamp order by signalLampID",
                            "select signalLampID from SignalLamp where NetId = %0 order by signalLampID"};

constexpr std::tuple kColumns = {
    Column{":signalLampID", &SignalLamp::signalLampID},
    Reference{":signalPhaseID", &SignalLamp::mpPhase, &SignalPhase::signalPhaseID},
    Column{":laneID", &SignalLamp::laneID},
    Column{":toLaneID", &SignalLamp::toLaneID},
    Column{":name", &SignalLamp::name},
    Column{":x", &SignalLamp::x},
    Column{":y", &SignalLamp::y},
    Column{":z", &SignalLamp::z},
};

/// Gives the lamp its phase, and enters it into the phase's lamps unless an earlier read of the same lamp
/// gave one that is there.
void enterInto(SignalPhase *phase, SignalLamp *lamp) {
    const QList<SignalLamp *> &lamps = phase->mlLamp;
    const bool isThere = std::any_of(lamps.cbegin(), lamps.cend(), [lamp](const SignalLamp *other) {
        return other->signalLampID == lamp->signalLampID;
    });
    if (isThere)
        lamp->mpPhase = phase;
    else
        lamp->setPhase(phase);
}

/// A lamp of the phase that the current network knows; null without that phase.
template <class Row>
std::unique_ptr<SignalLamp> readRow(Row &row) {
    SignalPhase *phase = row.store().net().getSignalPhaseById(row.id("signalPhaseID"));
    if (!phase)
        return nullptr;
    auto lamp = std::make_unique<SignalLamp>();
    readAll(row, kColumns, *lamp);
    enterInto(phase, lamp.get());
    return lamp;
}

} // namespace

bool insertSignalLamp(const Store &store, SignalLamp *lamp, bool inTransaction) {
    if (!lamp)
        return true;
    if (!wholeness::isWhole(store, *lamp))
        return false;
    OperationTransaction transaction(store, inTransaction);
    Query insert(store, kInsert);
    return transaction.commit(bindAll(insert.bindNet(), kColumns, *lamp).exec());
}

SignalLamp *readSignalLamp(const Store &store, long id) {
    // The phase is resolved through the current network alone.
    if (!isCurrentNet(store))
        return nullptr;
    Query row(store, kSelect, {id});
    if (!row.execAndNext())
        return nullptr;
    return readRow(row).release();
}

/// The single reads give a lamp also where its lane belongs to no link, or to another network. Such a lane is
/// not loaded, so that the lamp could not be saved again.
void loadAllSignalLamps(NetLoad &net) {
    net.forEachObject("SignalLamp", "signalLampID", [&net](Rows &row) {
        const long laneId = row.id("laneID");
        const long id = row.id("signalLampID");
        if (!net.store.net().getLaneById(laneId))
            net.skip("SignalLamp", id, "stands on a lane that is missing");
        else if (auto lamp = readRow(row))
            net.contents.traffic.signalLamps.push_back(std::move(lamp));
        else
            net.skip("SignalLamp", id, "names a phase that is missing");
    });
}

void saveAllSignalLamps(NetSave &net) {
    const Objects<SignalLamp> &lamps = net.contents.traffic.signalLamps;
    net.giveIds("SignalLamp", lamps, &SignalLamp::signalLampID);
    net.writeEach("SignalLamp", lamps,
                  [](RowWriter &row, const SignalLamp &lamp) { bindAll(row, kColumns, lamp); });
}

bool listSignalLampIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

} // namespace signallamps

Description describe(const SignalLamp &lamp) {
    return {lamp.signalLampID, lamp.name, describeAll(signallamps::kColumns, lamp)};
}
