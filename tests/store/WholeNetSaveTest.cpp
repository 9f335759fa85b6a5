#include "model/NetContents.h"
#include "tests/support/Builders.h"
#include "tests/support/StoreFixture.h"

#include <QSqlQuery>

#include <memory>

namespace {

constexpr const char *kAll[] = {"one", "two"};

/// A network whose objects have no ids, but for those of the links that others name by id.
std::unique_ptr<NetContents> newNetwork() {
    auto contents = std::make_unique<NetContents>();
    for (const long id : {5L, 6L}) {
        contents->links.push_back(sampleLink(id));
        Link &link = *contents->links.back();
        link.roadId = 0;
        link.mpEndNode->nodeID = 0;
        link.mlVertex.last()->vertexID = 0;
        link.mlLane.last()->laneID = 0;
        link.mlLane.last()->linkID = 0;
    }
    // An arrow on a lane that has no id.
    contents->guideArrows.push_back(std::make_unique<GuideArrow>());
    contents->links[0]->mlLane.last()->mlGuideArrow = {contents->guideArrows[0].get()};
    contents->linkTypes = {{1, QStringLiteral("Trunk"), 10, 20, 30, 40}};
    Link *from = contents->links[0].get();
    Link *to = contents->links[1].get();
    contents->connectors.push_back(sampleConnector(8, from, to));
    Connector &connector = *contents->connectors.back();
    connector.connID = connector.roadId = 0;
    for (LaneConnector *lanes : qAsConst(connector.mlLaneConnector))
        lanes->laneConnId = 0;

    TrafficObjects &traffic = contents->traffic;
    for (const char *name : kAll) {
        auto group = std::make_unique<SignalGroup>();
        group->name = QLatin1String(name);
        group->mlPhase.append(new SignalPhase);
        group->mlPhase.first()->mlColor = {{QStringLiteral("红"), 5}};
        auto lamp = std::make_unique<SignalLamp>();
        lamp->laneID = 51;
        lamp->setPhase(group->mlPhase.first());
        traffic.signalGroups.push_back(std::move(group));
        traffic.signalLamps.push_back(std::move(lamp));

        auto line = std::make_unique<BusLine>();
        line->name = QLatin1String(name);
        line->mlLink = {from};
        for (int i = 0; i < 2; ++i) {
            line->mlStationLine.append(new BusStationLine);
            line->mlStationLine.last()->busStationID = 3;
            line->mlStationLine.last()->mlPassengerArriving.append(new PassengerArriving(0, 1, 2, 3));
        }
        traffic.busLines.push_back(std::move(line));

        auto area = std::make_unique<ReduceSpeedArea>();
        area->name = QLatin1String(name);
        area->roadID = 5;
        area->mlSpeedInterval.append(new ReduceSpeedInterval{0, 0, 1, 2});
        area->mlSpeedVehiType.append(new ReduceSpeedVehiType{0, 1, 3, 4});
        traffic.speedAreas.push_back(std::move(area));

        auto point = std::make_unique<DecisionPoint>();
        point->deciPointName = QLatin1String(name);
        point->mpLink = from;
        point->mlRouting.append(new Routing);
        point->mlRouting.first()->mlLinkChain = {{from, to}};
        for (const long end : {300L, 600L}) {
            auto *interval = new RoutingFlowByInterval;
            interval->endDateTime = end;
            interval->mlFlowRatio.append(new RoutingFLowRatio);
            interval->mlFlowRatio.append(new RoutingFLowRatio);
            interval->mlFlowRatio.first()->routingID = 77; // another point's
            interval->mlFlowRatio.last()->startDateTime = 8;
            interval->mlFlowRatio.last()->ratio = 2;
            point->mlFlowByInterval.append(interval);
        }
        traffic.decisionPoints.push_back(std::move(point));

        auto departure = std::make_unique<DeparturePoint>();
        departure->linkID = 5;
        departure->mlInterval.append(DepartureInterval());
        traffic.departurePoints.push_back(std::move(departure));
    }
    auto station = std::make_unique<BusStation>(from);
    station->busStationID = 3;
    traffic.busStations.push_back(std::move(station));
    return contents;
}

/// What a save may change of a network's objects.
QStringList memoryOf(const NetContents &contents) {
    QStringList texts;
    const auto add = [&texts](const char *what, const QList<long> &ids, const QString &text = QString()) {
        texts.append(QLatin1String(what) + QLatin1Char(' ') + text);
        for (const long id : ids)
            texts.last() += QLatin1Char(' ') + QString::number(id);
    };
    for (const auto &link : contents.links) {
        add("link", {link->linkID, link->roadId});
        for (const Node *node : {link->mpStartNode, link->mpEndNode})
            add("node", {node->nodeID}, node->nodeName);
        for (const Vertex *vertex : qAsConst(link->mlVertex))
            add("vertex", {vertex->vertexID});
        for (const Lane *lane : qAsConst(link->mlLane))
            add("lane", {lane->laneID, lane->linkID});
    }
    for (const auto &arrow : contents.guideArrows)
        add("arrow", {arrow->guideArrowID, arrow->laneID});
    for (const auto &connector : contents.connectors) {
        add("connector", {connector->connID, connector->roadId});
        for (const LaneConnector *lanes : qAsConst(connector->mlLaneConnector))
            add("lanes", {lanes->laneConnId});
    }
    const TrafficObjects &traffic = contents.traffic;
    for (const auto &group : traffic.signalGroups)
        add("group", {group->signalGroupID, group->mlPhase.first()->signalPhaseID}, group->name);
    for (const auto &lamp : traffic.signalLamps)
        add("lamp", {lamp->signalLampID});
    for (const auto &line : traffic.busLines) {
        add("line", {line->busLineID}, line->name);
        for (const BusStationLine *stop : qAsConst(line->mlStationLine))
            add("stop", {stop->stationLineID, stop->busLineID,
                         stop->mlPassengerArriving.first()->passengerArrivingID});
    }
    for (const auto &area : traffic.speedAreas) {
        const ReduceSpeedInterval &interval = *area->mlSpeedInterval.first();
        add("area",
            {area->reduceSpeedAreaID, interval.intervalID, interval.reduceSpeedAreaID,
             area->mlSpeedVehiType.first()->reduceSpeedAreaID},
            area->name);
    }
    for (const auto &point : traffic.decisionPoints) {
        const Routing &route = *point->mlRouting.first();
        add("point", {point->deciPointID, route.routingID, route.mpDecisionPoint != nullptr},
            point->deciPointName);
        for (const RoutingFlowByInterval *interval : qAsConst(point->mlFlowByInterval)) {
            for (const RoutingFLowRatio *ratio : qAsConst(interval->mlFlowRatio))
                add("ratio", {ratio->routingFLowRatioID, ratio->routingID, ratio->startDateTime});
        }
    }
    for (const auto &point : traffic.departurePoints)
        add("departure", {point->departurePointID, point->mlInterval.first().departureIntervalD});
    return texts;
}

class WholeSaveTest : public StoreKindFixture {
protected:
    void prepare() override {
        DBTools::initDictionary(gDB, kNet, true);
        mTables = isPostgres() ? rows(QStringLiteral("select tablename from pg_tables where schemaname = "
                                                     "'public' order by tablename"))
                               : rows(QStringLiteral("select name from sqlite_master where type = 'table' "
                                                     "and name not like 'sqlite%' order by name"));
        mStored = everyRow();
        mContents = newNetwork();
        mMemory = memoryOf(*mContents);
    }

