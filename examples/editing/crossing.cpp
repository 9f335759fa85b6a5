// A network from nothing: a signalised crossing with its traffic.
//   crossing STORE
#include <MoraStore/DBTools.h>
#include <MoraStore/FailureScope.h>
#include <MoraStore/GeometryJson.h>
#include <MoraStore/LaneGeometry.h>
#include <MoraStore/NetContents.h>
#include <MoraStore/NetIds.h>
#include <MoraStore/Stores.h>
#include <MoraStore/Words.h>

#include <QCoreApplication>
#include <QPointF>
#include <QTextStream>

#include <memory>
#include <utility>

namespace {

constexpr double kLaneWidth = 3.5;
constexpr int kCycle = 80; // seconds

QPointF rightOf(const QPointF &heading) {
    return {heading.y(), -heading.x()};
}

Link &addLink(NetContents &net, const QString &name, const QPointF &from, const QPointF &to) {
    auto link = std::make_unique<Link>();
    link->linkName = name;
    link->laneNumber = 2;
    link->laneWidth = kLaneWidth;
    link->laneColor = QStringLiteral("CCCCCC");
    link->linkType = Words::ArterialRoad;
    link->limitSpeed = link->desiredSpeed = 60;
    link->curvature = link->nonLinearCoefficient = 1;
    for (const QPointF &point : {from, to})
        link->mlVertex.append(new Vertex{0, point.x(), point.y(), 0});
    link->mpStartNode = new Node;
    link->mpEndNode = new Node;
    link->createLanes();
    updateGeometry(*link);
    return net.add(std::move(link));
}

// Who goes from lane to lane of that number sees the signal.
void connect(NetContents &net, Link *from, Link *to, int lane, SignalPhase *phase) {
    auto connector = std::make_unique<Connector>(0, from, to);
    connector->connName = from->linkName + QLatin1Char(' ') + to->linkName;
    auto *path = new LaneConnector(connector.get(), from->mlLane[lane], to->mlLane[lane]);
    connector->mlLaneConnector.append(path);
    curve(*connector);
    auto lamp = std::make_unique<SignalLamp>();
    lamp->name = connector->connName;
    lamp->laneID = int(path->mpStartLane->laneID);
    lamp->toLaneID = int(path->mpEndLane->laneID);
    const GeometryPoint stopLine = geometryjson::points(path->mpStartLane->centerLinePointsJson).last();
    lamp->x = stopLine.x;
    lamp->y = stopLine.y;
    lamp->setPhase(phase);
    net.add(std::move(lamp));
    net.add(std::move(connector));
}

// Four phases of 20 s, each of which is green while the others are red.
SignalGroup &addSignals(NetContents &net) {
    auto group = std::make_unique<SignalGroup>();
    group->name = QStringLiteral("Market");
    group->timeLength = kCycle;
    group->endTime = 86400;
    for (int i = 0; i < 4; ++i) {
        auto *phase = new SignalPhase;
        phase->serialNumber = i + 1;
        phase->name = QString::number(i + 1);
        if (i > 0)
            phase->mlColor.append({Words::Red, 20 * i});
        phase->mlColor.append({Words::Green, 15});
        phase->mlColor.append({Words::Yellow, 3});
        phase->mlColor.append({Words::Red, kCycle - 20 * i - 18});
        group->mlPhase.append(phase);
    }
    return net.add(std::move(group));
}

void addRoads(NetContents &net) {
    // Clockwise: the next arm is to the left of who comes in.
    const std::pair<const char *, QPointF> arms[] = {
        {"North", {0, 1}}, {"East", {1, 0}}, {"South", {0, -1}}, {"West", {-1, 0}}};
    QList<Link *> in;
    QList<Link *> out;
    for (const auto &[name, away] : arms) {
        const QPointF beside = rightOf(away) * kLaneWidth;
        in.append(&addLink(net, QStringLiteral("from %1").arg(QLatin1String(name)), away * 200 - beside,
                           away * 15 - beside));
        out.append(&addLink(net, QStringLiteral("to %1").arg(QLatin1String(name)), away * 15 + beside,
                            away * 200 + beside));
    }
    const SignalGroup &group = addSignals(net);
    for (int i = 0; i < 4; ++i) {
        SignalPhase *ahead = group.mlPhase[i % 2 * 2];
        connect(net, in[i], out[(i + 1) % 4], 1, group.mlPhase[i % 2 * 2 + 1]);
        connect(net, in[i], out[(i + 2) % 4], 0, ahead);
        connect(net, in[i], out[(i + 3) % 4], 0, ahead);
    }
}

// What names others by number needs their numbers before.
bool addTraffic(NetContents &net) {
    const NetIds ids(gDB, net.record.netId);
    auto van = std::make_unique<VehicleType>();
    van->vehicleTypeCode = 0;
    van->vehicleTypeName = QStringLiteral("Van");
    van->length = 6;
    auto mix = std::make_unique<VehicleComposition>();
    mix->name = QStringLiteral("Town");
    if (!ids.draw(*van) || !ids.draw(*mix) || !ids.drawEach(net.links))
        return false;
    constexpr long car = 1; // of the standard catalogue
    mix->mlDetail = {{mix->vehicleConsCode, car, 80}, {mix->vehicleConsCode, van->vehicleTypeCode, 20}};
    for (const auto &link : net.links) {
        if (!link->linkName.startsWith(QLatin1String("from")))
            continue;
        auto point = std::make_unique<DeparturePoint>();
        point->name = link->linkName;
        point->linkID = link->linkID;
        point->mlInterval = {{0, 1800, 300, *mix}, {0, 3600, 200, *mix}};
        net.add(std::move(point));
    }
    net.add(std::move(van));
    net.add(std::move(mix));
    return true;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    const QString path = QCoreApplication::arguments().value(1);
    NetRecord record;
    record.name = QStringLiteral("Crossing");
    NetContents net;
    // What the network has from the start: the standard catalogue of types and mixes.
    bool isMade = stores::create(path) && stores::open(path) && stores::addNetwork(gDB, record) &&
                  DBTools::loadNet(gDB, gNet.netId, net);
    if (isMade) {
        addRoads(net);
        isMade =
            addTraffic(net) && DBTools::saveNet(gDB, gNet.netId, net, true) && DBTools::updateIds(gDB, true);
    }
    if (!isMade) {
        QTextStream(stderr) << FailureScope::sinceOpening(gDB).text() << '\n';
        return 1;
    }
    QTextStream(stdout) << net.links.size() << " links, " << net.connectors.size() << " connectors\n";
    return 0;
}
