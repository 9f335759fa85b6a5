#include "tools/sumo/reader/NetReader.h"
#include "tools/reports/Failure.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <zlib.h>

using namespace moratools;

namespace {

/// Two roads across one junction; %1 is put among the attributes of the first lane, %2 before the end.
const char *const kSmallNet = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- <edge id="dead" from="a" to="b"/> -->
<net version="1.16">
    <location netOffset="1.5,-2.5" convBoundary="0.00,-0.00,30.00,40.00" origBoundary="1,2,3,4" projParameter="!"/>
    <type id="x" priority="1"/>
    <edge id=":m_0" function="internal">
        <lane id=":m_0_0" index="0" speed="5" length="2" shape="10,0,1 11,0,2"/>
    </edge>
    <edge id=":m_1" function="internal">
        <lane id=":m_1_0" index="0" speed="5" length="2" shape="11,0,2 12,1,3"/>
    </edge>
    <edge id=":m_w0" function="walkingarea"><lane id=":m_w0_0" index="0" speed="1" length="1" shape="0,0 1,1 2,0"/></edge>
    <edge id="-a#2" from="west" to="m" type="highway.primary" name="中山路 &quot;E&quot;">
        <lane id="-a#2_1" index="1" speed="13.9" length="10" shape="0,3.2 10,3.2"/>
        <lane id="-a#2_0" index="0" speed="13.9" length="9.5" disallow="pedestrian tram" shape="-0.00,0 10,0" %1>
            <param key="k" value="v"/>
        </lane>
        <param key="k" value="v"/>
    </edge>
    <edge id="b_7" function="normal" from="m" to="east">
        <lane id="b_7_0" index="0" allow="bus bicycle" speed="13.9" length="10" width="2.75" shape="12,1,3 30,40,4"/>
    </edge>
    <tlLogic id="t" type="actuated" programID="night" offset="1:00:05">
        <phase duration="31" minDur="5" state="GG"/><phase duration="4.5" state="yy"/>
    </tlLogic>
    <junction id="m" type="traffic_light" x="11" y="0" z="2.5" shape="10,-2 12,2"><request index="0"/></junction>
    <junction id=":m_1_0" type="internal" x="11" y="0"/>
    <connection from="-a#2" to="b_7" fromLane="0" toLane="0" via=":m_0_0" tl="t" linkIndex="0" dir="s" state="o"/>
    <connection from="-a#2" to="b_7" fromLane="1" toLane="0" dir="s" state="M"/>
    <connection from=":m_0" to="b_7" fromLane="0" toLane="0" via=":m_1_0" dir="s" state="M"/>
    <connection from=":m_1" to="b_7" fromLane="0" toLane="0" dir="s" state="M"/>
    <connection from="-a#2" to=":m_w0" fromLane="0" toLane="0" dir="s" state="M"/>
    %2
</net>
)";

QByteArray smallNet(const QString &lane = QString(), const QString &end = QString()) {
    return QString::fromUtf8(kSmallNet)
        .replace(QLatin1String("%1"), lane)
        .replace(QLatin1String("%2"), end)
        .toUtf8();
}

