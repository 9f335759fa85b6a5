#include "tools/kinds/Comparison.h"

#include "model/GeometryJson.h"
#include "tools/kinds/TrafficComparison.h"

#include <QHash>

#include <cstring>

namespace moratools {

namespace {

constexpr int kSentences = 20;

QString shown(double value) {
    return QString::number(value, 'g', 17);
}
QString shown(long value) {
    return QString::number(value);
}
QString shown(int value) {
    return QString::number(value);
}
QString shown(const QString &value) {
    return QLatin1Char('"') + value + QLatin1Char('"');
}

quint64 bitsOf(double value) {
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}
template <class T>
bool same(const T &a, const T &b) {
    return a == b;
}
bool same(double a, double b) {
    return sameBits(a, b);
}

/// Collects the differences of one object after the other.
class Comparer {
public:
    void object(const char *kind, const QString &name) {
        mObject = QStringLiteral("%1 %2").arg(QLatin1String(kind), name);
    }

    template <class T>
    void value(const char *field, const T &written, const T &read) {
        ++mResult.fields;
        if (!same(written, read))
            differ(field, shown(written), shown(read));
    }

    template <class T>
    void coordinate(const char *field, const T &written, const T &read) {
        ++mResult.coordinates;
        value(field, written, read);
    }

    void geometry(const char *field, const StoredJson &written, const StoredJson &read) {
        const QVector<GeometryPoint> a = geometryjson::points(written);
        const QVector<GeometryPoint> b = geometryjson::points(read);
        value(field, a.size(), b.size());
        for (int i = 0; i < a.size() && i < b.size(); ++i) {
            coordinate(field, a.at(i).x, b.at(i).x);
            coordinate(field, a.at(i).y, b.at(i).y);
            coordinate(field, a.at(i).z, b.at(i).z);
        }
    }

    void json(const char *field, const StoredJson &written, const StoredJson &read) {
        ++mResult.fields;
        if (written != read)
            differ(field, QString::fromUtf8(written.text()), QString::fromUtf8(read.text()));
    }

    void differ(const char *field, const QString &written, const QString &read) {
        mResult.differ(QStringLiteral("%1: %2").arg(mObject, QLatin1String(field)), written, read);
    }

