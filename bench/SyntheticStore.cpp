#include "SyntheticStore.h"

#include "model/Connector.h"
#include "model/Lane.h"
#include "model/Link.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QFile>
#include <QJsonArray>

#include <memory>

namespace {

using namespace syntheticstore;

constexpr double kStep = 25.0;     // metres between vertices
constexpr double kLaneWidth = 3.5; // metres

QJsonObject lineBeside(const Link &link, double offset) {
    QJsonArray points;
    for (const Vertex *vertex : link.mlVertex)
        points.append(QJsonObject{{"x", vertex->x}, {"y", vertex->y + offset}, {"z", vertex->z}});
    return {{"data", points}};
}

void addLane(Link &link, int serialNumber) {
    auto lane = std::make_unique<Lane>();
    lane->laneID = (link.linkID - 1) * kLanes + serialNumber;
    lane->linkID = link.linkID;
    lane->serialNumber = serialNumber;
    lane->width = kLaneWidth;
    const double right = (serialNumber - 1 - kLanes / 2.0) * kLaneWidth;
    lane->rightBreakPointsJson = lineBeside(link, right);
    lane->centerLinePointsJson = lineBeside(link, right + kLaneWidth / 2);
    lane->leftBreakPointsJson = lineBeside(link, right + kLaneWidth);
    link.mlLane.append(lane.release());
}

std::unique_ptr<Link> makeLink(long id) {
    auto link = std::make_unique<Link>();
    link->linkID = id;
    link->linkName = QStringLiteral("Link %1").arg(id);
    link->laneNumber = kLanes;
    link->laneWidth = kLaneWidth;
    link->length = kStep * (kVertices - 1);
    for (int i = 0; i < kVertices; ++i) {
        auto vertex = std::make_unique<Vertex>();
        vertex->vertexID = (id - 1) * kVertices + i + 1;
        vertex->x = (double(id) * kVertices + i) * kStep;
        vertex->y = 0.1 * double(id % 1000) + i / 3.0;
        link->mlVertex.append(vertex.release());
    }
    auto start = std::make_unique<Node>();
    start->nodeID = 2 * id - 1;
    start->mpVertex = link->mlVertex.first();
    auto end = std::make_unique<Node>();
    end->nodeID = 2 * id;
    end->mpVertex = link->mlVertex.last();
    link->mpStartNode = start.release();
    link->mpEndNode = end.release();
    link->centerLinePointsJson = lineBeside(*link, 0);
    for (int serialNumber = 1; serialNumber <= kLanes; ++serialNumber)
        addLane(*link, serialNumber);
    return link;
}

bool writeConnector(long id, Link &from, Link &to) {
    Connector connector(id, &from, &to);
    connector.leftBreakPointsJson = lineBeside(from, kLaneWidth);
    connector.rightBreakPointsJson = lineBeside(from, -kLaneWidth);
    for (int i = 0; i < kLanes; ++i)
        connector.mlLaneConnector.append(new LaneConnector(&connector, from.mlLane[i], to.mlLane[i]));
    return DBTools::insertConnector(gDB, kNet, &connector, false);
}

bool writeAll(long links) {
    std::unique_ptr<Link> previous;
    for (long id = 1; id <= links; ++id) {
        std::unique_ptr<Link> link = makeLink(id);
        if (!DBTools::insertLink(gDB, kNet, link.get(), false))
            return false;
        if (previous && !writeConnector(id - 1, *previous, *link))
            return false;
        previous = std::move(link);
    }
    return true;
}

} // namespace

bool syntheticstore::make(const QString &path, long links) {
    if (!QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V6.0.0"), path) ||
        !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner) ||
        !DBTools::openDatabase(gDB, path, true) ||
        !DBTools_V6::insertNet(gDB, kNet, QStringLiteral("Chain"), {}, {}, {}, {}, true, true) ||
        !DBTools::selectNetById(gDB, kNet))
        return false;
    if (!gDB.transaction())
        return false;
    const bool written = writeAll(links);
    return gDB.commit() && written;
}
