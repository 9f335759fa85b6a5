#include "store/families/Links.h"

#include "model/Description.h"
#include "model/GeometryJson.h"
#include "model/Lane.h"
#include "model/Link.h"
#include "model/Node.h"
#include "model/Vertex.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/SortedById.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Lanes.h"
#include "store/families/Wholeness.h"

#include <QJsonArray>

#include <algorithm>
#include <memory>
#include <unordered_map>

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

constexpr std::tuple kVertexColumns = {
    Column{":vertexID", &Vertex::vertexID},
    Column{":X", &Vertex::x, "x"},
    Column{":Y", &Vertex::y, "y"},
    Column{":Z", &Vertex::z, "z"},
};
constexpr std::tuple kNodeColumns = {
    Column{":nodeID", &Node::nodeID},
    Column{":nodeName", &Node::nodeName},
    Reference{":vertexID", &Node::mpVertex, &Vertex::vertexID},
};

constexpr Column kId{":linkID", &Link::linkID};
/// Older stores lack it.
constexpr Column kRoad{":roadId", &Link::roadId};
constexpr Reference kStartNode{":StartNodeID", &Link::mpStartNode, &Node::nodeID};
constexpr Reference kEndNode{":EndNodeID", &Link::mpEndNode, &Node::nodeID};
constexpr std::tuple kNodes = {kStartNode, kEndNode};
constexpr Word kType{":linkType", &Link::linkType};
constexpr std::tuple kColumns = {
    Column{":linkName", &Link::linkName},
    Column{":laneNumber", &Link::laneNumber},
    Column{":laneWidth", &Link::laneWidth},
    Column{":laneColor", &Link::laneColor},
    kType,
    Column{":length", &Link::length},
    Column{":curvature", &Link::curvature},
    Column{":nonLinearCoefficient", &Link::nonLinearCoefficient},
    Column{":linkSaturationFlow", &Link::linkSaturationFlow},
    Column{":linkTrafficFlow", &Link::linkTrafficFlow},
    Column{":desiredSpeed", &Link::desiredSpeed},
    Column{":limitSpeed", &Link::limitSpeed},
    Column{":minSpeed", &Link::minSpeed},
    Column{":addValue", &Link::addValue},
};
/// Stores without these columns leave the objects empty.
constexpr Column kCenterLine{":centerLinePointsJson", &Link::centerLinePointsJson, "centerLinePoints"};
constexpr Column kLeftBreakPoints{":leftBreakPointsJson", &Link::leftBreakPointsJson, "leftBreakPoints"};
constexpr Column kRightBreakPoints{":rightBreakPointsJson", &Link::rightBreakPointsJson, "rightBreakPoints"};
constexpr Column kAttributes{":otherAttrsJson", &Link::otherAttrsJson, "otherAttrs"};
constexpr std::tuple kGeometryColumns = {kCenterLine, kLeftBreakPoints, kRightBreakPoints, kAttributes};

/// A node without a name takes its id as name.
QString nameOf(const Node &node) {
    return node.nodeName.isEmpty() ? QString::number(node.nodeID) : node.nodeName;
}

bool insertVertices(const Store &store, const Link &link) {
    bool written = true;
    Query insert(store, kInsertVertex);
    for (const Vertex *vertex : link.mlVertex) {
        written = bindAll(insert.bindNet(), kVertexColumns, *vertex).exec() && written;
    }
    return written;
}

bool insertNode(const Store &store, Node *node) {
    if (!node)
        return true;
    node->nodeName = nameOf(*node);
    Query insert(store, kInsertNode);
    return bindAll(insert.bindNet(), kNodeColumns, *node).exec();
}

/// A link without a road id takes its own.
template <class Row>
void bindRow(Row &row, const Store &store, bool withRoad, Link &link, const QString &storedType) {
    if (withRoad && link.roadId == 0)
        link.roadId = link.linkID;
    kId.bind(row, link);
    if (withRoad)
        kRoad.bind(row, link);
    // Both generations store the network; only the placeholder is spelled differently.
    row.bind(store.hasSeveralNets() ? ":NetId" : ":netId", store.netId());
    bindAll(row, kNodes, link);
    bindAll(row, kColumns, link).bind(kType.placeholder, storedType);
}

