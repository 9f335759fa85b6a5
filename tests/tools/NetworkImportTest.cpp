#include "tools/sumo/import/NetworkImport.h"
#include "model/GeometryJson.h"
#include "tests/support/Places.h"
#include "tests/support/Reads.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
#include "tools/reports/Failure.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkBuilder.h"
#include "tools/sumo/reader/NetReader.h"

#include <QSqlQuery>

using namespace moratools;

namespace {

SumoNet exampleNet() {
    return readSumoNet(sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml"));
}

SumoLane lane(int index, double width, const GeometryLine &shape) {
    SumoLane result;
    result.id = QStringLiteral("e_%1").arg(index);
    result.index = index;
    result.speed = 10;
    result.length = 12.5;
    result.width = width;
    result.shape = shape;
    return result;
}

/// Two edges, the second entered from either lane of the first; lane 0 lies at y = 0, lane 1 at y = 3.
SumoNet twoEdges(bool leftHand) {
    SumoNet net;
    net.leftHand = leftHand;
    SumoEdge a;
    a.id = QStringLiteral("a");
    a.from = QStringLiteral("j1");
    a.to = QStringLiteral("j2");
    a.lanes = {lane(0, 2, {{0, 0, 1}, {10, 0, 2}}), lane(1, 4, {{0, 3, 1}, {10, 3, 2}})};
    SumoEdge b = a;
    b.id = QStringLiteral("b");
    b.lanes = {lane(0, 2, {{20, 0, 2}, {30, 0, 2}})};
    net.edges = {a, b};
    net.edgeIndex = {{a.id, 0}, {b.id, 1}};
    for (int from : {1, 0}) {
        SumoConnection connection;
        connection.from = a.id;
        connection.to = b.id;
        connection.fromLane = from;
        net.connections.push_back(connection);
    }
    return net;
}

class NetworkImport : public StoreFixture {
protected:
    NetworkObjects import(const SumoNet &net, const QString &name) {
        return importNetwork(StoreSession::ofProcess({}), net, planCompanions(net, {}), name);
    }

    NetworkObjects readBack(long netId) {
        reopen();
        gNet.loadRecord(NetRecord());
        return readNetwork(StoreSession::ofProcess({}), netId);
    }

    QStringList contents(long netId) {
        QStringList all;
        for (const char *table :
             {"Link", "Lane", "Node", "Vertex", "LinkVertex", "Connector", "LaneConnector"})
            all += rows(QStringLiteral("select * from %1 where NetId = %2")
                            .arg(QLatin1String(table), QString::number(netId)));
        return all;
    }
};

using BuiltNetwork = NetworkImport;

} // namespace

TEST_F(BuiltNetwork, LanesAreNumberedFromTheRightWhicheverSideTrafficKeepsTo) {
    openTemplate("EmptyNet_V6.0.0");
    for (const bool leftHand : {false, true}) {
        const SumoNet net = twoEdges(leftHand);
        const StoreSession store = StoreSession::ofProcess({});
        IdSource ids(store);
        NetworkBuilder builder(net, ids, true);
        const auto links = builder.buildLinks();
        const auto connectors = builder.buildConnectors(links);
        const Link &a = *links[0];
        // In a left-hand network this edge is not drawn as it should be, but the kerb lane is still the
        // leftmost.
        const Lane &kerb = *a.mlLane.at(leftHand ? 1 : 0);
        EXPECT_EQ(kerb.width, 2);
        EXPECT_EQ(a.mlLane.at(0)->serialNumber, 1);
        EXPECT_EQ(a.mlLane.at(1)->serialNumber, 2);
        EXPECT_EQ(a.rightBreakPointsJson, a.mlLane.at(0)->rightBreakPointsJson);
        EXPECT_EQ(a.leftBreakPointsJson, a.mlLane.at(1)->leftBreakPointsJson);
        ASSERT_EQ(connectors.size(), 1u);
        ASSERT_EQ(connectors[0]->mlLaneConnector.size(), 2);
        EXPECT_EQ(connectors[0]->mlLaneConnector.at(1)->mpStartLane, &kerb);
    }
}

TEST_F(BuiltNetwork, CentreLineOfLanesWithDifferentPointsIsTheMiddleLanesMoved) {
    SumoEdge edge;
    edge.lanes = {lane(0, 2, {{0, 0, 0}, {10, 0, 0}}), lane(1, 4, {{0, 3, 0}, {5, 3, 0}, {10, 3, 0}})};
    EXPECT_EQ(carriagewayCentre(edge, false), (GeometryLine{{0, 2, 0}, {5, 2, 0}, {10, 2, 0}}));
}

TEST_F(NetworkImport, EveryGenerationGivesBackWhatItKeeps) {
    for (const char *name :
         {"EmptyNet_V6.0.0", "EmptyNet_V3.0.0", "EmptyNet_V2.01.00", "EmptyNet_V2.00.00"}) {
        SCOPED_TRACE(name);
        openTemplate(name);
        execute(QStringLiteral("delete from Net"));
        const NetworkObjects written = import(exampleNet(), QStringLiteral("例 '%1'"));
        const NetworkObjects read = readBack(written.record.netId);
        ASSERT_NE(written.links.front().get(), read.links.front().get());
        const bool keepsCurves = !QByteArray(name).startsWith("EmptyNet_V2");
        const Comparison comparison = compareNetworks(written, read, keepsCurves);
        EXPECT_TRUE(comparison.isEqual()) << comparison.first.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(written.links.size(), 13u);
        EXPECT_EQ(written.connectors.size(), 19u);
        EXPECT_GT(comparison.coordinates, 1000);
        EXPECT_EQ(failureCount(), 0);
    }
}

TEST_F(NetworkImport, ASecondNetworkLeavesTheFirstAlone) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral("delete from Net"));
    const NetworkObjects first = import(exampleNet(), QStringLiteral("first"));
    const QStringList before = contents(first.record.netId);
    const NetworkObjects second = import(twoEdges(false), QStringLiteral("second"));
    EXPECT_EQ(contents(first.record.netId), before);
    EXPECT_EQ(second.record.netId, first.record.netId + 1);
    EXPECT_TRUE(first.record.isDefault);
    EXPECT_FALSE(second.record.isDefault);
    // What is drawn for the first network afterwards is not in use there.
    reopen();
    gNet.loadRecord(first.record);
    for (const char *table : {"Link", "Lane", "Node", "Vertex", "Connector", "LaneConnector"}) {
        long id = 0;
        ASSERT_TRUE(DBTools::getIDByTableName(gDB, QLatin1String(table), id));
        const QString column = qstrcmp(table, "LaneConnector") == 0
                                   ? QStringLiteral("laneConnId")
                                   : DBTools::getIDName(QLatin1String(table));
        EXPECT_EQ(rows(QStringLiteral("select count(*) from %1 where %2 >= %3")
                           .arg(QLatin1String(table), column, QString::number(id))),
                  QStringList(QStringLiteral("0")))
            << table;
    }
}