class NetReader : public testing::Test {
protected:
    QString write(const QString &name, const QByteArray &bytes) const {
        QFile file(mFolder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    QString writeCompressed(const QString &name, const QByteArray &bytes) const {
        const QString path = mFolder.filePath(name);
        const gzFile file = gzopen(QFile::encodeName(path).constData(), "wb");
        EXPECT_EQ(gzwrite(file, bytes.constData(), unsigned(bytes.size())), bytes.size());
        EXPECT_EQ(gzclose(file), Z_OK);
        return path;
    }

    static QString failureOf(const QString &path) {
        try {
            readSumoNet(path);
        } catch (const Failure &failure) {
            return failure.message();
        }
        return {};
    }

    QTemporaryDir mFolder;
};

} // namespace

TEST_F(NetReader, ReadsEveryKindOfRecord) {
    const SumoNet net = readSumoNet(writeCompressed(QStringLiteral("网 \"1\" 50%.net.xml.gz"), smallNet()));
    EXPECT_FALSE(net.leftHand);
    EXPECT_EQ(net.location.value("netOffset").toString(), QStringLiteral("1.5,-2.5"));
    EXPECT_EQ(net.location.value("convBoundary").toString(), QStringLiteral("0.00,-0.00,30.00,40.00"));

    ASSERT_EQ(net.edges.size(), 2u);
    const SumoEdge &a = net.edges[0];
    EXPECT_EQ(a.id, QStringLiteral("-a#2"));
    EXPECT_EQ(a.from, QStringLiteral("west"));
    EXPECT_EQ(a.type, QStringLiteral("highway.primary"));
    EXPECT_EQ(a.kept.value("name").toString(), QStringLiteral("中山路 \"E\""));
    ASSERT_EQ(a.lanes.size(), 2u);
    EXPECT_EQ(a.lanes[0].id, QStringLiteral("-a#2_0"));
    EXPECT_EQ(a.lanes[0].length, 9.5);
    EXPECT_EQ(a.lanes[0].width, 3.2);
    EXPECT_EQ(a.lanes[0].shape, (GeometryLine{{0, 0, 0}, {10, 0, 0}}));
    EXPECT_FALSE(std::signbit(a.lanes[0].shape[0].x));
    EXPECT_FALSE(a.lanes[0].permissions.admitsPedestrians());
    EXPECT_TRUE(a.lanes[0].permissions.admitsCars());
    EXPECT_TRUE(a.lanes[1].permissions.isAll());
    EXPECT_EQ(net.edges[1].lanes[0].permissions.toText(), QStringLiteral("bus bicycle"));
    EXPECT_EQ(net.edges[1].lanes[0].width, 2.75);
    EXPECT_EQ(net.edge(QStringLiteral("b_7")), &net.edges[1]);
    EXPECT_EQ(net.edge(QStringLiteral("dead")), nullptr);

    ASSERT_EQ(net.junctions.size(), 1u);
    EXPECT_EQ(net.junctions[0].kept.value("z").toString(), QStringLiteral("2.5"));
    ASSERT_EQ(net.programmes.size(), 1u);
    EXPECT_EQ(net.programmes[0].programID, QStringLiteral("night"));
    EXPECT_EQ(net.programmes[0].offset, 3605);
    ASSERT_EQ(net.programmes[0].phases.size(), 2u);
    EXPECT_EQ(net.programmes[0].phases[1].duration, 4.5);
}

TEST_F(NetReader, KeepsWhatHasNoRecord) {
    const QString twice = QStringLiteral("<connection from=\"-a#2\" to=\"b_7\" fromLane=\"1\" toLane=\"0\"/>"
                                         "<roundabout nodes=\"m n\" edges=\" e &amp;&quot;\n\"/>");
    const SumoNet net = readSumoNet(write(
        QStringLiteral("a.net.xml"), smallNet(QStringLiteral("width=\"3.20\" changeLeft=\"bus\""), twice)));
    EXPECT_EQ(net.kept, (QJsonObject{{"version", "1.16"}}));
    EXPECT_EQ(net.edges[0].kept, (QJsonObject{{"type", "highway.primary"},
                                              {"name", "中山路 \"E\""},
                                              {"params", QJsonObject{{"k", "v"}}}}));
    EXPECT_EQ(net.edges[0].lanes[0].kept, (QJsonObject{{"disallow", "pedestrian tram"},
                                                       {"width", "3.20"},
                                                       {"changeLeft", "bus"},
                                                       {"params", QJsonObject{{"k", "v"}}}}));
    EXPECT_EQ(net.connections[0].kept,
              (QJsonObject{{"tl", "t"}, {"linkIndex", "0"}, {"dir", "s"}, {"state", "o"}}));
    ASSERT_EQ(net.elements.size(), 2u);
    EXPECT_EQ(net.elements[0].toJson(), (QJsonArray{"type", QJsonObject{{"id", "x"}, {"priority", "1"}}}));
    EXPECT_EQ(net.elements[1].toJson(),
              (QJsonArray{"roundabout", QJsonObject{{"nodes", "m n"}, {"edges", "e &\""}}}));

    const SumoJunction &junction = net.junctions[0];
    EXPECT_EQ(
        junction.kept,
        (QJsonObject{
            {"type", "traffic_light"}, {"x", "11"}, {"y", "0"}, {"z", "2.5"}, {"shape", "10,-2 12,2"}}));
    EXPECT_EQ(
        junction.inside.edges,
        R"(<edge id=":m_0" function="internal"><lane id=":m_0_0" index="0" speed="5" length="2" shape="10,0,1 11,0,2"/></edge>
<edge id=":m_1" function="internal"><lane id=":m_1_0" index="0" speed="5" length="2" shape="11,0,2 12,1,3"/></edge>
<edge id=":m_w0" function="walkingarea"><lane id=":m_w0_0" index="0" speed="1" length="1" shape="0,0 1,1 2,0"/></edge>
)");
    EXPECT_EQ(junction.inside.rightOfWay, "<junction><request index=\"0\"/></junction>\n");
    EXPECT_EQ(junction.inside.junctions, "<junction id=\":m_1_0\" type=\"internal\" x=\"11\" y=\"0\"/>\n");
    EXPECT_EQ(
        junction.inside.connections,
        R"(<connection from="-a#2" to="b_7" fromLane="0" toLane="0" via=":m_0_0" tl="t" linkIndex="0" dir="s" state="o"/>
<connection from="-a#2" to="b_7" fromLane="1" toLane="0" dir="s" state="M"/>
<connection from="-a#2" to=":m_w0" fromLane="0" toLane="0" dir="s" state="M"/>
<connection from=":m_0" to="b_7" fromLane="0" toLane="0" via=":m_1_0" dir="s" state="M"/>
<connection from=":m_1" to="b_7" fromLane="0" toLane="0" dir="s" state="M"/>
)");
    ASSERT_EQ(net.repeatedConnections.size(), 1u);
    EXPECT_EQ(net.repeatedConnections[0].what,
              QStringLiteral("\"-a#2_1->b_7_0\" (a.net.xml, line 33: it occurs a second time)"));
}

TEST_F(NetReader, PathsFollowTheChainOfInternalLanes) {
    const SumoNet net = readSumoNet(write(QStringLiteral("a.net.xml"), smallNet()));
    ASSERT_EQ(net.connections.size(), 2u);
    EXPECT_EQ(net.connections[0].tl, QStringLiteral("t"));
    EXPECT_EQ(net.connections[0].linkIndex, 0);
    EXPECT_EQ(connectionPath(net, net.connections[0]), (GeometryLine{{10, 0, 1}, {11, 0, 2}, {12, 1, 3}}));
    EXPECT_EQ(connectionPath(net, net.connections[1]), (GeometryLine{{10, 3.2, 0}, {12, 1, 3}}));
}

TEST_F(NetReader, AChainThatRunsInACircleEnds) {
    const QString circle =
        QStringLiteral("<connection from=\":m_1\" to=\"b_7\" fromLane=\"0\" toLane=\"0\" via=\":m_0_0\"/>");
    const SumoNet net = readSumoNet(write(QStringLiteral("a.net.xml"), smallNet({}, circle)));
    EXPECT_GT(connectionPath(net, net.connections[0]).size(), 3u);
}

TEST_F(NetReader, FaultsAreNamedWithFileLineAndCause) {
    const struct {
        const char *lane;
        const char *end;
        const char *expected;
    } table[] = {
        {"width=\"wide\"", "", "line 15: <lane> has width=\"wide\", which is not a number"},
        {"width=\"nan\"", "", "which is not a number"},
        {"width=\"-1\"", "", "which is not positive"},
        {"", "<connection from=\"-a#2\" to=\"zz\" fromLane=\"0\" toLane=\"0\"/>",
         "line 33: the connection from \"-a#2\" to \"zz\" names the edge \"zz\""},
        {"", "<connection from=\"-a#2\" to=\"b_7\" fromLane=\"2\" toLane=\"0\"/>",
         "names lane 2 of edge \"-a#2\""},
        {"", "<connection from=\"-a#2\" to=\"b_7\" fromLane=\"0\" toLane=\"-1\"/>",
         "names lane -1 of edge \"b_7\""},
        {"", "<connection from=\"b_7\" to=\"-a#2\" fromLane=\"0\" toLane=\"0\" via=\":q_0\"/>",
         "names the internal lane \":q_0\""},
        {"", "<connection from=\"-a#2\" to=\"b_7\" fromLane=\"x\" toLane=\"0\"/>",
         "line 33: <connection> has fromLane=\"x\""},
        {"", "<connection from=\"-a#2\" fromLane=\"0\" toLane=\"0\"/>",
         "<connection> lacks the attribute \"to\""},
        {"", "<edge id=\"e\" from=\"m\" to=\"m\"/>", "edge \"e\" has no lane"},
        {"",
         "<edge id=\"e\" from=\"m\" to=\"m\"><lane id=\"e_0\" index=\"1\" speed=\"1\" length=\"1\" shape=\"0,0 1,1\"/></edge>",
         "lanes of edge \"e\" are not numbered"},
        {"",
         "<edge id=\"b_7\" from=\"m\" to=\"m\"><lane id=\"e_0\" index=\"0\" speed=\"1\" length=\"1\" shape=\"0,0 1,1\"/></edge>",
         "edge \"b_7\" occurs a second time"},
        {"",
         "<edge id=\"e\" from=\"m\" to=\"m\"><lane id=\"e_0\" index=\"0\" speed=\"1\" length=\"1\" shape=\"0,0\"/></edge>",
         "fewer than two points"},
        {"",
         "<edge id=\"e\" from=\"m\" to=\"m\"><lane id=\"e_0\" index=\"0\" speed=\"1\" length=\"1\" shape=\"0,0 1;1\"/></edge>",
         "\"1;1\" is no point"},
        {"", "<tlLogic id=\"q\" offset=\"1:30\"/>", "neither seconds nor h:m:s"},
        {"", "</edge>", "line 33: not well-formed XML"},
    };
    const QString name = QStringLiteral("a.net.xml");
    for (const auto &row : table) {
        const QString message =
            failureOf(write(name, smallNet(QLatin1String(row.lane), QLatin1String(row.end))));
        EXPECT_TRUE(message.contains(QLatin1String(row.expected))) << row.expected << "\n"
                                                                   << message.toStdString();
        EXPECT_TRUE(message.startsWith(mFolder.filePath(name))) << message.toStdString();
    }
}

TEST_F(NetReader, RefusesWhatIsNoNetwork) {
    const QByteArray whole = smallNet();
    QFile compressed(writeCompressed(QStringLiteral("whole.gz"), whole));
    ASSERT_TRUE(compressed.open(QIODevice::ReadOnly));
    const QByteArray packed = compressed.readAll();
    // The last eight bytes are the checksum and the size.
    QByteArray wrongSum = packed;
    wrongSum[wrongSum.size() - 8] = char(wrongSum[wrongSum.size() - 8] ^ 1);
    QByteArray latin1 = whole;
    latin1.replace("b_7", "b\xe9");
    QByteArray deep = whole;
    deep.replace("</net>", QByteArray("<a>").repeated(2000) + "</net>");
    const struct {
        QString path;
        const char *expected;
    } table[] = {
        {mFolder.filePath(QStringLiteral("missing.xml")), "no such file"},
        {mFolder.path(), "this is a folder"},
        {write(QStringLiteral("empty"), {}), "the file is empty"},
#ifdef Q_OS_UNIX
        {QStringLiteral("/dev/zero"), "this is not XML"},
#endif
        {write(QStringLiteral("text"), "Dear reader,\n"), "this is not XML"},
        {write(QStringLiteral("binary"), QByteArray(300, '\0')), "this is not XML"},
        {write(QStringLiteral("routes"), "<routes><vType id=\"a\"/></routes>"),
         "the root element is <routes>, not <net>"},
        {write(QStringLiteral("none"), "<net version=\"1\"/>"), "the network has no road"},
        {write(QStringLiteral("half"), whole.left(whole.size() / 2)), "ends in the middle"},
        {write(QStringLiteral("half.gz"), packed.left(packed.size() / 2)), "ends in the middle"},
        {write(QStringLiteral("tail.gz"), packed.left(packed.size() - 3)), "ends in the middle"},
        {write(QStringLiteral("sum.gz"), wrongSum), "the compressed file is damaged"},
        {write(QStringLiteral("more.gz"), packed + "more"), "the compressed file is damaged"},
        {write(QStringLiteral("more"), whole + "and more"), "not well-formed XML"},
        {write(QStringLiteral("second"), whole + "<net/>"), "not well-formed XML"},
        {write(QStringLiteral("latin1"), latin1), "not in the encoding that the file names"},
        {write(QStringLiteral("deep"), deep), "more than 400 elements are within each other"},
        {writeCompressed(QStringLiteral("blank.gz"), "<net>" + QByteArray(40'000'000, ' ') + "</net>"),
         "a text is longer than 16777216 bytes"},
        {writeCompressed(QStringLiteral("name.gz"), "<net a=\"" + QByteArray(40'000'000, 'a') + "\"></net>"),
         "a text is longer than 16777216 bytes"},
        {QString(), "the name of a file is empty"},
    };
    for (const auto &row : table) {
        const QString message = failureOf(row.path);
        EXPECT_TRUE(message.contains(QLatin1String(row.expected))) << row.expected << "\n"
                                                                   << message.toStdString();
    }
}

TEST_F(NetReader, RefusesAnElementWithAttributesWithoutMeasure) {
    const auto element = [](int attributes) {
        QByteArray text = "<param";
        for (int i = 0; i < attributes; ++i)
            text += " a" + QByteArray::number(i) + " = '='";
        return text + "/>";
    };
    const auto net = [](const QByteArray &more) {
        return QString::fromUtf8(smallNet())
            .replace(QLatin1String("</net>"), QString::fromUtf8(more) + QLatin1String("</net>"));
    };
    const QByteArray many = element(100'000);
    const QString expected = QStringLiteral("an element has more than 1000 attributes");
    for (const char *before : {"", "<![CDATA[<!--]]>", "<?x <!-- ?>", "<!-- -->"}) {
        const QString path = write(QStringLiteral("many"), net(QByteArray(before) + many).toUtf8());
        EXPECT_TRUE(failureOf(path).contains(expected)) << before;
    }
    QByteArray wide("\xff\xfe");
    const QString text = net(many).replace(QLatin1String("UTF-8"), QLatin1String("UTF-16"));
    wide.append(reinterpret_cast<const char *>(text.utf16()), 2 * text.size());
    EXPECT_TRUE(failureOf(write(QStringLiteral("wide"), wide)).contains(expected));

    // Many in small elements, and a network that is commented out. (A sign in a value counts, too.)
    const QByteArray fine = element(450) + "<!-- <!- ===" + many + " -->" + element(450).repeated(20);
    EXPECT_EQ(readSumoNet(write(QStringLiteral("fine"), net(fine).toUtf8())).edges.size(), 2U);
}

TEST_F(NetReader, ReadsACompressedFileOfSeveralPartsToItsEnd) {
    const QByteArray whole = smallNet() + "\n<!-- the end -->\n";
    const int middle = whole.size() / 2;
    const auto part = [&](const QByteArray &bytes) {
        QFile file(writeCompressed(QStringLiteral("part"), bytes));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QString path =
        write(QStringLiteral("parts.gz"), part(whole.left(middle)) + part(whole.mid(middle)));
    EXPECT_EQ(readSumoNet(path).edges.size(), 2U);
}
