#include "model/NetContents.h"
#include "store/DBTools.h"
#include "tests/host/Morastore.h"
#include "tests/hostile/HostileFiles.h"
#include "tests/support/StoreFixture.h"
#include "tools/drawing/NetworkDrawing.h"
#include "tools/session/StoreAddress.h"

#include <QElapsedTimer>

using namespace moratools;

// What is said of rows that are damaged, and what must not come of them.

namespace {

std::string reportOf(const NetContents &network) {
    QStringList report;
    for (const SkippedRows &rows : network.skipped) {
        QStringList ids;
        for (const long id : rows.ids)
            ids.append(QString::number(id));
        const qint64 more = rows.count - ids.size();
        report.append(
            QStringLiteral("%1 (%2%3): %4")
                .arg(rows.table, ids.join(QLatin1Char(',')),
                     more > 0 ? QStringLiteral(" and %1 more").arg(QString::number(more)) : QString(),
                     rows.reason));
    }
    return report.join(QStringLiteral("; ")).toStdString();
}

QStringList withoutKeys(const QString &table) {
    return {QStringLiteral("create table open_%1 as select * from %1").arg(table),
            QStringLiteral("drop table %1").arg(table),
            QStringLiteral("alter table open_%1 rename to %1").arg(table)};
}

class DamageReports : public StoreKindFixture {
protected:
    void prepare() override {
        for (const int id : {5, 6, 7})
            addRow(QStringLiteral("Link"),
                   QStringLiteral("linkID, StartNodeID, EndNodeID, length, curvature"),
                   QStringLiteral("%1, 1, 2, 10, 0").arg(id));
    }
    void damage(const QStringList &statements) {
        for (const QString &sql : statements)
            execute(sql);
    }
    std::string report() {
        NetContents network;
        EXPECT_TRUE(DBTools::loadNet(gDB, kNet, network));
        mLinks.clear();
        for (const auto &link : network.links)
            mLinks.append(link->linkID);
        mLinkTypes.clear();
        for (const LinkType &type : qAsConst(network.linkTypes))
            mLinkTypes.append(type.linkTypeID);
        return reportOf(network);
    }

    QList<long> mLinks;
    QList<long> mLinkTypes;
};

TEST_P(DamageReports, RowsWithoutAnIdAreLeftOut) {
    damage(withoutKeys(QStringLiteral("Link")));
    execute(QStringLiteral("update Link set linkID = null where linkID in (5, 7)"));
    EXPECT_EQ(report(), "Link (0,0): has no id");
    EXPECT_EQ(mLinks, QList<long>{6});
}

TEST_P(DamageReports, RowsThatComeTwice) {
    damage(withoutKeys(QStringLiteral("Link")) + withoutKeys(QStringLiteral("LinkType")));
    execute(QStringLiteral("insert into Link select * from Link where linkID = 6"));
    for (int i = 0; i < 2; ++i)
        addRow(QStringLiteral("LinkType"),
               QStringLiteral("linkTypeID, typeName, trafficCapacity, trafficSpeed, limitSpeed, minSpeed"),
               QStringLiteral("99, 'type', 1, 2, 3, 4"));
    EXPECT_EQ(report(), "LinkType (99): is there more than once; Link (6): is there more than once");
    EXPECT_EQ(mLinks, (QList<long>{5, 6, 7}));
    EXPECT_EQ(mLinkTypes.count(99), 1);
}

TEST_P(DamageReports, OfTwelveRowsTenAreNamed) {
    for (int id = 11; id <= 22; ++id)
        addRow(QStringLiteral("Node"), QStringLiteral("nodeID, nodeName, vertexID"),
               QStringLiteral("%1, 'n', 1").arg(id));
    EXPECT_EQ(report(), "Node (11,12,13,14,15,16,17,18,19,20 and 2 more): belongs to no link");
}

TEST_P(DamageReports, IdsThatMemoryDoesNotHold) {
    execute(QStringLiteral("update Link set linkID = 4294967301 where linkID = 6"));
    EXPECT_EQ(report(), "Link (5): has an id of more than 32 bits and reads as one of 32");
}

TEST_P(DamageReports, WhatIsNoNumber) {
    execute(QStringLiteral("update Link set length = 'long' where linkID = 5"));
    execute(QStringLiteral("update Link set length = x'0102' where linkID = 6"));
    execute(QStringLiteral("update Link set length = 9e999 where linkID = 7"));
    // Nothing is no damage.
    execute(QStringLiteral("update Link set curvature = '', minSpeed = null"));
    EXPECT_EQ(report(), "Link (5,6,7): holds no finite number where one belongs and reads as 0 or infinite");
}

INSTANTIATE_TEST_SUITE_P(Stores, DamageReports, testing::ValuesIn(kFileKinds), storeKindName);

class DamagedDrawing : public Morastore {
protected:
    void SetUp() override {
        mStore = newStore();
        const QString folder = QFileInfo(kExample).path();
        ASSERT_EQ(run({QStringLiteral("import"), mStore, kExample, QStringLiteral("--additional"),
                       folder + QStringLiteral("/crossing.add.xml")})
                      .exitCode,
                  0);
    }
    Outcome draw() const { return run({QStringLiteral("draw"), mStore, file(QStringLiteral("p.svg"))}); }
    /// The picture is drawn and has numbers; what it lacks is said.
    void expectIncomplete(const QString &expected) const {
        const Outcome outcome = draw();
        EXPECT_EQ(outcome.exitCode, 3);
        EXPECT_TRUE(outcome.err.contains(expected)) << qPrintable(outcome.err);
        const QByteArray picture = read(file(QStringLiteral("p.svg")));
        EXPECT_TRUE(picture.contains("viewBox=\"0 0 2400 ")) << picture.left(400).constData();
        for (const char *none : {"nan", "inf,", "inf\""})
            EXPECT_FALSE(picture.contains(none)) << none;
    }

