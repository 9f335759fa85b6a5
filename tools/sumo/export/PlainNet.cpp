#include "tools/sumo/export/PlainNet.h"

#include "tools/sumo/export/ConnectionElements.h"
#include "tools/sumo/export/EdgeElements.h"
#include "tools/sumo/export/XmlFile.h"

#include <QJsonArray>
#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

const QString kId = QStringLiteral("id");
const QString kState = QStringLiteral("state");
const QString kTrafficLight = QStringLiteral("traffic_light");
const QString kType = QStringLiteral("type");

void addNodes(const ExportedRoads &roads, const ConnectionElements &ways, PlainNet &net) {
    for (const ExportedJunction &junction : roads.junctions()) {
        KeptElement node = nodeElement(junction);
        const QString *type = node.attribute(kType);
        const bool isSignalled = type && type->startsWith(kTrafficLight);
        const bool hasSignal = ways.signalOf.contains(&junction);
        const bool isOfRailways = type && type->startsWith(QLatin1String("rail_"));
        if (hasSignal && !isSignalled && !isOfRailways)
            node.setAttribute(kType, kTrafficLight);
        else if (!type || (isSignalled && !hasSignal && ways.hadSignal.contains(&junction)))
            node.setAttribute(kType, QStringLiteral("priority"));
        if (hasSignal)
            node.setAttribute(QStringLiteral("tl"), ways.signalOf.value(&junction));
        net.nodes.push_back(std::move(node));
    }
}

/// Restrictions that SUMO has no word for.
void leaveOutRestrictions(const Link &link, LeftOut &leftOut) {
    for (const Lane *lane : link.mlLane) {
        if (!lane->mlLimitVehicle.isEmpty())
            leftOut.add(
                QStringLiteral("restrictions of vehicle types"),
                QStringLiteral("lane %1 of link %2 (%3: SUMO restricts classes only)")
                    .arg(QString::number(lane->serialNumber), QString::number(link.linkID), link.linkName));
    }
}

void addRoundabouts(const ExportedRoads &roads, PlainNet &net) {
    QSet<QString> edges;
    for (const Link *link : roads.links())
        edges.insert(roads.names().of(link));
    const QJsonArray elements = roads.kept().value(QStringLiteral("elements")).toArray();
    for (const QJsonValue &json : elements) {
        const KeptElement element = KeptElement::fromJson(json.toArray());
        const QString *around = element.attribute(QStringLiteral("edges"));
        if (element.name != QLatin1String("roundabout") || !around)
            continue;
        const QStringList ids = around->split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (std::all_of(ids.begin(), ids.end(), [&edges](const QString &id) { return edges.contains(id); }))
            net.roundabouts.push_back(element);
    }
}

/// netconvert makes a programme anew that has crossings and letters beyond the last that anything goes by.
void cutStates(PlainNet &net, const QHash<QString, int> &lastIndex) {
    for (KeptElement &programme : net.programmes) {
        const QString *tl = programme.attribute(kId);
        if (!tl || !lastIndex.contains(*tl))
            continue;
        for (KeptElement &phase : programme.children) {
            if (const QString *state = phase.attribute(kState))
                phase.setAttribute(kState, state->left(lastIndex.value(*tl) + 1));
        }
    }
}

} // namespace

PlainNet plainNet(const ExportedRoads &roads, const ExportedSignals &controls, LeftOut &leftOut) {
    PlainNet net;
    ConnectionElements ways = connectionElements(roads, controls, leftOut);
    addNodes(roads, ways, net);
    for (const Link *link : roads.links()) {
        net.edges.push_back(edgeElement(roads, *link));
        leaveOutRestrictions(*link, leftOut);
    }
    addRoundabouts(roads, net);
    net.connections = std::move(ways.connections);
    net.controlled = std::move(ways.controlled);
    net.programmes = controls.programmes();
    cutStates(net, ways.lastIndexWithCrossings);
    net.types = typeElements(roads);
    const QJsonObject location = roads.kept().value(QStringLiteral("location")).toObject();
    if (!location.isEmpty()) {
        net.location.push_back(KeptElement{QStringLiteral("location"), {}, {}});
        addKept(net.location.back(), location, {});
    }
    return net;
}

void setLength(KeptElement &edge, const Link &link) {
    edge.setAttribute(QStringLiteral("length"), numberText(link.length));
}

void writePlainNet(const PlainNet &net, const QString &prefix) {
    const auto write = [&prefix](const char *ending, const char *root,
                                 std::initializer_list<const std::vector<KeptElement> *> parts) {
        XmlFile file(prefix + QLatin1String(ending), QLatin1String(root));
        for (const auto *part : parts)
            file.write(*part);
        file.finish();
    };
    write(".nod.xml", "nodes", {&net.location, &net.nodes});
    write(".edg.xml", "edges", {&net.location, &net.edges, &net.roundabouts});
    write(".con.xml", "connections", {&net.connections});
    write(".tll.xml", "tlLogics", {&net.programmes, &net.controlled});
    write(".typ.xml", "types", {&net.types});
}

} // namespace moratools
