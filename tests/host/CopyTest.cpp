#include "tests/host/Morastore.h"
#include "tests/support/PostgresDatabase.h"
#include "tools/rows/NetworkTables.h"

#include <algorithm>

using namespace moratools;

// Networks go from store to store, and what arrives is compared row by row and by digest.

namespace {

class Copy : public Morastore {
protected:
    void SetUp() override {
        if (PostgresDatabase::hasServer())
            qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    }

    /// The crossing with all its companions.
    QString crossing(const QString &name, const QStringList &options = {}) const {
        const QString folder = QFileInfo(kExample).path();
        QString store = newStore(name);
        importInto(store, options);
        return store;
    }

    static void importInto(const QString &store, const QStringList &options = {}) {
        const QString folder = QFileInfo(kExample).path();
        const Outcome imported =
            run(QStringList{QStringLiteral("import"), store, kExample, QStringLiteral("--additional"),
                            folder + QStringLiteral("/crossing.add.xml"), QStringLiteral("--routes"),
                            folder + QStringLiteral("/crossing.rou.xml"), QStringLiteral("--routes"),
                            folder + QStringLiteral("/turns.xml")} +
                options);
        ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    }

    static Outcome copy(const QString &source, const QString &target, const QStringList &options = {}) {
        return run(QStringList{QStringLiteral("copy"), source, target} + options);
    }

    /// The digest of the store's only network, or of a chosen one.
    static QString digest(const QString &store, const QString &net = QStringLiteral("1")) {
        const Outcome outcome = run({QStringLiteral("digest"), store, QStringLiteral("--net"), net});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_EQ(outcome.out.count(QLatin1Char('\n')), 1) << outcome.out.toStdString();
        return outcome.out.left(64);
    }

    static void change(const QString &store, const QStringList &statements) {
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("change"));
            db.setDatabaseName(store);
            ASSERT_TRUE(db.open());
            for (const QString &sql : statements) {
                QSqlQuery query(db);
                EXPECT_TRUE(query.exec(sql)) << sql.toStdString() << query.lastError().text().toStdString();
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("change"));
    }

    static QString value(const QString &store, const QString &sql) {
        return row(store, sql).first().toString();
    }
};

/// Rows that no import writes, in tables and columns that objects do not carry, and values at the edge.
const QStringList kAwkwardRows{
    QStringLiteral("update Net set caption = '标题 ''1''', backgroundUrl = '', centerX = 0.1 + 0.2"),
    QStringLiteral(
        "update Configuration set backgroundMap = x'00FF27005C', scale = 1e-300, sceneWidth = -0.0"),
    QStringLiteral(
        "insert into V2xConfig values(1, 7, 'range', 'line' || char(10) || 'break \\ tab' || char(9), '300')"),
    QStringLiteral(
        "insert into VehicleTraceOption values(1, 'T','F','F','F','F','F','F','F','F','F','F','F','F','F')"),
    QStringLiteral("insert into LaneLimitVehicle select 1, min(laneID), 1 from Lane"),
    QStringLiteral("insert into LinkFenceMiddle select 1, min(linkID), max(linkID) from Link"),
    QStringLiteral("insert into Passenger select 1, 5, min(stationLineID), 60 from BusStationLine"),
    QStringLiteral(
        "insert into SignalColor select NetId, signalPhaseID, 1, 'Grey', 4 from SignalColor limit 2"),
    QStringLiteral("insert into Logger(NetId, logID, appVersionName, appVersionDate, operation, operDate) "
                   "values(1, 3, 'v', '', 'saved \"x\"', '20260101000000')"),
    QStringLiteral("update Link set addValue = 1.7976931348623157e308, linkName = null, curvature = null "
                   "where linkID = (select min(linkID) from Link)"),
};

/// SQL for the place that the row a reference of `a` leads to has among the rows of its table.
QString rankOf(const Reference &reference, int net) {
    const auto rankIn = [net, &reference](const char *table) {
        return QStringLiteral("(select count(*) from %1 b where b.NetId = %3 and b.%2 <= a.%4 and exists "
                              "(select 1 from %1 c where c.NetId = %3 and c.%2 = a.%4))")
            .arg(QLatin1String(table), QLatin1String(networkTable(QLatin1String(table))->id),
                 QString::number(net), QLatin1String(reference.column));
    };
    if (reference.table)
        return rankIn(reference.table);
    QString isLink = QStringLiteral("1");
    if (reference.roadType)
        isLink = QStringLiteral("%1 like 'l%'").arg(QLatin1String(reference.roadType));
    for (const char *lane : reference.lanes)
        isLink += QStringLiteral(" and coalesce(%1, -1) < %2")
                      .arg(QLatin1String(lane), QString::number(reference.firstOfConnector));
    return QStringLiteral("case when %1 then %2 else 1000 + %3 end")
        .arg(isLink, rankIn("Link"), rankIn("Connector"));
}