    QString mStore;
};

TEST_F(DamagedDrawing, NamesTheRoadsThatItLacks) {
    EXPECT_EQ(draw().exitCode, 0);
    const QString first = row(mStore, QStringLiteral("select min(linkID) from Link")).first().toString();
    alter(mStore, {QStringLiteral("update Lane set centerLinePointsJson = '{\"data\":[' where linkID = %1")
                       .arg(first)});
    expectIncomplete(QStringLiteral("left out: 1 links without a geometry on the plan: ") + first);
    EXPECT_TRUE(
        draw().err.contains(QLatin1String("rows of table Lane: each holds JSON that does not parse")));
}

TEST_F(DamagedDrawing, CallsNoStoreDamagedThatHasNoGeometry) {
    alter(mStore, {QStringLiteral("update Lane set centerLinePointsJson = null")});
    expectIncomplete(QStringLiteral("links without a geometry on the plan"));
    EXPECT_FALSE(draw().err.contains(QLatin1String("damaged"))) << draw().err.toStdString();
}

TEST_F(DamagedDrawing, TakesNoLongerForKindsThatAreAllDifferent) {
    NetworkObjects network;
    network.links.push_back(std::make_unique<Link>());
    for (int i = 0; i < 20000; ++i) {
        auto lane = std::make_unique<Lane>();
        lane->actionType = QStringLiteral("kind %1").arg(i);
        network.links.front()->mlLane.append(lane.release());
    }
    QElapsedTimer timer;
    timer.start();
    const NetworkDrawing drawing(network);
    EXPECT_LT(timer.elapsed(), 3000);
    EXPECT_EQ(drawing.leftOut().size(), 1);
    // The legend ends with the picture.
    alter(mStore,
          {QStringLiteral("insert into Lane(NetId, laneID, linkID, serialNumber, width, "
                          "expectTravelDirection, actionType) with recursive n(i) as (select 1 union "
                          "all select i + 1 from n limit 2000) select 1, 5000 + i, (select min(linkID) "
                          "from Link), i + 10, 3.5, '', 'kind ' || i from n")});
    EXPECT_EQ(draw().exitCode, 0) << draw().err.toStdString();
    EXPECT_LT(read(file(QStringLiteral("p.svg"))).count("<text"), 100);
}

TEST_F(DamagedDrawing, HasNumbersOnly) {
    const QString far =
        QStringLiteral("'{\"data\":[{\"x\":1e308,\"y\":0,\"z\":0},{\"x\":-1e308,\"y\":1,\"z\":0}]}'");
    alter(mStore, {QStringLiteral("update Lane set centerLinePointsJson = %1, leftBreakPointsJson = %1 where "
                                  "linkID = (select min(linkID) from Link)")
                       .arg(far),
                   QStringLiteral("update Link set rightBreakPointsJson = %1, length = 9e999 where linkID = "
                                  "(select max(linkID) from Link)")
                       .arg(far),
                   QStringLiteral("update SignalLamp set x = 9e999"),
                   QStringLiteral("update BusStation set length = -9e999")});
    // A lamp that is not on the plan is damage that a number shows.
    const Outcome outcome = draw();
    EXPECT_EQ(outcome.exitCode, 1);
    alter(mStore, {QStringLiteral("delete from SignalLamp")});
    expectIncomplete(QStringLiteral("left out: 1 links without a geometry on the plan"));
    EXPECT_TRUE(draw().err.contains(QLatin1String("bus stations without a place on the plan")));
}

TEST_F(DamagedDrawing, ShowsALinkOnceThatComesTwice) {
    alter(mStore, withoutKeys(QStringLiteral("Link")) +
                      QStringList(QStringLiteral("insert into Link select * from Link")));
    for (const char *kind : {"connectors", "busLines", "signalLamps", "links"}) {
        const Outcome outcome = run({QStringLiteral("show"), mStore, QLatin1String(kind)});
        EXPECT_EQ(outcome.exitCode, 0) << kind << qPrintable(outcome.err);
    }
}

TEST_F(DamagedDrawing, TakesLongPicturesAndNoLongNames) {
    const QString target = newStore(QStringLiteral("target.mora"));
    alter(mStore, {QStringLiteral("update Configuration set backgroundMap = zeroblob(70000000)")});
    for (const QStringList &command : {QStringList{QStringLiteral("digest"), mStore},
                                       QStringList{QStringLiteral("copy"), mStore, target}}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    }
    EXPECT_EQ(row(target, QStringLiteral("select length(backgroundMap) from Configuration")),
              QVariantList({70000000}));
    alter(mStore, {QStringLiteral("update Configuration set backgroundMap = null"),
                   QStringLiteral("update Link set LinkName = printf('%.*c', 5000000, 'x') where linkID = "
                                  "(select min(linkID) from Link)")});
    for (const QStringList &command :
         {QStringList{QStringLiteral("show"), mStore, QStringLiteral("links")},
          QStringList{QStringLiteral("draw"), mStore, file(QStringLiteral("p.svg"))},
          QStringList{QStringLiteral("digest"), mStore},
          QStringList{QStringLiteral("copy"), mStore, target, QStringLiteral("--name"), QStringLiteral("b")}})
        expectSentence(run(command), QStringLiteral("is longer than 1048576 characters"));
}

TEST_F(DamagedDrawing, ANetworkWhoseNameCannotBeReadIsNotInTheWayOfOthers) {
    int number = 0;
    for (const char *name : {"cast(x'c328' as text)", "printf('%.*c', 2000000, 'x')"}) {
        alter(mStore, {QStringLiteral("update Net set name = %1 where NetId = 1").arg(QLatin1String(name))});
        const QVariantList before = row(mStore, QStringLiteral("select hex(name) from Net where NetId = 1"));
        const QString other = QStringLiteral("b%1").arg(++number);
        EXPECT_EQ(run({QStringLiteral("import"), mStore, kExample, QStringLiteral("--name"), other}).exitCode,
                  0);
        EXPECT_EQ(run({QStringLiteral("digest"), mStore, QStringLiteral("--net"), other}).exitCode, 0);
        expectSentence(run({QStringLiteral("info"), mStore}),
                       QStringLiteral("the list of networks cannot be read"));
        EXPECT_EQ(row(mStore, QStringLiteral("select hex(name) from Net where NetId = 1")), before);
    }
}

TEST_F(DamagedDrawing, CopiesNoIdBeyondThoseThatAreRead) {
    const QString target = newStore(QStringLiteral("target.mora"));
    ASSERT_EQ(run({QStringLiteral("import"), target, kExample}).exitCode, 0);
    const QStringList copy{QStringLiteral("copy"), mStore, target, QStringLiteral("--name"),
                           QStringLiteral("again")};
    for (const char *largest : {"9223372036854775807", "2147483647"}) {
        alter(target, {QStringLiteral("update IDGenerater set ID = %1 where TableName = 'Link'")
                           .arg(QLatin1String(largest))});
        expectRefusal([&] { return run(copy); }, QStringLiteral("the identifiers of table Link are used up"));
    }
    alter(target, {QStringLiteral("update IDGenerater set ID = 99 where TableName = 'Link'"),
                   QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) "
                                  "values(9223372036854775807, 'last', '', 0, 0, 'F')")});
    expectRefusal([&] { return run(copy); }, QStringLiteral("the identifiers of table Net are used up"));
}

TEST_F(Morastore, ALineBreakAtItsEndBelongsToAnAddress) {
    const StoreAddress address(QStringLiteral("dbname='city\n' host='h'"));
    EXPECT_EQ(address.name(), QStringLiteral("dbname='city\n' host=h"));
    EXPECT_EQ(StoreAddress(address.name()).value("dbname"), QStringLiteral("city\n"));
}

} // namespace
