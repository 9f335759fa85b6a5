#include "tools/sumo/export/ExportedRoads.h"

#include "model/GeometryJson.h"

#include <QLocale>
#include <QRectF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>

namespace moratools {

namespace {

const QString kSumo = QStringLiteral("sumo");
// Metres that the ends of links may lie outside of the shape that a junction was kept with. Lanes end within it.
constexpr double kMargin = 10;

/// Which ends of links are one place: 2 i is the start of link i, 2 i + 1 its end.
class Groups {
public:
    explicit Groups(std::size_t count) : mParent(count) { std::iota(mParent.begin(), mParent.end(), 0); }

    std::size_t of(std::size_t end) {
        while (mParent[end] != end)
            end = mParent[end] = mParent[mParent[end]];
        return end;
    }
    /// The earlier one stands for both.
    void join(std::size_t a, std::size_t b) {
        a = of(a);
        b = of(b);
        mParent[std::max(a, b)] = std::min(a, b);
    }

private:
    std::vector<std::size_t> mParent;
};

QString nameOf(const Node *node) {
    return node ? node->nodeName : QString();
}

GeometryPoint middleOf(const GeometryLine &points) {
    GeometryPoint sum;
    for (const GeometryPoint &point : points)
        sum = {sum.x + point.x, sum.y + point.y, sum.z + point.z};
    const double count = points.size();
    return {sum.x / count, sum.y / count, sum.z / count};
}

double number(const QJsonObject &object, const char *name) {
    return object.value(QLatin1String(name)).toString().toDouble();
}

/// Whether the ends of links still lie where the junction was.
bool isThere(const QJsonObject &kept, const GeometryPoint &middle) {
    double left = number(kept, "x");
    double right = left;
    double low = number(kept, "y");
    double high = low;
    const QStringList corners = kept.value(QStringLiteral("shape")).toString().split(QLatin1Char(' '));
    for (const QString &corner : corners) {
        const QStringList parts = corner.split(QLatin1Char(','));
        if (parts.size() < 2)
            continue;
        left = std::min(left, parts[0].toDouble());
        right = std::max(right, parts[0].toDouble());
        low = std::min(low, parts[1].toDouble());
        high = std::max(high, parts[1].toDouble());
    }
    return middle.x >= left - kMargin && middle.x <= right + kMargin && middle.y >= low - kMargin &&
           middle.y <= high + kMargin;
}

} // namespace

QJsonObject keptOf(const StoredJson &attributes) {
    return attributes.holdsNothing() ? QJsonObject() : attributes.value(kSumo).toObject();
}

QJsonObject keptOf(const QJsonObject &attributes) {
    return attributes.value(kSumo).toObject();
}

QString numberText(double number) {
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

QString shapeText(const GeometryLine &line) {
    QString text;
    for (const GeometryPoint &point : line) {
        if (!text.isEmpty())
            text += QLatin1Char(' ');
        text += numberText(point.x) + QLatin1Char(',') + numberText(point.y);
        if (point.z != 0)
            text += QLatin1Char(',') + numberText(point.z);
    }
    return text;
}

ExportedRoads::ExportedRoads(const NetLists &network, Names &names, LeftOut &leftOut)
    : mNetwork(network), mNames(names), mKept(keptOf(network.record.otherAttrsJson)) {
    const QString leftHand =
        mKept.value(QStringLiteral("net")).toObject().value(QStringLiteral("lefthand")).toString();
    mLeftHand = leftHand == QLatin1String("true") || leftHand == QLatin1String("1") ||
                mKept.value(QStringLiteral("lefthand")).toBool();
    takeLinks(leftOut);
    takeConnectors(leftOut);
    findJunctions();
    placeJunctions();
}

void ExportedRoads::takeLinks(LeftOut &leftOut) {
    std::vector<Names::Named> named;
    for (const auto &link : mNetwork.links) {
        const GeometryLine line = lineOf(*link);
        if (line.size() < 2 || !geometry::isFinite(line) || !geometry::hasDirection(line)) {
            leftOut.add(QStringLiteral("links"),
                        QStringLiteral("link %1 (%2: it needs two points that are not in one place)")
                            .arg(QString::number(link->linkID), link->linkName));
            continue;
        }
        takeLanes(*link);
        mLinks.push_back(link.get());
        mLinkById.insert(link->linkID, link.get());
        // Only a network that came from SUMO has ids that must stay.
        const bool mayBeId = !keptOf(link->otherAttrsJson).isEmpty() || Names::isLegible(link->linkName);
        named.push_back({link.get(), link->linkName, link->linkID, mayBeId});
    }
    mNames.give(QStringLiteral("edges"), QStringLiteral("link"), named);
}

void ExportedRoads::takeConnectors(LeftOut &leftOut) {
    for (const auto &connector : mNetwork.connectors) {
        const bool isBetweenLinks = connector->mpStartLink && connector->mpEndLink &&
                                    link(connector->mpStartLink->linkID) == connector->mpStartLink &&
                                    link(connector->mpEndLink->linkID) == connector->mpEndLink;
        if (isBetweenLinks)
            mConnectors.push_back(connector.get());
        else
            leftOut.add(QStringLiteral("connectors"),
                        QStringLiteral("connector %1 (%2: a link of it is not exported)")
                            .arg(QString::number(connector->connID), connector->connName));
    }
}

void ExportedRoads::findJunctions() {
    Groups groups(mLinks.size() * 2);
    QHash<const Link *, std::size_t> place;
    QHash<QString, std::size_t> endOfName;
    for (std::size_t i = 0; i < mLinks.size(); ++i) {
        place.insert(mLinks[i], i);
        if (keptOf(mLinks[i]->otherAttrsJson).isEmpty())
            continue;
        for (const std::size_t end : {2 * i, 2 * i + 1}) {
            const QString name = nameOf(end % 2 ? mLinks[i]->mpEndNode : mLinks[i]->mpStartNode);
            if (!endOfName.contains(name))
                endOfName.insert(name, end);
            groups.join(endOfName.value(name), end);
        }
    }
    for (const Connector *connector : mConnectors)
        groups.join(2 * place.value(connector->mpStartLink) + 1, 2 * place.value(connector->mpEndLink));

    std::map<std::size_t, std::size_t> junctionOf;
    const auto junction = [&](std::size_t end) {
        const auto found = junctionOf.emplace(groups.of(end), mJunctions.size());
        if (found.second)
            mJunctions.emplace_back();
        return found.first->second;
    };
    for (std::size_t i = 0; i < mLinks.size(); ++i) {
        const std::pair<std::size_t, std::size_t> ends{junction(2 * i), junction(2 * i + 1)};
        mEnds.insert(mLinks[i], ends);
        mJunctions[ends.first].out.push_back(mLinks[i]);
        mJunctions[ends.second].in.push_back(mLinks[i]);
    }
}

void ExportedRoads::placeJunctions() {
    std::vector<Names::Named> named;
    for (ExportedJunction &junction : mJunctions) {
        GeometryLine ends;
        QStringList nodes;
        const auto take = [&](const Link &link, const Node *node, const GeometryPoint &end, const char *key) {
            ends.append(end);
            if (node && !node->nodeName.isEmpty() && !nodes.contains(node->nodeName))
                nodes.append(node->nodeName);
            if (junction.kept.isEmpty())
                junction.kept = keptOf(link.otherAttrsJson).value(QLatin1String(key)).toObject();
        };
        for (const Link *link : junction.in)
            take(*link, link->mpEndNode, lineOf(*link).last(), "junction");
        for (const Link *link : junction.out)
            take(*link, link->mpStartNode, lineOf(*link).first(), "startJunction");
        junction.at = middleOf(ends);
        if (junction.kept.contains(QStringLiteral("x")) && isThere(junction.kept, junction.at))
            junction.at = {number(junction.kept, "x"), number(junction.kept, "y"),
                           number(junction.kept, "z")};
        junction.inside = JunctionInside::fromText(junction.kept.value(QStringLiteral("inside")).toString());
        const QString name = nodes.size() == 1 ? nodes.first() : QString();
        named.push_back({&junction, name, 0, !junction.kept.isEmpty() || Names::isLegible(name)});
    }
    mNames.give(QStringLiteral("junctions"), QStringLiteral("J"), named);
    for (ExportedJunction &junction : mJunctions)
        junction.id = mNames.of(&junction);
}

void ExportedRoads::takeLanes(const Link &link) {
    std::vector<const Lane *> lanes(link.mlLane.begin(), link.mlLane.end());
    std::stable_sort(lanes.begin(), lanes.end(), [this](const Lane *a, const Lane *b) {
        return mLeftHand ? a->serialNumber > b->serialNumber : a->serialNumber < b->serialNumber;
    });
    mLanes.insert(&link, lanes);
}

const std::vector<const Lane *> &ExportedRoads::lanes(const Link &link) const {
    static const std::vector<const Lane *> none;
    const auto found = mLanes.constFind(&link);
    return found == mLanes.constEnd() ? none : *found;
}

int ExportedRoads::laneCount(const Link &link) const {
    return link.mlLane.isEmpty() ? std::max(1, int(std::ceil(link.laneNumber))) : link.mlLane.size();
}

int ExportedRoads::laneIndex(const Link &link, int serialNumber) const {
    const std::vector<const Lane *> &all = lanes(link);
    const auto found = std::find_if(all.begin(), all.end(), [serialNumber](const Lane *lane) {
        return lane->serialNumber == serialNumber;
    });
    return found == all.end() ? -1 : int(found - all.begin());
}

int ExportedRoads::laneIndex(const Link &link, const Lane &lane) const {
    const std::vector<const Lane *> &all = lanes(link);
    const auto found = std::find(all.begin(), all.end(), &lane);
    return found == all.end() ? -1 : int(found - all.begin());
}

QString ExportedRoads::laneId(const Link &link, int index) const {
    return mNames.of(&link) + QLatin1Char('_') + QString::number(index);
}

} // namespace moratools
