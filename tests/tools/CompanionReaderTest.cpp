#include "tests/tools/CompanionFile.h"
#include "tools/reports/Failure.h"

#include <QJsonDocument>

using namespace moratools;

namespace {

class CompanionReader : public CompanionFile {};

} // namespace

TEST_F(CompanionReader, ReadsDemandInAllItsForms) {
    const SumoCompanions read = this->read(
        "<!-- <vType id=\"dead\"/> -->\n"
        "<vType id=\"Größe #1\" vClass=\"bus\" length=\"12.5\" speedDev=\"0.1\"/>\n"
        "<vTypeDistribution id=\"listed\" vTypes=\"a b\" probabilities=\".25 .75\"/>\n"
        "<vTypeDistribution id=\"nested\"><vType id=\"x\" probability=\".4\"/><vType/></vTypeDistribution>\n"
        "<route id=\"r\" edges=\" -1#0  a_b \"><stop busStop=\"s\" duration=\"0:01:30\"/></route>\n"
        "<vehicle id=\"v1\" depart=\"14:00:00\" type=\"t\" line=\"7\"><route edges=\"a b\"/>"
        "<stop lane=\"a_0\" endPos=\"30\" duration=\"5\"/></vehicle>\n"
        "<vehicle id=\"v2\" depart=\"triggered\"><route edges=\"a b\"/></vehicle>\n"
        "<trip id=\"t1\" depart=\"3.5\" from=\"a\" to=\"b\"/>\n"
        "<flow id=\"f1\" begin=\"1:0:0\" number=\"50\" vehsPerHour=\"1800\" from=\"a\"/>\n"
        "<flow id=\"f2\" end=\"60\" period=\"exp(0.5)\" route=\"r\"/>\n"
        "<flow id=\"f3\" end=\"60\" probability=\"0.1\" route=\"r\"/>\n"
        "<flow id=\"f4\" begin=\"triggered\" end=\"60\" number=\"4\" route=\"r\"/>\n"
        "<personFlow id=\"p\" begin=\"0\" end=\"3600\" perHour=\"60\"><stop busStop=\"s\"/>"
        "<ride lines=\"7 8\"/></personFlow>\n");
    ASSERT_EQ(read.vehicleTypes.size(), 3u);
    EXPECT_EQ(read.vehicleTypes[0].id, QStringLiteral("Größe #1"));
    EXPECT_EQ(read.vehicleTypes[0].source.line, 3);
    EXPECT_EQ(read.vehicleTypes[0].source.element, 1) << "the comment is none, the root is 0";
    EXPECT_EQ(read.vehicleTypes[0].length, 12.5);
    EXPECT_FALSE(read.vehicleTypes[0].width);
    ASSERT_EQ(read.typeDistributions.size(), 2u);
    EXPECT_EQ(read.typeDistributions[0].members[1].id, QStringLiteral("b"));
    EXPECT_EQ(read.typeDistributions[0].members[1].probability, 0.75);
    EXPECT_EQ(read.typeDistributions[1].members[0].probability, 0.4);
    EXPECT_EQ(read.typeDistributions[1].members[1].id, read.vehicleTypes[2].id);

    ASSERT_EQ(read.routes.size(), 2u) << "a route that two vehicles write alike is kept once";
    EXPECT_EQ(read.routes[0].edges, QStringList({QStringLiteral("-1#0"), QStringLiteral("a_b")}));
    EXPECT_EQ(read.routes[0].stops.at(0).duration, 90);
    ASSERT_EQ(read.vehicles.size(), 7u);
    EXPECT_TRUE(read.vehicles[6].onEvent);
    EXPECT_EQ(read.vehicles[0].source.element, 8);
    EXPECT_EQ(read.vehicles[0].stops.at(0).source.element, 10);
    EXPECT_EQ(read.vehicles[0].depart, 14 * 3600);
    EXPECT_EQ(read.vehicles[0].route, 1);
    EXPECT_EQ(read.vehicles[1].route, 1);
    EXPECT_EQ(read.vehicles[0].stops.at(0).endPos, 30);
    EXPECT_TRUE(read.vehicles[1].onEvent);
    EXPECT_EQ(read.vehicles[2].depart, 3.5);
    EXPECT_EQ(read.vehicles[3].begin, 3600);
    EXPECT_EQ(read.vehicles[3].end, 3700) << "the number ends a flow that has no end";
    EXPECT_EQ(read.vehicles[4].period, 2);
    EXPECT_EQ(read.vehicles[5].period, 10);
    ASSERT_EQ(read.passengers.size(), 1u);
    EXPECT_EQ(read.passengers[0].count, 60);
    EXPECT_EQ(read.passengers[0].lines.size(), 2);
}

