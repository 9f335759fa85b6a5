#include "tools/kinds/StoreInfo.h"
#include "tests/support/StatementTrace.h"
#include "tests/support/StoreFixture.h"
#include "tools/session/StoreSession.h"

using namespace moratools;

namespace {

class StoreInfoTest : public StoreFixture {
protected:
    /// Networks with as many vertices as their number says, and a link of that many metres for every second one.
    void addNetworks(int first, int last) {
        ASSERT_TRUE(gDB.transaction());
        for (int id = first; id <= last; ++id) {
            const auto add = [&](const char *sql) { execute(QString::fromLatin1(sql).arg(id)); };
            add("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) values(%1, 'n%1', 's', 0, 0, 'F')");
            for (int i = 1; i <= id; ++i)
                execute(
                    QStringLiteral("insert into Vertex(NetId, VertexID, X, Y, Z) values(%1, %2, %2, -%2, %1)")
                        .arg(QString::number(id), QString::number(i)));
            if (id % 2 != 0)
                continue;
            for (const char *node : {"1", "2"})
                execute(QStringLiteral(
                            "insert into Node(NetId, nodeID, nodeName, vertexID) values(%1, %2, '', 1)")
                            .arg(QString::number(id), QLatin1String(node)));
            add("insert into Link(NetId, linkID, StartNodeID, EndNodeID, length) values(%1, 1, 1, 2, %1.5)");
        }
        ASSERT_TRUE(gDB.commit());
    }
    static qint64 rowsOf(const NetworkInfo &network, const char *kind) {
        for (const auto &each : network.rows) {
            if (each.first == QLatin1String(kind))
                return each.second;
        }
        return -1;
    }
};

} // namespace

TEST_F(StoreInfoTest, AsksAStatementATableHoweverManyNetworks) {
    openTemplate("EmptyNet_V6.0.0");
    execute(QStringLiteral("delete from Net"));
    const StoreSession store = StoreSession::ofProcess({});
    const auto asked = [&](std::optional<long> net, StoreInfo &info) {
        const StatementTrace trace(gDB);
        info = takeStock(store, path(), net);
        return trace.statements();
    };
    addNetworks(2, 4);
    execute(QStringLiteral("insert into Vertex(NetId, VertexID, X, Y, Z) values(77, 1, 0, 0, 0)"));
    StoreInfo info;
    const int few = int(asked({}, info).size());
    ASSERT_EQ(info.networks.size(), 3);
    const NetworkInfo &fourth = info.networks[2];
    EXPECT_EQ(fourth.name, QStringLiteral("n4"));
    EXPECT_EQ(rowsOf(fourth, "vertices"), 4);
    EXPECT_EQ(rowsOf(fourth, "links"), 1);
    EXPECT_EQ(rowsOf(info.networks[1], "links"), 0) << "the table is there";
    EXPECT_EQ(fourth.linkLength, 4.5);
    EXPECT_TRUE(fourth.hasExtent);
    EXPECT_EQ(fourth.low[1], -4);
    EXPECT_EQ(fourth.high[0], 4);
    EXPECT_EQ(fourth.high[2], 4);
    EXPECT_EQ(info.networks[1].linkLength, 0);

    addNetworks(5, 40);
    EXPECT_EQ(int(asked({}, info).size()), few);
    EXPECT_EQ(info.networks.size(), 39);
    const QStringList alone = asked(4, info);
    EXPECT_EQ(info.networkCount, 39);
    ASSERT_EQ(info.networks.size(), 1);
    EXPECT_EQ(rowsOf(info.networks[0], "vertices"), 4);
    for (const QString &sql : alone)
        EXPECT_TRUE(!sql.contains(QLatin1String("count(*) from Vertex")) ||
                    sql.contains(QLatin1String("where NetId = 4")))
            << sql.toStdString();
    EXPECT_EQ(alone.filter(QStringLiteral("where NetId = 4")).size(), few - 3)
        << "all but the version, the counters' table and the list of networks";
}
