#include "store/families/SignalGroups.h"

#include "model/Description.h"
#include "model/SignalGroup.h"
#include "model/SpecialWords.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/Owners.h"
#include "store/bulk/StoredWord.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Wholeness.h"

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

constexpr std::tuple kColumns = {
    Column{":signalGroupID", &SignalGroup::signalGroupID},
    Column{":name", &SignalGroup::name},
    Column{":timeLength", &SignalGroup::timeLength},
    Column{":startTime", &SignalGroup::startTime},
    Column{":endTime", &SignalGroup::endTime},
};
constexpr std::tuple kPhaseColumns = {
    Column{":signalPhaseID", &SignalPhase::signalPhaseID},
    Column{":signalGroupID", &SignalGroup::signalGroupID},
    Column{":serialNumber", &SignalPhase::serialNumber},
    Column{":name", &SignalPhase::name},
};
constexpr Word kColor{":color", &Online::ColorInterval::color};
/// But for the phase and the place in it.
constexpr std::tuple kColorColumns = {
    kColor,
    Column{":timeLength", &Online::ColorInterval::interval},
};

template <class Row>
Row &bindColor(Row &row, const char *serialNumber, const SignalPhase &phase, int number,
               const Online::ColorInterval &step, const QString &storedColor) {
    row.bind(":signalPhaseID", phase.signalPhaseID)
        .bind(serialNumber, number)
        .bind(kColor.placeholder, storedColor);
    return bindAll(row, kColorColumns, step);
}

bool insertRow(const Store &store, const SignalGroup &group) {
    Query insert(store, kInsert);
    return bindAll(insert.bindNet(), kColumns, group).exec();
}

bool insertColors(Query &insert, const SignalPhase &phase) {
    bool written = true;
    int number = 0;
    for (const Online::ColorInterval &step : phase.mlColor) {
        bindColor(insert.bindNet(), ":serialNumber", phase, ++number, step,
                  insert.store().words().trZhToEn(step.color));
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
        written = bindAll(insert.bindNet(), kPhaseColumns, *phase, group).exec() && written;
        written = insertColors(insertColor, *phase) && written;
    }
    return written;
}

template <class Row>
std::unique_ptr<SignalGroup> readRow(Row &row) {
    auto group = std::make_unique<SignalGroup>();
    readAll(row, kColumns, *group);
    return group;
}

template <class Row>
std::unique_ptr<SignalPhase> readPhase(Row &row) {
    auto phase = std::make_unique<SignalPhase>();
    readAll(row, kPhaseColumns, *phase);
    return phase;
}

template <class Row>
Online::ColorInterval readColor(Row &row) {
    return {row.store().words().trEnToZh(row.text("color")), row.integer("timeLength")};
}

/// Appends a colour to a phase, and its word as it is stored when one of the phase would be written
/// otherwise.
template <class Row>
void appendColor(Row &row, SignalPhase &phase) {
    const QString stored = row.text("color");
    const Online::ColorInterval step = readColor(row);
    if (!phase.storedColors.isEmpty() ||
        !storedword::kept(row.store().words(), stored, step.color).isEmpty()) {
        for (int i = phase.storedColors.size(); i < phase.mlColor.size(); ++i)
            phase.storedColors.append(row.store().words().storedWord(phase.mlColor.at(i).color));
        phase.storedColors.append(stored);
    }
    phase.mlColor.append(step);
}

/// Phases come in the store's row order.
void readPhases(const Store &store, SignalGroup &group, long groupId) {
    Query rows(store, kSelectPhases, {groupId});
    if (!rows.execPart())
        return;
    while (rows.next())
        group.mlPhase.append(readPhase(rows).release());
}

void readColors(const Store &store, SignalPhase &phase) {
    const long id = phase.signalPhaseID;
    Query rows(store, store.hasMisspeltSerialNumber()
                          ? fillNumber(QString::fromLatin1(kSelectColorsMisspelt), id)
                          : store.text(kSelectColors, {id}));
    if (!rows.execPart())
        return;
    while (rows.next())
        appendColor(rows, phase);
}

} // namespace

