#include "tools/sumo/reader/NetReader.h"

#include "tools/reports/Failure.h"
#include "tools/sumo/reader/NetCheck.h"
#include "tools/sumo/reader/Programme.h"
#include "tools/sumo/reader/XmlInput.h"

#include <algorithm>

namespace moratools {

namespace {

// The lane width that SUMO assumes where the file gives none.
constexpr double kDefaultLaneWidth = 3.2;
constexpr int kElementsBetweenReports = 2000;

class NetReader {
public:
    NetReader(const QString &path, const Progress &progress)
        : mInput(path, QStringLiteral("net"), QStringLiteral("a SUMO network (.net.xml or .net.xml.gz)")),
          mProgress(progress) {}

    SumoNet read();

private:
    void readElement();
    void readLocation();
    void readEdge();
    void readInternalEdge();
    SumoLane readLane();
    void addEdge(SumoEdge edge);
    void readJunction();
    void readConnection();
    void linkInternalLanes();

    struct InternalStep {
        QString from; ///< internal lane
        QString via;  ///< internal lane that follows it
    };

    XmlInput mInput;
    Progress mProgress;
    SumoNet mNet;
    std::vector<InternalStep> mSteps;
};

SumoNet NetReader::read() {
    mNet.path = mInput.path();
    mNet.leftHand = Attributes(mInput).flag("lefthand", false);
    for (int count = 0; mInput.nextElement(); ++count) {
        if (count % kElementsBetweenReports == 0)
            reportShare(mProgress, mInput.progress());
        readElement();
    }
    linkInternalLanes();
    reportShare(mProgress, 1.0);
    return std::move(mNet);
}

void NetReader::readElement() {
    const QStringRef name = mInput.name();
    if (name == QLatin1String("edge"))
        readEdge();
    else if (name == QLatin1String("connection"))
        readConnection();
    else if (name == QLatin1String("junction"))
        readJunction();
    else if (name == QLatin1String("tlLogic"))
        mNet.programmes.push_back(readProgramme(mInput, SumoSource::kNetwork));
    else if (name == QLatin1String("location"))
        readLocation();
    else
        mInput.skipElement();
}

void NetReader::readLocation() {
    const Attributes attributes(mInput);
    const GeometryLine netOffset = attributes.shape("netOffset");
    if (!netOffset.empty())
        mNet.location.netOffset = netOffset.front();
    // Four numbers in a row, so it is no list of points.
    const QStringList corners = attributes.text("convBoundary", QString()).split(QLatin1Char(','));
    if (corners.size() == 4)
        mNet.location.convBoundary = {{corners[0].toDouble(), corners[1].toDouble(), 0},
                                      {corners[2].toDouble(), corners[3].toDouble(), 0}};
    mNet.location.origBoundary = attributes.text("origBoundary", QString());
    mNet.location.projParameter = attributes.text("projParameter", QString());
    mInput.skipElement();
}

void NetReader::readEdge() {
    const Attributes attributes(mInput);
    const QString function = attributes.text("function", QStringLiteral("normal"));
    if (function != QLatin1String("normal")) {
        readInternalEdge();
        return;
    }
    SumoEdge edge;
    edge.line = mInput.line();
    edge.id = attributes.text("id");
    edge.from = attributes.text("from");
    edge.to = attributes.text("to");
    edge.type = attributes.text("type", QString());
    edge.name = attributes.text("name", QString());
    edge.shape = attributes.shape("shape");
    while (mInput.nextElement()) {
        if (mInput.name() == QLatin1String("lane"))
            edge.lanes.push_back(readLane());
        mInput.skipElement();
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

void NetReader::readInternalEdge() {
    while (mInput.nextElement()) {
        if (mInput.name() == QLatin1String("lane")) {
            const Attributes attributes(mInput);
            mNet.internalLanes.insert(attributes.text("id"), {attributes.shape("shape"), QString()});
        }
        mInput.skipElement();
    }
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
    lane.width = attributes.number("width", kDefaultLaneWidth);
    lane.shape = attributes.shape("shape");
    if (lane.speed < 0)
        attributes.failOn("speed", QStringLiteral("which is negative"));
    if (lane.length < 0)
        attributes.failOn("length", QStringLiteral("which is negative"));
    if (lane.width <= 0)
        attributes.failOn("width", QStringLiteral("which is not positive"));
    if (lane.shape.size() < 2)
        attributes.failOn("shape", QStringLiteral("which is fewer than two points"));
    return lane;
}

void NetReader::readJunction() {
    const Attributes attributes(mInput);
    SumoJunction junction;
    junction.id = attributes.text("id");
    junction.type = attributes.text("type", QString());
    if (junction.type != QLatin1String("internal")) {
        junction.position = {attributes.number("x"), attributes.number("y"), attributes.number("z", 0)};
        junction.shape = attributes.shape("shape");
        mNet.junctions.push_back(std::move(junction));
    }
    mInput.skipElement();
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
    // An id that begins with a colon belongs to the inside of a junction.
    if (connection.from.startsWith(QLatin1Char(':'))) {
        if (!connection.via.isEmpty())
            mSteps.push_back(
                {QStringLiteral("%1_%2").arg(connection.from, QString::number(connection.fromLane)),
                 connection.via});
    } else if (!connection.to.startsWith(QLatin1Char(':'))) {
        connection.tl = attributes.text("tl", QString());
        connection.linkIndex = attributes.integer("linkIndex", -1);
        connection.dir = attributes.text("dir", QString());
        connection.state = attributes.text("state", QString());
        mNet.connections.push_back(std::move(connection));
    }
    mInput.skipElement();
}

void NetReader::linkInternalLanes() {
    for (const InternalStep &step : mSteps) {
        const auto lane = mNet.internalLanes.find(step.from);
        if (lane != mNet.internalLanes.end())
            lane->via = step.via;
    }
}

} // namespace

SumoNet readSumoNet(const QString &path, const Progress &progress) {
    NetReader reader(path, progress);
    SumoNet net = reader.read();
    checkReferences(net);
    return net;
}

} // namespace moratools