TEST_F(CompanionReader, ReadsTurnRatiosOldAndNew) {
    const SumoCompanions read =
        this->read("<interval begin=\"10\" end=\"0:1:0\"><edgeRelation from=\"a\" to=\"b\" count=\"7\"/>"
                   "<fromEdge id=\"c\"><toEdge id=\"d\" probability=\"0.3\"/><toEdge id=\"e\" "
                   "probability=\"0.7\"/></fromEdge></interval>");
    ASSERT_EQ(read.turnRatios.size(), 3u);
    EXPECT_EQ(read.turnRatios[0].ratio, 7);
    EXPECT_EQ(read.turnRatios[2].from, QStringLiteral("c"));
    EXPECT_EQ(read.turnRatios[2].to, QStringLiteral("e"));
    EXPECT_EQ(read.turnRatios[2].begin, 10);
    EXPECT_EQ(read.turnRatios[2].end, 60);
}

TEST_F(CompanionReader, ReadsDevicesUnderTheirOldAndNewNames) {
    const SumoCompanions read = this->read(
        "<e1Detector id=\"1\" lane=\"a_0\" pos=\"-2\" freq=\"60\"/><inductionLoop id=\"2\" lane=\"a_1\"/>"
        "<e2Detector id=\"3\" lane=\"a_0\" pos=\"-200\" length=\"200\"/>"
        "<laneAreaDetector id=\"4\" lanes=\"a_0 b_0\" endPos=\"9\" period=\"0:5:0\"/>"
        "<e3Detector id=\"5\"><detEntry lane=\"a_0\" pos=\"1\"/><detExit lane=\"b_0\" pos=\"2\"/></e3Detector>"
        "<trainStop id=\"6\" lane=\"a_0\" endPos=\"5\"/>"
        "<variableSpeedSign id=\"7\" lanes=\"a_0 a_1\"><step time=\"5\" speed=\"8\"/><step time=\"9\"/>"
        "</variableSpeedSign>"
        "<rerouter id=\"8\" edges=\"a\"><interval begin=\"0\" end=\"9\"><closingReroute id=\"a\"/>"
        "<closingLaneReroute id=\"b_0\"/><parkingAreaReroute id=\"p\"/></interval></rerouter>"
        "<tlLogic id=\"9\" programID=\"night\"><phase duration=\"30\" state=\"Gr\"/></tlLogic>"
        "<parkingArea id=\"10\" lane=\"a_0\"/>");
    ASSERT_EQ(read.loops.size(), 2u);
    EXPECT_EQ(read.loops[0].pos, -2);
    EXPECT_EQ(read.loops[0].period, 60);
    ASSERT_EQ(read.areaDetectors.size(), 2u);
    EXPECT_EQ(read.areaDetectors[1].lanes.size(), 2);
    EXPECT_EQ(read.areaDetectors[1].period, 300);
    EXPECT_FALSE(read.areaDetectors[1].pos);
    ASSERT_EQ(read.passageDetectors.size(), 1u);
    EXPECT_EQ(read.passageDetectors[0].exits.at(0).pos, 2);
    ASSERT_EQ(read.busStops.size(), 1u);
    EXPECT_FALSE(read.busStops[0].startPos);
    ASSERT_EQ(read.speedSigns.size(), 1u);
    EXPECT_LT(read.speedSigns[0].steps.at(1).speed, 0);
    ASSERT_EQ(read.closures.size(), 2u);
    EXPECT_EQ(read.closures[0].edge, QStringLiteral("a"));
    EXPECT_EQ(read.closures[1].lane, QStringLiteral("b_0"));
    EXPECT_EQ(read.programmes.at(0).programID, QStringLiteral("night"));
}