bool insertRow(const Store &store, Link &link) {
    const bool withRoad = store.hasRoadIds();
    Query insert(store, withRoad ? store.text(kInsertLink) : QString::fromLatin1(kInsertLinkWithoutRoad));
    bindRow(insert, store, withRoad, link, store.words().trZhToEn(link.linkType));
    return insert.exec();
}

/// The break points of a link are those of its outer lanes.
template <class Row>
Row &bindGeometry(Row &row, const Link &link) {
    const Lane *leftmost = lanes::lastLane(link);
    const Lane *rightmost = lanes::firstLane(link);
    return row.bind(kCenterLine.placeholder, link.centerLinePointsJson)
        .bind(kLeftBreakPoints.placeholder, leftmost ? leftmost->leftBreakPointsJson : StoredJson())
        .bind(kRightBreakPoints.placeholder, rightmost ? rightmost->rightBreakPointsJson : StoredJson());
}

bool updateGeometry(const Store &store, const Link &link) {
    Query geometry(store, kUpdateGeometry, {link.linkID});
    bool written = bindGeometry(geometry, link).exec();
    if (!link.otherAttrsJson.holdsNothing()) {
        Query attributes(store, kUpdateAttributes, {link.linkID});
        written = attributes.bind(kAttributes.placeholder, link.otherAttrsJson).exec() && written;
    }
    return written;
}

QVariantMap describeNode(const Node *node) {
    if (!node)
        return {};
    QVariantMap fields = describeAll(kNodeColumns, *node);
    if (!node->mpVertex)
        fields.remove(QStringLiteral("vertexID"));
    return fields;
}

template <class Row>
Row &bindOrder(Row &row, const Link &link, const Vertex &vertex, int number) {
    return row.bind(":linkID", link.linkID).bind(":vertexID", vertex.vertexID).bind(":Num", number);
}

bool insertVertexOrder(const Store &store, const Link &link) {
    bool written = true;
    int number = 0;
    Query insert(store, kInsertVertexOrder);
    for (const Vertex *vertex : link.mlVertex) {
        written = bindOrder(insert.bindNet(), link, *vertex, ++number).exec() && written;
    }
    return written;
}

struct NodeIds {
    long start = 0;
    long end = 0;
};

template <class Row>
NodeIds readRow(Row &row, bool withRoad, Link &link) {
    kId.read(row, link);
    if (withRoad)
        kRoad.read(row, link);
    const NodeIds nodes = {row.id(kStartNode.name()), row.id(kEndNode.name())};
    readAll(row, kColumns, link);
    readAll(row, kGeometryColumns, link);
    // Read as it stands, and translated where it is written.
    if (row.store().words().trZhToEn(link.linkType) != link.linkType)
        link.storedLinkType = link.linkType;
    return nodes;
}

/// Where the centre line has a point for each vertex, it gives the heights.
bool givesHeights(const Link &link) {
    return geometryjson::points(link.centerLinePointsJson).size() == link.mlVertex.size();
}

void takeHeights(Link &link) {
    const GeometryLine centerLine = geometryjson::points(link.centerLinePointsJson);
    if (centerLine.size() != link.mlVertex.size())
        return;
    for (int i = 0; i < centerLine.size(); ++i)
        link.mlVertex.at(i)->z = centerLine.at(i).z;
}

void readVertices(const Store &store, Link &link) {
    Query rows(store, kSelectVertices, {link.linkID});
    if (!rows.execPart())
        return;
    while (rows.next()) {
        auto vertex = std::make_unique<Vertex>();
        readAll(rows, kVertexColumns, *vertex);
        link.mlVertex.append(vertex.release());
    }
    takeHeights(link);
}

QString readNodeName(const Store &store, long nodeId) {
    Query row(store, kSelectNode, {nodeId});
    return row.execPart() && row.next() ? row.text("nodeName") : QString();
}