    QStringList everyRow() {
        QStringList all;
        for (const QString &table : qAsConst(mTables)) {
            QStringList content = rows(QStringLiteral("select * from ") + table);
            content.sort();
            all += table + QStringLiteral(": ") + content.join(QLatin1Char(';'));
        }
        return all;
    }

    void expectNothingChanged(const QString &when) {
        EXPECT_EQ(everyRow(), mStored) << qPrintable(when);
        EXPECT_EQ(memoryOf(*mContents), mMemory) << qPrintable(when);
    }

    /// Ways in which a save can have a transaction.
    enum Way { Own, None, Callers };

    /// Saves and expects that nothing comes of it.
    void expectNoSave(Way way, const QString &when, const NetProgress &progress = {}) {
        if (way == Callers) {
            ASSERT_TRUE(gDB.transaction());
            execute(QStringLiteral("update Net set backgroundUrl = 'kept'"));
        }
        EXPECT_FALSE(DBTools::saveNet(gDB, kNet, *mContents, way == Own, progress)) << qPrintable(when);
        if (way == Callers) {
            EXPECT_EQ(rows(QStringLiteral("select backgroundUrl from Net where NetId = 1")),
                      QStringList(QStringLiteral("kept")))
                << qPrintable(when);
            execute(QStringLiteral("update Net set backgroundUrl = ''"));
            ASSERT_TRUE(gDB.commit());
        }
        expectNothingChanged(when + QStringLiteral(", way ") + QString::number(way));
    }