TEST_F(CompanionReader, KeepsWhatItReadsAsItStands) {
    const SumoCompanions read =
        this->read("<vehicle id=\" v \" depart=\"0\" color=\"1,0,0\"><route edges=\"a b\"/>"
                   "<param key=\"k\" value=\"\"/></vehicle>\n<!-- none -->"
                   "<parkingArea id=\"p\"><space x=\"1\"/></parkingArea>");
    ASSERT_EQ(read.kept.size(), 1u);
    EXPECT_EQ(read.kept[0].name, QStringLiteral("some.xml"));
    EXPECT_EQ(read.kept[0].numbers, std::vector<qint64>({1, 4}));
    QByteArray text;
    read.kept[0].elements.forEach([&text](const KeptEntry &entry) {
        text += QJsonDocument(entry.element.toJson()).toJson(QJsonDocument::Compact) + '\n';
    });
    EXPECT_EQ(text,
              QByteArray(R"(["vehicle",{"color":"1,0,0","depart":"0","id":"v"},[["route",{"edges":"a b"}],)"
                         R"(["param",{"key":"k","value":""}]]])"
                         "\n"
                         R"(["parkingArea",{"id":"p"},[["space",{"x":"1"}]]])"
                         "\n"));
}

TEST_F(CompanionReader, FilesOfOneNameAreToldApart) {
    SumoCompanions companions;
    readSumoCompanion(write("<vType id=\"a\"/>"), companions, {}, CompanionRole::Routes);
    QFile second(mFolder.filePath(QStringLiteral("SOME.xml.gz")));
    ASSERT_TRUE(second.open(QIODevice::WriteOnly));
    second.write("<additional><vType id=\"b\"/></additional>");
    second.close();
    readSumoCompanion(second.fileName(), companions);
    ASSERT_EQ(companions.kept.size(), 2u);
    EXPECT_TRUE(companions.kept[0].hasRoutes);
    EXPECT_EQ(companions.kept[1].name, QStringLiteral("2_SOME.xml")) << "one folder has to hold both";
    EXPECT_EQ(companions.vehicleTypes.at(1).source.file, 1);
}

TEST_F(CompanionReader, FaultsAreNamedWithFileLineAndCause) {
    const struct {
        const char *content;
        const char *expected;
    } table[] = {
        {"<vehicle id=\"v\"/>", "line 2: <vehicle> lacks the attribute \"depart\""},
        {"<flow id=\"f\" end=\"9\"/>", "says neither how many depart nor how often"},
        {"<flow id=\"f\" begin=\"9\" end=\"5\" number=\"1\"/>", "before the begin"},
        {"<flow id=\"f\" end=\"9\" vehsPerHour=\"0\"/>", "not positive"},
        {"<flow id=\"f\" end=\"9\" vehsPerHour=\"1e300\"/>", "more depart than a store can count"},
        {"<flow id=\"f\" end=\"1e12\" number=\"1\"/>", "no time that a store can hold"},
        {"<vehicle id=\"v\" depart=\"1:2\"/>", "neither seconds nor h:m:s"},
        {"<vehicle id=\"v\" depart=\"soon\"/>", "neither seconds nor h:m:s"},
        {"<trip id=\"v\" depart=\"-3\"/>", "depart=\"-3\", which is no time that a store can hold"},
        {"<person id=\"p\" depart=\"1e9\"><walk busStop=\"s\" duration=\"2e9\"/><ride/></person>",
         "no time that a store"},
        {"<route id=\"r\" edges=\"a\"><stop lane=\"a_0\" duration=\"1e12\"/></route>",
         "no time that a store"},
        {"<variableSpeedSign id=\"v\" lanes=\"a_0\"><step time=\"1e12\"/></variableSpeedSign>",
         "no time that a"},
        {"<interval begin=\"9\" end=\"5\"/>", "before the begin"},
        {"<vTypeDistribution id=\"d\" vTypes=\"a b\" probabilities=\"1\"/>", "not one for each member"},
        {"<inductionLoop id=\"l\" lane=\"a_0\" pos=\"x\"/>", "not a number"},
        {"<interval><edgeRelation from=\"a\" to=\"b\"/></interval>", "without a ratio"},
        {"<vehicle", "not well-formed"},
    };
    for (const auto &entry : table) {
        try {
            read(entry.content);
            ADD_FAILURE() << entry.content;
        } catch (const Failure &failure) {
            EXPECT_TRUE(failure.message().contains(QLatin1String(entry.expected)))
                << failure.message().toStdString();
            EXPECT_TRUE(failure.message().contains(QStringLiteral("some.xml, line "))) << entry.content;
        }
    }
    SumoCompanions companions;
    EXPECT_THROW(readSumoCompanion(write("", QStringLiteral("net")), companions), Failure);
    EXPECT_THROW(readSumoCompanion(write("", QStringLiteral("sumoConfiguration")), companions), Failure);
}
