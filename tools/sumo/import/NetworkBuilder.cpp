#include "tools/sumo/import/NetworkBuilder.h"

#include "model/GeometryJson.h"
#include "model/LaneGeometry.h"
#include "model/SpecialWords.h"
#include "model/Words.h"
#include "tools/kinds/Roads.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/Vocabulary.h"
#include "tools/sumo/kept/Junctions.h"
#include "tools/sumo/kept/LinkLine.h"
#include "tools/sumo/kept/SumoUnits.h"

#include <QHash>
#include <QJsonArray>
#include <QPair>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

// The colour that new connectors have; networks in SUMO's format carry none.
const QString kRoadColour = QStringLiteral("CCCCCC");

double limitSpeedKmh(const SumoEdge &edge) {
    double fastest = 0;
    for (const SumoLane &lane : edge.lanes)
        fastest = std::max(fastest, lane.speed);
    return fastest * kKmhPerMs;
}

/// Lines that are derived are kept to a tenth of a millimetre: SUMO gives its own to a centimetre, and further
/// digits would be a third of the store.
GeometryLine rounded(GeometryLine line) {
    constexpr double perMetre = 1e4;
    for (GeometryPoint &point : line) {
        for (double *coordinate : {&point.x, &point.y, &point.z})
            *coordinate = std::round(*coordinate * perMetre) / perMetre;
    }
    return line;
}

/// The line that much to the left.
StoredJson beside(const GeometryLine &line, double offset) {
    return geometryjson::fromPoints(rounded(geometry::offset(line, offset)));
}

/// The offset to the left that leads from the centre line of lane `index` to that of the carriageway.
double offsetToCentre(const SumoEdge &edge, std::size_t index, bool leftHand) {
    double before = 0;
    double all = 0;
    for (std::size_t i = 0; i < edge.lanes.size(); ++i) {
        if (i < index)
            before += edge.lanes[i].width;
        all += edge.lanes[i].width;
    }
    const double fromKerb = all / 2 - (before + edge.lanes[index].width / 2);
    return leftHand ? -fromKerb : fromKerb;
}

const QString kSumo = QStringLiteral("sumo");

/// What only lane `index` has, or has otherwise than the edge's first lane.
QJsonObject ownKept(const SumoEdge &edge, const SumoLane &lane) {
    const SumoLane &first = edge.lanes.front();
    QJsonObject own = lane.kept;
    for (const QString &name : {QStringLiteral("allow"), QStringLiteral("disallow")}) {
        if (lane.kept.value(name) == first.kept.value(name))
            own.remove(name);
        else if (!own.contains(name))
            own.insert(name, QString());
    }
    if (lane.speed != first.speed)
        own.insert(QStringLiteral("speed"), lane.speed);
    if (lane.length != first.length)
        own.insert(QStringLiteral("length"), lane.length);
    if (lane.id != QStringLiteral("%1_%2").arg(edge.id, QString::number(lane.index)))
        own.insert(QStringLiteral("id"), lane.id);
    return own;
}

QJsonObject keptOf(const SumoEdge &edge, bool leftHand) {
    const SumoLane &first = edge.lanes.front();
    QJsonObject kept = edge.kept;
    kept.insert(QStringLiteral("speed"), first.speed);
    for (const QString &name : {QStringLiteral("allow"), QStringLiteral("disallow")}) {
        if (first.kept.contains(name))
            kept.insert(name, first.kept.value(name));
    }
    QJsonArray lanes;
    bool differ = false;
    for (const SumoLane &lane : edge.lanes) {
        const QJsonObject own = ownKept(edge, lane);
        differ |= !own.isEmpty();
        if (leftHand)
            lanes.prepend(own);
        else
            lanes.append(own);
    }
    if (differ)
        kept.insert(QStringLiteral("lanes"), lanes);
    return kept;
}

QJsonObject keptOf(const SumoConnection &connection) {
    QJsonObject kept = connection.kept;
    kept.insert(QStringLiteral("fromLane"), connection.fromLane);
    kept.insert(QStringLiteral("toLane"), connection.toLane);
    return kept;
}