TEST_F(NetworkImport, PassesHighIdentifiersOfOtherNetworksAtOnceAndRefusesToGoBeyondTheEnd) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral("delete from Net"));
    import(exampleNet(), QStringLiteral("first"));
    execute(
        QStringLiteral("update Lane set laneID = 2000000000 where laneID = (select max(laneID) from Lane)"));
    const long second = import(twoEdges(false), QStringLiteral("second")).record.netId;
    EXPECT_EQ(rows(QStringLiteral("select min(laneID), max(laneID) from Lane where NetId = %1").arg(second)),
              QStringList(QStringLiteral("2000000001|2000000003")));

    execute(QStringLiteral("update Lane set laneID = 8589934592 where laneID = 2000000000"));
    const QStringList before = rows(QStringLiteral("select * from IDGenerater")) + contents(second + 1);
    try {
        import(twoEdges(false), QStringLiteral("third"));
        FAIL() << "the import went through";
    } catch (const Failure &failure) {
        EXPECT_TRUE(failure.message().startsWith(
            QLatin1String("table Lane of the store has the identifier 8589934592, ")))
            << failure.what();
    }
    EXPECT_EQ(rows(QStringLiteral("select * from IDGenerater")) + contents(second + 1), before);
}

TEST_F(NetworkImport, IdentifiersThatCannotBeAskedForAreNotTakenForFree) {
    openTemplate("EmptyNet_V6.0.0");
    const Reads reads("Lane");
    try {
        import(twoEdges(false), QStringLiteral("n"));
        FAIL() << "the import went through";
    } catch (const Failure &failure) {
        EXPECT_TRUE(failure.message().startsWith(QLatin1String("Lane cannot be read ("))) << failure.what();
    }
}

