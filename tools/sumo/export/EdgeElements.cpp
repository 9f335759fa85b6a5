#include "tools/sumo/export/EdgeElements.h"

#include "model/GeometryJson.h"
#include "tools/sumo/export/KeptText.h"
#include "tools/sumo/export/RoadKinds.h"
#include "tools/sumo/import/Vocabulary.h"
#include "tools/sumo/kept/LinkLine.h"
#include "tools/sumo/kept/SumoUnits.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace moratools {

namespace {

// Limits are kept in km/h, so one that was read in m/s comes back with the last digits changed.
constexpr double kSameSpeed = 1e-6;

const QString kAllow = QStringLiteral("allow");
const QString kDisallow = QStringLiteral("disallow");
const QString kLength = QStringLiteral("length");
const QString kShape = QStringLiteral("shape");
const QString kSpeed = QStringLiteral("speed");
const QString kSpreadType = QStringLiteral("spreadType");
const QString kType = QStringLiteral("type");
const QString kWidth = QStringLiteral("width");

void set(KeptElement &element, const char *name, const QString &value) {
    element.setAttribute(QLatin1String(name), value);
}

/// Speeds of the lanes in m/s: as they were kept while the link's limit is still the highest of them. With another
/// limit the fastest lanes have that, and none goes beyond it.
std::vector<double> speedsOf(const ExportedRoads &roads, const Link &link, const QJsonObject &kept) {
    std::vector<double> speeds;
    double highest = 0;
    for (const Lane *lane : roads.lanes(link)) {
        const QJsonValue own = keptOfLane(link, *lane).value(kSpeed);
        speeds.push_back(own.toDouble(kept.value(kSpeed).toDouble()));
        highest = std::max(highest, speeds.back());
    }
    const double limit = link.limitSpeed / kKmhPerMs;
    if (speeds.empty())
        speeds.assign(std::size_t(roads.laneCount(link)), limit);
    if (std::abs(highest * kKmhPerMs - link.limitSpeed) > kSameSpeed) {
        for (double &speed : speeds)
            speed = speed == highest ? limit : std::min(speed, limit);
    }
    return speeds;
}

roadkinds::Permissions keptPermissions(const QJsonObject &kept, const QJsonObject &own) {
    // As older imports have kept them.
    if (own.contains(QStringLiteral("permissions")))
        return {own.value(QStringLiteral("permissions")).toString(), {}};
    const auto of = [&](const QString &name) {
        return own.contains(name) ? own.value(name).toString() : kept.value(name).toString();
    };
    return {of(kAllow), of(kDisallow)};
}

roadkinds::Permissions permissionsOf(const Lane &lane, const QJsonObject &kept, const QJsonObject &own) {
    if (!kept.isEmpty()) {
        roadkinds::Permissions permissions = keptPermissions(kept, own);
        const QString kind =
            vocabulary::laneKind(VehicleClasses::of(permissions.allow, permissions.disallow));
        if (roadkinds::isSameWord(kind, lane.actionType))
            return permissions;
    }
    return roadkinds::permissionsOf(lane.actionType);
}

void setPermissions(KeptElement &element, const roadkinds::Permissions &permissions) {
    if (!permissions.allow.isEmpty())
        set(element, "allow", permissions.allow);
    else if (!permissions.disallow.isEmpty())
        set(element, "disallow", permissions.disallow);
}

/// `isTyped`: what the lane does not say would be taken from the type.
KeptElement laneElement(const Lane &lane, int index, const QJsonObject &kept, const QJsonObject &own,
                        bool isTyped) {
    KeptElement element{QStringLiteral("lane"), {}, {}};
    set(element, "index", QString::number(index));
    const roadkinds::Permissions permissions = permissionsOf(lane, kept, own);
    setPermissions(element, permissions);
    if (isTyped && permissions.isForAll())
        set(element, "allow", QStringLiteral("all"));
    if (lane.width != kUsualLaneWidth || own.contains(kWidth))
        set(element, "width", numberText(lane.width));
    else if (isTyped)
        set(element, "width", QStringLiteral("-1"));
    if (own.contains(QStringLiteral("customShape")))
        set(element, "shape", shapeText(geometryjson::points(lane.centerLinePointsJson)));
    static const QSet<QString> made{QStringLiteral("id"),
                                    kSpeed,
                                    kLength,
                                    kWidth,
                                    kAllow,
                                    kDisallow,
                                    QStringLiteral("permissions"),
                                    QStringLiteral("customShape")};
    addKept(element, own, made);
    return element;
}

bool hasKeptLine(const Link &link, const QJsonObject &kept) {
    return kept.value(QLatin1String(linkline::kKey)).toString() == linkline::digestOf(link);
}

void setLine(KeptElement &element, const Link &link, const QJsonObject &kept) {
    if (hasKeptLine(link, kept)) {
        if (kept.contains(kShape))
            set(element, "shape", kept.value(kShape).toString());
        set(element, "spreadType", kept.value(kSpreadType).toString(QStringLiteral("right")));
        return;
    }
    set(element, "shape", shapeText(lineOf(link)));
    set(element, "spreadType", QStringLiteral("center"));
}

KeptElement netLaneElement(const ExportedRoads &roads, const Link &link, const Lane &lane, int index,
                           double speed) {
    const QJsonObject own = keptOfLane(link, lane);
    KeptElement element{QStringLiteral("lane"), {}, {}};
    set(element, "id", own.value(QStringLiteral("id")).toString(roads.laneId(link, index)));
    set(element, "index", QString::number(index));
    setPermissions(element, permissionsOf(lane, keptOf(link.otherAttrsJson), own));
    set(element, "speed", numberText(speed));
    set(element, "length", numberText(own.value(kLength).toDouble(link.length)));
    if (lane.width != kUsualLaneWidth || own.contains(kWidth))
        set(element, "width", numberText(lane.width));
    set(element, "shape", shapeText(geometryjson::points(lane.centerLinePointsJson)));
    static const QSet<QString> made{QStringLiteral("id"), kSpeed, kLength, kWidth, kAllow, kDisallow};
    addKept(element, own, made);
    return element;
}

} // namespace