QJsonObject keptOf(const SumoJunction &junction, std::size_t place, Packer &packer) {
    QJsonObject kept = junction.kept;
    kept.insert(QStringLiteral("at"), int(place));
    kept.insert(QStringLiteral("inside"), junction.inside.toText(packer));
    return kept;
}

} // namespace

GeometryLine carriagewayCentre(const SumoEdge &edge, bool leftHand) {
    const SumoLane &right = leftHand ? edge.lanes.back() : edge.lanes.front();
    const SumoLane &left = leftHand ? edge.lanes.front() : edge.lanes.back();
    if (edge.lanes.size() == 1)
        return right.shape;
    if (right.shape.size() == left.shape.size()) {
        const GeometryLine between = geometry::midway(right.shape, left.shape);
        return left.width == right.width ? between
                                         : geometry::offset(between, (left.width - right.width) / 4);
    }
    std::size_t middle = 0;
    for (std::size_t i = 1; i < edge.lanes.size(); ++i) {
        if (std::abs(offsetToCentre(edge, i, leftHand)) < std::abs(offsetToCentre(edge, middle, leftHand)))
            middle = i;
    }
    return geometry::offset(edge.lanes[middle].shape, offsetToCentre(edge, middle, leftHand));
}

std::vector<std::unique_ptr<Link>> NetworkBuilder::buildLinks() {
    std::vector<std::unique_ptr<Link>> links;
    links.reserve(mNet.edges.size());
    for (const SumoEdge &edge : mNet.edges)
        links.push_back(buildLink(edge));
    return links;
}

std::unique_ptr<Link> NetworkBuilder::buildLink(const SumoEdge &edge) {
    auto link = std::make_unique<Link>();
    link->linkID = mIds.next("Link");
    link->roadId = link->linkID;
    link->linkName = edge.id;
    link->laneNumber = double(edge.lanes.size());
    link->laneColor = kRoadColour;
    link->linkType = mIds.store().words().getWord(vocabulary::linkKind(edge));
    link->length = edge.lanes.front().length;
    link->curvature = 1.0;
    link->nonLinearCoefficient = 1.0;
    link->limitSpeed = limitSpeedKmh(edge);
    link->desiredSpeed = link->limitSpeed;
    addVertices(*link, edge);
    QJsonObject kept = keptOf(edge, mNet.leftHand);
    kept.insert(QLatin1String(linkline::kKey), linkline::digestOf(*link));
    link->otherAttrsJson = {{kSumo, kept}};
    if (!vocabulary::isRoad(edge))
        markNoRoad(*link);
    addLanes(*link, edge);
    link->laneWidth = link->width() / link->laneNumber;
    link->rightBreakPointsJson = link->mlLane.first()->rightBreakPointsJson;
    link->leftBreakPointsJson = link->mlLane.last()->leftBreakPointsJson;
    return link;
}

void NetworkBuilder::addVertices(Link &link, const SumoEdge &edge) {
    const GeometryLine centre = rounded(carriagewayCentre(edge, mNet.leftHand));
    link.centerLinePointsJson = geometryjson::fromPoints(centre);
    for (const GeometryPoint &point : centre)
        link.mlVertex.append(new Vertex{mIds.next("Vertex"), point.x, point.y, point.z});
    link.mpStartNode = new Node{mIds.next("Node"), edge.from, link.mlVertex.first()};
    link.mpEndNode = new Node{mIds.next("Node"), edge.to, link.mlVertex.last()};
}

void NetworkBuilder::addLanes(Link &link, const SumoEdge &edge) {
    const std::size_t count = edge.lanes.size();
    for (std::size_t i = 0; i < count; ++i) {
        const SumoLane &source = edge.lanes[mNet.leftHand ? count - 1 - i : i];
        auto lane = std::make_unique<Lane>();
        lane->laneID = mIds.next("Lane");
        lane->linkID = link.linkID;
        lane->serialNumber = int(i) + 1;
        lane->width = source.width;
        lane->expectTravelDirection = mIds.store().words().getWord(Words::FreeRunning);
        lane->actionType = mIds.store().words().getWord(vocabulary::laneKind(source.permissions));
        lane->centerLinePointsJson = geometryjson::fromPoints(source.shape);
        lane->leftBreakPointsJson = beside(source.shape, source.width / 2);
        lane->rightBreakPointsJson = beside(source.shape, -source.width / 2);
        link.mlLane.append(lane.release());
    }
}