    /// Puts an object in front of the others of its kind, so that the same ids go to others, and saves.
    void expectThatOthersCanBePutInFront() {
        TrafficObjects &traffic = mContents->traffic;
        auto line = std::make_unique<BusLine>();
        line->name = QStringLiteral("front");
        line->mlLink = {mContents->links[0].get()};
        traffic.busLines.insert(traffic.busLines.begin(), std::move(line));
        auto area = std::make_unique<ReduceSpeedArea>();
        area->name = QStringLiteral("front");
        area->roadID = 5;
        traffic.speedAreas.insert(traffic.speedAreas.begin(), std::move(area));
        auto point = std::make_unique<DecisionPoint>();
        point->deciPointName = QStringLiteral("front");
        point->mpLink = mContents->links[0].get();
        traffic.decisionPoints.insert(traffic.decisionPoints.begin(), std::move(point));
        clearFailures();
        ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *mContents, true)) << qPrintable(failures().value(0).error);
        EXPECT_EQ(failureCount(), 0);
        EXPECT_EQ(ownersOf("BusLine", "busLineID", "name", "BusStationLine"), "front 0, one 2, two 2");
        EXPECT_EQ(ownersOf("ReduceSpeedArea", "reduceSpeedAreaID", "name", "ReduceSpeedInterval"),
                  "front 0, one 1, two 1");
        EXPECT_EQ(ownersOf("ReduceSpeedArea", "reduceSpeedAreaID", "name", "ReduceSpeedVehiType"),
                  "front 0, one 1, two 1");
        EXPECT_EQ(ownersOf("DecisionPoint", "deciPointID", "deciPointName", "Routing"),
                  "front 0, one 1, two 1");
        EXPECT_EQ(rows(QStringLiteral("select startDateTime, endDateTime, ratio from RoutingFLowRatio "
                                      "order by routingID, endDateTime")),
                  QStringList({QStringLiteral("1|300|2"), QStringLiteral("301|600|2"),
                               QStringLiteral("1|300|2"), QStringLiteral("301|600|2")}));
        EXPECT_EQ(mContents->traffic.decisionPoints.back()->mlFlowByInterval.first()->mlFlowRatio.size(), 1)
            << "a kept save drops the ratios of other points' routes like a single insert";
    }

    /// The number of rows that belong to each owner.
    std::string ownersOf(const char *table, const char *id, const char *name, const char *children) {
        return rows(
                   QStringLiteral("select %1 || ' ' || (select count(*) from %2 where %2.%3 = %4.%3) from %4 "
                                  "order by %3")
                       .arg(QLatin1String(name), QLatin1String(children), QLatin1String(id),
                            QLatin1String(table)))
            .join(QStringLiteral(", "))
            .toStdString();
    }

    QStringList mTables;
    QStringList mStored;
    QStringList mMemory;
    std::unique_ptr<NetContents> mContents;
};

TEST_P(WholeSaveTest, OneThatIsCancelledAtAnyStepChangesNothing) {
    QStringList steps;
    ASSERT_TRUE(gDB.transaction());
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *newNetwork(), false, [&steps](const NetStep &step) {
        steps.append(QLatin1String(step.table));
        return true;
    }));
    ASSERT_TRUE(gDB.rollback());
    ASSERT_GT(steps.size(), 40);
    for (int last = 0; last < steps.size(); ++last) {
        int step = 0;
        expectNoSave(Way(last % 3), QStringLiteral("cancelled at step %1").arg(last),
                     [&](const NetStep &) { return step++ < last; });
        if (HasFailure())
            return;
    }
    EXPECT_EQ(failureCount(), 0);
    expectThatOthersCanBePutInFront();
}

TEST_P(WholeSaveTest, OneThatFailsAtAnyTableChangesNothing) {
    QStringList written;
    ASSERT_TRUE(gDB.transaction());
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, *newNetwork(), false, [&written](const NetStep &step) {
        if (!written.contains(QLatin1String(step.table)))
            written.append(QLatin1String(step.table));
        return true;
    }));
    ASSERT_TRUE(gDB.rollback());
    for (int i = 0; i < written.size() && !HasFailure(); ++i) {
        refuse(QStringLiteral("insert"), written.at(i));
        clearFailures();
        expectNoSave(Way(i % 3), QStringLiteral("refused by ") + written.at(i));
        EXPECT_EQ(failureCount(), 1) << qPrintable(written.at(i));
        letPass(written.at(i));
    }
    refuse(QStringLiteral("update"), QStringLiteral("LinkType"));
    expectNoSave(None, QStringLiteral("link types"));
    letPass(QStringLiteral("LinkType"));
    expectThatOthersCanBePutInFront();
}

