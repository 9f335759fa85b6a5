#include "model/Link.h"
#include "model/Connector.h"
#include "model/GuideArrow.h"
#include "model/Net.h"
#include "model/SpecialWords.h"
#include "store/DBTools.h"

#include <QSqlQuery>

#include <gtest/gtest.h>

namespace {

// gDB on an in-memory store of one network, just large enough to hand out lane ids from 41 on.
class LinkLanes : public ::testing::Test {
protected:
    void SetUp() override {
        gDB = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
        gDB.setDatabaseName(QStringLiteral(":memory:"));
        ASSERT_TRUE(gDB.open());
        for (const char *statement :
             {"create table DbVersion(versionId integer)", "insert into DbVersion values(3)",
              "create table IDGenerater(TableName text, ID integer)",
              "insert into IDGenerater values('Lane', 40)", "create table Lane(LaneID integer)"})
            ASSERT_TRUE(QSqlQuery(gDB).exec(QString::fromLatin1(statement))) << statement;
    }
    void TearDown() override {
        gDB = QSqlDatabase();
        QSqlDatabase::removeDatabase(QString::fromLatin1(QSqlDatabase::defaultConnection));
        gSpecialWords = SpecialWords();
    }
};

struct Actions {
    const char *linkType;
    const char *withWidths;
    const char *byNumber;
};

QString displayed(const char *chinese) {
    return gSpecialWords.getWord(QString::fromUtf8(chinese));
}

} // namespace

TEST_F(LinkLanes, KindOfLanesFollowsTheLinkTypeInEitherLanguage) {
    const Actions cases[] = {
        {"机非共享车道", "机非共享车道", "机非共享车道"},
        {"机非共享", "机非共享车道", "机非共享车道"},
        {"非机动车道", "非机动车道", "非机动车道"},
        {"公交专用道", "公交专用道", "公交专用道"},
        {"人行道", "机动车道", "人行道"},
        {"城市支路", "机动车道", "机动车道"},
    };
    for (const bool english : {false, true}) {
        gSpecialWords.setDbIsEnglish(english);
        gSpecialWords.setLangIsNotZh(english);
        for (const Actions &expected : cases) {
            SCOPED_TRACE(expected.linkType);
            Link link;
            link.linkType = displayed(expected.linkType);
            link.laneNumber = 1;
            link.createLanes({3.5});
            link.createLanes();
            ASSERT_EQ(link.mlLane.size(), 2);
            EXPECT_EQ(link.mlLane.at(0)->actionType, displayed(expected.withWidths));
            EXPECT_EQ(link.mlLane.at(1)->actionType, displayed(expected.byNumber));
            EXPECT_EQ(link.mlLane.at(1)->expectTravelDirection, displayed("自由行驶"));
        }
    }
}

TEST_F(LinkLanes, LanesAreNumberedAndTakeTheirIdsFromTheStore) {
    Link link;
    link.linkID = 6;
    link.createLanes({3.5, 3.25});
    link.laneNumber = 1.5;
    link.laneWidth = 3;
    link.createLanes();
    link.laneNumber = 0;
    link.createLanes();
    ASSERT_EQ(link.mlLane.size(), 4);
    const QList<QPair<int, double>> numberAndWidth = {{1, 3.5}, {2, 3.25}, {1, 3}, {2, 3}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(link.mlLane.at(i)->laneID, 41 + i);
        EXPECT_EQ(link.mlLane.at(i)->linkID, 6);
        EXPECT_EQ(link.mlLane.at(i)->serialNumber, numberAndWidth.at(i).first);
        EXPECT_EQ(link.mlLane.at(i)->width, numberAndWidth.at(i).second);
    }
}

namespace {

QString logged;

} // namespace

TEST_F(LinkLanes, LanesMadeBeforeAFailureStayAndTheFailureIsLogged) {
    ASSERT_TRUE(QSqlQuery(gDB).exec(
        QStringLiteral("create trigger full before update on IDGenerater when new.ID > 42 "
                       "begin select raise(abort, 'full'); end")));
    Link link;
    link.linkID = 6;
    logged.clear();
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { logged += text; });
    link.createLanes({1, 2, 3, 4});
    qInstallMessageHandler(previous);
    EXPECT_EQ(link.mlLane.size(), 2);
    EXPECT_TRUE(logged.startsWith(QStringLiteral("Lane 3 of link 6 "))) << logged.toStdString();
}

TEST(Link, WidthAndLength) {
    Link link;
    link.laneNumber = 2;
    link.laneWidth = 3.5;
    EXPECT_EQ(link.width(), 7);
    for (const double width : {3.0, 1.25}) {
        link.mlLane.append(new Lane);
        link.mlLane.last()->width = width;
    }
    EXPECT_EQ(link.width(), 4.25);

    link.length = 9;
    link.calcuLength();
    EXPECT_EQ(link.length, 0);
    link.mlVertex.append(new Vertex{1, 0, 0, 0});
    link.mlVertex.append(new Vertex{2, 3, 4, 100}); // heights do not count
    link.mlVertex.append(new Vertex{3, 3, 6, 0});
    link.calcuLength();
    EXPECT_EQ(link.length, 7);
}

TEST(Link, RoundaboutLinkMayStartAndEndInOneNode) {
    Link link;
    link.mpStartNode = link.mpEndNode = new Node;
}

TEST(Lane, GuideArrowsLeaveByIdWithoutBeingDeleted) {
    GuideArrow left{1, 5, 2, 3, 4};
    GuideArrow right{2, 5, 2, 3, 4};
    Lane lane;
    lane.mlGuideArrow = {&left, &right, &left};
    lane.removeGuideArrow(1);
    EXPECT_EQ(lane.mlGuideArrow, QList<GuideArrow *>({&right}));
    lane.removeGuideArrow(7);
    EXPECT_EQ(lane.mlGuideArrow.size(), 1);
}

TEST(Connector, DefaultsAndLaneConnectorNumbers) {
    Link from;
    Link to;
    Connector connector(7, &from, &to);
    EXPECT_EQ(connector.roadId, 7);
    EXPECT_EQ(connector.connName, QStringLiteral("1"));
    EXPECT_EQ(connector.color, QStringLiteral("CCCCCC"));
    EXPECT_EQ(connector.desiredSpeed, 50.0);
    EXPECT_EQ(connector.limitSpeed, 80.0);
    const long last = LaneConnector::generId;
    for (int i = 0; i < 2; ++i)
        connector.mlLaneConnector.append(new LaneConnector(&connector, nullptr, nullptr));
    EXPECT_EQ(connector.mlLaneConnector.first()->laneConnId, last + 1);
    EXPECT_EQ(connector.mlLaneConnector.last()->laneConnId, last + 2);
}