std::vector<std::unique_ptr<Connector>>
NetworkBuilder::buildConnectors(const std::vector<std::unique_ptr<Link>> &links) {
    std::vector<std::vector<const SumoConnection *>> groups;
    QHash<QPair<int, int>, std::size_t> groupOf;
    for (const SumoConnection &connection : mNet.connections) {
        const QPair<int, int> ends(mNet.edgeIndex.value(connection.from),
                                   mNet.edgeIndex.value(connection.to));
        const auto known = groupOf.constFind(ends);
        if (known == groupOf.constEnd()) {
            groupOf.insert(ends, groups.size());
            groups.push_back({&connection});
        } else {
            groups[*known].push_back(&connection);
        }
    }
    std::vector<std::unique_ptr<Connector>> connectors;
    connectors.reserve(groups.size());
    for (const auto &group : groups)
        connectors.push_back(buildConnector(group, links));
    return connectors;
}

std::unique_ptr<Connector>
NetworkBuilder::buildConnector(const std::vector<const SumoConnection *> &connections,
                               const std::vector<std::unique_ptr<Link>> &links) {
    const SumoConnection &first = *connections.front();
    Link *from = links[std::size_t(mNet.edgeIndex.value(first.from))].get();
    Link *to = links[std::size_t(mNet.edgeIndex.value(first.to))].get();
    auto connector = std::make_unique<Connector>(mIds.next("Connector"), from, to);
    connector->connName = QStringLiteral("%1->%2").arg(first.from, first.to);
    connector->limitSpeed = std::min(from->limitSpeed, to->limitSpeed);
    connector->desiredSpeed = connector->limitSpeed;
    QJsonArray kept;
    for (const SumoConnection *connection : connections) {
        Lane *start = laneOf(*from, connection->fromLane);
        auto laneConnector =
            std::make_unique<LaneConnector>(connector.get(), start, laneOf(*to, connection->toLane));
        laneConnector->laneConnId = mIds.next("LaneConnector");
        const GeometryLine path = connectionPath(mNet, *connection);
        if (mWithLaneConnectorGeometry)
            laneConnector->centerLinePointsJson = geometryjson::fromPoints(path);
        laneConnector->leftBreakPointsJson = beside(path, start->width / 2);
        laneConnector->rightBreakPointsJson = beside(path, -start->width / 2);
        connector->length += geometry::length(path) / double(connections.size());
        kept.append(keptOf(*connection));
        connector->mlLaneConnector.append(laneConnector.release());
    }
    updateEdges(*connector);
    if (!mWithLaneConnectorGeometry) {
        for (LaneConnector *path : qAsConst(connector->mlLaneConnector))
            path->leftBreakPointsJson = path->rightBreakPointsJson = StoredJson();
    }
    connector->otherAttrsJson = {{kSumo, QJsonObject{{QStringLiteral("connections"), kept}}}};
    return connector;
}

QJsonArray NetworkBuilder::keepJunctions(const NetLists &network) const {
    const Junctions junctions(network);
    Packer packer;
    QJsonArray others;
    for (std::size_t i = 0; i < mNet.junctions.size(); ++i) {
        const SumoJunction &junction = mNet.junctions[i];
        QJsonObject kept = keptOf(junction, i, packer);
        if (junctions.has(junction.id)) {
            kept.insert(QStringLiteral("of"), junctions.digest(junction.id));
            Junctions::keep(junctions.keeper(junction.id), junction.id, kept);
        } else {
            kept.insert(QStringLiteral("id"), junction.id);
            others.append(kept);
        }
    }
    return others;
}

Lane *NetworkBuilder::laneOf(const Link &link, int sumoIndex) const {
    return link.mlLane.at(mNet.leftHand ? link.mlLane.size() - 1 - sumoIndex : sumoIndex);
}

} // namespace moratools
