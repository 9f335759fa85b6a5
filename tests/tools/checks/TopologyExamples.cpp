#include "tests/tools/checks/Examples.h"

// Links 4, 6, 8, 9 and 12 lead out of the network. At "quay", without signals, connector 5 joins link 2 to 4, connectors
// 6 and 7 link 3 to 9 and 10 (lane connectors 8; 9 and 10), connectors 8 and 9 link 5 to 4 and 9 (11; 12 and 13).

namespace {

/// Connector 6 and its lane connector between other links and lanes.
QStringList connector6(const char *links, const char *lanes) {
    return {QStringLiteral("update Connector set %1 where connID = 6").arg(QLatin1String(links)),
            QStringLiteral("update LaneConnector set %1 where laneConnId = 8").arg(QLatin1String(lanes))};
}

QStringList withoutConnectors(const char *which) {
    const QString remove = QStringLiteral("delete from %1 where connID in (%2)");
    return {remove.arg(QStringLiteral("LaneConnector"), QLatin1String(which)),
            remove.arg(QStringLiteral("Connector"), QLatin1String(which))};
}

} // namespace

std::vector<Example> topologyExamples() {
    return {
        {"connector.lane-of-other-link",
         {"update LaneConnector set endLaneID = 8 where laneConnId = 8"},
         {"update LaneConnector set endLaneID = 19 where laneConnId = 8"},
         {"connector.ends-off-lanes"}},
        {"connector.without-lanes",
         {"delete from LaneConnector where connID = 6"},
         {"delete from LaneConnector where laneConnId = 9"}},
        {"connector.twice",
         {"update Connector set EndlinkID = 9 where connID = 7",
          "update LaneConnector set endLaneID = endLaneID - 3 where connID = 7"},
         connector6("StartlinkID = 10, EndlinkID = 3", "startLaneID = 20, endLaneID = 7"),
         {"connector.ends-off-lanes", "lane.not-entered"}},
        {"connector.path-twice",
         {"update LaneConnector set endLaneID = 21 where laneConnId = 10"},
         {"update LaneConnector set endLaneID = 20 where laneConnId = 10"},
         {"lane.not-entered"}},
        {"link.isolated", withoutConnectors("6, 7"), withoutConnectors("6"), {"lane.not-entered"}},
        {"link.dead-end",
         withoutConnectors("8, 9"),
         withoutConnectors("8"),
         {"bus-line.broken", "lane.not-entered", "route.broken"}},
        {"link.not-reached",
         {"delete from DepartureInterval where departurePointID = 3",
          "delete from DeparturePoint where departurePointID = 3"},
         {"delete from DepartureInterval", "delete from DeparturePoint", "delete from BusLineRoad",
          "delete from BusLine"}},
        // A road that leads to its own start.
        {"link.reaches-no-exit",
         connector6("StartlinkID = 4, EndlinkID = 4", "startLaneID = 8, endLaneID = 8"),
         connector6("StartlinkID = 4, EndlinkID = 9", "startLaneID = 8, endLaneID = 18"),
         {"connector.ends-off-lanes"}},
        {"lane.not-entered",
         {"delete from LaneConnector where laneConnId = 10"},
         {"delete from LaneConnector where laneConnId = 12"}},
        {"lane.not-left",
         {"delete from LaneConnector where laneConnId = 13"},
         {"delete from LaneConnector where laneConnId = 12"},
         {"lane.not-entered"}},
        {"link.without-lanes",
         {"delete from Lane where laneID = 8", "delete from LaneConnector where endLaneID = 8"},
         {"delete from Lane where laneID = 28"},
         {"connector.without-lanes", "device.lane-missing"}},
        {"link.lane-count-differs",
         {"update Link set laneNumber = 2 where linkID = 12"},
         {"update Link set laneNumber = 0.5 where linkID = 12"}},
        {"link.lane-number-twice",
         {"update Lane set serialNumber = 3 where laneID = 4"},
         {"update Lane set serialNumber = 7 - serialNumber where laneID in (3, 4)"}},
        {"link.lane-number-gap",
         {"update Lane set serialNumber = 5 where laneID = 4"},
         {"update Lane set serialNumber = 7 - serialNumber where laneID in (3, 4)"}},
        {"link.speed-limit-not-positive",
         {"update Link set limitSpeed = 0, desiredSpeed = 0 where linkID = 12"},
         {"update Link set limitSpeed = 0.1 where linkID = 12"}},
        {"link.speeds-contradict",
         {"update Link set desiredSpeed = 60 where linkID = 12"},
         {"update Link set minSpeed = limitSpeed where linkID = 12"}},
    };
}
