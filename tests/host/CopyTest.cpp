#include "tests/host/Beside.h"
#include "tests/host/Morastore.h"
#include "tests/support/PostgresDatabase.h"

#include <QRegularExpression>
#include <QSet>

#include <tuple>

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
    static QString digest(const QString &store, const QString &net = QStringLiteral("1"),
                          const QStringList &options = {}) {
        const Outcome outcome =
            run(QStringList{QStringLiteral("digest"), store, QStringLiteral("--net"), net} + options);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_EQ(outcome.out.count(QLatin1Char('\n')), 1) << outcome.out.toStdString();
        return outcome.out.left(64);
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

/// One more row of a table, like its first one but for the changes.
QStringList another(const char *table, const char *changes) {
    return {QStringLiteral("create temp table more as select * from %1 limit 1").arg(QLatin1String(table)),
            QStringLiteral("update more set %1").arg(QLatin1String(changes)),
            QStringLiteral("insert into %1 select * from more").arg(QLatin1String(table)),
            QStringLiteral("drop table more")};
}

/// Rows of all tables with references that the crossing leaves empty, and roads that are connectors: there are a
/// link 5 and a connector 5.
QStringList rowsWithReferences() {
    QStringList statements{
        QStringLiteral("insert into RoutingLaneConnector select 1, (select min(routingID) from Routing), "
                       "connID, startLaneID, endLaneID from LaneConnector order by laneConnId limit 5"),
        QStringLiteral("insert into GuideArrow select 1, 4, max(laneID), 1, 2, 3 from Lane"),
        // One that leads nowhere does not come to lead somewhere.
        QStringLiteral("insert into GuideArrow select 1, 5, max(laneID) + 1, 1, 2, 3 from Lane"),
        QStringLiteral("insert into LinkLimitVehicle select 1, max(linkID), 2 from Link"),
        QStringLiteral("insert into ConnectorLimitVehicle select 1, max(connID), 2 from Connector"),
        QStringLiteral("insert into VehicleDetector values(1, 3, 1, 'd', 1, 5, 'L', 1, null, 2, 3, 't', 9), "
                       "(1, 4, 1, 'e', 1, 5, 'C', 1, 0, 2, 3, 't', 9), "
                       "(1, 5, 1, 'f', 1, 7, 'C', 1, -1, 2, 3, 't', 9)"),
        QStringLiteral("insert into DetectorVehiType values(1, 4, 2)"),
    };
    return statements + another("VehicleQueueCounter", "QueueCounterID = 77, roadID = 5, toLaneNumber = 0") +
           another("VehicleQueueCounter", "QueueCounterID = 78, roadID = 5, toLaneNumber = 1") +
           another("VehicleDrivInfoCollecter", "collecterID = 78, roadID = 5, toLaneNumber = 1") +
           another("VehicleTravelDetector", "detectorId = 77, startRoadId = 5, start_laneNumber = 1, "
                                            "teminalRoadId = 6, teminal_toLaneNumber = 2") +
           another("ReduceSpeedArea", "reduceSpeedAreaID = 78, roadID = 5, toLaneNumber = 1") +
           another("AccidentZone", "accidentZoneId = 78, roadId = 5, roadType = 'C'") +
           another("RoadWorkZone", "roadWorkZoneId = 78, roadID = 5, roadType = 'C'");
}

/// A column with identifiers of another table's rows, in the rows for which a condition holds.
struct Key {
    QString table, column, target, id, condition;
};

/// What the schema does not declare: roads, and what refers to catalogues or to the own table.
QList<Key> undeclaredKeys() {
    QList<Key> keys;
    for (const auto &[table, column, target, id] : {std::tuple("Link", "roadid", "Link", "linkID"),
                                                    std::tuple("Connector", "roadId", "Connector", "connID"),
                                                    std::tuple("SignalLamp", "toLaneID", "Lane", "laneID"),
                                                    std::tuple("BusLineRoad", "roadID", "Link", "linkID")})
        keys.append({table, column, target, id, QStringLiteral("1")});
    for (const auto &[table, column, isOnConnector] :
         {std::tuple("VehicleDetector", "roadId", "coalesce(toLaneNumber, -1) >= 0"),
          std::tuple("VehicleQueueCounter", "roadID", "toLaneNumber >= 1"),
          std::tuple("VehicleDrivInfoCollecter", "roadID", "toLaneNumber >= 1"),
          std::tuple("VehicleTravelDetector", "startRoadId",
                     "max(start_laneNumber, start_toLaneNumber) >= 1"),
          std::tuple("VehicleTravelDetector", "teminalRoadId",
                     "max(teminal_laneNumber, teminal_toLaneNumber) >= 1"),
          std::tuple("ReduceSpeedArea", "roadID", "toLaneNumber >= 1"),
          std::tuple("AccidentZone", "roadId", "roadType not like 'l%'"),
          std::tuple("RoadWorkZone", "roadID", "roadType not like 'l%'")}) {
        keys.append({table, column, "Link", "linkID", QStringLiteral("not (%1)").arg(isOnConnector)});
        keys.append({table, column, "Connector", "connID", isOnConnector});
    }
    return keys;
}

TEST_F(Copy, ATextThatIsNoUtf8IsRefusedByName) {
    const QString store = newStore();
    importInto(store);
    // The character that stands for damage elsewhere is one like others.
    alter(store, {QStringLiteral("update Link set linkName = 'a' || char(65533)")});
    const QString sound = digest(store);
    alter(store, {QStringLiteral("update SignalGroup set name = cast(x'61C328' as text)")});
    const QString target = newStore(QStringLiteral("target.mora"));
    const QString sentence =
        QStringLiteral("the text in column name of table SignalGroup, row 1, is not UTF-8; write it anew");
    expectSentence(copy(store, target), sentence);
    EXPECT_EQ(counts(target), QList<int>({0, 0, 0, 0}));
    expectSentence(run({QStringLiteral("digest"), store, QStringLiteral("--net"), QStringLiteral("1")}),
                   sentence);
    // A file would lose a leading mark: the driver hands it texts in UTF-16.
    alter(store, {QStringLiteral("update SignalGroup set name = cast(x'EFBBBF61' as text)")});
    expectSentence(copy(store, target),
                   QStringLiteral("column name of table SignalGroup cannot keep the value"));
    EXPECT_EQ(counts(target), QList<int>({0, 0, 0, 0}));
    const QString marked = digest(store);
    alter(store, {QStringLiteral("update SignalGroup set name = 'a'")});
    EXPECT_NE(digest(store), sound);
    EXPECT_NE(digest(store), marked);
}

} // namespace