/// Gives a link the nodes that its row names, where it has vertices for them to stand on.
template <class NameOf>
void addNodes(Link &link, const NodeIds &ids, const NameOf &nameOf) {
    if (link.mlVertex.size() < 2)
        return;
    link.mpStartNode = new Node{ids.start, nameOf(ids.start), link.mlVertex.first()};
    link.mpEndNode = new Node{ids.end, nameOf(ids.end), link.mlVertex.last()};
}

/// Loads whole networks: nodes and vertices are looked up by what their tables gave.
class Loader {
public:
    explicit Loader(NetLoad &net) : mNet(net) {}

    void load() {
        loadLinks();
        loadVertices();
        loadNodes();
        mNet.contents.links.reserve(mLinks.size());
        for (LoadedLink &loaded : mLinks) {
            mNet.store.net().enter(loaded.link.get());
            mNet.contents.links.push_back(std::move(loaded.link));
        }
    }

private:
    struct LoadedLink {
        std::unique_ptr<Link> link;
        NodeIds nodes;
    };
    struct NodeName {
        long id;
        QString name;
    };

    void loadLinks() {
        const bool withRoad = mNet.store.hasRoadIds();
        mNet.forEachObject("Link", "linkID", [&](Rows &row) {
            auto link = std::make_unique<Link>();
            const NodeIds nodes = readRow(row, withRoad, *link);
            mLinks.push_back({std::move(link), nodes});
        });
        sortById(mLinks, [](const LoadedLink &loaded) { return loaded.link->linkID; });
    }

    void loadVertices() {
        std::vector<Vertex> vertices;
        mNet.forEachObject("Vertex", "vertexID", [&](Rows &row) {
            vertices.emplace_back();
            readAll(row, kVertexColumns, vertices.back());
        });
        sortById(vertices, [](const Vertex &vertex) { return vertex.vertexID; });
        SortedById vertexOf(vertices, [](const Vertex &vertex) { return vertex.vertexID; });
        SortedById linkOf(mLinks, [](const LoadedLink &loaded) { return loaded.link->linkID; });
        std::vector<bool> isUsed(vertices.size());
        mNet.forEachRow("LinkVertex", "linkID, num", [&](Rows &row) {
            const long linkId = row.id("linkID");
            const std::size_t owner = linkOf.find(linkId);
            const std::size_t vertex = vertexOf.find(row.id("vertexID"));
            if (owner == mLinks.size())
                mNet.skip("LinkVertex", linkId, "belongs to no link");
            else if (vertex == vertices.size())
                mNet.skip("LinkVertex", linkId, "names a vertex that is missing");
            else {
                mLinks[owner].link->mlVertex.append(new Vertex(vertices[vertex]));
                isUsed[vertex] = true;
            }
        });
        skipUnused(vertices, isUsed, &Vertex::vertexID, "Vertex");
        for (const LoadedLink &loaded : mLinks)
            takeHeights(*loaded.link);
    }

    void loadNodes() {
        std::vector<NodeName> names;
        mNet.forEachObject("Node", "nodeID", [&](Rows &row) {
            names.push_back({row.id("nodeID"), row.text("nodeName")});
        });
        const auto idOf = [](const NodeName &node) { return node.id; };
        sortById(names, idOf);
        SortedById nodeOf(names, idOf);
        std::vector<bool> isUsed(names.size());
        for (const LoadedLink &loaded : mLinks) {
            addNodes(*loaded.link, loaded.nodes, [&](long id) {
                const std::size_t node = nodeOf.find(id);
                if (node < names.size()) {
                    isUsed[node] = true;
                    return names[node].name;
                }
                mNet.skip("Link", loaded.link->linkID, "names a node that is missing");
                return QString();
            });
        }
        skipUnused(names, isUsed, &NodeName::id, "Node");
    }

