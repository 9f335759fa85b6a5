#include "tests/differential/Damage.h"

#include "model/BusStationLine.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/Node.h"
#include "model/PassengerArriving.h"
#include "model/Vertex.h"
#include "model/ZoneLane.h"
#include "store/DBTools.h"

#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

#include <algorithm>

namespace differential {

namespace {

struct Column {
    const char *table;
    const char *name;
};

/// Columns that refer to another object.
constexpr Column kReferences[] = {
    {"Lane", "linkID"},
    {"LinkVertex", "linkID"},
    {"LinkVertex", "vertexID"},
    {"Link", "StartNodeID"},
    {"Link", "EndNodeID"},
    {"LaneLimitVehicle", "laneID"},
    {"LaneLimitVehicle", "vehicleTypeCode"},
    {"GuideArrow", "laneID"},
    {"Connector", "StartlinkID"},
    {"Connector", "EndlinkID"},
    {"ConnectorLimitVehicle", "connID"},
    {"LaneConnector", "connID"},
    {"LaneConnector", "startLaneID"},
    {"SignalPhase", "signalGroupID"},
    {"SignalColor", "signalPhaseID"},
    {"SignalLamp", "signalPhaseID"},
    {"SignalLamp", "laneID"},
    {"VehicleConsDetail", "vehicleConsCode"},
    {"VehicleConsDetail", "vehicleTypeCode"},
    {"DeparturePoint", "linkID"},
    {"DepartureInterval", "departurePointID"},
    {"DepartureInterval", "vehiCons"},
    {"DecisionPoint", "linkID"},
    {"Routing", "deciPointID"},
    {"RoutingLink", "routingID"},
    {"RoutingLink", "linkID"},
    {"RoutingFLowRatio", "routingID"},
    {"RoutingLaneConnector", "routingID"},
    {"RoutingLaneConnector", "connID"},
    {"DetectorVehiType", "vehicleDetectorId"},
    {"DetectorVehiType", "vehicleTypeCode"},
    {"VehicleDetector", "roadId"},
    {"VehicleQueueCounter", "roadID"},
    {"VehicleTravelDetector", "teminalRoadId"},
    {"VehicleDrivInfoCollecter", "roadID"},
    {"BusLineRoad", "busLineID"},
    {"BusLineRoad", "roadID"},
    {"BusStation", "linkID"},
    {"BusStationLine", "busStationID"},
    {"BusStationLine", "busLineID"},
    {"BusStationPassengerArriving", "stationLineID"},
    {"AccidentZoneWithLane", "accidentZoneId"},
    {"RoadWorkZoneWithLane", "roadWorkZoneId"},
    {"ReduceSpeedInterval", "reduceSpeedAreaID"},
    {"ReduceSpeedVehiType", "reduceSpeedAreaID"},
};

/// Numbers that give an order.
constexpr Column kNumbers[] = {
    {"Lane", "serialNumber"}, {"SignalColor", "serialNumber"}, {"RoutingFLowRatio", "endDateTime"},
    {"LinkVertex", "num"},    {"RoutingLink", "num2"},         {"BusLineRoad", "serialNumber"}};

constexpr Column kJson[] = {{"Link", "centerLinePointsJson"},
                            {"Link", "otherAttrsJson"},
                            {"Lane", "leftBreakPointsJson"},
                            {"Connector", "rightBreakPointsJson"},
                            {"LaneConnector", "centerLinePointsJson"}};

constexpr char kCutJson[] = "{\"data\":[";

constexpr Column kMeasures[] = {{"Link", "length"},
                                {"Lane", "width"},
                                {"Vertex", "x"},
                                {"BusLine", "dischargeStartTime"},
                                {"SignalColor", "timeLength"},
                                {"VehicleType", "maxSpeed"},
                                {"Routing", "proportion"},
                                {"RoadWorkZone", "roadID"}};

bool isSqlite() {
    return gDB.driverName() == QLatin1String("QSQLITE");
}

class Surgeon {
public:
    Surgeon(RandomNet &random, long netId, bool severalNets)
        : mRandom(random),
          mAnd(severalNets ? QStringLiteral(" and netId = ") + QString::number(netId) : QString()) {}