VehicleClasses permittedOn(const Link &link, const Lane &lane) {
    const roadkinds::Permissions permissions =
        permissionsOf(lane, keptOf(link.otherAttrsJson), keptOfLane(link, lane));
    return VehicleClasses::of(permissions.allow, permissions.disallow);
}

QJsonObject keptOfLane(const Link &link, const Lane &lane) {
    // By serial number; of a link whose lanes were counted anew nobody knows which is which.
    const QJsonArray lanes = keptOf(link.otherAttrsJson).value(QStringLiteral("lanes")).toArray();
    return lanes.size() == link.mlLane.size() ? lanes.at(lane.serialNumber - 1).toObject() : QJsonObject();
}

void addKept(KeptElement &element, const QJsonObject &kept, const QSet<QString> &but) {
    for (auto it = kept.begin(); it != kept.end(); ++it) {
        if (it.value().isString() && !but.contains(it.key()))
            element.setAttribute(it.key(), it.value().toString());
    }
    const QJsonObject params = kept.value(QStringLiteral("params")).toObject();
    for (auto it = params.begin(); it != params.end(); ++it)
        element.children.push_back(
            KeptElement{QStringLiteral("param"),
                        {{QStringLiteral("key"), it.key()}, {QStringLiteral("value"), it.value().toString()}},
                        {}});
    const QJsonArray children = kept.value(QStringLiteral("children")).toArray();
    for (const QJsonValue &child : children)
        element.children.push_back(KeptElement::fromJson(child.toArray()));
}

KeptElement nodeElement(const ExportedJunction &junction) {
    KeptElement element{QStringLiteral("node"), {}, {}};
    set(element, "id", junction.id);
    set(element, "x", numberText(junction.at.x));
    set(element, "y", numberText(junction.at.y));
    if (junction.at.z != 0)
        set(element, "z", numberText(junction.at.z));
    static const QSet<QString> but{QStringLiteral("id"),          QStringLiteral("x"),
                                   QStringLiteral("y"),           QStringLiteral("z"),
                                   QStringLiteral("incLanes"),    QStringLiteral("intLanes"),
                                   QStringLiteral("inside"),      QStringLiteral("of"),
                                   QStringLiteral("customShape"), kShape};
    addKept(element, junction.kept, but);
    // A shape that is not the user's own is netconvert's to make.
    if (junction.kept.contains(QStringLiteral("customShape")) && junction.kept.contains(kShape))
        set(element, "shape", junction.kept.value(kShape).toString());
    if (!junction.inside.rightOfWay.contains("<param"))
        return element;
    for (const KeptElement &own : elementsOf(junction.inside.rightOfWay)) {
        std::copy_if(own.children.begin(), own.children.end(), std::back_inserter(element.children),
                     [](const KeptElement &child) { return child.name == QLatin1String("param"); });
    }
    return element;
}

