#include "tools/sumo/export/ConnectionElements.h"

#include "tools/sumo/export/EdgeElements.h"
#include "tools/sumo/export/KeptText.h"
#include "tools/sumo/kept/SumoUnits.h"

#include <QJsonArray>
#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

const QString kConnection = QStringLiteral("connection");
const QString kEdges = QStringLiteral("edges");
const QString kFrom = QStringLiteral("from");
const QString kFromLane = QStringLiteral("fromLane");
const QString kKeepClear = QStringLiteral("keepClear");
const QString kLinkIndex = QStringLiteral("linkIndex");
const QString kLinkIndex2 = QStringLiteral("linkIndex2");
const QString kSpeed = QStringLiteral("speed");
const QString kState = QStringLiteral("state");
const QString kTl = QStringLiteral("tl");
const QString kTo = QStringLiteral("to");
const QString kToLane = QStringLiteral("toLane");

class Builder {
public:
    Builder(const ExportedRoads &roads, const ExportedSignals &controls, LeftOut &leftOut)
        : mRoads(roads), mSignals(controls), mLeftOut(leftOut) {}

    ConnectionElements build();

private:
    void addConnector(const Connector &connector);
    void addPath(const Connector &connector, const LaneConnector &path);
    QJsonObject keptOfPath(const Connector &connector, int fromLane, int toLane) const;
    std::optional<ExportedSignals::Control> controlOf(const LaneConnector &path,
                                                      const QJsonObject &kept) const;
    void addCrossings(const ExportedJunction &junction);
    void addCrossing(const ExportedJunction &junction, const KeptElement &crossing,
                     const std::vector<KeptElement> &connections);
    void addProhibitions();

    const ExportedRoads &mRoads;
    const ExportedSignals &mSignals;
    LeftOut &mLeftOut;
    ConnectionElements mResult;
    QSet<QPair<const Lane *, const Lane *>> mKnown;
    QSet<const Link *> mLeadsOn;
    QHash<QString, int> mLastIndex;
    QSet<QString> mWithCrossings;
};

QString textOf(const KeptElement &element, const QString &name) {
    const QString *value = element.attribute(name);
    return value ? *value : QString();
}

ConnectionElements Builder::build() {
    for (const Connector *connector : mRoads.connectors())
        addConnector(*connector);
    for (const Link *link : mRoads.links()) {
        if (!mLeadsOn.contains(link))
            mResult.connections.push_back(KeptElement{kConnection, {{kFrom, mRoads.names().of(link)}}, {}});
    }
    for (const ExportedJunction &junction : mRoads.junctions())
        addCrossings(junction);
    addProhibitions();
    for (const QString &tl : qAsConst(mWithCrossings))
        mResult.lastIndexWithCrossings.insert(tl, mLastIndex.value(tl));
    return std::move(mResult);
}

void Builder::addConnector(const Connector &connector) {
    const auto leaveOut = [&](const QString &kind, const QString &why) {
        mLeftOut.add(kind, QStringLiteral("connector %1 (%2: %3)")
                               .arg(QString::number(connector.connID), connector.connName, why));
    };
    if (connector.mlLaneConnector.isEmpty())
        leaveOut(QStringLiteral("connectors"), QStringLiteral("it joins no lanes"));
    if (!connector.mlLimitVehicle.isEmpty())
        leaveOut(QStringLiteral("restrictions of vehicle types"),
                 QStringLiteral("SUMO restricts classes only"));
    for (const LaneConnector *path : connector.mlLaneConnector)
        addPath(connector, *path);
}

void Builder::addPath(const Connector &connector, const LaneConnector &path) {
    const Link &from = *connector.mpStartLink;
    const Link &to = *connector.mpEndLink;
    const int fromLane = path.mpStartLane ? mRoads.laneIndex(from, *path.mpStartLane) : -1;
    const int toLane = path.mpEndLane ? mRoads.laneIndex(to, *path.mpEndLane) : -1;
    const KeptElement ends{kConnection,
                           {{kFrom, mRoads.names().of(&from)},
                            {kTo, mRoads.names().of(&to)},
                            {kFromLane, QString::number(fromLane)},
                            {kToLane, QString::number(toLane)}},
                           {}};
    const QPair<const Lane *, const Lane *> lanes(path.mpStartLane, path.mpEndLane);
    if (fromLane < 0 || toLane < 0 || mKnown.contains(lanes)) {
        const QString name =
            QStringLiteral("\"%1->%2\"").arg(mRoads.laneId(from, fromLane), mRoads.laneId(to, toLane));
        mLeftOut.add(QStringLiteral("lane connectors"),
                     QStringLiteral("%1 (connector %2: %3)")
                         .arg(name, QString::number(connector.connID),
                              fromLane < 0 || toLane < 0
                                  ? QStringLiteral("a lane of it is not one of its links'")
                                  : QStringLiteral("another one joins the same lanes")));
        return;
    }
    mKnown.insert(lanes);
    mLeadsOn.insert(&from);
    const QJsonObject kept = keptOfPath(connector, fromLane, toLane);
    KeptElement element = ends;
    static const QSet<QString> made{QStringLiteral("dir"), kState, kTl, kLinkIndex, kLinkIndex2};
    addKept(element, kept, made);
    // netconvert takes what is not said for its own default, which depends on the junction.
    if (!kept.contains(kKeepClear))
        element.setAttribute(kKeepClear, QStringLiteral("true"));
    if (kept.isEmpty() && connector.limitSpeed > 0 &&
        connector.limitSpeed < std::min(from.limitSpeed, to.limitSpeed))
        element.setAttribute(kSpeed, QString::number(connector.limitSpeed / kKmhPerMs, 'f', 2));
    mResult.connections.push_back(std::move(element));

    const ExportedJunction *junction = &mRoads.to(from);
    if (kept.contains(kTl))
        mResult.hadSignal.insert(junction);
    const auto control = controlOf(path, kept);
    if (!control)
        return;
    mResult.controlled.push_back(ends);
    mResult.controlled.back().setAttribute(kTl, control->tl);
    mResult.controlled.back().setAttribute(kLinkIndex, QString::number(control->index));
    if (!mResult.signalOf.contains(junction))
        mResult.signalOf.insert(junction, control->tl);
    mLastIndex[control->tl] = std::max(mLastIndex.value(control->tl), control->index);
}

