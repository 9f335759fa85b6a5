#include "tools/drawing/DifferenceMarks.h"

#include "tools/drawing/Shapes.h"
#include "tools/kinds/Roads.h"

#include <QHash>

#include <optional>

namespace moratools {

namespace {

using Difference = DifferenceReport::Difference;

const QColor kAdded(0x1a, 0x8f, 0x3c);
const QColor kRemoved(0xd0, 0x20, 0x20);
const QColor kChanged(0xe8, 0x95, 0x00);

GeometryLine drawn(const Link &link) {
    return shapes::onPlan(lineOf(link));
}

GeometryLine drawn(const Connector &connector) {
    if (!connector.mpStartLink || !connector.mpEndLink)
        return {};
    const GeometryLine from = drawn(*connector.mpStartLink);
    const GeometryLine to = drawn(*connector.mpEndLink);
    return from.isEmpty() || to.isEmpty() ? GeometryLine() : GeometryLine{from.last(), to.first()};
}

std::optional<QPointF> middleOf(const GeometryLine &line) {
    if (line.isEmpty())
        return std::nullopt;
    const GeometryPoint &point = line[line.size() / 2];
    return QPointF(point.x, point.y);
}

/// The objects of one network by table and identifier.
class Places {
public:
    explicit Places(const NetworkObjects &network) : mNetwork(network) {
        const auto takeNode = [this](const Node *node) {
            if (node && node->mpVertex)
                mNodes.insert(node->nodeID, QPointF(node->mpVertex->x, node->mpVertex->y));
        };
        for (const auto &link : network.links) {
            for (const Vertex *vertex : link->mlVertex)
                mVertices.insert(vertex->vertexID, QPointF(vertex->x, vertex->y));
            takeNode(link->mpStartNode);
            takeNode(link->mpEndNode);
        }
    }

    /// A road as a line; empty for all else.
    GeometryLine line(const Difference &object) const {
        if (is<Link>(object))
            return of<Link>(object, [](const Link &link) { return drawn(link); });
        return of<Connector>(object, [](const Connector &connector) { return drawn(connector); });
    }

    std::optional<QPointF> place(const Difference &object) const {
        const auto own = [](const auto &each) -> std::optional<QPointF> { return QPointF(each.x, each.y); };
        const auto atRoad = [this](long road) { return middleOfRoad(road); };
        std::optional<QPointF> found;
        const auto take = [&](const std::optional<QPointF> &place) {
            if (place)
                found = place;
        };
        take(of<SignalLamp>(object, own));
        take(of<DecisionPoint>(object, own));
        take(of<VehicleQueueCounter>(object, own));
        take(of<VehicleDrivInfoCollector>(object, own));
        take(of<BusStation>(object, own));
        take(of<VehicleTravelDetector>(object, [](const VehicleTravelDetector &detector) {
            return std::optional<QPointF>(QPointF(detector.startX, detector.startY));
        }));
        take(of<BusLine>(object, [](const BusLine &line) {
            return std::optional<QPointF>(QPointF(line.startX, line.startY));
        }));
        take(of<DeparturePoint>(object, [&](const DeparturePoint &each) { return atRoad(each.linkID); }));
        take(of<VehicleDetector>(object, [&](const VehicleDetector &each) { return atRoad(each.roadId); }));
        take(of<AccidentZone>(object, [&](const AccidentZone &each) { return atRoad(each.roadId); }));
        take(of<RoadWorkZone>(object, [&](const RoadWorkZone &each) { return atRoad(each.roadID); }));
        take(of<ReduceSpeedArea>(object, [&](const ReduceSpeedArea &each) { return atRoad(each.roadID); }));
        return found ? found : placeOfPoint(object);
    }

    /// Of a signal plan or a phase the lamps that show it.
    std::vector<QPointF> lamps(const Difference &object) const {
        std::vector<QPointF> places;
        const bool isGroup = is<SignalGroup>(object);
        if (!isGroup && qstricmp(object.table, "SignalPhase") != 0)
            return places;
        const SignalGroup *group = isGroup ? mNetwork.find<SignalGroup>(long(object.id)) : nullptr;
        for (const auto &lamp : mNetwork.traffic.signalLamps) {
            const SignalPhase *phase = lamp->mpPhase;
            if (phase && (isGroup ? group && group->mlPhase.contains(lamp->mpPhase)
                                  : phase->signalPhaseID == object.id))
                places.emplace_back(lamp->x, lamp->y);
        }
        return places;
    }

private:
    template <class T>
    static bool is(const Difference &object) {
        return qstricmp(object.table, NetKind<T>::table) == 0;
    }

    template <class T, class Use>
    auto of(const Difference &object, const Use &use) const -> decltype(use(std::declval<const T &>())) {
        const T *found = is<T>(object) ? mNetwork.find<T>(long(object.id)) : nullptr;
        return found ? use(*found) : decltype(use(*found))();
    }

    std::optional<QPointF> placeOfPoint(const Difference &object) const {
        const QHash<qint64, QPointF> &points = qstricmp(object.table, "Node") == 0 ? mNodes : mVertices;
        const auto found = points.constFind(object.id);
        const bool isPoint = &points == &mNodes || qstricmp(object.table, "Vertex") == 0;
        return isPoint && found != points.constEnd() ? std::optional<QPointF>(*found) : std::nullopt;
    }

    std::optional<QPointF> middleOfRoad(long road) const {
        if (const Link *link = mNetwork.find<Link>(road))
            return middleOf(drawn(*link));
        const Connector *connector = mNetwork.find<Connector>(road);
        return connector ? middleOf(drawn(*connector)) : std::nullopt;
    }

    const NetworkObjects &mNetwork;
    QHash<qint64, QPointF> mNodes;
    QHash<qint64, QPointF> mVertices;
};

} // namespace

DifferenceMarks marksOf(const DifferenceReport &report, const NetworkObjects &before,
                        const NetworkObjects &after) {
    const Places was(before);
    const Places is(after);
    Marks changed{QStringLiteral("changed"), kChanged, {}, {}};
    Marks removed{QStringLiteral("removed"), kRemoved, {}, {}};
    Marks added{QStringLiteral("added"), kAdded, {}, {}};
    DifferenceMarks result;
    for (const Difference &object : report.differences()) {
        const bool isGone = object.kind == RowChange::Kind::Removed;
        Marks &marks = isGone ? removed : object.kind == RowChange::Kind::Added ? added : changed;
        const Places &places = isGone ? was : is;
        const GeometryLine line = places.line(object);
        const std::vector<QPointF> lamps = places.lamps(object);
        if (!line.isEmpty())
            marks.lines.push_back(line);
        else if (const auto place = places.place(object))
            marks.places.push_back(*place);
        else if (lamps.empty())
            ++result.nowhere;
        marks.places.insert(marks.places.end(), lamps.begin(), lamps.end());
    }
    result.marks = {changed, removed, added};
    return result;
}

} // namespace moratools
