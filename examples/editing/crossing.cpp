// A network from nothing: a signalised crossing with its traffic.
//   crossing STORE
#include <MoraStore/DBTools.h>
#include <MoraStore/DBTools_V6.h>
#include <MoraStore/GeometryJson.h>
#include <MoraStore/LaneGeometry.h>
#include <MoraStore/NetContents.h>
#include <MoraStore/SpecialWords.h>

#include <QCoreApplication>
#include <QFile>
#include <QPointF>

#include <cstdio>

namespace {

constexpr double kLaneWidth = 3.5;

bool isDrawn = true;

long nextId(const char *table) {
    long id = 0;
    isDrawn = DBTools::getIDByTableName(gDB, QLatin1String(table), id) && isDrawn;
    return id;
}

QString word(const char *key) {
    return gSpecialWords.getWord(QString::fromUtf8(key));
}

QPointF rightOf(const QPointF &heading) {
    return {heading.y(), -heading.x()};
}

Link *addLink(NetContents &net, const QString &name, const QPointF &from, const QPointF &to) {
    auto link = std::make_unique<Link>();
    link->linkID = nextId("Link");
    link->linkName = name;
    link->laneNumber = 2;
    link->laneWidth = kLaneWidth;
    link->laneColor = QStringLiteral("CCCCCC");
    link->linkType = word("城市主干道");
    link->limitSpeed = link->desiredSpeed = 60;
    link->curvature = link->nonLinearCoefficient = 1;
    for (const QPointF &point : {from, to})
        link->mlVertex.append(new Vertex{0, point.x(), point.y(), 0});
    link->mpStartNode = new Node{0, {}, link->mlVertex.first()};
    link->mpEndNode = new Node{0, {}, link->mlVertex.last()};
    link->createLanes();
    updateGeometry(*link);
    net.links.push_back(std::move(link));
    return net.links.back().get();
}

void connect(NetContents &net, Link *from, Link *to, int lane, SignalPhase *phase) {
    auto connector = std::make_unique<Connector>(nextId("Connector"), from, to);
    connector->connName = from->linkName + QStringLiteral(" to ") + to->linkName;
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
    net.traffic.signalLamps.push_back(std::move(lamp));
    net.connectors.push_back(std::move(connector));
}

SignalGroup *addSignals(NetContents &net) {
    auto group = std::make_unique<SignalGroup>();
    group->name = QStringLiteral("Market");
    group->timeLength = 80;
    group->endTime = 86400;
    // Four phases of 20 s, each of which is green while the others are red.
    for (int i = 0; i < 4; ++i) {
        auto *phase = new SignalPhase;
        phase->serialNumber = i + 1;
        phase->name = QString::number(i + 1);
        if (i > 0)
            phase->mlColor.append({word("红"), 20 * i});
        phase->mlColor.append({word("绿"), 15});
        phase->mlColor.append({word("黄"), 3});
        phase->mlColor.append({word("红"), 80 - 20 * i - 18});
        group->mlPhase.append(phase);
    }
    net.traffic.signalGroups.push_back(std::move(group));
    return net.traffic.signalGroups.back().get();
}

void addRoads(NetContents &net) {
    const QPointF outward[] = {{0, 1}, {1, 0}, {0, -1}, {-1, 0}};
    const char *names[] = {"North", "East", "South", "West"};
    QList<Link *> in;
    QList<Link *> out;
    for (int i = 0; i < 4; ++i) {
        const QPointF away = outward[i];
        const QPointF beside = rightOf(away) * kLaneWidth;
        in.append(addLink(net, QStringLiteral("from %1").arg(QLatin1String(names[i])), away * 200 - beside,
                          away * 15 - beside));
        out.append(addLink(net, QStringLiteral("to %1").arg(QLatin1String(names[i])), away * 15 + beside,
                           away * 200 + beside));
    }
    const SignalGroup *group = addSignals(net);
    for (int i = 0; i < 4; ++i) {
        // Arms go round clockwise: the next is to the left of who comes in.
        SignalPhase *ahead = group->mlPhase[i % 2 * 2];
        connect(net, in[i], out[(i + 1) % 4], 1, group->mlPhase[i % 2 * 2 + 1]);
        connect(net, in[i], out[(i + 2) % 4], 0, ahead);
        connect(net, in[i], out[(i + 3) % 4], 0, ahead);
    }
}

void addTraffic(NetContents &net) {
    auto van = std::make_unique<VehicleType>();
    van->vehicleTypeCode = 13; // the standard catalogue ends with 12
    van->vehicleTypeName = QStringLiteral("Van");
    van->length = 6;
    VehicleComposition mix;
    mix.vehicleConsCode = nextId("VehicleConstitutent");
    mix.name = QStringLiteral("Town");
    mix.mlDetail = {{mix.vehicleConsCode, 1, 80}, {mix.vehicleConsCode, 13, 20}};
    for (int i = 0; i < 8; i += 2) {
        auto point = std::make_unique<DeparturePoint>();
        point->name = net.links[std::size_t(i)]->linkName;
        point->linkID = net.links[std::size_t(i)]->linkID;
        point->mlInterval = {{0, 1800, 300, mix}, {0, 3600, 200, mix}};
        net.traffic.departurePoints.push_back(std::move(point));
    }
    net.traffic.vehicleTypes.push_back(std::move(van));
    net.traffic.compositions.push_back(std::make_unique<VehicleComposition>(mix));
}

int fail(const char *what) {
    std::fprintf(stderr, "%s\n", what);
    DBTools::logError(gDB);
    return 1;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    const QString path = QCoreApplication::arguments().value(1);
    if (!QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V6.0.0"), path) ||
        !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner))
        return fail("The store cannot be made.");
    if (!DBTools::openDatabase(gDB, path, true))
        return fail("The store cannot be opened.");
    gSpecialWords.setLangIsNotZh(true);
    gSpecialWords.initVars();
    if (!DBTools_V6::insertNet(gDB, 1, QStringLiteral("Crossing"), {}, QStringLiteral("MoraSim"), {}, {},
                               true, true) ||
        !DBTools::initDictionary(gDB, 1, true))
        return fail("The network cannot be made.");
    // A save replaces the vehicle types of the catalogue: the new ones join those that are there.
    NetContents net;
    if (!DBTools::loadNet(gDB, 1, net))
        return fail("The catalogue cannot be read.");
    addRoads(net);
    addTraffic(net);
    if (!isDrawn || !DBTools::saveNet(gDB, 1, net, true))
        return fail("The network cannot be saved.");
    if (!DBTools::updateIds(gDB, true))
        return fail("The reserved ids cannot be given back.");
    std::printf("%d links, %d connectors\n", int(net.links.size()), int(net.connectors.size()));
    return 0;
}
