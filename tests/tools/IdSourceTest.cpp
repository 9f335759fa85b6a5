#include "tools/sumo/import/IdSource.h"
#include "tests/support/Places.h"
#include "tests/support/ServerTrace.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"
#include "tools/kinds/Comparison.h"
#include "tools/reports/Failure.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkImport.h"
#include "tools/sumo/reader/NetReader.h"

#include <QSqlQuery>
#include <QVariant>

using namespace moratools;

namespace {

/// @p count roads from one end to the next, with as many connectors between them and twice as many vertices.
SumoNet chain(int count) {
    SumoNet net;
    for (int i = 0; i < count; ++i) {
        SumoLane lane;
        lane.speed = 10;
        lane.length = 10;
        lane.width = 3;
        lane.shape = {{20.0 * i, 0, 0}, {20.0 * i + 10, 0, 0}};
        SumoEdge edge;
        edge.id = QStringLiteral("e%1").arg(i);
        lane.id = edge.id + QStringLiteral("_0");
        edge.from = QStringLiteral("j%1").arg(i);
        edge.to = QStringLiteral("j%1").arg(i + 1);
        edge.lanes = {lane};
        net.edgeIndex.insert(edge.id, i);
        net.edges.push_back(edge);
        if (i == 0)
            continue;
        SumoConnection connection;
        connection.from = QStringLiteral("e%1").arg(i - 1);
        connection.to = edge.id;
        net.connections.push_back(connection);
    }
    return net;
}

class IdSourceTest : public StoreFixture {
protected:
    NetworkObjects import(const SumoNet &net, const char *name, const Progress &progress = {}) {
        return importNetwork(StoreSession::ofProcess({}), net, planCompanions(net, {}), QLatin1String(name),
                             progress);
    }
    static int naming(const QStringList &statements, const QString &text) {
        return int(statements.filter(text, Qt::CaseInsensitive).size());
    }
    /// The values that another connection draws from a sequence.
    static void drawElsewhere(const QString &sequence, int count) {
        {
            QSqlDatabase other = QSqlDatabase::cloneDatabase(gDB, QStringLiteral("elsewhere"));
            ASSERT_TRUE(other.open());
            ASSERT_TRUE(
                QSqlQuery(other).exec(QStringLiteral("select nextval('%1') from generate_series(1, %2)")
                                          .arg(sequence, QString::number(count))));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("elsewhere"));
    }
};

} // namespace

TEST_F(IdSourceTest, AFileIsAskedTheSameWhateverTheSizeOfTheNetworkAndTheIdentifiersOfOthers) {
    openTemplate("EmptyNet_V6.0.0");
    const auto asked = [&](int roads, const char *name) {
        const StatementTrace trace(gDB);
        import(chain(roads), name);
        return naming(trace.statements(), QStringLiteral("IDGenerater"));
    };
    const int few = asked(3, "few");
    execute(QStringLiteral("insert into Vertex select NetId, 40000000, X, Y, Z from Vertex limit 1"));
    EXPECT_EQ(asked(700, "many"), few);
    EXPECT_EQ(
        rows(QStringLiteral("select min(vertexID), max(vertexID), count(*) from Vertex where NetId = 3")),
        QStringList(QStringLiteral("40000001|40001400|1400")));
    EXPECT_EQ(rows(QStringLiteral("select ID from IDGenerater where NetId = 3 and TableName = 'Vertex'")),
              QStringList(QStringLiteral("40001400")))
        << "nothing is drawn and thrown away";
}

TEST_F(IdSourceTest, AFileOfAnEarlierReleaseIsLookedThroughNetworkByNetwork) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral("drop index IX_VERTEX_LARGEST"));
    import(chain(3), "first");
    import(chain(3), "second");
    execute(QStringLiteral(
        "insert into Vertex select NetId, 40000000, X, Y, Z from Vertex where NetId = 3 limit 1"));
    import(chain(3), "third");
    EXPECT_EQ(rows(QStringLiteral("select min(vertexID), max(vertexID) from Vertex where NetId = 4")),
              QStringList(QStringLiteral("40000001|40000006")));
}