TEST_F(Copy, AnEqualDigestThroughTheServerAndBack) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "no PostgreSQL server";
    const QString first = crossing(QStringLiteral("first"));
    alter(first, kAwkwardRows);
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
    const Beside beside(database.name());
    for (const auto &[sequence, table, id] :
         {std::tuple("seq_link_id", "link", "linkid"), std::tuple("seq_lane_id", "lane", "laneid"),
          std::tuple("seq_net_id", "net", "netid")})
        EXPECT_EQ(beside.value(QStringLiteral("select nextval('%1') > (select max(%3) from %2)")
                                   .arg(QLatin1String(sequence), QLatin1String(table), QLatin1String(id))),
                  QStringLiteral("true"))
            << sequence;
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
        alter(changed, {QLatin1String(entry.sql)});
        EXPECT_EQ(digest(changed) != expected, entry.isSeen) << entry.sql;
    }
}

// Every reference of the copy leads to the row that stands where the one of the original led to. Which columns are
// references, and which are identifiers, is what the schema declares.
TEST_F(Copy, IdentifiersThatCollideAreNewAndReferencesFollow) {
    const QString store = crossing(QStringLiteral("store"));
    alter(store, kAwkwardRows + rowsWithReferences());
    const QString expected = digest(store);
    const Outcome copied = copy(store, store, {QStringLiteral("--name"), QStringLiteral("second")});
    ASSERT_EQ(copied.exitCode, 0) << copied.err.toStdString();
    EXPECT_EQ(digest(store), expected);

    const QString ofNetworks =
        QStringLiteral("from sqlite_master m, %1(m.name) c where m.type = 'table' and exists "
                       "(select 1 from pragma_table_info(m.name) where lower(name) = 'netid')");
    QList<Key> keys = undeclaredKeys();
    QSet<QString> references;
    for (const QVariantList &key :
         allRows(store, QStringLiteral("select m.name, c.\"from\", c.\"table\", c.\"to\" ") +
                            ofNetworks.arg(QStringLiteral("pragma_foreign_key_list")) +
                            QStringLiteral(" and lower(c.\"from\") <> 'netid'")))
        keys.append({key.at(0).toString(), key.at(1).toString(), key.at(2).toString(), key.at(3).toString(),
                     QStringLiteral("1")});
    for (const Key &key : qAsConst(keys)) {
        const QString what = key.table + QLatin1Char('.') + key.column;
        references.insert(what.toLower());
        QString places[2];
        for (const int net : {1, 2})
            places[net - 1] = value(
                store,
                QStringLiteral(
                    "select group_concat(place) from (select (select count(*) from %3 b where b.NetId "
                    "= a.NetId and b.%4 <= a.%2) * exists (select 1 from %3 b where b.NetId = a.NetId "
                    "and b.%4 = a.%2) as place from %1 a where NetId = %5 and (%6) order by a.rowid)")
                    .arg(key.table, key.column, key.target, key.id, QString::number(net), key.condition));
        EXPECT_EQ(places[0], places[1]) << what.toStdString();
        EXPECT_TRUE(places[0].contains(QRegularExpression(QStringLiteral("[1-9]"))))
            << what.toStdString() << " leads nowhere: " << places[0].toStdString();
    }

    // Numbers that mean the same in every network.
    const QSet<QString> shared{QStringLiteral("changelanemodelparam.modelparamid"),
                               QStringLiteral("drivefollowedmodelparam.modelparamid"),
                               QStringLiteral("linktype.linktypeid"),
                               QStringLiteral("v2xconfig.v2xconfigid"),
                               QStringLiteral("vehicletype.vehicletypecode"),
                               QStringLiteral("vehicleconstitutent.vehicleconscode")};
    // Numbers that are no identifiers.
    const QSet<QString> times{QStringLiteral("busstationpassengerarriving.starttime"),
                              QStringLiteral("busstationpassengerarriving.endtime"),
                              QStringLiteral("passenger.arrivingtime"), QStringLiteral("idgenerater.id")};
    int identifiers = 0;
    for (const QVariantList &column :
         allRows(store, QStringLiteral("select m.name, c.name, c.pk ") +
                            ofNetworks.arg(QStringLiteral("pragma_table_info")) +
                            QStringLiteral(" and lower(c.type) = 'bigint' and lower(c.name) <> 'netid'"))) {
        const QString table = column.at(0).toString();
        const QString name = column.at(1).toString();
        const QString what = (table + QLatin1Char('.') + name).toLower();
        if (references.contains(what) || shared.contains(what) || times.contains(what))
            continue;
        EXPECT_EQ(column.at(2).toInt(), 2) << what.toStdString() << " refers to nothing that is known here";
        ++identifiers;
        EXPECT_EQ(
            value(store, QStringLiteral("select count(*) - count(distinct %2) from %1").arg(table, name)),
            QStringLiteral("0"))
            << what.toStdString();
        EXPECT_EQ(
            value(store, QStringLiteral(
                             "select coalesce((select ID from IDGenerater where NetId = 2 and TableName = "
                             "'%1'), 0) >= coalesce(max(%2), 0) from %1 where NetId = 2")
                             .arg(table, name)),
            QStringLiteral("1"))
            << what.toStdString();
    }
    EXPECT_EQ(identifiers, 29);
    // One network at most is opened by default.
    const QString defaults =
        QStringLiteral("select group_concat(isDefault) from (select isDefault from Net order by NetId)");
    EXPECT_EQ(value(store, defaults), QStringLiteral("T,F"));
    const QString alone = newStore(QStringLiteral("alone"));
    expectRefusal(
        [&] {
            return copy(store, alone, {QStringLiteral("--name"), QStringLiteral("x")});
        },
        QStringLiteral("--name names one network, and 2 are to be copied"));
    ASSERT_EQ(copy(store, alone, {QStringLiteral("--net"), QStringLiteral("1")}).exitCode, 0);
    EXPECT_EQ(value(alone, defaults), QStringLiteral("T"));
    // Without a collision nothing is renumbered, and the network's own number does not count.
    const QString other = newStore(QStringLiteral("other"));
    alter(other, {QStringLiteral("insert into Net(NetId, name, sourceType, centerX, centerY, isDefault) "
                                 "values(1, 'taken', 's', 0, 0, 'T')")});
    ASSERT_EQ(copy(store, other, {QStringLiteral("--net"), QStringLiteral("1")}).exitCode, 0);
    EXPECT_EQ(digest(other, QStringLiteral("2")), expected);
}