TEST_F(NetworkImport, ARefusedRowLeavesTheStoreAsItWas) {
    openTemplate("EmptyNet_V6.0.0");
    execute(
        QStringLiteral("create trigger t before insert on Connector when new.ConnName = 'quay_east->none' or "
                       "(select count(*) from Connector) = 10 begin select raise(abort, 'no more'); end"));
    const QStringList before = contents(1) + rows(QStringLiteral("select * from IDGenerater")) +
                               rows(QStringLiteral("select * from Net"));
    try {
        import(exampleNet(), QStringLiteral("n"));
        FAIL() << "the import went through";
    } catch (const Failure &failure) {
        EXPECT_TRUE(failure.message().contains(QLatin1String("no more"))) << failure.what();
    }
    EXPECT_EQ(contents(1) + rows(QStringLiteral("select * from IDGenerater")) +
                  rows(QStringLiteral("select * from Net")),
              before);
}

TEST_F(NetworkImport, ChangesThatOutgrowTheCacheWaitInTheFileAndGoWithTheTransaction) {
    openTemplate("EmptyNet_V6.0.0");
    const qint64 size = QFileInfo(gDB.databaseName()).size();
    const QString add =
        QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault, "
                       "otherAttrsJson) values(%1, 'n%1', '', 0, 0, 'F', zeroblob(4000000))");
    {
        const StoreSession store = StoreSession::ofProcess({});
        GuardedTransaction transaction(store);
        for (int id = 100; id < 140; ++id)
            execute(add.arg(id));
        EXPECT_GT(QFileInfo(gDB.databaseName()).size(), size + 40'000'000);
    }
    const QString added = QStringLiteral("select NetId from Net where NetId >= 100");
    EXPECT_EQ(rows(added), QStringList());
    EXPECT_EQ(QFileInfo(gDB.databaseName()).size(), size);
    const StoreSession store = StoreSession::ofProcess({});
    GuardedTransaction transaction(store);
    execute(add.arg(100));
    transaction.commit();
    EXPECT_EQ(rows(added), QStringList(QStringLiteral("100")));
}

TEST_F(NetworkImport, NothingIsKeptOfATransactionThatTheEngineEnded) {
    openTemplate("EmptyNet_V6.0.0");
    {
        const StoreSession store = StoreSession::ofProcess({});
        GuardedTransaction transaction(store);
        execute(QStringLiteral("insert into Vertex(NetId, VertexID, X, Y, Z) values(9, 1, 0, 0, 0)"));
        // What SQLite does by itself when the disk is full.
        execute(QStringLiteral("rollback"));
        QSqlQuery next(gDB);
        EXPECT_FALSE(
            next.exec(QStringLiteral("insert into Vertex(NetId, VertexID, X, Y, Z) values(9, 2, 0, 0, 0)")));
        next.finish();
        EXPECT_THROW(transaction.commit(), Failure);
    }
    EXPECT_EQ(rows(QStringLiteral("select count(*) from Vertex where NetId = 9")),
              QStringList(QStringLiteral("0")));
    const StoreSession store = StoreSession::ofProcess({});
    GuardedTransaction transaction(store);
    execute(QStringLiteral("insert into Vertex(NetId, VertexID, X, Y, Z) values(9, 3, 0, 0, 0)"));
    transaction.commit();
    EXPECT_EQ(rows(QStringLiteral("select VertexID from Vertex where NetId = 9")),
              QStringList(QStringLiteral("3")));
}
