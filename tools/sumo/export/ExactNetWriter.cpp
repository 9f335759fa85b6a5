#include "tools/sumo/export/ExactNetWriter.h"

#include "tools/sumo/export/EdgeElements.h"
#include "tools/sumo/export/XmlFile.h"
#include "tools/sumo/kept/Junctions.h"

#include <QJsonArray>

#include <algorithm>
#include <limits>

namespace moratools {

namespace {

constexpr int kLast = std::numeric_limits<int>::max();
const QString kPlace = QStringLiteral("at");
const QString kInside = QStringLiteral("inside");
const QString kDigest = QStringLiteral("of");

/// The edge that a connection begins at, escaped as it stands in its text.
QByteArray fromOf(const QByteArray &connection) {
    const int start = connection.indexOf(" from=\"") + int(qstrlen(" from=\""));
    return connection.mid(start, connection.indexOf('"', start) - start);
}

/// Whether a text is what an import keeps: nothing but elements of that name, one a line.
bool consistsOf(const char *element, const QByteArray &text) {
    const QByteArray begin = QByteArrayLiteral("<") + element;
    for (int start = 0; start < text.size();) {
        const int end = text.indexOf(">\n", start);
        if (end < 0 || qstrncmp(text.constData() + start, begin.constData(), uint(begin.size())) != 0 ||
            text.lastIndexOf('\n', end) >= start)
            return false;
        start = end + 2;
    }
    return true;
}

/// A store that was damaged may hold anything in its place.
bool isSound(const JunctionInside &inside) {
    return consistsOf("edge", inside.edges) && consistsOf("junction", inside.rightOfWay) &&
           consistsOf("junction", inside.junctions) && consistsOf("connection", inside.connections);
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
    QString start;
    QXmlStreamWriter writer(&start);
    writer.writeStartElement(QStringLiteral("junction"));
    writer.writeAttribute(QStringLiteral("id"), id);
    KeptElement element;
    static const QSet<QString> made{kPlace, kInside, kDigest, QStringLiteral("id")};
    addKept(element, kept, made);
    for (const auto &attribute : element.attributes)
        writer.writeAttribute(attribute.first, attribute.second);
    return start.toUtf8() + text.mid(int(qstrlen("<junction")));
}

} // namespace

ExactNetWriter::ExactNetWriter(const ExportedRoads &roads) : mRoads(roads) {
    takeJunctions();
}

void ExactNetWriter::takeJunctions() {
    const Junctions junctions(mRoads.network());
    for (const ExportedJunction &junction : mRoads.junctions()) {
        const int place = junction.kept.value(kPlace).toInt(kLast);
        if (isSound(junction.inside) && !junction.inside.rightOfWay.isEmpty() && junctions.has(junction.id) &&
            hasOwnNames(mRoads, junction) &&
            junctions.digest(junction.id) == junction.kept.value(kDigest).toString())
            mJunctions.push_back({junction.id, junction.kept, junction.inside, place});
        else
            mEdited.insert(junction.id, place);
    }
    const QJsonArray others = mRoads.kept().value(QStringLiteral("junctions")).toArray();
    for (const QJsonValue &other : others) {
        const QJsonObject kept = other.toObject();
        const auto inside = JunctionInside::fromText(kept.value(kInside).toString());
        if (isSound(inside))
            mJunctions.push_back(
                {kept.value(QStringLiteral("id")).toString(), kept, inside, kept.value(kPlace).toInt()});
    }
    const QJsonArray homeless = mRoads.kept().value(QStringLiteral("homeless")).toArray();
    for (const QJsonValue &text : homeless) {
        const auto inside = JunctionInside::fromText(text.toString());
        if (isSound(inside))
            mJunctions.push_back({QString(), {}, inside, kLast});
    }
    sort(mJunctions);
}

void ExactNetWriter::sort(std::vector<Junction> &junctions) {
    std::stable_sort(junctions.begin(), junctions.end(),
                     [](const Junction &a, const Junction &b) { return a.place < b.place; });
}

std::vector<ExactNetWriter::Junction> ExactNetWriter::junctionsWith(const SumoNet *made) const {
    std::vector<Junction> all = mJunctions;
    if (!made)
        return all;
    for (const SumoJunction &junction : made->junctions) {
        const auto edited = mEdited.constFind(junction.id);
        if (edited != mEdited.constEnd())
            all.push_back({junction.id, junction.kept, junction.inside, *edited});
    }
    sort(all);
    return all;
}

void ExactNetWriter::writeElements(XmlFile &to, bool types) const {
    const QJsonArray elements = mRoads.kept().value(QStringLiteral("elements")).toArray();
    for (const QJsonValue &json : elements) {
        const KeptElement element = KeptElement::fromJson(json.toArray());
        if ((element.name == QLatin1String("type")) == types)
            to.write(element);
    }
}

/// First those from edges, in their order, as networks have them.
void ExactNetWriter::writeConnections(XmlFile &to, const std::vector<Junction> &junctions) const {
    QHash<QByteArray, QByteArray> byEdge;
    QByteArray internal;
    for (const Junction &junction : junctions) {
        const QByteArray &text = junction.inside.connections;
        for (int start = 0; start < text.size();) {
            const int newline = text.indexOf('\n', start);
            const int end = newline < 0 ? text.size() : newline + 1;
            const QByteArray line = text.mid(start, end - start);
            const QByteArray from = fromOf(line);
            (from.startsWith(':') ? internal : byEdge[from]) += line;
            start = end;
        }
    }
    for (const Link *link : mRoads.links())
        to.writeText(byEdge.value(mRoads.names().of(link).toHtmlEscaped().toUtf8()));
    to.writeText(internal);
}

void ExactNetWriter::write(XmlFile &to, const std::vector<KeptElement> &programmes,
                           const SumoNet *made) const {
    QXmlStreamWriter &writer = to.root();
    const QJsonObject root = mRoads.kept().value(QStringLiteral("net")).toObject();
    writer.writeNamespace(QStringLiteral("http://www.w3.org/2001/XMLSchema-instance"), QStringLiteral("xsi"));
    for (auto it = root.begin(); it != root.end(); ++it)
        writer.writeAttribute(it.key(), it.value().toString());
    const QJsonObject location = mRoads.kept().value(QStringLiteral("location")).toObject();
    if (!location.isEmpty()) {
        KeptElement element{QStringLiteral("location"), {}, {}};
        addKept(element, location, {});
        to.write(element);
    }
    writeElements(to, true);
    const std::vector<Junction> junctions = junctionsWith(made);
    for (const Junction &junction : junctions)
        to.writeText(junction.inside.edges);
    for (const Link *link : mRoads.links())
        to.write(netEdgeElement(mRoads, *link));
    to.write(programmes);
    for (const Junction &junction : junctions)
        to.writeText(rightOfWayOf(junction.id, junction.kept, junction.inside.rightOfWay));
    for (const Junction &junction : junctions)
        to.writeText(junction.inside.junctions);
    writeConnections(to, junctions);
    writeElements(to, false);
}

} // namespace moratools