TEST_F(Copy, TheDigestKeepsValuesApart) {
    const QString store = newStore();
    importInto(store);
    alter(store, {QStringLiteral("update Net set backgroundUrl = 'a', caption = 'b'")});
    const QString before = digest(store);
    // The bytes of both columns, one after the other, are the same.
    alter(store,
          {QStringLiteral("update Net set backgroundUrl = 'acaption' || char(0) || 'bb', caption = null")});
    EXPECT_NE(digest(store), before);
}

// Two imports of one file under two names are one network to those who ask for its content.
TEST_F(Copy, ADigestOfTheContentDoesNotSayWhereItCameFrom) {
    const QString store = newStore();
    importInto(store);
    const QStringList content{QStringLiteral("--content")};
    const QString all = digest(store);
    const QString inside = digest(store, QStringLiteral("1"), content);
    EXPECT_NE(inside, all);
    alter(store, {QStringLiteral("update Net set name = 'n', sourceUrl = 'u', sourceType = 't'"),
                  QStringLiteral("update Configuration set saveDate = '1999-01-01'")});
    EXPECT_EQ(digest(store, QStringLiteral("1"), content), inside);
    EXPECT_NE(digest(store), all);
    for (const char *sql : {"update Net set caption = 'c'", "update Configuration set scale = scale + 1",
                            "update Link set LinkName = 'n' where LinkID = (select max(LinkID) from Link)"}) {
        alter(store, {QLatin1String(sql)});
        const QString changed = digest(store, QStringLiteral("1"), content);
        EXPECT_NE(changed, inside) << sql;
    }
}

