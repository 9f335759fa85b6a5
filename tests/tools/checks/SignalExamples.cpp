#include "tests/tools/checks/Examples.h"

// Group 2, "market/night", has a cycle of 46; its phases are 17 to 32, phase 16 + n is the one of lamp "market:n - 1".
// Lamp 1 stands on lane 1 for the way to lane 25 and shows phase 29: green 20, yellow 3, red 23.

std::vector<Example> signalExamples() {
    const QString colour =
        QStringLiteral("update SignalColor set %1 where signalPhaseID = 29 and serialNumber = %2");
    const QString second = QStringLiteral(
        "update SignalColor set timeLength = %1 where signalPhaseID = 17 and serialNumber = %2");
    const QString addGroup = QStringLiteral("insert into SignalGroup values (1, 3, 'spare', 60, 0, 86400)");
    const QString countGroup =
        QStringLiteral("update IDGenerater set ID = 3 where TableName = 'SignalGroup'");
    const QString addPhase = QStringLiteral("insert into SignalPhase values (1, 33, %1, 17, 'walk')");
    const QString countPhase =
        QStringLiteral("update IDGenerater set ID = 33 where TableName = 'SignalPhase'");
    const QString countLamp = QStringLiteral("update IDGenerater set ID = 17 where TableName = 'SignalLamp'");
    const QString fill = QStringLiteral("insert into SignalColor values (1, 33, 1, 'Red', %1)");
    return {
        {"signal-group.cycle-not-positive",
         {QStringLiteral("update SignalGroup set timeLength = 0 where signalGroupID = 1"),
          QStringLiteral("update SignalColor set timeLength = 0 where signalPhaseID <= 16")},
         {QStringLiteral("update SignalGroup set timeLength = 1 where signalGroupID = 1")}},
        {"signal-group.times-reversed",
         {QStringLiteral("update SignalGroup set startTime = 3600, endTime = 1800 where signalGroupID = 1")},
         {QStringLiteral("update SignalGroup set startTime = 1800, endTime = 3600 where signalGroupID = 1")}},
        {"signal-group.empty", {addGroup, countGroup}, {addGroup, addPhase.arg(3), fill.arg(60)}},
        {"signal-phase.cycle-not-filled",
         {colour.arg(QStringLiteral("timeLength = 4"), QStringLiteral("2"))},
         {colour.arg(QStringLiteral("timeLength = 4"), QStringLiteral("2")),
          colour.arg(QStringLiteral("timeLength = 22"), QStringLiteral("3"))}},
        {"signal-phase.no-colour",
         {QStringLiteral("delete from SignalColor where signalPhaseID = 29")},
         {QStringLiteral("delete from SignalColor where signalPhaseID = 29 and serialNumber < 3")}},
        {"signal-phase.colour-unknown",
         {colour.arg(QStringLiteral("color = 'Violet'"), QStringLiteral("2"))},
         {colour.arg(QStringLiteral("color = 'Grey'"), QStringLiteral("2"))}},
        {"signal-phase.duration-negative",
         {colour.arg(QStringLiteral("timeLength = -3"), QStringLiteral("2")),
          colour.arg(QStringLiteral("timeLength = 29"), QStringLiteral("3"))},
         {colour.arg(QStringLiteral("timeLength = 0"), QStringLiteral("2")),
          colour.arg(QStringLiteral("timeLength = 26"), QStringLiteral("3"))}},
        {"signal-phase.yellow-missing",
         {colour.arg(QStringLiteral("color = 'Red'"), QStringLiteral("2"))},
         // Before green nothing is asked for.
         {colour.arg(QStringLiteral("color = 'Green'"), QStringLiteral("3"))}},
        {"signal-phase.never-green",
         {colour.arg(QStringLiteral("color = 'Red'"), QStringLiteral("1"))},
         {colour.arg(QStringLiteral("color = 'Yellow'"), QStringLiteral("1")),
          colour.arg(QStringLiteral("color = 'Grey'"), QStringLiteral("3"))}},
        {"signal-group.no-lamp",
         {addGroup, countGroup, addPhase.arg(3), countPhase, fill.arg(60)},
         {addGroup}},
        {"signal-phase.no-lamp",
         {addPhase.arg(2), countPhase, fill.arg(46)},
         {addGroup, addPhase.arg(3), fill.arg(60)}},
        // Lane 25 leads out of the network.
        {"signal-lamp.lane-leads-nowhere",
         {QStringLiteral("update SignalLamp set laneID = 25, toLaneID = 0 where signalLampID = 1")},
         {QStringLiteral("update SignalLamp set toLaneID = 0 where signalLampID = 1")},
         {QStringLiteral("signal-lamp.missing")}},
        {"signal-lamp.way-missing",
         {QStringLiteral("insert into SignalLamp values (1, 17, 29, 1, 17, 'extra', 0, 0, 0)"), countLamp},
         {QStringLiteral("insert into SignalLamp values (1, 17, 29, 1, 0, 'extra', 0, 0, 0)")}},
        // What is in conflict with the one is so with the other, too.
        {"signal-lamp.twice",
         {QStringLiteral("insert into SignalLamp values (1, 17, 29, 1, 25, 'extra', 0, 0, 0)"), countLamp},
         // The lamp of another plan.
         {QStringLiteral("insert into SignalLamp values (1, 17, 13, 1, 25, 'extra', 0, 0, 0)")},
         {QStringLiteral("signal-lamp.conflicting-green")}},
        // Its phase loses its only lamp, too.
        {"signal-lamp.missing",
         {QStringLiteral(
             "update SignalLamp set laneID = 2, toLaneID = 9, signalPhaseID = 13 where signalLampID = 1")},
         {QStringLiteral("delete from SignalLamp where laneID between 1 and 4")},
         {QStringLiteral("signal-phase.no-lamp")}},
        // Lamp 9 shows phase 21, which is red while phase 29 is green.
        {"signal-lamp.conflicting-green",
         {QStringLiteral("update SignalColor set color = 'Green' where signalPhaseID = 21")},
         {QStringLiteral("update SignalColor set color = 'Red' where signalPhaseID = 21")}},
        // Phase 17 is green after 29, from second 23 on; lamps 1 and 5 lead to lane 25.
        {"signal-lamp.clearance-missing",
         {second.arg(QStringLiteral("20"), QStringLiteral("1")),
          second.arg(QStringLiteral("23"), QStringLiteral("2"))},
         {second.arg(QStringLiteral("21"), QStringLiteral("1")),
          second.arg(QStringLiteral("22"), QStringLiteral("2"))}},
    };
}