    QString operate() {
        switch (mRandom.below(8)) {
        case 0:
            return removeRow();
        case 1:
            return refer(kReferences[mRandom.below(std::size(kReferences))], QStringLiteral("77777"));
        case 2:
            return borrow(kReferences[mRandom.below(std::size(kReferences))]);
        case 3:
            return borrow(kNumbers[mRandom.below(std::size(kNumbers))]);
        case 4:
            return repeatSettings();
        case 5:
            return share();
        case 6:
            return refer(kJson[mRandom.below(std::size(kJson))],
                         QLatin1Char('\'') + QLatin1String(kCutJson) + QLatin1Char('\''));
        default:
            return isSqlite() ? refer(kMeasures[mRandom.below(std::size(kMeasures))],
                                      mRandom.chance(0.5) ? QStringLiteral("'wide'") : QStringLiteral("2.9"))
                              : removeRow();
        }
    }

private:
    /// One random row of a table; empty without rows.
    QString place(const QString &table) {
        const QString name = isSqlite() ? QStringLiteral("rowid") : QStringLiteral("ctid");
        QSqlQuery rows(QStringLiteral("select ") + name + QStringLiteral(" from ") + table +
                           QStringLiteral(" where 1 = 1") + mAnd + QStringLiteral(" order by 1"),
                       gDB);
        QStringList places;
        while (rows.next())
            places.append(rows.value(0).toString());
        if (places.isEmpty())
            return {};
        return QStringLiteral(" where ") + name + QStringLiteral(" = '") +
               places.at(mRandom.below(places.size())) + QLatin1Char('\'') + mAnd;
    }
    /// Keys that are in the way leave the row as it is.
    QString run(const QString &sql) {
        QSqlQuery query(gDB);
        const bool done = query.exec(sql);
        return done ? sql : sql + QStringLiteral(" -- ") + query.lastError().databaseText();
    }
    QString refer(const Column &column, const QString &value) {
        const QString where = place(QLatin1String(column.table));
        return where.isEmpty()
                   ? QString()
                   : run(QStringLiteral("update ") + QLatin1String(column.table) + QStringLiteral(" set ") +
                         QLatin1String(column.name) + QStringLiteral(" = ") + value + where);
    }
    /// Gives a row the value that another row of the table has.
    QString borrow(const Column &column) {
        // A server takes rows with the same number in any order where no index leads to them in one.
        static const QStringList kUnordered = {QStringLiteral("LinkVertex"), QStringLiteral("RoutingLink"),
                                               QStringLiteral("BusLineRoad")};
        if (!isSqlite() && kUnordered.contains(QLatin1String(column.table)))
            return {};
        const QString from = place(QLatin1String(column.table));
        return from.isEmpty() ? QString()
                              : refer(column, QStringLiteral("(select ") + QLatin1String(column.name) +
                                                  QStringLiteral(" from ") + QLatin1String(column.table) +
                                                  from + QLatin1Char(')'));
    }
    /// A node, a vertex or an unknown vehicle type that two objects have.
    QString share() {
        switch (mRandom.below(4)) {
        case 0:
            return refer({"Link", "StartNodeID"}, QStringLiteral("(select EndNodeID from Link") +
                                                      place(QStringLiteral("Link")) + QLatin1Char(')'));
        case 1:
            return borrow({"Link", "EndNodeID"});
        case 2:
            return refer({"DetectorVehiType", "vehicleTypeCode"},
                         QString::number(70000 + mRandom.below(1000)));
        default:
            return borrow({"LinkVertex", "vertexID"});
        }
    }
    QString removeRow() {
        const QString table = QLatin1String(kReferences[mRandom.below(std::size(kReferences))].table);
        static const QStringList kOwners = {QStringLiteral("Vertex"),
                                            QStringLiteral("Node"),
                                            QStringLiteral("VehicleType"),
                                            QStringLiteral("SignalGroup"),
                                            QStringLiteral("BusLine"),
                                            QStringLiteral("ReduceSpeedArea"),
                                            QStringLiteral("AccidentZone"),
                                            QStringLiteral("RoadWorkZone"),
                                            QStringLiteral("VehicleConstitutent")};
        const QString from = mRandom.chance(0.3) ? kOwners.at(mRandom.below(kOwners.size())) : table;
        const QString where = place(from);
        return where.isEmpty() ? QString() : run(QStringLiteral("delete from ") + from + where);
    }
    QString repeatSettings() {
        const char *table = mRandom.chance(0.5) ? "Configuration" : "SimulateConfiguration";
        const char *column = qstrcmp(table, "Configuration") == 0 ? "sceneWidth" : "simuTimeInterval";
        const QString where = place(QLatin1String(table));
        run(QStringLiteral("insert into ") + QLatin1String(table) + QStringLiteral(" select * from ") +
            QLatin1String(table) + where);
        return refer({table, column}, QString::number(mRandom.below(50)));
    }