TEST_F(Copy, OlderStoresComeForwardInTheLanguageOfTheTarget) {
    const QString old = file(QStringLiteral("old.db"));
    ASSERT_EQ(
        run({QStringLiteral("new"), old, QStringLiteral("--template"), QStringLiteral("EmptyNet_V2.1.1")})
            .exitCode,
        0);
    importInto(old, {QStringLiteral("--lang"), QStringLiteral("zh")});
    alter(old, {QStringLiteral("insert into RoadType values(1, 'x')"),
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
    alter(store,
          {QStringLiteral("update Lane set linkID = 999 where laneID = (select max(laneID) from Lane)"),
           QStringLiteral("update Net set caption = 'a' || char(0) || 'b'")});
    EXPECT_EQ(copy(store, newStore(QStringLiteral("b"))).exitCode, 0) << "SQLite keeps both";
    if (!PostgresDatabase::hasServer())
        return;
    const PostgresDatabase database;
    const QString server = database.connectionString();
    expectRefusal([&] { return copy(store, server); },
                  QStringLiteral("column caption of table net cannot keep"));
    alter(store, {QStringLiteral("update Net set caption = null")});
    expectRefusal([&] { return copy(store, server); }, QStringLiteral("a row of table lane is refused"));
    expectRefusal([&] { return run({QStringLiteral("digest"), server}); }, QStringLiteral("has no network"));
}