    /// Reports what no link has: links own their vertices and nodes.
    template <class Entity>
    void skipUnused(const std::vector<Entity> &all, const std::vector<bool> &isUsed, long Entity::*id,
                    const char *table) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (!isUsed[i])
                mNet.skip(table, all[i].*id, "belongs to no link");
        }
    }

    NetLoad &mNet;
    std::vector<LoadedLink> mLinks;
};

void giveIds(NetSave &net) {
    const Objects<Link> &links = net.contents.links;
    net.giveIds("Link", links, &Link::linkID);
    net.giveIds("Vertex", links, &Link::mlVertex, &Vertex::vertexID);
    std::vector<long *> nodeIds;
    for (const auto &link : links) {
        for (Node *node : {link->mpStartNode, link->mpEndNode}) {
            if (node)
                nodeIds.push_back(&node->nodeID);
        }
    }
    net.giveIds("Node", nodeIds);
}

/// The vertices of all links, each once: a load gives every link its own copy of a vertex that it shares. The
/// copies may differ in height where a centre line gives it; then one counts whose link has no such line. Two
/// vertices of one id in different places are both here, for the key to refuse.
std::vector<const Vertex *> distinctVertices(const Objects<Link> &links) {
    std::vector<const Vertex *> vertices;
    std::unordered_map<long, std::size_t> placeOf;
    for (const auto &link : links) {
        for (const Vertex *vertex : qAsConst(link->mlVertex)) {
            const auto [entry, isNew] = placeOf.emplace(vertex->vertexID, vertices.size());
            const Vertex *&first = isNew ? vertices.emplace_back(vertex) : vertices[entry->second];
            if (first->x != vertex->x || first->y != vertex->y)
                vertices.push_back(vertex);
            else if (first->z != vertex->z && !givesHeights(*link))
                first = vertex;
        }
    }
    return vertices;
}

/// The nodes of all links, each once; two of one id with different names are both here, for the key to
/// refuse.
std::vector<const Node *> distinctNodes(NetSave &net) {
    std::vector<const Node *> nodes;
    std::unordered_map<long, const Node *> firstOf;
    for (const auto &link : net.contents.links) {
        for (Node *node : {link->mpStartNode, link->mpEndNode}) {
            if (!node)
                continue;
            net.setIfUnset(node->nodeName, nameOf(*node));
            const auto [entry, isNew] = firstOf.emplace(node->nodeID, node);
            if (isNew || entry->second->nodeName != node->nodeName)
                nodes.push_back(node);
        }
    }
    return nodes;
}

void saveRows(NetSave &net) {
    const Objects<Link> &links = net.contents.links;
    const bool withRoad = net.store.hasRoadIds();
    const bool withGeometry = net.store.hasColumn("Link", "centerLinePointsJson");
    net.write("Link", qint64(links.size()), [&](RowWriter &row) {
        for (const auto &link : links) {
            if (withRoad)
                net.setIfUnset(link->roadId, link->linkID);
            bindRow(row, net.store, withRoad, *link,
                    link->linkType == link->storedLinkType ? link->linkType
                                                           : row.store().words().trZhToEn(link->linkType));
            if (withGeometry)
                bindGeometry(row, *link).bindFilled(kAttributes.placeholder, link->otherAttrsJson);
            if (!row.exec())
                return;
        }
    });
}

} // namespace

bool insertLink(const Store &store, Link *link, bool inTransaction) {
    if (!link)
        return true;
    if (!wholeness::isWhole(store, *link))
        return false;
    OperationTransaction transaction(store, inTransaction);
    bool written = insertVertices(store, *link);
    written = insertNode(store, link->mpStartNode) && written;
    written = insertNode(store, link->mpEndNode) && written;
    written = insertRow(store, *link) && written;
    if (written && link->linkID >= 1 && store.hasColumn("Link", "centerLinePointsJson"))
        written = updateGeometry(store, *link);
    written = lanes::insertLanes(store, *link, written);
    written = lanes::insertLaneRestrictions(store, *link) && written;
    written = insertVertexOrder(store, *link) && written;
    return transaction.commit(written);
}

