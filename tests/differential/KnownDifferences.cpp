#include "tests/differential/KnownDifferences.h"

#include "model/BusStationLine.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/PassengerArriving.h"

#include "store/DBTools.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace differential {

namespace {

bool isPostgres() {
    return gDB.driverName() == QLatin1String("QPSQL");
}

void makeNull(TableRows &rows, const char *column) {
    for (QMap<QString, QString> &row : rows) {
        const auto value = row.find(QLatin1String(column));
        if (value != row.end())
            *value = QStringLiteral("NULL");
    }
}

bool hasLaneWithAttributes(const Link &link) {
    return std::any_of(link.mlLane.cbegin(), link.mlLane.cend(),
                       [](const Lane *lane) { return !lane->otherAttrsJson.isEmpty(); });
}

template <class List, class Condition>
void removeIf(List &list, const Condition &condition) {
    list.erase(std::remove_if(list.begin(), list.end(), condition), list.end());
}

} // namespace

QStringList refusedSingly(const NetContents &net, bool severalNets) {
    QStringList refused;
    if (!severalNets)
        return refused;
    for (const auto &link : net.links) {
        if (hasLaneWithAttributes(*link))
            refused.append(QStringLiteral("Link %1").arg(link->linkID));
    }
    for (const auto &detector : net.traffic.vehicleDetectors) {
        if (!detector->mlVehiTypeCode.isEmpty())
            refused.append(QStringLiteral("VehicleDetector %1").arg(detector->vehicleDetectorId));
    }
    return refused << QStringLiteral("SimulateConfiguration 0");
}

void dropWhatSingleInsertsLeaveOut(QMap<QString, TableRows> &rows, bool severalNets) {
    TableRows &laneConnectors = rows[QStringLiteral("laneconnector")];
    if (!severalNets) {
        makeNull(laneConnectors, "otherattrsjson");
        return;
    }
    makeNull(rows[QStringLiteral("lane")], "otherattrsjson");
    for (const char *column : {"centerlinepointsjson", "leftbreakpointsjson", "rightbreakpointsjson"})
        makeNull(laneConnectors, column);
    for (const char *table : {"lanelimitvehicle", "connectorlimitvehicle", "detectorvehitype"})
        rows[QLatin1String(table)].clear();
    // On SQLite every value is its own literal, on PostgreSQL it is the literal of its text.
    const bool isQuoted = isPostgres();
    QMap<QString, QString> standard;
    const auto number = [&](const char *column, const char *value) {
        const QString text = QLatin1String(value);
        standard.insert(QLatin1String(column),
                        isQuoted ? QLatin1Char('\'') + text + QLatin1Char('\'') : text);
    };
    number("simutimeinterval", "3600");
    number("vehicollectdatainterval", "0");
    number("vehiqueuedatainterval", "0");
    number("vehitraveldatainterval", "0");
    number("accemultiples", "1");
    number("simuaccuracy", "20");
    number("randseed", "0");
    standard.insert(QStringLiteral("recordtrace"), QStringLiteral("'F'"));
    rows[QStringLiteral("simulateconfiguration")] = {standard};
}

QString wordOfTheStore(const QString &shown) {
    static const QHash<QString, QString> words{
        {QStringLiteral("机动车道"), QStringLiteral("MotorizedLane")},
        {QStringLiteral("自由行驶"), QStringLiteral("FreeRunning")},
        {QStringLiteral("高速公路"), QStringLiteral("Freeway")},
        {QStringLiteral("匝道"), QStringLiteral("Ramp")},
        {QStringLiteral("红"), QStringLiteral("Red")},
        {QStringLiteral("绿"), QStringLiteral("Green")},
        {QStringLiteral("小客车"), QStringLiteral("Car")},
        {QStringLiteral("路侧式"), QStringLiteral("Curbside")},
        {QStringLiteral("标准检测器"), QStringLiteral("StandardDetector")}};
    return words.value(shown, shown);
}

void translateWords(QMap<QString, TableRows> &rows) {
    const std::initializer_list<std::pair<const char *, const char *>> columns{
        {"signalcolor", "color"}, {"linktype", "typename"}, {"vehicletype", "vehicletypename"}};
    for (const auto &[table, column] : columns) {
        for (QMap<QString, QString> &row : rows[QLatin1String(table)]) {
            QString &literal = row[QLatin1String(column)];
            literal =
                QLatin1Char('\'') + wordOfTheStore(literal.mid(1, literal.size() - 2)) + QLatin1Char('\'');
        }
    }
}

