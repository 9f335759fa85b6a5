#include "tools/sumo/export/ExactNetWriter.h"

#include "model/GeometryJson.h"
#include "tools/sumo/export/EdgeElements.h"
#include "tools/sumo/kept/Junctions.h"
#include "tools/sumo/kept/LinkLine.h"

#include <QJsonArray>
#include <QXmlStreamWriter>

#include <algorithm>

namespace moratools {

namespace {

// The width that SUMO gives a lane which says none.
constexpr double kUsualWidth = 3.2;

const QString kPlace = QStringLiteral("at");
const QString kInside = QStringLiteral("inside");
const QString kDigest = QStringLiteral("of");

/// Text of elements as it was kept: the writer's own state is after a complete element.
void writeText(QXmlStreamWriter &writer, const QByteArray &text) {
    writer.writeCharacters(QString());
    writer.device()->write(text);
}

/// The attributes of an object of kept ones, but those named, and then its parameters and children.
void writeKept(QXmlStreamWriter &writer, const QJsonObject &kept, const QSet<QString> &but) {
    KeptElement element;
    addKept(element, kept, but);
    for (const auto &attribute : element.attributes)
        writer.writeAttribute(attribute.first, attribute.second);
    for (const KeptElement &child : element.children)
        writeElement(writer, child);
}

void writeLane(QXmlStreamWriter &writer, const ExportedRoads &roads, const Link &link, const Lane &lane,
               int index, double speed) {
    const QJsonObject own = keptOfLane(link, lane);
    writer.writeStartElement(QStringLiteral("lane"));
    writer.writeAttribute(QStringLiteral("id"),
                          own.value(QStringLiteral("id")).toString(roads.laneId(link, index)));
    writer.writeAttribute(QStringLiteral("index"), QString::number(index));
    const roadkinds::Permissions permissions = permissionsOf(link, lane);
    if (!permissions.allow.isEmpty())
        writer.writeAttribute(QStringLiteral("allow"), permissions.allow);
    else if (!permissions.disallow.isEmpty())
        writer.writeAttribute(QStringLiteral("disallow"), permissions.disallow);
    writer.writeAttribute(QStringLiteral("speed"), numberText(speed));
    writer.writeAttribute(QStringLiteral("length"),
                          numberText(own.value(QStringLiteral("length")).toDouble(link.length)));
    if (lane.width != kUsualWidth || own.contains(QStringLiteral("width")))
        writer.writeAttribute(QStringLiteral("width"), numberText(lane.width));
    writer.writeAttribute(QStringLiteral("shape"),
                          shapeText(geometryjson::points(lane.centerLinePointsJson)));
    writeKept(writer, own,
              {QStringLiteral("id"), QStringLiteral("speed"), QStringLiteral("length"),
               QStringLiteral("width"), QStringLiteral("allow"), QStringLiteral("disallow")});
    writer.writeEndElement();
}

void writeEdge(QXmlStreamWriter &writer, const ExportedRoads &roads, const Link &link) {
    const QJsonObject kept = keptOf(link.otherAttrsJson);
    writer.writeStartElement(QStringLiteral("edge"));
    writer.writeAttribute(QStringLiteral("id"), roads.names().of(&link));
    writer.writeAttribute(QStringLiteral("from"), roads.from(link).id);
    writer.writeAttribute(QStringLiteral("to"), roads.to(link).id);
    QSet<QString> but{QStringLiteral("id"),    QStringLiteral("from"),  QStringLiteral("to"),
                      QStringLiteral("speed"), QStringLiteral("allow"), QStringLiteral("disallow"),
                      linkline::kKey};
    if (kept.value(linkline::kKey).toString() != linkline::digestOf(link))
        but.insert(QStringLiteral("shape"));
    KeptElement element;
    addKept(element, kept, but);
    for (const auto &attribute : element.attributes)
        writer.writeAttribute(attribute.first, attribute.second);
    const std::vector<double> speeds = speedsOf(roads, link);
    const std::vector<const Lane *> lanes = roads.lanes(link);
    for (std::size_t i = 0; i < lanes.size(); ++i)
        writeLane(writer, roads, link, *lanes[i], int(i), speeds[i]);
    for (const KeptElement &child : element.children)
        writeElement(writer, child);
    writer.writeEndElement();
}

/// Whether the edges have the names of their links for ids. The inside names them.
bool hasOwnNames(const ExportedRoads &roads, const ExportedJunction &junction) {
    const auto isOwn = [&roads](const Link *link) { return roads.names().of(link) == link->linkName; };
    return std::all_of(junction.in.begin(), junction.in.end(), isOwn) &&
           std::all_of(junction.out.begin(), junction.out.end(), isOwn);
}

/// The start of a junction's own element, whose text as it was kept begins with "<junction".
QByteArray rightOfWayOf(const QString &id, const QJsonObject &kept, const QByteArray &text) {
    if (text.isEmpty())
        return {};
    QByteArray start;
    QXmlStreamWriter writer(&start);
    writer.writeStartElement(QStringLiteral("junction"));
    writer.writeAttribute(QStringLiteral("id"), id);
    KeptElement element;
    addKept(element, kept, {kPlace, kInside, kDigest, QStringLiteral("id")});
    for (const auto &attribute : element.attributes)
        writer.writeAttribute(attribute.first, attribute.second);
    return start + text.mid(int(qstrlen("<junction")));
}

} // namespace

ExactNetWriter::ExactNetWriter(const ExportedRoads &roads) : mRoads(roads) {
    takeJunctions();
}

void ExactNetWriter::takeJunctions() {
    const Junctions junctions(mRoads.network());
    const auto take = [this](const QString &id, const QJsonObject &kept) {
        mJunctions.push_back(
            {id, kept, JunctionInside::fromText(kept.value(kInside).toString()), kept.value(kPlace).toInt()});
    };
    for (const ExportedJunction &junction : mRoads.junctions()) {
        const QJsonObject kept = junctions.has(junction.id)
                                     ? Junctions::kept(junctions.keeper(junction.id), junction.id)
                                     : QJsonObject();
        if (!kept.isEmpty() && hasOwnNames(mRoads, junction) &&
            junctions.digest(junction.id) == kept.value(kDigest).toString())
            take(junction.id, kept);
        else
            mEdited.append(junction.id);
    }
    const QJsonArray others = mRoads.kept().value(QStringLiteral("junctions")).toArray();
    for (const QJsonValue &other : others)
        take(other.toObject().value(QStringLiteral("id")).toString(), other.toObject());
    const QJsonArray homeless = mRoads.kept().value(QStringLiteral("homeless")).toArray();
    for (const QJsonValue &inside : homeless)
        mJunctions.push_back({QString(), {}, JunctionInside::fromText(inside.toString()), 0});
    std::stable_sort(mJunctions.begin(), mJunctions.end(),
                     [](const Junction &a, const Junction &b) { return a.place < b.place; });
}

std::vector<ExactNetWriter::Junction> ExactNetWriter::junctionsWith(const SumoNet *made) const {
    std::vector<Junction> all = mJunctions;
    if (!made)
        return all;
    for (const SumoJunction &junction : made->junctions) {
        if (mEdited.contains(junction.id))
            all.push_back({junction.id, junction.kept, junction.inside, 0});
    }
    return all;
}

void ExactNetWriter::writeElements(QXmlStreamWriter &writer, bool types) const {
    const QJsonArray elements = mRoads.kept().value(QStringLiteral("elements")).toArray();
    for (const QJsonValue &json : elements) {
        const KeptElement element = KeptElement::fromJson(json.toArray());
        if ((element.name == QLatin1String("type")) == types)
            writeElement(writer, element);
    }
}

void ExactNetWriter::write(QIODevice &to, const std::vector<KeptElement> &programmes,
                           const SumoNet *made) const {
    QXmlStreamWriter writer(&to);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("net"));
    const QJsonObject root = mRoads.kept().value(QStringLiteral("net")).toObject();
    writer.writeNamespace(QStringLiteral("http://www.w3.org/2001/XMLSchema-instance"), QStringLiteral("xsi"));
    for (auto it = root.begin(); it != root.end(); ++it)
        writer.writeAttribute(it.key(), it.value().toString());
    const QJsonObject location = mRoads.kept().value(QStringLiteral("location")).toObject();
    if (!location.isEmpty()) {
        writer.writeEmptyElement(QStringLiteral("location"));
        writeKept(writer, location, {});
    }
    writeElements(writer, true);
    const std::vector<Junction> junctions = junctionsWith(made);
    for (const Junction &junction : junctions)
        writeText(writer, junction.inside.edges);
    for (const Link *link : mRoads.links())
        writeEdge(writer, mRoads, *link);
    for (const KeptElement &programme : programmes)
        writeElement(writer, programme);
    for (const Junction &junction : junctions)
        writeText(writer, rightOfWayOf(junction.id, junction.kept, junction.inside.rightOfWay));
    for (const Junction &junction : junctions)
        writeText(writer, junction.inside.junctions);
    for (const Junction &junction : junctions)
        writeText(writer, junction.inside.connections);
    writeElements(writer, false);
    writer.writeEndDocument();
}

} // namespace moratools
