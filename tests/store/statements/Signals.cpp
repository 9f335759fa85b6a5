#include "model/SignalGroup.h"
#include "model/SignalLamp.h"
#include "tests/support/Builders.h"
#include "tests/support/StatementList.h"

namespace {

constexpr long kNet = StatementList::kNet;

template <class Tools>
void record(StatementList &list) {
    const auto link = sampleLink(7);
    Tools::insertLink(gDB, kNet, link.get(), false);
    SignalGroup group;
    group.signalGroupID = 4;
    for (const long id : {41, 42}) {
        auto *phase = new SignalPhase;
        phase->signalPhaseID = id;
        phase->mlColor = {{QStringLiteral("红"), 30}, {QStringLiteral("绿"), 27}};
        group.mlPhase.append(phase);
    }
    list.addWrite("insertSignalGroup", [&](bool flag) { Tools::insertSignalGroup(gDB, kNet, &group, flag); });
    std::unique_ptr<SignalGroup> read;
    list.add("selectSignalGroupByID", [&] { read.reset(Tools::selectSignalGroupByID(gDB, kNet, 4)); });
    list.add("selectSignalGroupIDs", [] {
        QList<long> ids;
        Tools::selectSignalGroupIDs(gDB, kNet, ids);
    });

    SignalLamp lamp;
    lamp.signalLampID = 9;
    lamp.laneID = 71;
    lamp.setPhase(group.mlPhase.first());
    list.addWrite("insertSignalLamp", [&](bool flag) { Tools::insertSignalLamp(gDB, kNet, &lamp, flag); });
    list.add("selectSignalLampByID",
             [] { std::unique_ptr<SignalLamp>(Tools::selectSignalLampByID(gDB, kNet, 9)); });
    list.add("selectSignalLampIDs", [] {
        QList<long> ids;
        Tools::selectSignalLampIDs(gDB, kNet, ids);
    });
}

const StatementFamily kSignals("Signals", record<DBTools>, record<DBTools_V6>);

} // namespace