QJsonObject Builder::keptOfPath(const Connector &connector, int fromLane, int toLane) const {
    const QJsonArray list = keptOf(connector.otherAttrsJson).value(QStringLiteral("connections")).toArray();
    const auto found = std::find_if(list.begin(), list.end(), [&](const QJsonValue &each) {
        const QJsonObject kept = each.toObject();
        return kept.value(kFromLane).toInt(-1) == fromLane && kept.value(kToLane).toInt(-1) == toLane;
    });
    return found == list.end() ? QJsonObject() : QJsonValue(*found).toObject();
}

std::optional<ExportedSignals::Control> Builder::controlOf(const LaneConnector &path,
                                                           const QJsonObject &kept) const {
    if (auto shown = mSignals.control(*path.mpStartLane, *path.mpEndLane))
        return shown;
    // Signals of railways have no programme, so a store has none of their lamps.
    const QString tl = kept.value(kTl).toString();
    if (tl.isEmpty() || mSignals.hasProgramme(tl))
        return std::nullopt;
    const QJsonValue index = kept.value(kLinkIndex);
    return ExportedSignals::Control{tl, index.isString() ? index.toString().toInt() : index.toInt()};
}

void Builder::addCrossings(const ExportedJunction &junction) {
    const JunctionInside &inside = junction.inside;
    if (!inside.edges.contains("\"crossing\""))
        return;
    const std::vector<KeptElement> connections = elementsOf(inside.connections);
    for (const KeptElement &edge : elementsOf(inside.edges)) {
        if (textOf(edge, QStringLiteral("function")) == QLatin1String("crossing") && !edge.children.empty())
            addCrossing(junction, edge, connections);
    }
}

void Builder::addCrossing(const ExportedJunction &junction, const KeptElement &crossing,
                          const std::vector<KeptElement> &connections) {
    const QStringList edges =
        textOf(crossing, QStringLiteral("crossingEdges")).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const bool isWhole = std::all_of(edges.begin(), edges.end(), [&](const QString &edge) {
        const auto isIt = [&](const Link *link) { return mRoads.names().of(link) == edge; };
        return std::any_of(junction.in.begin(), junction.in.end(), isIt) ||
               std::any_of(junction.out.begin(), junction.out.end(), isIt);
    });
    if (!isWhole)
        return;
    const KeptElement &lane = crossing.children.front();
    KeptElement element{QStringLiteral("crossing"),
                        {{QStringLiteral("node"), junction.id}, {kEdges, edges.join(QLatin1Char(' '))}},
                        {}};
    element.setAttribute(QStringLiteral("width"), textOf(lane, QStringLiteral("width")));
    if (lane.attribute(QStringLiteral("customShape")))
        element.setAttribute(QStringLiteral("shape"), textOf(lane, QStringLiteral("shape")));
    const QString id = textOf(crossing, QStringLiteral("id"));
    bool hasPriority = false;
    for (const KeptElement &connection : connections) {
        const QString tl = textOf(connection, kTl);
        const QString index = textOf(connection, kLinkIndex);
        const bool leadsHere = textOf(connection, kTo) == id;
        if (leadsHere)
            hasPriority = hasPriority || !tl.isEmpty() || textOf(connection, kState) == QLatin1String("M");
        if (tl.isEmpty() || (!leadsHere && textOf(connection, kFrom) != id))
            continue;
        element.setAttribute(leadsHere ? kLinkIndex : kLinkIndex2, index);
        mWithCrossings.insert(tl);
        mLastIndex[tl] = std::max(mLastIndex.value(tl), index.toInt());
        if (!mResult.signalOf.contains(&junction))
            mResult.signalOf.insert(&junction, tl);
    }
    element.setAttribute(QStringLiteral("priority"), QLatin1String(hasPriority ? "1" : "0"));
    mResult.connections.push_back(std::move(element));
}

void Builder::addProhibitions() {
    const QJsonArray elements = mRoads.kept().value(QStringLiteral("elements")).toArray();
    for (const QJsonValue &json : elements) {
        const KeptElement element = KeptElement::fromJson(json.toArray());
        if (element.name == QLatin1String("prohibition"))
            mResult.connections.push_back(element);
    }
}

} // namespace

ConnectionElements connectionElements(const ExportedRoads &roads, const ExportedSignals &controls,
                                      LeftOut &leftOut) {
    return Builder(roads, controls, leftOut).build();
}

} // namespace moratools