void translateNamesOfRestrictions(NetContents &net) {
    for (const auto &link : net.links) {
        for (Lane *lane : qAsConst(link->mlLane)) {
            for (auto &restriction : lane->mlLimitVehicle)
                restriction.second = wordOfTheStore(restriction.second);
        }
    }
}

void dropWhatSingleReadsLeaveOut(NetContents &net, bool severalNets) {
    for (const auto &connector : net.connectors)
        connector->mlLimitVehicle.clear();
    for (const auto &link : net.links) {
        for (Lane *lane : qAsConst(link->mlLane)) {
            if (severalNets)
                lane->mlLimitVehicle.clear();
        }
    }
}

void dropWhatLoadsLeaveOut(NetContents &net, bool severalNets) {
    TrafficObjects &traffic = net.traffic;
    QSet<long> lanes;
    QSet<long> roads;
    for (const auto &link : net.links) {
        roads.insert(link->linkID);
        for (const Lane *lane : qAsConst(link->mlLane))
            lanes.insert(lane->laneID);
    }
    for (const auto &connector : net.connectors)
        roads.insert(connector->connID);
    removeIf(traffic.decisionPoints, [](const auto &point) { return !point->mpLink; });
    QSet<long> routes;
    for (const auto &point : traffic.decisionPoints) {
        for (const Routing *route : qAsConst(point->mlRouting))
            routes.insert(route->routingID);
    }
    removeIf(traffic.routeLanes, [&](const auto &pair) { return !routes.contains(pair.routingID); });
    removeIf(net.guideArrows, [&](const auto &arrow) { return !lanes.contains(arrow->laneID); });
    removeIf(traffic.signalLamps, [&](const auto &lamp) { return !lanes.contains(lamp->laneID); });
    if (severalNets)
        return;
    removeIf(traffic.queueCounters, [&](const auto &counter) { return !roads.contains(counter->roadID); });
    removeIf(traffic.collectors, [&](const auto &collector) { return !roads.contains(collector->roadID); });
    removeIf(traffic.travelDetectors, [&](const auto &detector) {
        return !roads.contains(detector->startRoadId) || !roads.contains(detector->teminalRoadId);
    });
}

void dropBreakPointsOfLinks(NetContents &net) {
    for (const auto &link : net.links) {
        link->leftBreakPointsJson = StoredJson();
        link->rightBreakPointsJson = StoredJson();
    }
}

void dropRepeatedDetectorTypes(NetContents &net) {
    for (const auto &detector : net.traffic.vehicleDetectors) {
        QList<long> &codes = detector->mlVehiTypeCode;
        std::sort(codes.begin(), codes.end());
        codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    }
}

void dropOrderOfPlaces(NetContents &net) {
    const auto sortBy = [](auto &list, const auto &key) {
        std::stable_sort(list.begin(), list.end(),
                         [&key](const auto *a, const auto *b) { return key(*a) < key(*b); });
    };
    for (const auto &link : net.links)
        sortBy(link->mlLane, [](const Lane &lane) { return std::make_pair(lane.serialNumber, lane.laneID); });
    for (const auto &connector : net.connectors)
        sortBy(connector->mlLaneConnector, [](const LaneConnector &lanes) {
            return std::make_pair(lanes.mpStartLane->laneID, lanes.mpEndLane->laneID);
        });
    for (const auto &group : net.traffic.signalGroups)
        sortBy(group->mlPhase, [](const SignalPhase &phase) { return phase.signalPhaseID; });
    for (const auto &area : net.traffic.speedAreas)
        sortBy(area->mlSpeedInterval,
               [](const ReduceSpeedInterval &interval) { return interval.intervalID; });
    for (const auto &line : net.traffic.busLines) {
        sortBy(line->mlStationLine, [](const BusStationLine &stop) { return stop.stationLineID; });
        for (BusStationLine *stop : qAsConst(line->mlStationLine))
            sortBy(stop->mlPassengerArriving,
                   [](const PassengerArriving &arrival) { return arrival.passengerArrivingID; });
    }
}

void dropEdgesOfLaneConnectors(NetContents &net) {
    for (const auto &connector : net.connectors) {
        for (LaneConnector *lanes : qAsConst(connector->mlLaneConnector)) {
            lanes->leftBreakPointsJson = StoredJson();
            lanes->rightBreakPointsJson = StoredJson();
        }
    }
}

} // namespace differential
