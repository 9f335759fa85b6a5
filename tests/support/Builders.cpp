#include "tests/support/Builders.h"

#include <QJsonArray>

QJsonObject sampleGeometry(int seed, int points) {
    QJsonArray data;
    for (int i = 0; i < points; ++i) {
        // Thirds have no finite binary form: a loss of precision on the way shows.
        data.append(QJsonObject{{QStringLiteral("x"), seed + i / 3.0},
                                {QStringLiteral("y"), -1.0 / (seed + i + 3)},
                                {QStringLiteral("z"), i * 0.1}});
    }
    return {{QStringLiteral("data"), data}};
}

namespace {

Lane *sampleLane(const Link &link, int serialNumber) {
    const int seed = static_cast<int>(link.linkID) * 100 + serialNumber * 10;
    auto *lane = new Lane;
    lane->laneID = 10 * link.linkID + serialNumber;
    lane->linkID = link.linkID;
    lane->serialNumber = serialNumber;
    lane->width = 3 + serialNumber / 7.0;
    lane->expectTravelDirection = QStringLiteral("Left%1").arg(serialNumber);
    lane->actionType = QStringLiteral("Kind %1").arg(seed);
    lane->centerLinePointsJson = sampleGeometry(seed + 1, 3);
    lane->leftBreakPointsJson = sampleGeometry(seed + 2, 3);
    lane->rightBreakPointsJson = sampleGeometry(seed + 3, 2);
    return lane;
}

Node *sampleNode(long id, const QString &name, Vertex *vertex) {
    auto *node = new Node;
    node->nodeID = id;
    node->nodeName = name;
    node->mpVertex = vertex;
    return node;
}

} // namespace

std::unique_ptr<Link> sampleLink(long id) {
    auto link = std::make_unique<Link>();
    link->linkID = id;
    link->roadId = id + 1000;
    link->linkName = QStringLiteral("O'Brien 100% 路 🚦 %1").arg(id);
    link->laneNumber = 2;
    link->laneWidth = 3.25;
    link->laneColor = QStringLiteral("A0A0A0");
    link->linkType = QStringLiteral("Ramp");
    link->length = 100.0 / 3;
    link->curvature = 1.1;
    link->nonLinearCoefficient = 1.2;
    link->linkSaturationFlow = 1800;
    link->linkTrafficFlow = 900.5;
    link->desiredSpeed = 50.1;
    link->limitSpeed = 60.2;
    link->minSpeed = 20.3;
    link->addValue = 4.4;
    link->centerLinePointsJson = sampleGeometry(static_cast<int>(id), 3);
    link->otherAttrsJson = {{QStringLiteral("note"), QStringLiteral("自由 \"quoted\"")}};
    for (int i = 1; i <= 3; ++i) {
        auto *vertex = new Vertex;
        vertex->vertexID = 10 * id + i;
        vertex->x = double(id) * 100 + i / 3.0;
        vertex->y = -i / 7.0;
        vertex->z = i * 2.5;
        link->mlVertex.append(vertex);
    }
    link->mpStartNode = sampleNode(10 * id + 1, QStringLiteral("north"), link->mlVertex.first());
    link->mpEndNode = sampleNode(10 * id + 2, QString(), link->mlVertex.last());
    link->mlLane.append(sampleLane(*link, 1));
    link->mlLane.append(sampleLane(*link, 2));
    return link;
}

std::unique_ptr<Connector> sampleConnector(long id, Link *from, Link *to) {
    auto connector = std::make_unique<Connector>(id, from, to);
    connector->roadId = id + 2000;
    connector->connName = QStringLiteral("转 %1").arg(id);
    connector->length = 20.0 / 3;
    connector->curvature = 1.3;
    connector->nonLinearCoefficient = 1.4;
    connector->color = QStringLiteral("C0FFEE");
    connector->desiredSpeed = 31.5;
    connector->limitSpeed = 41.5;
    connector->leftBreakPointsJson = sampleGeometry(static_cast<int>(id) + 1, 4);
    connector->rightBreakPointsJson = sampleGeometry(static_cast<int>(id) + 2, 4);
    connector->otherAttrsJson = {{QStringLiteral("turn"), QStringLiteral("left")}};
    for (int i = 0; i < from->mlLane.size() && i < to->mlLane.size(); ++i) {
        auto *lanes = new LaneConnector(connector.get(), from->mlLane.at(i), to->mlLane.at(i));
        lanes->laneConnId = 10 * id + i;
        lanes->weight = 7 + i;
        lanes->centerLinePointsJson = sampleGeometry(i + 11, 5);
        lanes->leftBreakPointsJson = sampleGeometry(i + 21, 5);
        lanes->rightBreakPointsJson = sampleGeometry(i + 31, 5);
        connector->mlLaneConnector.append(lanes);
    }
    return connector;
}
