#include "tools/sumo/kept/Junctions.h"

#include "model/GeometryJson.h"
#include "tools/sumo/kept/Packed.h"

#include <QJsonDocument>

#include <algorithm>

namespace moratools {

namespace {

const QString kSumo = QStringLiteral("sumo");
// A link may keep the inside at its end and, where no link leads to it, the one at its start.
const QString kAtEnd = QStringLiteral("junction");
const QString kAtStart = QStringLiteral("startJunction");
constexpr int kPointsThatMatter = 2;

QString keyOf(const Link &keeper, const QString &name) {
    return keeper.mpEndNode && keeper.mpEndNode->nodeName == name ? kAtEnd : kAtStart;
}

void append(QByteArray &text, const QJsonObject &object) {
    text += QJsonDocument(object).toJson(QJsonDocument::Compact);
}

void appendEnd(QByteArray &text, const GeometryLine &line, bool end) {
    const int count = std::min(kPointsThatMatter, line.size());
    for (int i = 0; i < count; ++i) {
        const GeometryPoint &point = end ? line[line.size() - 1 - i] : line[i];
        appendBits(text, point.x);
        appendBits(text, point.y);
        appendBits(text, point.z);
    }
}

} // namespace

Junctions::Junctions(const NetLists &network) {
    const auto at = [this](const Node *node) -> Ends & { return mEnds[node ? node->nodeName : QString()]; };
    for (const auto &link : network.links) {
        QByteArray text = link->linkName.toUtf8() + ' ';
        appendBits(text, link->limitSpeed);
        QJsonObject sumo = link->otherAttrsJson.value(kSumo).toObject();
        sumo.remove(kAtEnd);
        sumo.remove(kAtStart);
        append(text, sumo);
        mKeptOf.insert(link.get(), text);
    }
    for (const auto &link : network.links)
        at(link->mpEndNode).in.push_back(link.get());
    for (const auto &link : network.links)
        at(link->mpStartNode).out.push_back(link.get());
    for (const auto &connector : network.connectors)
        mConnectorsFrom[connector->mpStartLink].push_back(connector.get());
}

Link &Junctions::keeper(const QString &name) const {
    const Ends &ends = *mEnds.constFind(name);
    return ends.in.empty() ? *ends.out.front() : *ends.in.front();
}

QString Junctions::digest(const QString &name) const {
    const Ends &ends = *mEnds.constFind(name);
    QByteArray text;
    for (const Link *link : ends.out)
        text += describe(*link, false);
    for (const Link *link : ends.in) {
        text += describe(*link, true);
        for (const Connector *connector : mConnectorsFrom.value(link))
            text += describe(*connector);
    }
    return shortDigestOf(text);
}

QByteArray Junctions::describe(const Link &link, bool end) const {
    QByteArray text = end ? "in " : "out ";
    text += mKeptOf.value(&link);
    for (const Lane *lane : link.mlLane) {
        appendBits(text, lane->width);
        appendEnd(text, geometryjson::points(lane->centerLinePointsJson), end);
    }
    return text + '\n';
}

QByteArray Junctions::describe(const Connector &connector) const {
    QByteArray text =
        "to " + (connector.mpEndLink ? connector.mpEndLink->linkName.toUtf8() : QByteArray()) + ' ';
    for (const LaneConnector *path : connector.mlLaneConnector) {
        appendBits(text, path->mpStartLane ? path->mpStartLane->serialNumber : 0);
        appendBits(text, path->mpEndLane ? path->mpEndLane->serialNumber : 0);
    }
    append(text, connector.otherAttrsJson.value(kSumo).toObject());
    return text + '\n';
}

void Junctions::keep(Link &keeper, const QString &name, const QJsonObject &inside) {
    QJsonObject sumo = keeper.otherAttrsJson.value(kSumo).toObject();
    sumo.insert(keyOf(keeper, name), inside);
    keeper.otherAttrsJson.insert(kSumo, sumo);
}

} // namespace moratools