bool insertLinks(Store &store, const QList<Link *> &links) {
    if (!wholeness::hasNoNull(store, links))
        return false;
    store.keepStatements();
    return std::all_of(links.cbegin(), links.cend(),
                       [&store](Link *link) { return insertLink(store, link, false); });
}

Link *readLink(const Store &store, long linkId) {
    const bool isCurrent = isCurrentNet(store);
    if (isCurrent) {
        if (Link *held = store.net().getLinkById(linkId))
            return held;
    }
    auto link = std::make_unique<Link>();
    Query row(store, kSelect, {linkId});
    if (!row.execAndNext())
        return nullptr;
    const NodeIds nodes = readRow(row, store.hasRoadIds(), *link);
    row.finish();
    readVertices(store, *link);
    addNodes(*link, nodes, [&store](long nodeId) { return readNodeName(store, nodeId); });
    lanes::readLanesOf(store, *link);
    if (isCurrent && !store.lacksAnswer()) {
        store.net().enter(link.get());
        for (Lane *lane : qAsConst(link->mlLane))
            store.net().enter(lane);
    }
    return store.whole(std::move(link));
}

void loadAllLinks(NetLoad &net) {
    Loader(net).load();
    lanes::loadAllLanes(net);
}

void saveAllLinks(NetSave &net) {
    giveIds(net);
    const Objects<Link> &links = net.contents.links;
    if (net.wants("Vertex"))
        net.writeEach("Vertex", distinctVertices(links),
                      [](RowWriter &row, const Vertex &vertex) { bindAll(row, kVertexColumns, vertex); });
    if (net.wants("Node"))
        net.writeEach("Node", distinctNodes(net),
                      [](RowWriter &row, const Node &node) { bindAll(row, kNodeColumns, node); });
    saveRows(net);
    const Link *of = nullptr;
    int number = 0;
    net.writeOwned("LinkVertex", links, &Link::mlVertex,
                   [&](RowWriter &row, const Link &link, const Vertex *vertex) {
                       number = of == &link ? number + 1 : 1;
                       of = &link;
                       bindOrder(row, link, *vertex, number);
                   });
    lanes::saveAllLanes(net);
}

bool listLinkIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

std::optional<bool> linkHasVertex(const QSqlDatabase &db, long linkId, long vertexId, FailureList &failures) {
    return probes::returnsRow(
        db,
        fillNumbers(QStringLiteral("select * from LinkVertex where LinkID = %1 and vertexID = %2"),
                    {linkId, vertexId}),
        failures);
}

std::optional<bool> nodeStandsOn(const QSqlDatabase &db, long nodeId, long vertexId, FailureList &failures) {
    return probes::returnsRow(
        db,
        fillNumbers(QStringLiteral("select * from Node where nodeID = %1 and vertexID = %2"),
                    {nodeId, vertexId}),
        failures);
}

QString breakPoints(const QJsonObject &geometry) {
    QStringList points;
    const QJsonArray data = geometry.value(QLatin1String("data")).toArray();
    for (const QJsonValue &value : data) {
        const QJsonObject point = value.toObject();
        points.append(
            QStringLiteral("%1,%2").arg(QString::number(point.value(QLatin1String("x")).toDouble()),
                                        QString::number(point.value(QLatin1String("y")).toDouble())));
    }
    return points.join(QLatin1Char(';'));
}

} // namespace links

Description describe(const Link &link) {
    using namespace links;
    constexpr auto columns = std::tuple_cat(std::tuple{kId, kRoad}, kColumns, kGeometryColumns);
    QVariantMap fields = describeAll(columns, link);
    fields.insert(QStringLiteral("startNode"), describeNode(link.mpStartNode));
    fields.insert(QStringLiteral("endNode"), describeNode(link.mpEndNode));
    fields.insert(QStringLiteral("vertices"), describeEach(link.mlVertex, kVertexColumns));
    fields.insert(QStringLiteral("lanes"), lanes::describeLanes(link));
    return {link.linkID, link.linkName, fields};
}
