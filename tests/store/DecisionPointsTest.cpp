#include "model/DecisionPoint.h"
#include "model/LCStruct.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <algorithm>

namespace {

Routing *addRoute(DecisionPoint &point, long id, const QList<QList<Link *>> &chains) {
    auto *route = new Routing;
    route->routingID = id;
    route->routingName = QStringLiteral("O'Brien 路径 %1").arg(id);
    route->proportion = static_cast<double>(id) / 3;
    route->mpDecisionPoint = &point;
    route->mlLinkChain = chains;
    point.mlRouting.append(route);
    return route;
}

RoutingFlowByInterval *addInterval(DecisionPoint &point, long end) {
    auto *interval = new RoutingFlowByInterval;
    interval->endDateTime = end;
    point.mlFlowByInterval.append(interval);
    return interval;
}

void addRatio(RoutingFlowByInterval *interval, long id, long routeId) {
    auto *ratio = new RoutingFLowRatio;
    ratio->routingFLowRatioID = id;
    ratio->routingID = routeId;
    ratio->startDateTime = 77; // not what is written
    ratio->endDateTime = 78;
    ratio->ratio = static_cast<double>(id) / 7;
    interval->mlFlowRatio.append(ratio);
}

/// Three links in the store and in gNet; the case writes points and routes over them.
class DecisionPointsTest : public StoreKindFixture {
protected:
    void prepare() override {
        for (const long id : {7, 8, 9})
            ASSERT_TRUE(DBTools::insertLink(gDB, kNet, sampleLink(id).get(), true));
        readLinks();
    }

    void reopenWithLinks() {
        mLinks.clear();
        reopen();
        readLinks();
    }

    void readLinks() {
        for (const long id : {7, 8, 9})
            mLinks.emplace_back(DBTools::selectLinkByID(gDB, kNet, id));
    }

    Link *link(long id) const { return mLinks.at(static_cast<size_t>(id - 7)).get(); }

    std::unique_ptr<DecisionPoint> samplePoint(long id) const {
        auto point = std::make_unique<DecisionPoint>();
        point->deciPointID = id;
        point->deciPointName = QStringLiteral("决策点 %1").arg(id);
        point->mpLink = link(7);
        point->x = 1.0 / 3;
        point->y = -2.0 / 3;
        point->z = 4.5;
        addRoute(*point, 10 * id + 1, {{link(7), link(8)}, {link(9)}});
        addRoute(*point, 10 * id + 2, {{link(7), link(9)}});
        RoutingFlowByInterval *first = addInterval(*point, 300);
        addRatio(first, 100 * id + 1, 10 * id + 1);
        RoutingFlowByInterval *second = addInterval(*point, 600);
        addRatio(second, 100 * id + 2, 10 * id + 1);
        addRatio(second, 100 * id + 3, 10 * id + 2);
        return point;
    }

    std::unique_ptr<DecisionPoint> readPoint(long id) const {
        return std::unique_ptr<DecisionPoint>(DBTools::selectDecisionPointByID(gDB, kNet, id));
    }
    std::unique_ptr<Routing> readRoute(long id) const {
        return std::unique_ptr<Routing>(DBTools::selectRoutingByID(gDB, kNet, id));
    }