    Comparison result() const { return mResult; }

private:
    QString mObject;
    Comparison mResult;
};

void compareNode(Comparer &compare, const char *field, const Node *written, const Node *read) {
    if (!written || !read) {
        if (written != read)
            compare.differ(field, written ? written->nodeName : QString(), read ? read->nodeName : QString());
        return;
    }
    compare.value(field, written->nodeID, read->nodeID);
    compare.value(field, written->nodeName, read->nodeName);
    compare.value(field, written->mpVertex->vertexID, read->mpVertex->vertexID);
}

void compareLane(Comparer &compare, const Lane &written, const Lane &read) {
    compare.value("lane id", written.laneID, read.laneID);
    compare.value("lane's link id", written.linkID, read.linkID);
    compare.value("lane's serial number", written.serialNumber, read.serialNumber);
    compare.value("lane's width", written.width, read.width);
    compare.value("lane's expected direction", written.expectTravelDirection, read.expectTravelDirection);
    compare.value("lane's kind", written.actionType, read.actionType);
    compare.geometry("lane's centre line", written.centerLinePointsJson, read.centerLinePointsJson);
    compare.geometry("lane's left break points", written.leftBreakPointsJson, read.leftBreakPointsJson);
    compare.geometry("lane's right break points", written.rightBreakPointsJson, read.rightBreakPointsJson);
    compare.json("lane's attributes", written.otherAttrsJson, read.otherAttrsJson);
}

void compareLinkRow(Comparer &compare, const Link &written, const Link &read) {
    compare.value("id", written.linkID, read.linkID);
    compare.value("road id", written.roadId, read.roadId);
    compare.value("name", written.linkName, read.linkName);
    compare.value("lane number", written.laneNumber, read.laneNumber);
    compare.value("lane width", written.laneWidth, read.laneWidth);
    compare.value("lane colour", written.laneColor, read.laneColor);
    compare.value("type", written.linkType, read.linkType);
    compare.value("length", written.length, read.length);
    compare.value("curvature", written.curvature, read.curvature);
    compare.value("non-linear coefficient", written.nonLinearCoefficient, read.nonLinearCoefficient);
    compare.value("saturation flow", written.linkSaturationFlow, read.linkSaturationFlow);
    compare.value("traffic flow", written.linkTrafficFlow, read.linkTrafficFlow);
    compare.value("desired speed", written.desiredSpeed, read.desiredSpeed);
    compare.value("limit speed", written.limitSpeed, read.limitSpeed);
    compare.value("minimum speed", written.minSpeed, read.minSpeed);
    compare.value("additional value", written.addValue, read.addValue);
    compare.geometry("centre line", written.centerLinePointsJson, read.centerLinePointsJson);
    compare.geometry("left break points", written.leftBreakPointsJson, read.leftBreakPointsJson);
    compare.geometry("right break points", written.rightBreakPointsJson, read.rightBreakPointsJson);
    compare.json("attributes", written.otherAttrsJson, read.otherAttrsJson);
}

void compareLink(Comparer &compare, const Link &written, const Link &read) {
    compare.object("link", written.linkName);
    compareLinkRow(compare, written, read);
    compareNode(compare, "start node", written.mpStartNode, read.mpStartNode);
    compareNode(compare, "end node", written.mpEndNode, read.mpEndNode);
    compare.value("number of vertices", written.mlVertex.size(), read.mlVertex.size());
    for (int i = 0; i < written.mlVertex.size() && i < read.mlVertex.size(); ++i) {
        const Vertex &a = *written.mlVertex.at(i);
        const Vertex &b = *read.mlVertex.at(i);
        compare.value("vertex id", a.vertexID, b.vertexID);
        compare.coordinate("vertex x", a.x, b.x);
        compare.coordinate("vertex y", a.y, b.y);
        compare.coordinate("vertex z", a.z, b.z);
    }
    compare.value("number of lanes", written.mlLane.size(), read.mlLane.size());
    for (int i = 0; i < written.mlLane.size() && i < read.mlLane.size(); ++i)
        compareLane(compare, *written.mlLane.at(i), *read.mlLane.at(i));
}

void compareLaneConnectors(Comparer &compare, const Connector &written, const Connector &read,
                           bool withGeometry) {
    compare.value("number of lane connectors", written.mlLaneConnector.size(), read.mlLaneConnector.size());
    QHash<QPair<long, long>, const LaneConnector *> readByLanes;
    for (const LaneConnector *laneConnector : read.mlLaneConnector)
        readByLanes.insert({laneConnector->mpStartLane->laneID, laneConnector->mpEndLane->laneID},
                           laneConnector);
    for (const LaneConnector *a : written.mlLaneConnector) {
        const LaneConnector *b = readByLanes.value({a->mpStartLane->laneID, a->mpEndLane->laneID});
        if (!b) {
            compare.differ(
                "lane connector",
                QStringLiteral("%1 to %2")
                    .arg(QString::number(a->mpStartLane->laneID), QString::number(a->mpEndLane->laneID)),
                QStringLiteral("none"));
            continue;
        }
        compare.value("lane connector's weight", a->weight, b->weight);
        compare.json("lane connector's attributes", a->otherAttrsJson, b->otherAttrsJson);
        if (!withGeometry)
            continue;
        compare.geometry("lane connector's centre line", a->centerLinePointsJson, b->centerLinePointsJson);
        compare.geometry("lane connector's left break points", a->leftBreakPointsJson,
                         b->leftBreakPointsJson);
        compare.geometry("lane connector's right break points", a->rightBreakPointsJson,
                         b->rightBreakPointsJson);
    }
}

void compareConnector(Comparer &compare, const Connector &written, const Connector &read,
                      bool laneConnectorGeometry) {
    compare.object("connector", written.connName);
    compare.value("id", written.connID, read.connID);
    compare.value("road id", written.roadId, read.roadId);
    compare.value("name", written.connName, read.connName);
    compare.value("length", written.length, read.length);
    compare.value("curvature", written.curvature, read.curvature);
    compare.value("non-linear coefficient", written.nonLinearCoefficient, read.nonLinearCoefficient);
    compare.value("colour", written.color, read.color);
    compare.value("desired speed", written.desiredSpeed, read.desiredSpeed);
    compare.value("limit speed", written.limitSpeed, read.limitSpeed);
    compare.value("start link", written.mpStartLink->linkID, read.mpStartLink->linkID);
    compare.value("end link", written.mpEndLink->linkID, read.mpEndLink->linkID);
    compare.geometry("left break points", written.leftBreakPointsJson, read.leftBreakPointsJson);
    compare.geometry("right break points", written.rightBreakPointsJson, read.rightBreakPointsJson);
    compare.json("attributes", written.otherAttrsJson, read.otherAttrsJson);
    compareLaneConnectors(compare, written, read, laneConnectorGeometry);
}

void compareRecord(Comparer &compare, const NetRecord &written, const NetRecord &read) {
    compare.object("network", written.name);
    compare.value("id", written.netId, read.netId);
    compare.value("name", written.name, read.name);
    compare.value("source type", written.sourceType, read.sourceType);
    compare.value("source", written.sourceUrl, read.sourceUrl);
    compare.value("background", written.backgroundUrl, read.backgroundUrl);
    compare.value("caption", written.caption, read.caption);
    compare.value("centre x", written.centerX, read.centerX);
    compare.value("centre y", written.centerY, read.centerY);
    compare.value("default flag", int(written.isDefault), int(read.isDefault));
    compare.json("attributes", StoredJson(written.otherAttrsJson), StoredJson(read.otherAttrsJson));
}

} // namespace

bool sameBits(double a, double b) {
    return bitsOf(a) == bitsOf(b);
}

void Comparison::differ(const QString &field, const QString &written, const QString &read) {
    ++differences;
    if (first.size() < kSentences)
        first.append(QStringLiteral("%1 was written as %2 and read as %3").arg(field, written, read));
}

Comparison compareNetworks(const NetworkObjects &written, const NetworkObjects &read,
                           bool laneConnectorGeometry) {
    Comparer compare;
    compareRecord(compare, written.record, read.record);
    compare.value("number of links", int(written.links.size()), int(read.links.size()));
    compare.value("number of connectors", int(written.connectors.size()), int(read.connectors.size()));
    QHash<long, const Link *> links;
    for (const auto &link : read.links)
        links.insert(link->linkID, link.get());
    for (const auto &link : written.links) {
        compare.object("link", link->linkName);
        if (const Link *other = links.value(link->linkID))
            compareLink(compare, *link, *other);
        else
            compare.differ("link", QString::number(link->linkID), QStringLiteral("none"));
    }
    QHash<long, const Connector *> connectors;
    for (const auto &connector : read.connectors)
        connectors.insert(connector->connID, connector.get());
    for (const auto &connector : written.connectors) {
        compare.object("connector", connector->connName);
        if (const Connector *other = connectors.value(connector->connID))
            compareConnector(compare, *connector, *other, laneConnectorGeometry);
        else
            compare.differ("connector", QString::number(connector->connID), QStringLiteral("none"));
    }
    Comparison result = compare.result();
    compareTraffic(written.traffic, read.traffic, result);
    return result;
}

} // namespace moratools
