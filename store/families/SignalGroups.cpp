#include "store/families/SignalGroups.h"

#include "model/SignalGroup.h"
#include "model/SpecialWords.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"
#include "store/families/CurrentNet.h"

#include <memory>

namespace signalgroups {

namespace {

constexpr Sql kInsert = {
    "insert into SignalGroup(signalGroupID, name, timeLength, startTime, endTime) values(:signalGroupID, :name, :timeLength, :startTime, :endTime)",
    "insert into SignalGroup(NetId, signalGroupID, name, timeLength, startTime, endTime) values(:NetId, :signalGroupID, :name, :timeLength, :startTime, :endTime)"};
constexpr Sql kInsertPhase = {
    "insert into SignalPhase(signalPhaseID, signalGroupID, serialNumber, name) values(:signalPhaseID, :signalGroupID, :serialNumber, :name)",
    "insert into SignalPhase(NetId, signalPhaseID, signalGroupID, serialNumber, name) values(:NetId, :signalPhaseID, :signalGroupID, :serialNumber, :name)"};
constexpr Sql kInsertColor = {
    "insert into SignalColor(signalPhaseID, serialNumber, color, timeLength) values(:signalPhaseID, :serialNumber, :color, :timeLength)",
    "insert into SignalColor(NetId, signalPhaseID, serialNumber, color, timeLength) values(:NetId, :signalPhaseID, :serialNumber, :color, :timeLength)"};

constexpr Sql kSelect = {"select * from SignalGroup where signalGroupID = %1",
                         "select * from SignalGroup where NetId = %0 and signalGroupID = %1"};
constexpr Sql kSelectPhases = {"select * from SignalPhase where signalGroupID = %1",
                               "select * from SignalPhase where NetId = %0 and signalGroupID = %1"};
constexpr Sql kSelectColors = {
    "select * from SignalColor where signalPhaseID = %1 order by serialNumber",
    "select * from SignalColor where NetId = %0 and signalPhaseID = %1 order by serialNumber"};
constexpr Sql kSelectIds = {"select signalGroupID from SignalGroup order by signalGroupID",
                            "select signalGroupID from SignalGroup where NetId = %0 order by signalGroupID"};

// Stores of version 1 misspell the column; the placeholder is spelled as ever.
constexpr const char *kInsertColorMisspelt =
    "insert into SignalColor(signalPhaseID, serialNnumber, color, timeLength) values(:signalPhaseID, :serialNumber, :color, :timeLength)";
constexpr const char *kSelectColorsMisspelt =
    "select * from SignalColor where signalPhaseID = %1 order by serialNnumber";

bool insertRow(const Store &store, const SignalGroup &group) {
    Query insert(store, kInsert);
    return insert.bindNet()
        .bind(":signalGroupID", group.signalGroupID)
        .bind(":name", group.name)
        .bind(":timeLength", group.timeLength)
        .bind(":startTime", group.startTime)
        .bind(":endTime", group.endTime)
        .exec();
}

bool insertColors(Query &insert, const SignalPhase &phase) {
    bool written = true;
    int number = 0;
    for (const Online::ColorInterval &step : phase.mlColor) {
        insert.bindNet()
            .bind(":signalPhaseID", phase.signalPhaseID)
            .bind(":serialNumber", ++number)
            .bind(":color", gSpecialWords.trZhToEn(step.color))
            .bind(":timeLength", step.interval);
        written = insert.exec() && written;
    }
    return written;
}

bool insertPhases(const Store &store, const SignalGroup &group) {
    bool written = true;
    Query insert(store, kInsertPhase);
    Query insertColor(store, store.hasMisspeltSerialNumber() ? QString::fromLatin1(kInsertColorMisspelt)
                                                             : store.text(kInsertColor));
    for (const SignalPhase *phase : group.mlPhase) {
        insert.bindNet()
            .bind(":signalPhaseID", phase->signalPhaseID)
            .bind(":signalGroupID", group.signalGroupID)
            .bind(":serialNumber", phase->serialNumber)
            .bind(":name", phase->name);
        written = insert.exec() && written;
        written = insertColors(insertColor, *phase) && written;
    }
    return written;
}

std::unique_ptr<SignalGroup> readRow(const Store &store, long id) {
    Query row(store, kSelect, {id});
    if (!row.execAndNext())
        return nullptr;
    auto group = std::make_unique<SignalGroup>();
    group->signalGroupID = row.id("signalGroupID");
    group->name = row.text("name");
    group->timeLength = row.integer("timeLength");
    group->startTime = row.integer("startTime");
    group->endTime = row.integer("endTime");
    return group;
}

/// Phases come in the store's row order.
void readPhases(const Store &store, SignalGroup &group, long groupId) {
    Query rows(store, kSelectPhases, {groupId});
    if (!rows.exec())
        return;
    while (rows.next()) {
        auto phase = std::make_unique<SignalPhase>();
        phase->signalPhaseID = rows.id("signalPhaseID");
        phase->serialNumber = rows.integer("serialNumber");
        phase->name = rows.text("name");
        group.mlPhase.append(phase.release());
    }
}

void readColors(const Store &store, SignalPhase &phase) {
    const long id = phase.signalPhaseID;
    Query rows(store, store.hasMisspeltSerialNumber()
                          ? fillNumber(QString::fromLatin1(kSelectColorsMisspelt), id)
                          : store.text(kSelectColors, {id}));
    if (!rows.exec())
        return;
    while (rows.next())
        phase.mlColor.append({gSpecialWords.trEnToZh(rows.text("color")), rows.integer("timeLength")});
}

} // namespace

bool insert(const Store &store, SignalGroup *group, bool inTransaction) {
    if (!group)
        return true;
    Transaction transaction(store, inTransaction);
    bool written = insertRow(store, *group);
    written = insertPhases(store, *group) && written;
    return transaction.commit(written);
}

SignalGroup *read(const Store &store, long id) {
    std::unique_ptr<SignalGroup> group = readRow(store, id);
    if (!group)
        return nullptr;
    readPhases(store, *group, id);
    for (SignalPhase *phase : qAsConst(group->mlPhase)) {
        readColors(store, *phase);
        if (isCurrentNet(store))
            gNet.enter(phase);
    }
    return group.release();
}

bool listIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

} // namespace signalgroups