TEST_F(Copy, ATextThatIsNoUtf8IsRefusedByName) {
    const QString store = newStore();
    importInto(store);
    // The character that stands for damage elsewhere is one like others.
    change(store, {QStringLiteral("update Link set linkName = 'a' || char(65533)")});
    const QString sound = digest(store);
    change(store, {QStringLiteral("update SignalGroup set name = cast(x'61C328' as text)")});
    const QString target = newStore(QStringLiteral("target.mora"));
    const QString sentence =
        QStringLiteral("the text in column name of table SignalGroup, row 1, is not UTF-8; write it anew");
    expectSentence(copy(store, target), sentence);
    EXPECT_EQ(counts(target), QList<int>({0, 0, 0, 0}));
    expectSentence(run({QStringLiteral("digest"), store, QStringLiteral("--net"), QStringLiteral("1")}),
                   sentence);
    // A file would lose a leading mark: the driver hands it texts in UTF-16.
    change(store, {QStringLiteral("update SignalGroup set name = cast(x'EFBBBF61' as text)")});
    expectSentence(copy(store, target),
                   QStringLiteral("column name of table SignalGroup cannot keep the value"));
    EXPECT_EQ(counts(target), QList<int>({0, 0, 0, 0}));
    const QString marked = digest(store);
    change(store, {QStringLiteral("update SignalGroup set name = 'a'")});
    EXPECT_NE(digest(store), sound);
    EXPECT_NE(digest(store), marked);
}

} // namespace

TEST_F(Copy, AnEqualDigestThroughTheServerAndBack) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "no PostgreSQL server";
    const QString first = crossing(QStringLiteral("first"));
    change(first, kAwkwardRows);
    const QByteArray before = read(first);
    const PostgresDatabase database;
    const QString server = database.connectionString();
    const QString last = newStore(QStringLiteral("last"));
    for (const auto &[from, to] : {std::pair(first, server), std::pair(server, last)}) {
        const Outcome outcome = copy(from, to);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_EQ(outcome.err, QString());
    }
    EXPECT_EQ(read(first), before);
    const QString expected = digest(first);
    EXPECT_EQ(digest(server), expected);
    EXPECT_EQ(digest(last), expected);
    const QString types = QStringLiteral("select typeof(centerLinePointsJson) || typeof(addValue) from Link");
    EXPECT_EQ(value(last, types), value(first, types));

    // What the digest must see, and what it must not.
    const struct {
        const char *sql;
        bool isSeen;
    } changes[] = {
        {"update Vertex set x = x + 1e-9 where vertexID = (select max(vertexID) from Vertex)", true},
        {"update Net set caption = '' ", true},
        {"update Net set backgroundUrl = null", true},
        {"delete from LaneLimitVehicle", true},
        {"update SignalColor set timeLength = 5 where color = 'Grey' and rowid % 2", true},
        {"update Net set isDefault = 'F'", false},
        {"update Link set addValue = 3.0 where addValue = 3", false},
    };
    for (const auto &entry : changes) {
        const QString changed = file(QStringLiteral("changed"));
        QFile::remove(changed);
        ASSERT_TRUE(QFile::copy(last, changed));
        change(changed, {QLatin1String(entry.sql)});
        EXPECT_EQ(digest(changed) != expected, entry.isSeen) << entry.sql;
    }
}

// Every reference of the copy leads to the row that stands where the one of the original led to.
TEST_F(Copy, IdentifiersThatCollideAreNewAndReferencesFollow) {
    const QString store = crossing(QStringLiteral("store"));
    change(store, kAwkwardRows);
    const QString expected = digest(store);
    const Outcome copied = copy(store, store, {QStringLiteral("--name"), QStringLiteral("second")});
    ASSERT_EQ(copied.exitCode, 0) << copied.err.toStdString();
    EXPECT_EQ(digest(store), expected);
    for (const NetworkTable &table : networkTables()) {
        const QString name = QLatin1String(table.name);
        if (table.id) {
            const QString shared = QStringLiteral("select count(*) - count(distinct %1) from %2")
                                       .arg(QLatin1String(table.id), name);
            EXPECT_EQ(value(store, shared), QStringLiteral("0")) << table.name;
        }
        QList<QString> ranks[2];
        for (int net = 1; net <= 2; ++net) {
            ranks[net - 1].append(value(
                store,
                QStringLiteral("select count(*) from %1 where NetId = %2").arg(name, QString::number(net))));
            for (const Reference &reference : table.references) {
                ranks[net - 1].append(value(
                    store, QStringLiteral("select group_concat(%1) from (select * from %2 where NetId = "
                                          "%3 order by rowid) a")
                               .arg(rankOf(reference, net), name, QString::number(net))));
            }
        }
        EXPECT_EQ(ranks[0], ranks[1]) << table.name;
    }
    for (const auto &[table, column] : {std::pair("Link", "linkID"), std::pair("LaneConnector", "laneConnId"),
                                        std::pair("VehicleConstitutent", "vehicleConsCode")})
        EXPECT_EQ(
            value(store, QStringLiteral("select (select ID from IDGenerater where NetId = 2 and TableName "
                                        "= '%1') >= (select max(%2) from %1 where NetId = 2)")
                             .arg(QLatin1String(table), QLatin1String(column))),
            QStringLiteral("1"))
            << table;
    // Without a collision nothing is renumbered, and the network's own number does not count.
    const QString other = newStore(QStringLiteral("other"));
    change(other, {QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) "
                                  "values(1, 'taken', 's', 0, 0, 'T')")});
    ASSERT_EQ(copy(store, other, {QStringLiteral("--net"), QStringLiteral("1")}).exitCode, 0);
    EXPECT_EQ(digest(other, QStringLiteral("2")), expected);
}

