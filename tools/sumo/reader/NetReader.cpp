#include "tools/sumo/reader/NetReader.h"

#include "tools/reports/Failure.h"
#include "tools/sumo/kept/SumoUnits.h"
#include "tools/sumo/reader/NetCheck.h"
#include "tools/sumo/reader/Programme.h"
#include "tools/sumo/reader/XmlInput.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QSet>

#include <algorithm>
#include <initializer_list>

namespace moratools {

namespace {

constexpr int kElementsBetweenReports = 2000;

/// The attributes of the current element but those named.
QJsonObject keptOf(const XmlInput &input, std::initializer_list<const char *> but) {
    QJsonObject kept;
    const QXmlStreamAttributes attributes = input.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QStringRef name = attribute.qualifiedName();
        if (std::none_of(but.begin(), but.end(),
                         [&name](const char *other) { return name == QLatin1String(other); }))
            kept.insert(name.toString(), attribute.value().trimmed().toString());
    }
    return kept;
}

/// Reads the current element, which is a child, to its end.
void keepChild(XmlInput &input, QJsonObject &in) {
    const auto append = [&in](const QString &list, const QString &key, const QJsonValue &value) {
        if (key.isEmpty()) {
            QJsonArray values = in.value(list).toArray();
            values.append(value);
            in.insert(list, values);
        } else {
            QJsonObject values = in.value(list).toObject();
            values.insert(key, value);
            in.insert(list, values);
        }
    };
    const KeptElement child = input.keepElement();
    const QString *key = child.attribute(QStringLiteral("key"));
    const QString *value = child.attribute(QStringLiteral("value"));
    if (child.name == QLatin1String("param") && child.attributes.size() == 2 && child.children.empty() &&
        key && value && !key->isEmpty())
        append(QStringLiteral("params"), *key, *value);
    else
        append(QStringLiteral("children"), QString(), child.toJson());
}

/// The junction of an internal edge, whose id is a colon, that of the junction, and a number after a "_".
QString junctionOfInternal(const QString &edge) {
    return edge.mid(1, edge.lastIndexOf(QLatin1Char('_')) - 1);
}

/// Whether a connection of that state is one on which vehicles have to give way: a minor one, equal ones, and
/// those before which all stop.
bool givesWay(const QString &state) {
    return state == QLatin1String("m") || state == QLatin1String("=") || state == QLatin1String("s") ||
           state == QLatin1String("w");
}

class NetReader {
public:
    NetReader(const QString &path, const Progress &progress)
        : mInput(path, QStringLiteral("net"), QStringLiteral("a SUMO network (.net.xml or .net.xml.gz)")),
          mProgress(progress) {}

    SumoNet read();

private:
    void readElement();
    void readEdge();
    void readInternalEdge(const QString &id);
    SumoLane readLane();
    void addEdge(SumoEdge edge);
    void readJunction();
    void readConnection();
    void addConnection(SumoConnection connection);
    void linkInternalLanes();
    /// The insides read so far of the junction of that id.
    JunctionInside &inside(const QString &junction);
    void settleInsides();

    struct InternalStep {
        QString from; ///< internal lane
        QString via;  ///< internal lane that follows it
    };