TEST_F(IdSourceTest, CountersOfOtherNetworksThatAreBehindMoveFurtherThanTheyMust) {
    openTemplate("EmptyNet_V6.0.0");
    const QString counters =
        QStringLiteral("select NetId, ID from IDGenerater where TableName = 'Vertex' order by NetId");
    import(chain(3), "first");
    import(chain(3), "second");
    EXPECT_EQ(rows(counters), QStringList({QStringLiteral("2|10012"), QStringLiteral("3|12")}));
    import(chain(3), "third");
    EXPECT_EQ(rows(counters),
              QStringList({QStringLiteral("2|10012"), QStringLiteral("3|10018"), QStringLiteral("4|18")}));
}

TEST_F(IdSourceTest, AServerIsAskedTheSameWhateverTheSizeOfTheNetwork) {
    openPostgres();
    if (IsSkipped() || HasFatalFailure())
        return;
    const auto asked = [&](int roads, const char *name) {
        const ServerTrace trace(gDB);
        import(chain(roads), name);
        return trace.statements();
    };
    const int first = int(asked(3, "first").size());
    const QStringList few = asked(3, "few");
    const QStringList many = asked(700, "many");
    EXPECT_LE(few.size(), first);
    EXPECT_GT(few.size(), 50);
    EXPECT_EQ(many.size(), few.size());
    EXPECT_EQ(naming(many, QStringLiteral("nextval('\"seq_vertex_id")), 1);
    EXPECT_EQ(naming(many, QStringLiteral("relkind = 'S'")), 0) << "the sequences are known by now";
    EXPECT_EQ(naming(many, QStringLiteral("savepoint row")), 0) << "what fails ends the whole";
}

TEST_F(IdSourceTest, WhatOthersDrawMeanwhileIsTheirs) {
    openPostgres();
    if (IsSkipped() || HasFatalFailure())
        return;
    const StoreSession store = StoreSession::ofProcess({});
    gNet.netId = 1;
    IdSource ids(store);
    EXPECT_EQ(ids.next("Link"), 1);
    EXPECT_EQ(ids.next("Link"), 2);
    EXPECT_EQ(ids.next("Lane"), 1);
    drawElsewhere(QStringLiteral("seq_link_id"), 3);
    EXPECT_FALSE(ids.draw());
    EXPECT_EQ(ids.next("Link"), 4);
    EXPECT_EQ(ids.next("Link"), 5);
    EXPECT_EQ(ids.next("Lane"), 1);
    EXPECT_TRUE(ids.draw());
    EXPECT_EQ(rows(QStringLiteral("select nextval('seq_link_id'), nextval('seq_lane_id')")),
              QStringList(QStringLiteral("6|2")));

    // In the middle of an import, after the links have their identifiers.
    bool isDrawn = false;
    const NetworkObjects written = import(chain(5), "n", [&](double) {
        if (!isDrawn)
            drawElsewhere(QStringLiteral("seq_vertex_id"), 4);
        isDrawn = true;
    });
    EXPECT_TRUE(isDrawn);
    EXPECT_EQ(rows(QStringLiteral("select min(vertexID), max(vertexID), count(*) from Vertex")),
              QStringList(QStringLiteral("5|14|10")));
    reopen();
    gNet.loadRecord(NetRecord());
    const NetworkObjects read = readNetwork(StoreSession::ofProcess({}), written.record.netId);
    EXPECT_TRUE(compareNetworks(written, read, true).isEqual());
}

TEST_F(IdSourceTest, OnAServerAFailureEndsTheWhole) {
    openPostgres();
    if (IsSkipped() || HasFatalFailure())
        return;
    refuse(QStringLiteral("insert"), QStringLiteral("LinkType"));
    EXPECT_THROW(import(chain(2), "n"), Failure);
    letPass(QStringLiteral("LinkType"));
    EXPECT_EQ(rows(QStringLiteral("select count(*) from Net where name = 'n'")),
              QStringList(QStringLiteral("0")));
    // The connection serves on, with a savepoint around each statement again.
    EXPECT_TRUE(gDB.transaction());
    EXPECT_FALSE(DBTools_V6::insertNet(gDB, 1, QStringLiteral("n"), {}, {}, {}, {}, false, false));
    EXPECT_FALSE(DBTools::selectNets(gDB).isEmpty());
    {
        const ServerTrace trace(gDB);
        DBTools::selectNetRecords(gDB);
        EXPECT_GE(naming(trace.statements(), QStringLiteral("savepoint row")), 2);
    }
    EXPECT_TRUE(gDB.rollback());
}