bool insertSignalGroup(const Store &store, SignalGroup *group, bool inTransaction) {
    if (!group)
        return true;
    if (!wholeness::isWhole(store, *group))
        return false;
    OperationTransaction transaction(store, inTransaction);
    bool written = insertRow(store, *group);
    written = insertPhases(store, *group) && written;
    return transaction.commit(written);
}

SignalGroup *readSignalGroup(const Store &store, long id) {
    Query row(store, kSelect, {id});
    if (!row.execAndNext())
        return nullptr;
    std::unique_ptr<SignalGroup> group = readRow(row);
    row.finish();
    readPhases(store, *group, id);
    for (SignalPhase *phase : qAsConst(group->mlPhase)) {
        readColors(store, *phase);
        if (isCurrentNet(store))
            store.net().enter(phase);
    }
    return store.whole(std::move(group));
}

bool listSignalGroupIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

void loadAllSignalGroups(NetLoad &net) {
    Objects<SignalGroup> &groups = net.contents.traffic.signalGroups;
    net.forEachObject("SignalGroup", "signalGroupID", [&](Rows &row) { groups.push_back(readRow(row)); });
    Owners groupOf(net, groups, &SignalGroup::signalGroupID, "SignalPhase", "belongs to no signal group");
    net.forEachRowAsWritten("SignalPhase", "signalGroupID", [&](Rows &row) {
        if (SignalGroup *group = groupOf.of(row, "signalGroupID"))
            group->mlPhase.append(readPhase(row).release());
    });
    std::vector<SignalPhase *> phases;
    for (const auto &group : groups) {
        phases.insert(phases.end(), group->mlPhase.cbegin(), group->mlPhase.cend());
        for (SignalPhase *phase : qAsConst(group->mlPhase))
            net.store.net().enter(phase);
    }
    Owners phaseOf(net, phases, &SignalPhase::signalPhaseID, "SignalColor", "belongs to no phase");
    const char *order =
        net.store.hasMisspeltSerialNumber() ? "signalPhaseID, serialNnumber" : "signalPhaseID, serialNumber";
    net.forEachRowAsWritten("SignalColor", order, [&](Rows &row) {
        SignalPhase *phase = phaseOf.of(row, "signalPhaseID");
        if (!phase)
            return;
        appendColor(row, *phase);
        net.requireWord("SignalColor", phase->signalPhaseID, phase->mlColor.last().color,
                        "has a colour that is none of the vocabulary");
    });
}

void saveAllSignalGroups(NetSave &net) {
    const Objects<SignalGroup> &groups = net.contents.traffic.signalGroups;
    net.giveIds("SignalGroup", groups, &SignalGroup::signalGroupID);
    net.giveIds("SignalPhase", groups, &SignalGroup::mlPhase, &SignalPhase::signalPhaseID);
    net.writeEach("SignalGroup", groups,
                  [](RowWriter &row, const SignalGroup &group) { bindAll(row, kColumns, group); });
    std::vector<const SignalPhase *> phases;
    net.writeOwned("SignalPhase", groups, &SignalGroup::mlPhase,
                   [&phases](RowWriter &row, const SignalGroup &group, const SignalPhase *phase) {
                       bindAll(row, kPhaseColumns, *phase, group);
                       phases.push_back(phase);
                   });
    const char *serialNumber = net.store.hasMisspeltSerialNumber() ? ":serialNnumber" : ":serialNumber";
    const SignalPhase *of = nullptr;
    int number = 0;
    net.writeOwned("SignalColor", phases, &SignalPhase::mlColor,
                   [&](RowWriter &row, const SignalPhase &phase, const Online::ColorInterval &step) {
                       number = of == &phase ? number + 1 : 1;
                       of = &phase;
                       bindColor(
                           row, serialNumber, phase, number, step,
                           storedword::of(row.store().words(), step.color, phase.storedColors, number - 1));
                   });
}

} // namespace signalgroups

Description describe(const SignalGroup &group) {
    using namespace signalgroups;
    QVariantMap fields = describeAll(kColumns, group);
    fields.insert(QStringLiteral("phases"), describeEach(group.mlPhase, [](const SignalPhase &phase) {
                      QVariantMap part = describeAll(kPhaseColumns, phase);
                      part.insert(QStringLiteral("colors"), describeEach(phase.mlColor, kColorColumns));
                      return part;
                  }));
    return {group.signalGroupID, group.name, fields};
}
