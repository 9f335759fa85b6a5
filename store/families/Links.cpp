#include "store/families/Links.h"

#include "model/GeometryJson.h"
#include "model/Lane.h"
#include "model/Link.h"
#include "model/Node.h"
#include "model/SpecialWords.h"
#include "model/Vertex.h"
#include "store/DBTools.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"
#include "store/families/CurrentNet.h"
#include "store/families/Lanes.h"

#include <QJsonArray>

#include <algorithm>
#include <memory>

namespace links {

namespace {

constexpr Sql kInsertVertex = {
    "insert into Vertex(VertexID, X, Y, Z) values(:vertexID, :X, :Y, :Z)",
    "insert into Vertex(NetId, VertexID, X, Y, Z) values(:NetId, :vertexID, :X, :Y, :Z)"};

constexpr Sql kInsertNode = {
    "insert into Node(nodeID, nodeName, vertexID) values(:nodeID, :nodeName, :vertexID)",
    "insert into Node(NetId, nodeID, nodeName, vertexID) values(:NetId, :nodeID, :nodeName, :vertexID)"};

constexpr const char *kInsertLinkWithoutRoad =
    "insert into Link(linkID,netId,StartNodeID, EndNodeID,LinkName,laneNumber,laneWidth,laneColor,linkType,length,curvature,nonLinearCoefficient,linkSaturationFlow,linkTrafficFlow,desiredSpeed,limitSpeed,minSpeed,addValue) values(:linkID,:netId,:StartNodeID, :EndNodeID,:linkName,:laneNumber,:laneWidth,:laneColor,:linkType,:length,:curvature,:nonLinearCoefficient,:linkSaturationFlow,:linkTrafficFlow,:desiredSpeed,:limitSpeed,:minSpeed,:addValue)";
constexpr Sql kInsertLink = {
    "insert into Link(linkID,netId,roadid,StartNodeID, EndNodeID,LinkName,laneNumber,laneWidth,laneColor,linkType,length,curvature,nonLinearCoefficient,linkSaturationFlow,linkTrafficFlow,desiredSpeed,limitSpeed,minSpeed,addValue) values(:linkID,:netId,:roadId,:StartNodeID, :EndNodeID,:linkName,:laneNumber,:laneWidth,:laneColor,:linkType,:length,:curvature,:nonLinearCoefficient,:linkSaturationFlow,:linkTrafficFlow,:desiredSpeed,:limitSpeed,:minSpeed,:addValue)",
    "insert into Link(NetId, linkID ,roadid, StartNodeID, EndNodeID,LinkName,laneNumber,laneWidth,laneColor,linkType,length,curvature,nonLinearCoefficient,linkSaturationFlow,linkTrafficFlow,desiredSpeed,limitSpeed,minSpeed,addValue) values(:NetId, :linkID,:roadId,:StartNodeID, :EndNodeID,:linkName,:laneNumber,:laneWidth,:laneColor,:linkType,:length,:curvature,:nonLinearCoefficient,:linkSaturationFlow,:linkTrafficFlow,:desiredSpeed,:limitSpeed,:minSpeed,:addValue)"};

constexpr Sql kUpdateGeometry = {
    "update Link set centerLinePointsJson=:centerLinePointsJson,leftBreakPointsJson=:leftBreakPointsJson,rightBreakPointsJson=:rightBreakPointsJson where linkID=%1",
    "update Link set centerLinePointsJson=:centerLinePointsJson,leftBreakPointsJson=:leftBreakPointsJson,rightBreakPointsJson=:rightBreakPointsJson where NetId = %0 and linkID=%1"};
constexpr Sql kUpdateAttributes = {
    "update Link set otherAttrsJson=:otherAttrsJson where linkID=%1",
    "update Link set otherAttrsJson=:otherAttrsJson where NetId = %0 and linkID=%1"};

constexpr Sql kInsertVertexOrder = {
    "insert into LinkVertex(LinkID, VertexID, Num) values(:linkID, :vertexID, :Num)",
    "insert into LinkVertex(NetId, LinkID, VertexID, Num) values(:NetId, :linkID, :vertexID, :Num)"};

constexpr Sql kSelect = {"select * from Link where LinkID = %0",
                         "select * from Link where NetId = %0 and LinkID = %1"};
constexpr Sql kSelectVertices = {
    "select v.* from vertex v join (select * from LinkVertex where LinkId = %0) LV on v.VertexID = LV.VertexID order by lV.Num",
    "select v.* from vertex v join LinkVertex LV on v.NetId = LV.NetId and v.VertexID = LV.VertexID where LV.NetId = %0 and LV.linkID = %1 order by LV.Num"};
constexpr Sql kSelectNode = {"select * from Node where nodeID = %0",
                             "select * from Node where NetId = %0 and nodeID = %1"};
constexpr Sql kSelectIds = {"select LinkID from Link order by LinkID",
                            "select LinkID from Link where netId= %1 order by LinkID"};

bool hasRoadIds(const Store &store) {
    return store.hasSeveralNets() || DBTools::mbLinkHasRouadId;
}

bool insertVertices(const Store &store, const Link &link) {
    bool written = true;
    Query insert(store, kInsertVertex);
    for (const Vertex *vertex : link.mlVertex) {
        insert.bindNet().bind(":vertexID", vertex->vertexID);
        insert.bind(":X", vertex->x).bind(":Y", vertex->y).bind(":Z", vertex->z);
        written = insert.exec() && written;
    }
    return written;
}

bool insertNode(const Store &store, Node *node) {
    if (!node)
        return true;
    if (node->nodeName.isEmpty())
        node->nodeName = QString::number(node->nodeID);
    Query insert(store, kInsertNode);
    insert.bindNet().bind(":nodeID", node->nodeID).bind(":nodeName", node->nodeName);
    insert.bind(":vertexID", node->mpVertex ? node->mpVertex->vertexID : 0L);
    return insert.exec();
}

bool insertRow(const Store &store, Link &link) {
    const bool withRoad = hasRoadIds(store);
    if (withRoad && link.roadId == 0)
        link.roadId = link.linkID;
    Query insert(store, withRoad ? store.text(kInsertLink) : QString::fromLatin1(kInsertLinkWithoutRoad));
    insert.bind(":linkID", link.linkID);
    if (withRoad)
        insert.bind(":roadId", link.roadId);
    // Both generations store the network; only the placeholder is spelled differently.
    insert.bind(store.hasSeveralNets() ? ":NetId" : ":netId", store.netId());
    insert.bind(":StartNodeID", link.mpStartNode ? link.mpStartNode->nodeID : 0L)
        .bind(":EndNodeID", link.mpEndNode ? link.mpEndNode->nodeID : 0L)
        .bind(":linkName", link.linkName)
        .bind(":laneNumber", link.laneNumber)
        .bind(":laneWidth", link.laneWidth)
        .bind(":laneColor", link.laneColor)
        .bind(":linkType", gSpecialWords.trZhToEn(link.linkType))
        .bind(":length", link.length)
        .bind(":curvature", link.curvature)
        .bind(":nonLinearCoefficient", link.nonLinearCoefficient)
        .bind(":linkSaturationFlow", link.linkSaturationFlow)
        .bind(":linkTrafficFlow", link.linkTrafficFlow)
        .bind(":desiredSpeed", link.desiredSpeed)
        .bind(":limitSpeed", link.limitSpeed)
        .bind(":minSpeed", link.minSpeed)
        .bind(":addValue", link.addValue);
    return insert.exec();
}

bool updateGeometry(const Store &store, const Link &link) {
    const Lane *leftmost = lanes::last(link);
    const Lane *rightmost = lanes::first(link);
    Query geometry(store, kUpdateGeometry, {link.linkID});
    geometry.bind(":centerLinePointsJson", link.centerLinePointsJson)
        .bind(":leftBreakPointsJson", leftmost ? leftmost->leftBreakPointsJson : StoredJson())
        .bind(":rightBreakPointsJson", rightmost ? rightmost->rightBreakPointsJson : StoredJson());
    bool written = geometry.exec();
    if (!link.otherAttrsJson.holdsNothing()) {
        Query attributes(store, kUpdateAttributes, {link.linkID});
        written = attributes.bind(":otherAttrsJson", link.otherAttrsJson).exec() && written;
    }
    return written;
}

bool insertVertexOrder(const Store &store, const Link &link) {
    bool written = true;
    int number = 0;
    Query insert(store, kInsertVertexOrder);
    for (const Vertex *vertex : link.mlVertex) {
        insert.bindNet()
            .bind(":linkID", link.linkID)
            .bind(":vertexID", vertex->vertexID)
            .bind(":Num", ++number);
        written = insert.exec() && written;
    }
    return written;
}

struct NodeIds {
    long start = 0;
    long end = 0;
};

/// Reads the row of a link; false without one.
bool readRow(const Store &store, Link &link, NodeIds &nodes, long linkId) {
    Query row(store, kSelect, {linkId});
    if (!row.execAndNext())
        return false;
    link.linkID = row.id("linkID");
    if (hasRoadIds(store))
        link.roadId = row.id("roadId");
    nodes = {row.id("StartNodeID"), row.id("EndNodeID")};
    link.linkName = row.text("LinkName");
    link.laneNumber = row.number("laneNumber");
    link.laneWidth = row.number("laneWidth");
    link.laneColor = row.text("laneColor");
    link.linkType = row.text("linkType");
    link.length = row.number("length");
    link.curvature = row.number("curvature");
    link.nonLinearCoefficient = row.number("nonLinearCoefficient");
    link.linkSaturationFlow = row.number("linkSaturationFlow");
    link.linkTrafficFlow = row.number("linkTrafficFlow");
    link.desiredSpeed = row.number("desiredSpeed");
    link.limitSpeed = row.number("limitSpeed");
    link.minSpeed = row.number("minSpeed");
    link.addValue = row.number("addValue");
    // Stores without the columns leave the objects empty.
    link.centerLinePointsJson = row.json("centerLinePointsJson");
    link.leftBreakPointsJson = row.json("leftBreakPointsJson");
    link.rightBreakPointsJson = row.json("rightBreakPointsJson");
    link.otherAttrsJson = row.json("otherAttrsJson");
    return true;
}

void readVertices(const Store &store, Link &link) {
    Query rows(store, kSelectVertices, {link.linkID});
    if (!rows.exec())
        return;
    while (rows.next()) {
        auto vertex = std::make_unique<Vertex>();
        vertex->vertexID = rows.id("VertexID");
        vertex->x = rows.number("X");
        vertex->y = rows.number("Y");
        vertex->z = rows.number("Z");
        link.mlVertex.append(vertex.release());
    }
    const QVector<GeometryPoint> centerLine = geometryjson::points(link.centerLinePointsJson);
    if (centerLine.size() != link.mlVertex.size())
        return;
    for (int i = 0; i < centerLine.size(); ++i)
        link.mlVertex.at(i)->z = centerLine.at(i).z;
}

Node *readNode(const Store &store, long nodeId, Vertex *vertex) {
    auto node = std::make_unique<Node>();
    node->nodeID = nodeId;
    node->mpVertex = vertex;
    Query row(store, kSelectNode, {nodeId});
    if (row.execAndNext())
        node->nodeName = row.text("nodeName");
    return node.release();
}

} // namespace

bool insert(const Store &store, Link *link, bool inTransaction) {
    if (!link)
        return true;
    Transaction transaction(store, inTransaction);
    bool written = insertVertices(store, *link);
    written = insertNode(store, link->mpStartNode) && written;
    written = insertNode(store, link->mpEndNode) && written;
    written = insertRow(store, *link) && written;
    if (written && link->linkID >= 1 && store.hasColumn("Link", "centerLinePointsJson"))
        written = updateGeometry(store, *link);
    written = lanes::insertAll(store, *link, written);
    written = lanes::insertRestrictions(store, *link) && written;
    written = insertVertexOrder(store, *link) && written;
    return transaction.commit(written);
}

bool insertAll(Store &store, const QList<Link *> &links) {
    store.keepStatements();
    return std::all_of(links.cbegin(), links.cend(),
                       [&store](Link *link) { return insert(store, link, false); });
}

Link *read(const Store &store, long linkId) {
    const bool isCurrent = isCurrentNet(store);
    if (isCurrent) {
        if (Link *held = gNet.getLinkById(linkId))
            return held;
    }
    auto link = std::make_unique<Link>();
    NodeIds nodes;
    if (!readRow(store, *link, nodes, linkId))
        return nullptr;
    readVertices(store, *link);
    if (link->mlVertex.size() >= 2) {
        link->mpStartNode = readNode(store, nodes.start, link->mlVertex.first());
        link->mpEndNode = readNode(store, nodes.end, link->mlVertex.last());
    }
    lanes::readAll(store, *link);
    if (isCurrent) {
        gNet.enter(link.get());
        for (Lane *lane : qAsConst(link->mlLane))
            gNet.enter(lane);
    }
    return link.release();
}

bool listIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

bool hasVertex(QSqlDatabase &db, long linkId, long vertexId) {
    return probes::returnsRow(
        db, fillNumbers(QStringLiteral("select * from LinkVertex where LinkID = %1 and vertexID = %2"),
                        {linkId, vertexId}));
}

bool nodeStandsOn(QSqlDatabase &db, long nodeId, long vertexId) {
    return probes::returnsRow(
        db, fillNumbers(QStringLiteral("select * from Node where nodeID = %1 and vertexID = %2"),
                        {nodeId, vertexId}));
}

QString breakPoints(const QJsonObject &geometry) {
    QStringList points;
    const QJsonArray data = geometry.value(QLatin1String("data")).toArray();
    for (const QJsonValue &value : data) {
        const QJsonObject point = value.toObject();
        points.append(QStringLiteral("%1,%2")
                          .arg(point.value(QLatin1String("x")).toDouble())
                          .arg(point.value(QLatin1String("y")).toDouble()));
    }
    return points.join(QLatin1Char(';'));
}

} // namespace links