    XmlInput mInput;
    Progress mProgress;
    SumoNet mNet;
    std::vector<InternalStep> mSteps;
    QStringList mGivingWay; ///< internal lanes
    QHash<QString, JunctionInside> mInsides;
    QHash<QString, QByteArray> mConnectionsFrom; ///< by edge, which may follow in the file
    QSet<QPair<QPair<QString, QString>, QPair<int, int>>> mSeenConnections;
};

SumoNet NetReader::read() {
    mNet.path = mInput.path();
    mNet.leftHand = Attributes(mInput).flag("lefthand", false);
    mNet.kept = keptOf(mInput, {});
    for (int count = 0; mInput.nextElement(); ++count) {
        if (count % kElementsBetweenReports == 0)
            reportShare(mProgress, mInput.progress());
        readElement();
    }
    linkInternalLanes();
    settleInsides();
    reportShare(mProgress, 1.0);
    return std::move(mNet);
}

void NetReader::readElement() {
    const QStringRef name = mInput.name();
    if (name == QLatin1String("edge")) {
        readEdge();
    } else if (name == QLatin1String("connection")) {
        readConnection();
    } else if (name == QLatin1String("junction")) {
        readJunction();
    } else if (name == QLatin1String("tlLogic")) {
        mNet.programmes.push_back(readProgramme(mInput, SumoSource::kNetwork));
    } else if (name == QLatin1String("location")) {
        mNet.location = keptOf(mInput, {});
        while (mInput.nextElement())
            keepChild(mInput, mNet.location);
    } else {
        mNet.elements.push_back(mInput.keepElement());
    }
}

void NetReader::readEdge() {
    const Attributes attributes(mInput);
    const QString function = attributes.text("function", QStringLiteral("normal"));
    const QString id = attributes.text("id");
    if (function != QLatin1String("normal")) {
        readInternalEdge(id);
        return;
    }
    SumoEdge edge;
    edge.line = mInput.line();
    edge.id = id;
    edge.from = attributes.text("from");
    edge.to = attributes.text("to");
    edge.type = attributes.text("type", QString());
    edge.kept = keptOf(mInput, {"id", "from", "to"});
    while (mInput.nextElement()) {
        if (mInput.name() == QLatin1String("lane"))
            edge.lanes.push_back(readLane());
        else
            keepChild(mInput, edge.kept);
    }
    addEdge(std::move(edge));
}

void NetReader::addEdge(SumoEdge edge) {
    if (edge.lanes.empty())
        mInput.fail(
            QStringLiteral("edge \"%1\" has no lane; correct the file or write it again").arg(edge.id));
    std::sort(edge.lanes.begin(), edge.lanes.end(),
              [](const SumoLane &a, const SumoLane &b) { return a.index < b.index; });
    for (std::size_t i = 0; i < edge.lanes.size(); ++i) {
        if (edge.lanes[i].index != int(i))
            mInput.fail(
                QStringLiteral("the lanes of edge \"%1\" are not numbered 0 to %2; correct the file or "
                               "write it again")
                    .arg(edge.id, QString::number(edge.lanes.size() - 1)));
    }
    if (mNet.edgeIndex.contains(edge.id))
        mInput.fail(QStringLiteral("edge \"%1\" occurs a second time; remove one of them").arg(edge.id));
    mNet.edgeIndex.insert(edge.id, int(mNet.edges.size()));
    mNet.edges.push_back(std::move(edge));
}

JunctionInside &NetReader::inside(const QString &junction) {
    return mInsides[junction];
}

void NetReader::readInternalEdge(const QString &id) {
    QByteArray &text = inside(junctionOfInternal(id)).edges;
    mInput.keepText(text, [this] {
        if (mInput.name() != QLatin1String("lane"))
            return;
        const Attributes lane(mInput);
        SumoInternalLane &record = mNet.internalLanes[lane.text("id")];
        record.shape = lane.shape("shape");
        record.permissions =
            VehicleClasses::of(lane.text("allow", QString()), lane.text("disallow", QString()));
        record.speed = lane.number("speed", 0);
        record.length = lane.number("length", 0);
    });
}

SumoLane NetReader::readLane() {
    const Attributes attributes(mInput);
    SumoLane lane;
    lane.id = attributes.text("id");
    lane.index = attributes.integer("index");
    lane.permissions =
        VehicleClasses::of(attributes.text("allow", QString()), attributes.text("disallow", QString()));
    lane.speed = attributes.number("speed");
    lane.length = attributes.number("length");
    lane.width = attributes.number("width", kUsualLaneWidth);
    lane.shape = attributes.shape("shape");
    if (lane.speed < 0)
        attributes.failOn("speed", QStringLiteral("which is negative"));
    if (lane.length < 0)
        attributes.failOn("length", QStringLiteral("which is negative"));
    if (lane.width <= 0)
        attributes.failOn("width", QStringLiteral("which is not positive"));
    if (lane.shape.size() < 2)
        attributes.failOn("shape", QStringLiteral("which is fewer than two points"));
    lane.kept = keptOf(mInput, {"id", "index", "speed", "length", "width", "shape"});
    if (attributes.has("width") && lane.width == kUsualLaneWidth)
        lane.kept.insert(QStringLiteral("width"), attributes.text("width"));
    while (mInput.nextElement())
        keepChild(mInput, lane.kept);
    return lane;
}

void NetReader::readJunction() {
    const Attributes attributes(mInput);
    SumoJunction junction;
    junction.id = attributes.text("id");
    junction.type = attributes.text("type", QString());
    if (junction.type == QLatin1String("internal")) {
        // Its id is that of the internal lane that ends there: that of the edge, and a number after a "_".
        const QString edge = junction.id.left(junction.id.lastIndexOf(QLatin1Char('_')));
        mInput.keepText(inside(junctionOfInternal(edge)).junctions);
        return;
    }
    junction.kept = keptOf(mInput, {"id", "incLanes", "intLanes"});
    mInput.keepText(inside(junction.id).rightOfWay, {},
                    {QStringLiteral("incLanes"), QStringLiteral("intLanes")});
    mNet.junctions.push_back(std::move(junction));
}

void NetReader::readConnection() {
    const Attributes attributes(mInput);
    SumoConnection connection;
    connection.line = mInput.line();
    connection.from = attributes.text("from");
    connection.to = attributes.text("to");
    connection.fromLane = attributes.integer("fromLane");
    connection.toLane = attributes.integer("toLane");
    connection.via = attributes.text("via", QString());
    if (!connection.via.isEmpty() && givesWay(attributes.text("state", QString())))
        mGivingWay.append(connection.via);
    // An id that begins with a colon belongs to the inside of a junction.
    if (connection.from.startsWith(QLatin1Char(':'))) {
        if (!connection.via.isEmpty())
            mSteps.push_back(
                {QStringLiteral("%1_%2").arg(connection.from, QString::number(connection.fromLane)),
                 connection.via});
        mInput.keepText(inside(junctionOfInternal(connection.from)).connections);
    } else if (connection.to.startsWith(QLatin1Char(':'))) {
        mInput.keepText(mConnectionsFrom[connection.from]);
    } else {
        connection.tl = attributes.text("tl", QString());
        connection.linkIndex = attributes.integer("linkIndex", -1);
        connection.kept = keptOf(mInput, {"from", "to", "fromLane", "toLane", "via"});
        addConnection(std::move(connection));
    }
}

void NetReader::addConnection(SumoConnection connection) {
    const auto movement = qMakePair(qMakePair(connection.from, connection.to),
                                    qMakePair(connection.fromLane, connection.toLane));
    if (mSeenConnections.contains(movement)) {
        mNet.repeatedConnections.push_back(
            {QStringLiteral("\"%1_%2->%3_%4\" (%5, line %6: it occurs a second time)")
                 .arg(connection.from, QString::number(connection.fromLane), connection.to,
                      QString::number(connection.toLane), QFileInfo(mInput.path()).fileName(),
                      QString::number(connection.line)),
             {SumoSource::kNetwork, connection.line, mInput.elementNumber()}});
        mInput.skipElement();
        return;
    }
    mSeenConnections.insert(movement);
    mInput.keepText(mConnectionsFrom[connection.from]);
    mNet.connections.push_back(std::move(connection));
}

void NetReader::linkInternalLanes() {
    for (const InternalStep &step : mSteps) {
        const auto lane = mNet.internalLanes.find(step.from);
        if (lane != mNet.internalLanes.end())
            lane->via = step.via;
    }
    for (const QString &id : qAsConst(mGivingWay)) {
        const auto lane = mNet.internalLanes.find(id);
        if (lane != mNet.internalLanes.end())
            lane->givesWay = true;
    }
}

void NetReader::settleInsides() {
    QHash<QString, QByteArray> connectionsAt;
    for (const SumoEdge &edge : mNet.edges)
        connectionsAt[edge.to] += mConnectionsFrom.take(edge.id);
    for (auto at = connectionsAt.begin(); at != connectionsAt.end(); ++at)
        inside(at.key()).connections.prepend(*at);
    for (SumoJunction &junction : mNet.junctions)
        junction.inside = mInsides.take(junction.id);
    QStringList others = mInsides.keys();
    std::sort(others.begin(), others.end());
    for (const QString &id : qAsConst(others))
        mNet.homeless.push_back(mInsides.take(id));
}

} // namespace

SumoNet readSumoNet(const QString &path, const Progress &progress) {
    NetReader reader(path, progress);
    SumoNet net = reader.read();
    checkReferences(net);
    return net;
}

} // namespace moratools