TEST_F(Copy, OlderStoresComeForwardInTheLanguageOfTheTarget) {
    const QString old = file(QStringLiteral("old.db"));
    ASSERT_EQ(
        run({QStringLiteral("new"), old, QStringLiteral("--template"), QStringLiteral("EmptyNet_V2.1.1")})
            .exitCode,
        0);
    importInto(old, {QStringLiteral("--lang"), QStringLiteral("zh")});
    change(old, {QStringLiteral("insert into RoadType values(1, 'x')"),
                 QStringLiteral("insert into PassengerArriving select * from BusStationPassengerArriving"),
                 QStringLiteral("delete from BusStationPassengerArriving"),
                 QStringLiteral("alter table Lane rename column SerialNumber to SerialNnumber"),
                 QStringLiteral("update Configuration set scale = null")});
    const QByteArray before = read(old);
    const QString target = crossing(QStringLiteral("target"));
    const Outcome outcome = copy(old, target, {QStringLiteral("--name"), QStringLiteral("old")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(outcome.err.startsWith(QLatin1String("left out: table RoadType: 1 rows\n")))
        << outcome.err.toStdString();
    EXPECT_EQ(read(old), before);
    // What was imported twice must be the same, but for what older stores have no place for or have more of.
    for (
        const char *sql :
        {"select group_concat(vehicleConsCode || IsDefault) from VehicleConstitutent where NetId = %1",
         "select group_concat(vehicleTypeName) from VehicleType where NetId = %1 and vehicleTypeCode <= 10",
         "select group_concat(serialNumber || actionType || expectTravelDirection) from Lane where NetId = %1",
         "select group_concat(linkName || linkType) from Link where NetId = %1",
         "select group_concat(color || timeLength) from SignalColor where NetId = %1",
         "select count(distinct laneConnId) from LaneConnector where NetId = %1",
         "select sum(passengerCount) from BusStationPassengerArriving where NetId = %1"}) {
        EXPECT_EQ(value(target, QString::fromLatin1(sql).arg(2)),
                  value(target, QString::fromLatin1(sql).arg(1)))
            << sql;
    }
    EXPECT_EQ(value(target, QStringLiteral("select scale from Configuration where NetId = 2")),
              QStringLiteral("1"));
}

TEST_F(Copy, AllOrNothing) {
    const QString store = crossing(QStringLiteral("store"));
    const QString old = file(QStringLiteral("old.db"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V2.00.00"), old));
    ASSERT_TRUE(QFile::setPermissions(old, QFile::ReadOwner | QFile::WriteOwner));
    expectRefusal([&] { return copy(store, old); }, QStringLiteral("that holds one network"));
    expectRefusal([&] { return copy(store, store); }, QStringLiteral("already; give another name"));
    expectRefusal(
        [&] {
            return copy(store, store, {QStringLiteral("--net"), QStringLiteral("9")});
        },
        QStringLiteral("has no network \"9\""));
    change(store,
           {QStringLiteral("update Lane set linkID = 999 where laneID = (select max(laneID) from Lane)"),
            QStringLiteral("update Net set caption = 'a' || char(0) || 'b'")});
    EXPECT_EQ(copy(store, newStore(QStringLiteral("b"))).exitCode, 0) << "SQLite keeps both";
    if (!PostgresDatabase::hasServer())
        return;
    const PostgresDatabase database;
    const QString server = database.connectionString();
    expectRefusal([&] { return copy(store, server); },
                  QStringLiteral("column caption of table net cannot keep"));
    change(store, {QStringLiteral("update Net set caption = null")});
    expectRefusal([&] { return copy(store, server); }, QStringLiteral("a row of table lane is refused"));
    expectRefusal([&] { return run({QStringLiteral("digest"), server}); }, QStringLiteral("has no network"));
}