    std::vector<std::unique_ptr<Link>> mLinks;
};

QStringList ratiosOf(const DecisionPoint &point) {
    QStringList result;
    for (const RoutingFlowByInterval *interval : point.mlFlowByInterval) {
        for (const RoutingFLowRatio *ratio : interval->mlFlowRatio) {
            EXPECT_EQ(ratio->endDateTime, interval->endDateTime);
            EXPECT_EQ(ratio->ratio, static_cast<double>(ratio->routingFLowRatioID) / 7);
            result.append(QStringLiteral("%1 of %2: %3-%4")
                              .arg(QString::number(ratio->routingFLowRatioID),
                                   QString::number(ratio->routingID), QString::number(ratio->startDateTime),
                                   QString::number(interval->endDateTime)));
        }
    }
    return result;
}

TEST_P(DecisionPointsTest, APointComesBackAsWritten) {
    const auto written = samplePoint(5);
    ASSERT_TRUE(DBTools::insertDecisionPoint(gDB, kNet, written.get(), true));
    ASSERT_TRUE(DBTools::insertDecisionPoint(gDB, kNet, samplePoint(4).get(), true));
    EXPECT_EQ(rows(QStringLiteral("select linkID, num1, num2 from RoutingLink where routingID = 51 "
                                  "order by num1, num2")),
              QStringList({"7|1|1", "8|1|2", "9|2|1"}));
    reopenWithLinks();

    QList<long> ids = {6};
    EXPECT_TRUE(DBTools::selectDecisionPointIDs(gDB, kNet, ids));
    EXPECT_EQ(ids, QList<long>({6, 4, 5}));
    EXPECT_TRUE(DBTools::selectRoutingIDs(gDB, kNet, 5, ids));
    EXPECT_EQ(ids, QList<long>({6, 4, 5, 51, 52}));
    const auto read = readPoint(5);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->deciPointID, 5);
    EXPECT_EQ(read->deciPointName, written->deciPointName);
    EXPECT_EQ(read->mpLink, link(7));
    EXPECT_EQ(read->x, written->x);
    EXPECT_EQ(read->y, written->y);
    EXPECT_EQ(read->z, written->z);
    ASSERT_EQ(read->mlRouting.size(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(read->mlRouting.at(i)->routingID, 51 + i);
        EXPECT_EQ(read->mlRouting.at(i)->routingName, written->mlRouting.at(i)->routingName);
        EXPECT_EQ(read->mlRouting.at(i)->proportion, written->mlRouting.at(i)->proportion);
        EXPECT_EQ(read->mlRouting.at(i)->mpDecisionPoint, read.get());
    }
    EXPECT_EQ(read->mlRouting.first()->mlLinkChain, QList<QList<Link *>>({{link(7), link(8)}, {link(9)}}));
    EXPECT_EQ(ratiosOf(*read), QStringList({"501 of 51: 1-300", "502 of 51: 301-600", "503 of 52: 301-600"}));
    EXPECT_FALSE(readPoint(6));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(DecisionPointsTest, RatiosOfForeignRoutesGo) {
    const auto point = samplePoint(5);
    point->mlRouting.last()->mpDecisionPoint = nullptr;
    addRatio(point->mlFlowByInterval.first(), 504, 41);
    addRatio(point->mlFlowByInterval.first(), 505, 52);
    ASSERT_TRUE(DBTools::insertDecisionPoint(gDB, kNet, point.get(), true));
    EXPECT_EQ(point->mlRouting.last()->mpDecisionPoint, point.get());
    const QList<RoutingFLowRatio *> &kept = point->mlFlowByInterval.first()->mlFlowRatio;
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(kept.first()->routingFLowRatioID, 501);
    EXPECT_EQ(kept.last()->routingFLowRatioID, 505);
    EXPECT_EQ(rows(QStringLiteral("select RoutingFLowRatioID from RoutingFLowRatio order by 1")),
              QStringList({"501", "502", "503", "505"}));
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(DecisionPointsTest, IntervalsComeByTheirEndsWithTheFirstRecordOfARoute) {
    const auto point = samplePoint(5);
    point->mlFlowByInterval.deleteAll();
    ASSERT_TRUE(DBTools::insertDecisionPoint(gDB, kNet, point.get(), true));
    struct Row {
        long id, routeId, start, end;
    };
    for (const Row &row : {Row{7, 52, 1, 600}, Row{8, 51, 1, 600}, Row{9, 51, 1, 300}, Row{10, 51, 5, 600}}) {
        DecisionPoint one;
        RoutingFlowByInterval *interval = addInterval(one, row.end);
        addRatio(interval, row.id, row.routeId);
        ASSERT_TRUE(DBTools::insertRoutingFlowRatio(gDB, kNet, row.start, interval, true));
    }
    EXPECT_EQ(ratiosOf(*readPoint(5)), QStringList({"9 of 51: 1-300", "8 of 51: 1-600", "7 of 52: 1-600"}));

    QList<RoutingFLowRatio *> ratios;
    EXPECT_TRUE(DBTools::selectRoutingPartitionByID(gDB, kNet, ratios, 51));
    ASSERT_EQ(ratios.size(), 3);
    EXPECT_EQ(ratios.at(0)->endDateTime, 300);
    EXPECT_EQ(ratios.at(2)->startDateTime, 5);
    qDeleteAll(ratios);
}

TEST_P(DecisionPointsTest, ChainsLeaveOutUnknownLinks) {
    letReferencesDangle();
    DecisionPoint point;
    point.deciPointID = 5;
    addRoute(point, 51, {{link(7), link(8)}, {link(8)}, {link(8), link(9), link(7)}});
    ASSERT_TRUE(DBTools::insertRouting(gDB, kNet, point.mlRouting.first(), true));
    mLinks[1].reset();
    const auto read = readRoute(51);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->mlLinkChain, QList<QList<Link *>>({{link(7)}, {link(9), link(7)}}));
    EXPECT_EQ(read->mpDecisionPoint, nullptr);
    EXPECT_EQ(rows(QStringLiteral("select deciPointID from Routing")), QStringList({"5"}));
    EXPECT_FALSE(readRoute(52));

    EXPECT_TRUE(DBTools::insertRouting(gDB, kNet, nullptr, true));
    EXPECT_EQ(count(QStringLiteral("Routing")), 1);
    EXPECT_EQ(failureCount(), 0);
}

TEST_P(DecisionPointsTest, AFailedRowDoesNotStopTheOthers) {
    // A chain that passes a link twice: the second row has the key of the first.
    const auto point = samplePoint(5);
    point->mlRouting.first()->mlLinkChain = {{link(7), link(8), link(7), link(9)}};
    addRatio(point->mlFlowByInterval.last(), 501, 52);
    EXPECT_FALSE(DBTools::insertDecisionPoint(gDB, kNet, point.get(), true));
    EXPECT_EQ(failures().size(), 2);
    EXPECT_EQ(rows(QStringLiteral("select linkID, num2 from RoutingLink where routingID = 51 order by num2")),
              QStringList({"7|1", "8|2", "9|4"}));
    EXPECT_EQ(count(QStringLiteral("Routing")), 2);
    EXPECT_EQ(count(QStringLiteral("RoutingFLowRatio")), 3);
}

TEST_P(DecisionPointsTest, NothingHappensInsideATransactionOfTheCallers) {
    const auto point = samplePoint(5);
    addRatio(point->mlFlowByInterval.first(), 504, 41);
    ASSERT_TRUE(gDB.transaction());
    EXPECT_FALSE(DBTools::insertDecisionPoint(gDB, kNet, point.get(), true));
    EXPECT_EQ(failures().size(), 1);
    EXPECT_EQ(point->mlFlowByInterval.first()->mlFlowRatio.size(), 2) << "the caller's object is as it was";
    ASSERT_TRUE(gDB.rollback());
    EXPECT_EQ(count(QStringLiteral("DecisionPoint")), 0);
}

TEST_P(DecisionPointsTest, LanePairsOfARouteOnAConnector) {
    letReferencesDangle();
    ASSERT_TRUE(DBTools::insertRoutingLaneConnector(gDB, kNet, 51, 3, 72, 81, true));
    ASSERT_TRUE(DBTools::insertRoutingLaneConnector(gDB, kNet, 51, 3, 71, 82, true));
    ASSERT_TRUE(DBTools::insertRoutingLaneConnector(gDB, kNet, 51, 3, 71, 81, true));
    ASSERT_TRUE(DBTools::insertRoutingLaneConnector(gDB, kNet, 51, 4, 1, 2, true));
    ASSERT_TRUE(DBTools::insertRoutingLaneConnector(gDB, kNet, 52, 3, 1, 2, true));
    EXPECT_FALSE(DBTools::insertRoutingLaneConnector(gDB, kNet, 52, 3, 1, 2, true));
    EXPECT_EQ(failures().size(), 1);
    const QList<LCStruct *> pairs = DBTools::selectRoutingLaneConnector(gDB, kNet, 51, 3);
    QList<QPair<long, long>> lanes;
    for (const LCStruct *pair : pairs)
        lanes.append({pair->laneID1, pair->laneID2});
    qDeleteAll(pairs);
    EXPECT_EQ(lanes, (QList<QPair<long, long>>({{71, 81}, {71, 82}, {72, 81}})));
}

INSTANTIATE_TEST_SUITE_P(Stores, DecisionPointsTest, testing::ValuesIn(kStoreKinds), storeKindName);

class SeveralNetsDecisionPointsTest : public StoreFixture {};

TEST_F(SeveralNetsDecisionPointsTest, AnotherNetworkDoesNotTakeTheCurrentOnesLinks) {
    openTemplate("EmptyNet_V6.0.0");
    const auto link = sampleLink(7);
    gNet.enter(link.get());
    for (const long net : {kNet, 2L}) {
        DecisionPoint point;
        point.deciPointID = 5;
        point.z = static_cast<double>(net);
        point.mpLink = link.get();
        addRoute(point, 51, {{link.get()}});
        ASSERT_TRUE(DBTools::insertDecisionPoint(gDB, net, &point, true));
    }
    const std::unique_ptr<DecisionPoint> own(DBTools::selectDecisionPointByID(gDB, kNet, 5));
    const std::unique_ptr<DecisionPoint> other(DBTools::selectDecisionPointByID(gDB, 2, 5));
    ASSERT_TRUE(own && other);
    EXPECT_EQ(own->z, 1);
    EXPECT_EQ(own->mpLink, link.get());
    EXPECT_EQ(own->mlRouting.first()->mlLinkChain.size(), 1);
    EXPECT_EQ(other->z, 2);
    EXPECT_EQ(other->mpLink, nullptr);
    ASSERT_EQ(other->mlRouting.size(), 1);
    EXPECT_TRUE(other->mlRouting.first()->mlLinkChain.isEmpty());
}

} // namespace