    RandomNet &mRandom;
    QString mAnd;
};

template <class List, class Owned>
int sum(const List &owners, Owned owned) {
    int all = 0;
    for (const auto &owner : owners)
        all += ((*owner).*owned).size();
    return all;
}

/// The rows that further owners' children stand for, and those that several objects share: by lower-case name
/// of the table.
QMap<QString, int> innerRowsOf(const NetContents &net) {
    const TrafficObjects &traffic = net.traffic;
    QSet<long> vertices;
    QSet<long> nodes;
    int restrictions = 0;
    for (const auto &link : net.links) {
        for (const Vertex *vertex : qAsConst(link->mlVertex))
            vertices.insert(vertex->vertexID);
        for (const Node *node : {link->mpStartNode, link->mpEndNode}) {
            // Without a row it has no name.
            if (node && !node->nodeName.isEmpty())
                nodes.insert(node->nodeID);
        }
        restrictions += sum(link->mlLane, &Lane::mlLimitVehicle);
    }
    // A route that passes a link twice gives its stops twice.
    QSet<long> stops;
    QSet<long> arrivals;
    for (const auto &line : traffic.busLines) {
        for (const BusStationLine *stop : qAsConst(line->mlStationLine)) {
            stops.insert(stop->stationLineID);
            for (const PassengerArriving *arrival : qAsConst(stop->mlPassengerArriving))
                arrivals.insert(arrival->passengerArrivingID);
        }
    }
    int colors = 0;
    for (const auto &group : traffic.signalGroups)
        colors += sum(group->mlPhase, &SignalPhase::mlColor);
    int chainLinks = 0;
    int ratios = 0;
    for (const auto &point : traffic.decisionPoints) {
        for (const Routing *route : qAsConst(point->mlRouting)) {
            for (const QList<Link *> &chain : route->mlLinkChain)
                chainLinks += chain.size();
        }
        ratios += sum(point->mlFlowByInterval, &RoutingFlowByInterval::mlFlowRatio);
    }
    return {{QStringLiteral("vertex"), vertices.size()},
            {QStringLiteral("node"), nodes.size()},
            {QStringLiteral("lanelimitvehicle"), restrictions},
            {QStringLiteral("signalcolor"), colors},
            {QStringLiteral("routinglink"), chainLinks},
            {QStringLiteral("routingflowratio"), ratios},
            {QStringLiteral("busstationline"), stops.size()},
            {QStringLiteral("busstationpassengerarriving"), arrivals.size()}};
}

/// The rows that the objects of a network stand for.
QMap<QString, int> rowsOf(const NetContents &net) {
    const TrafficObjects &traffic = net.traffic;
    QMap<QString, int> rows = innerRowsOf(net);
    const QMap<QString, int> others = {
        {QStringLiteral("vehicletype"), int(traffic.vehicleTypes.size())},
        {QStringLiteral("vehicleconstitutent"), int(traffic.compositions.size())},
        {QStringLiteral("vehicleconsdetail"), sum(traffic.compositions, &VehicleComposition::mlDetail)},
        {QStringLiteral("linktype"), net.linkTypes.size()},
        {QStringLiteral("link"), int(net.links.size())},
        {QStringLiteral("linkvertex"), sum(net.links, &Link::mlVertex)},
        {QStringLiteral("lane"), sum(net.links, &Link::mlLane)},
        {QStringLiteral("guidearrow"), int(net.guideArrows.size())},
        {QStringLiteral("connector"), int(net.connectors.size())},
        {QStringLiteral("connectorlimitvehicle"), sum(net.connectors, &Connector::mlLimitVehicle)},
        {QStringLiteral("laneconnector"), sum(net.connectors, &Connector::mlLaneConnector)},
        {QStringLiteral("signalgroup"), int(traffic.signalGroups.size())},
        {QStringLiteral("signalphase"), sum(traffic.signalGroups, &SignalGroup::mlPhase)},
        {QStringLiteral("signallamp"), int(traffic.signalLamps.size())},
        {QStringLiteral("departurepoint"), int(traffic.departurePoints.size())},
        {QStringLiteral("departureinterval"), sum(traffic.departurePoints, &DeparturePoint::mlInterval)},
        {QStringLiteral("decisionpoint"), int(traffic.decisionPoints.size())},
        {QStringLiteral("routing"), sum(traffic.decisionPoints, &DecisionPoint::mlRouting)},
        {QStringLiteral("routinglaneconnector"), traffic.routeLanes.size()},
        {QStringLiteral("vehicledetector"), int(traffic.vehicleDetectors.size())},
        {QStringLiteral("detectorvehitype"), sum(traffic.vehicleDetectors, &VehicleDetector::mlVehiTypeCode)},
        {QStringLiteral("vehiclequeuecounter"), int(traffic.queueCounters.size())},
        {QStringLiteral("vehicletraveldetector"), int(traffic.travelDetectors.size())},
        {QStringLiteral("vehicledrivinfocollecter"), int(traffic.collectors.size())},
        {QStringLiteral("busstation"), int(traffic.busStations.size())},
        {QStringLiteral("busline"), int(traffic.busLines.size())},
        {QStringLiteral("buslineroad"), sum(traffic.busLines, &BusLine::mlLink)},
        {QStringLiteral("accidentzone"), int(traffic.accidentZones.size())},
        {QStringLiteral("accidentzonewithlane"), sum(traffic.accidentZones, &AccidentZone::mlLane)},
        {QStringLiteral("roadworkzone"), int(traffic.roadWorkZones.size())},
        {QStringLiteral("roadworkzonewithlane"), sum(traffic.roadWorkZones, &RoadWorkZone::mlLane)},
        {QStringLiteral("reducespeedarea"), int(traffic.speedAreas.size())},
        {QStringLiteral("reducespeedinterval"), sum(traffic.speedAreas, &ReduceSpeedArea::mlSpeedInterval)},
        {QStringLiteral("reducespeedvehitype"), sum(traffic.speedAreas, &ReduceSpeedArea::mlSpeedVehiType)},
        {QStringLiteral("drivefollowedmodelparam"), net.settings.carFollowing.size()},
        {QStringLiteral("changelanemodelparam"), net.settings.laneChanging.size()},
        {QStringLiteral("simulateconfiguration"), net.settings.simulation ? 1 : 0},
        {QStringLiteral("configuration"), net.settings.scene ? 1 : 0}};
    for (auto table = others.cbegin(); table != others.cend(); ++table)
        rows.insert(table.key(), table.value());
    return rows;
}

/// How many rows of links the load reports for that reason.
qint64 reportedOfLinks(const NetContents &loaded, const char *reason) {
    for (const SkippedRows &rows : loaded.skipped) {
        if (rows.table == QLatin1String("Link") && rows.reason.startsWith(QLatin1String(reason)))
            return rows.count;
    }
    return 0;
}

/// What links are taken without: nodes whose rows are gone, which leaves them without a name, and JSON that
/// the damage has cut off.
QStringList partsUnaccountedFor(const NetContents &loaded, const TableRows &links) {
    qint64 unnamed = 0;
    for (const auto &link : loaded.links) {
        for (const Node *node : {link->mpStartNode, link->mpEndNode})
            unnamed += node && node->nodeName.isEmpty();
    }
    // A save writes bytes to a file.
    const QString asText = QLatin1Char('\'') + QLatin1String(kCutJson) + QLatin1Char('\'');
    const QString asBytes =
        QStringLiteral("X'%1'").arg(QString::fromLatin1(QByteArray(kCutJson).toHex().toUpper()));
    const qint64 cut = std::count_if(links.cbegin(), links.cend(), [&](const auto &link) {
        return link.values().contains(asText) || link.values().contains(asBytes);
    });
    QStringList unaccounted;
    if (unnamed != reportedOfLinks(loaded, "names a node"))
        unaccounted.append(QStringLiteral("%1 nodes without a row").arg(unnamed));
    if (cut != reportedOfLinks(loaded, "holds JSON"))
        unaccounted.append(QStringLiteral("%1 links with JSON that was cut off").arg(cut));
    return unaccounted;
}

/// Whether the object of the row is there, if not as its row has it.
bool isTakenInPart(const QString &reason) {
    return reason.contains(QLatin1String("reads as")) ||
           reason == QLatin1String("names a node that is missing");
}

} // namespace

void scatterRows(RandomNet &random, long netId, bool severalNets) {
    const QString where =
        severalNets ? QStringLiteral(" where netId = ") + QString::number(netId) : QString();
    const auto run = [](const QString &sql) {
        QSqlQuery query(gDB);
        EXPECT_TRUE(query.exec(sql)) << qPrintable(sql + QStringLiteral(": ") + query.lastError().text());
    };
    EXPECT_TRUE(gDB.transaction());
    const QStringList tables = storedRows(netId, severalNets).keys();
    for (const QString &table : tables) {
        // The engines' own random order would not be the same the next time.
        const QString place = isSqlite() ? QStringLiteral("rowid") : QStringLiteral("ctid");
        QStringList places;
        QSqlQuery rows(QStringLiteral("select ") + place + QStringLiteral(" from ") + table + where +
                           QStringLiteral(" order by 1"),
                       gDB);
        while (rows.next())
            places.append(rows.value(0).toString());
        if (places.size() < 2)
            continue;
        for (int i = places.size(); i > 1; --i)
            places.swapItemsAt(i - 1, random.below(i));
        run(QStringLiteral("create temp table scattered as select * from ") + table +
            QStringLiteral(" limit 0"));
        for (const QString &row : qAsConst(places))
            run(QStringLiteral("insert into scattered select * from ") + table +
                (where.isEmpty() ? QStringLiteral(" where ") : where + QStringLiteral(" and ")) + place +
                QStringLiteral(" = '") + row + QLatin1Char('\''));
        run(QStringLiteral("delete from ") + table + where);
        run(QStringLiteral("insert into ") + table + QStringLiteral(" select * from scattered"));
        run(QStringLiteral("drop table scattered"));
    }
    EXPECT_TRUE(gDB.commit());
}

QStringList damage(RandomNet &random, long netId, bool severalNets) {
    QStringList done;
    for (int i = 3 + random.below(20); i > 0; --i)
        done.append(Surgeon(random, netId, severalNets).operate());
    return done;
}

QStringList rowsUnaccountedFor(const NetContents &loaded, const QMap<QString, TableRows> &stored) {
    QMap<QString, qint64> reported;
    for (const SkippedRows &rows : loaded.skipped)
        reported[rows.table.toLower()] += isTakenInPart(rows.reason) ? 0 : rows.count;
    QStringList unaccounted = partsUnaccountedFor(loaded, stored.value(QStringLiteral("link")));
    const QMap<QString, int> taken = rowsOf(loaded);
    for (auto table = taken.cbegin(); table != taken.cend(); ++table) {
        const int rows = stored.value(table.key()).size();
        const qint64 left = reported.value(table.key());
        if (table.value() + left != rows)
            unaccounted.append(table.key() + QLatin1String(": ") + QString::number(rows) +
                               QLatin1String(" rows, taken ") + QString::number(table.value()) +
                               QLatin1String(", reported ") + QString::number(left));
    }
    return unaccounted;
}

} // namespace differential