KeptElement edgeElement(const ExportedRoads &roads, const Link &link) {
    const QJsonObject kept = keptOf(link.otherAttrsJson);
    KeptElement element{QStringLiteral("edge"), {}, {}};
    set(element, "id", roads.names().of(&link));
    set(element, "from", roads.from(link).id);
    set(element, "to", roads.to(link).id);
    set(element, "numLanes", QString::number(roads.laneCount(link)));
    const std::vector<double> speeds = speedsOf(roads, link, kept);
    set(element, "speed", numberText(speeds.front()));
    if (kept.isEmpty()) {
        if (!link.linkName.isEmpty() && link.linkName != roads.names().of(&link))
            set(element, "name", link.linkName);
        if (const roadkinds::Type *type = roadkinds::typeOf(link.linkType)) {
            set(element, "type", QLatin1String(type->id));
            set(element, "priority", QString::number(type->priority));
        }
    }
    static const QSet<QString> made{QStringLiteral("id"),
                                    QStringLiteral("from"),
                                    QStringLiteral("to"),
                                    QStringLiteral("function"),
                                    kSpeed,
                                    kLength,
                                    kShape,
                                    kSpreadType,
                                    kAllow,
                                    kDisallow,
                                    QStringLiteral("bidi"),
                                    QLatin1String(linkline::kKey)};
    addKept(element, kept, made);
    setLine(element, link, kept);
    if (kept.contains(kLength))
        set(element, "length", numberText(link.length));
    const bool isTyped = element.attribute(kType);
    if (isTyped) {
        // netconvert adds lanes of these to edges of a type that has some.
        set(element, "sidewalkWidth", QStringLiteral("-1"));
        set(element, "bikeLaneWidth", QStringLiteral("-1"));
    }
    if (link.mlLane.isEmpty() && link.laneWidth > 0)
        set(element, "width", numberText(link.laneWidth));
    std::vector<KeptElement> lanes;
    int index = 0;
    for (const Lane *lane : roads.lanes(link)) {
        lanes.push_back(laneElement(*lane, index, kept, keptOfLane(link, *lane), isTyped));
        if (speeds[std::size_t(index)] != speeds.front())
            set(lanes.back(), "speed", numberText(speeds[std::size_t(index)]));
        ++index;
    }
    element.children.insert(element.children.begin(), lanes.begin(), lanes.end());
    return element;
}

KeptElement netEdgeElement(const ExportedRoads &roads, const Link &link) {
    const QJsonObject kept = keptOf(link.otherAttrsJson);
    KeptElement element{QStringLiteral("edge"), {}, {}};
    set(element, "id", roads.names().of(&link));
    set(element, "from", roads.from(link).id);
    set(element, "to", roads.to(link).id);
    static const QSet<QString> made{QStringLiteral("id"),
                                    QStringLiteral("from"),
                                    QStringLiteral("to"),
                                    kSpeed,
                                    kAllow,
                                    kDisallow,
                                    kShape,
                                    QLatin1String(linkline::kKey)};
    addKept(element, kept, made);
    if (kept.contains(kShape) && hasKeptLine(link, kept))
        set(element, "shape", kept.value(kShape).toString());
    const std::vector<double> speeds = speedsOf(roads, link, kept);
    const std::vector<const Lane *> &lanes = roads.lanes(link);
    std::vector<KeptElement> laneElements;
    for (std::size_t i = 0; i < lanes.size(); ++i)
        laneElements.push_back(netLaneElement(roads, link, *lanes[i], int(i), speeds[i]));
    element.children.insert(element.children.begin(), laneElements.begin(), laneElements.end());
    return element;
}

std::vector<KeptElement> typeElements(const ExportedRoads &roads) {
    std::vector<KeptElement> types;
    QSet<QString> known;
    const QJsonArray elements = roads.kept().value(QStringLiteral("elements")).toArray();
    for (const QJsonValue &json : elements) {
        KeptElement element = KeptElement::fromJson(json.toArray());
        if (element.name != kType)
            continue;
        if (const QString *id = element.attribute(QStringLiteral("id")))
            known.insert(*id);
        types.push_back(std::move(element));
    }
    for (const Link *link : roads.links()) {
        const roadkinds::Type *type =
            keptOf(link->otherAttrsJson).isEmpty() ? roadkinds::typeOf(link->linkType) : nullptr;
        if (!type || known.contains(QLatin1String(type->id)))
            continue;
        known.insert(QLatin1String(type->id));
        types.push_back(KeptElement{kType,
                                    {{QStringLiteral("id"), QLatin1String(type->id)},
                                     {QStringLiteral("priority"), QString::number(type->priority)}},
                                    {}});
    }
    return types;
}

} // namespace moratools