/// Another program reads the file, or a check of the server waits for the end.
TEST_P(WholeSaveTest, OneWhoseEndIsRefusedChangesNothing) {
    const QString reader = QStringLiteral("reader");
    if (isPostgres())
        execute(QStringLiteral("create function late() returns trigger language plpgsql as "
                               "'begin raise exception ''refused''; end'"));
    for (const Way way : {Own, None}) {
        if (isPostgres()) {
            execute(QStringLiteral("create constraint trigger late after insert on Link deferrable initially "
                                   "deferred for each row execute function late()"));
        } else {
            execute(QStringLiteral("pragma busy_timeout = 0"));
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), reader);
            db.setDatabaseName(path());
            ASSERT_TRUE(db.open());
            QSqlQuery query(db);
            ASSERT_TRUE(query.exec(QStringLiteral("begin")) &&
                        query.exec(QStringLiteral("select count(*) from Link")) && query.next());
        }
        expectNoSave(way, QStringLiteral("the end is refused"));
        EXPECT_EQ(failureCount(), 1);
        if (isPostgres())
            execute(QStringLiteral("drop trigger late on Link"));
        QSqlDatabase::removeDatabase(reader);
        // A connection keeps the error of a commit, and is not used before it is opened again.
        reopen();
    }
    expectThatOthersCanBePutInFront();
}

TEST_P(WholeSaveTest, OneThatIsRefusedChangesNothing) {
    const auto link = sampleLink(1);
    ASSERT_TRUE(DBTools::insertLink(gDB, kNet, link.get(), true));
    mStored = everyRow();
    for (const Way way : {Own, None, Callers}) {
        clearFailures();
        expectNoSave(way, QStringLiteral("the network is there"));
        EXPECT_EQ(failureCount(), 1);
    }
}

TEST_P(WholeSaveTest, AStoreOfOneNetworkTakesThatNetworkAlone) {
    if (hasSeveralNets()) {
        ASSERT_TRUE(DBTools::saveNet(gDB, 5, *mContents, true));
        EXPECT_TRUE(DBTools::loadNet(gDB, 5, *mContents));
        return;
    }
    EXPECT_FALSE(DBTools::saveNet(gDB, 5, *mContents, true));
    expectNothingChanged(QStringLiteral("another id"));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_EQ(DBTools::mlCallDbResult.first().error,
              QStringLiteral("The store holds one network, whose id is 1: save under that id."));
    execute(QStringLiteral("delete from Net"));
    EXPECT_TRUE(DBTools::saveNet(gDB, 5, *mContents, true));
    EXPECT_TRUE(DBTools::loadNet(gDB, 5, *mContents));
}

TEST_P(WholeSaveTest, RestrictionsThatARemovalLeftDoNotComeBack) {
    NetContents &contents = *mContents;
    contents.links[0]->mlLane.first()->mlLimitVehicle = {{2, QString()}, {3, QString()}};
    contents.connectors[0]->connID = 8;
    contents.connectors[0]->mlLimitVehicle = {2};
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    ASSERT_TRUE(DBTools::removeNetData(gDB, kNet, true));
    DBTools::initDictionary(gDB, kNet, true);
    EXPECT_EQ(count(QStringLiteral("LaneLimitVehicle")), hasSeveralNets() ? 2 : 0);
    // The removal took the links along, and those of another network stay.
    if (hasSeveralNets()) {
        execute(QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) "
                               "values(2, 'b', 'x', 0, 0, 'F')"));
        execute(
            QStringLiteral("insert into LaneLimitVehicle(NetId, laneID, vehicleTypeCode) values(2, 51, 4)"));
    }
    contents.links[0]->mlLane.first()->mlLimitVehicle = {{3, QString()}};
    contents.connectors[0]->mlLimitVehicle.clear();
    ASSERT_TRUE(DBTools::saveNet(gDB, kNet, contents, true));
    QStringList left =
        rows(QStringLiteral("select laneID, vehicleTypeCode from LaneLimitVehicle order by 2"));
    EXPECT_EQ(left.value(0), QStringLiteral("51|3"));
    EXPECT_EQ(left.mid(1), hasSeveralNets() ? QStringList(QStringLiteral("51|4")) : QStringList());
    EXPECT_EQ(count(QStringLiteral("ConnectorLimitVehicle")), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, WholeSaveTest, testing::ValuesIn(kStoreKinds), storeKindName);

} // namespace
