#include "tests/host/Morastore.h"
#include "store/DBTools.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// The program from outside: what it writes, what it leaves behind, how it exits.

namespace {

const QString kAwkward = QStringLiteral("O'Brien \"100%1\" %s 中山路 🚦");

} // namespace

TEST_F(Morastore, RefusesWhatIsNoStore) {
    const QByteArray whole = read(newStore());
    ASSERT_GT(whole.size(), 100000);
    ASSERT_TRUE(QDir(mFolder.path()).mkdir(QStringLiteral("folder")));
    write(QStringLiteral("text"), QByteArray("Dear reader,\n").repeated(100));
    write(QStringLiteral("empty"), {});
    write(QStringLiteral("half"), whole.left(whole.size() / 2));
    write(QStringLiteral("header"), whole.left(50));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        db.setDatabaseName(file(QStringLiteral("other")));
        ASSERT_TRUE(db.open());
        QSqlQuery(db).exec(QStringLiteral("create table Recipe(name text)"));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));

    const struct {
        const char *name;
        const char *expected;
    } table[] = {
        {"missing", "no such file"}, {"folder", "this is a folder"}, {"text", "no SQLite file"},
        {"empty", "no SQLite file"}, {"header", "no SQLite file"},   {"half", "cut off"},
        {"other", "is no store"},
    };
    for (const auto &entry : table) {
        const QString path = file(QLatin1String(entry.name));
        const QString expected = QLatin1String(entry.expected);
        expectRefusal([&] { return run({QStringLiteral("info"), path}); }, expected);
        expectRefusal([&] { return run({QStringLiteral("import"), path, kExample}); }, expected);
        expectRefusal(
            [&] {
                return run({QStringLiteral("draw"), path, file(QStringLiteral("p.svg"))});
            },
            expected);
    }
}

TEST_F(Morastore, RefusesAStoreThatItMayNotWrite) {
    const QString store = newStore();
    const QStringList import{QStringLiteral("import"), store, kExample};
    ASSERT_TRUE(QFile::setPermissions(store, QFile::ReadOwner));
    expectRefusal([&] { return run(import); }, QStringLiteral("read-only"));
    EXPECT_EQ(run({QStringLiteral("info"), store}).exitCode, 0);
    ASSERT_TRUE(QFile::setPermissions(store, QFile::ReadOwner | QFile::WriteOwner));
    const QByteArray before = read(store);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("holder"));
        db.setDatabaseName(store);
        ASSERT_TRUE(db.open());
        ASSERT_TRUE(QSqlQuery(db).exec(QStringLiteral("begin exclusive")));
        // Reading the file here would give up the lock: on POSIX systems closing any descriptor does.
        const QString expected = QStringLiteral("another program holds the store");
        expectSentence(run(import + QStringList{QStringLiteral("--wait"), QStringLiteral("0")}), expected);
        expectSentence(run({QStringLiteral("info"), store}), expected);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("holder"));
    EXPECT_EQ(read(store), before);
    EXPECT_EQ(run(import).exitCode, 0);
}

TEST_F(Morastore, RefusesANetworkThatIsNotWhole) {
    const QString store = newStore();
    const QByteArray whole = read(kExample);
    QByteArray dangling = whole;
    dangling.replace("</net>",
                     "<connection from=\"west_in\" to=\"market_quay\" fromLane=\"9\" toLane=\"0\"/></net>");
    write(QStringLiteral("half.net.xml"), whole.left(whole.size() / 2));
    write(QStringLiteral("dangling.net.xml"), dangling);
    write(QStringLiteral("text.net.xml"), "Dear reader,\n");
    const struct {
        const char *name;
        const char *expected;
    } table[] = {
        {"missing.net.xml", "no such file"},
        {"half.net.xml", "ends in the middle"},
        {"dangling.net.xml", "names lane 9 of edge \"west_in\""},
        {"text.net.xml", "not XML"},
    };
    for (const auto &entry : table) {
        const QString path = file(QLatin1String(entry.name));
        expectRefusal(
            [&] {
                return run({QStringLiteral("import"), store, path});
            },
            QLatin1String(entry.expected));
        expectRefusal(
            [&] {
                return run({QStringLiteral("roundtrip"), path, QStringLiteral("--store"),
                            file(QStringLiteral("r"))});
            },
            QLatin1String(entry.expected));
    }
}

TEST_F(Morastore, AFullDiskLeavesTheStoreAsItWas) {
#ifdef Q_OS_UNIX
    const QString store = newStore();
    // Blocks of 512 bytes: the store may not grow; not even its journal fits; a new store does not.
    const qint64 size = QFileInfo(store).size() / 512;
    const auto limited = [](qint64 blocks, const QStringList &arguments) {
        return start(QStringLiteral("/bin/sh"),
                     QStringList{QStringLiteral("-c"),
                                 QStringLiteral("ulimit -f %1; exec \"$@\"").arg(blocks),
                                 QStringLiteral("sh"), morastoreProgram()} +
                         arguments);
    };
    for (const qint64 blocks : {size, qint64(8)})
        expectRefusal(
            [&] {
                return limited(blocks, {QStringLiteral("import"), store, kExample});
            },
            QStringLiteral("nothing was"));
    expectRefusal(
        [&] {
            return limited(size / 2, {QStringLiteral("new"), file(QStringLiteral("another"))});
        },
        QStringLiteral("cannot be written"));
    EXPECT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
#else
    GTEST_SKIP() << "no limit on the size of files";
#endif
}

TEST_F(Morastore, NewNeverTouchesAnExistingFile) {
    const QString store = newStore();
    expectRefusal([&] { return run({QStringLiteral("new"), store}); }, QStringLiteral("exists already"));
    expectRefusal(
        [&] {
            return run({QStringLiteral("new"), file(QStringLiteral("no/such/store"))});
        },
        QStringLiteral("folder does not exist"));
    expectRefusal(
        [&] {
            return run({QStringLiteral("new"), file(QStringLiteral("b")), QStringLiteral("--template"),
                        QStringLiteral("None")});
        },
        QStringLiteral("no template \"None\""));
    expectRefusal(
        [&] {
            return run({QStringLiteral("draw"), store, file(QStringLiteral("p.svg"))});
        },
        QStringLiteral("import one first"));
}

TEST_F(Morastore, KeepsEveryNameAsItIs) {
    const QString store = newStore(kAwkward);
    const QString escaped = kAwkward.toHtmlEscaped();
    const QByteArray net =
        QString::fromUtf8(read(kExample)).replace(QLatin1String("harbour_in"), escaped).toUtf8();
    const QString network = write(kAwkward + QStringLiteral(".net.xml"), net);
    const QStringList import{QStringLiteral("import"), store, network, QStringLiteral("--name"), kAwkward};
    const Outcome imported = run(import);
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    EXPECT_EQ(imported.err, QString());
    expectRefusal([&] { return run(import); }, QStringLiteral("has a network \"%1\" already").arg(kAwkward));

    const Outcome info = run({QStringLiteral("info"), store, QStringLiteral("--json")});
    const QJsonObject stock = QJsonDocument::fromJson(info.out.toUtf8()).object();
    EXPECT_EQ(stock.value(QLatin1String("generation")).toInt(), 6);
    const QJsonObject first = stock.value(QLatin1String("networks")).toArray().at(0).toObject();
    EXPECT_EQ(first.value(QLatin1String("name")).toString(), kAwkward);
    EXPECT_EQ(first.value(QLatin1String("rows")).toObject().value(QLatin1String("lanes")).toInt(), 28);
    const QJsonObject extent = first.value(QLatin1String("extent")).toObject();
    const QVariantList corners =
        row(store, QStringLiteral("select min(X), min(Y), min(Z), max(X), max(Y), max(Z) from "
                                  "Vertex"));
    EXPECT_EQ(extent.value(QLatin1String("low")).toArray().toVariantList() +
                  extent.value(QLatin1String("high")).toArray().toVariantList(),
              corners);
    EXPECT_EQ(row(store, QStringLiteral(
                             "select name, (select LinkName from Link where LinkName like '%🚦%') from Net")),
              (QVariantList{kAwkward, kAwkward}));
    const QString picture = file(kAwkward + QStringLiteral(".svg"));
    EXPECT_EQ(run({QStringLiteral("draw"), store, picture}).exitCode, 0);
    EXPECT_TRUE(read(picture).contains(kAwkward.toHtmlEscaped().toUtf8()) ||
                read(picture).contains("中山路"));
    const Outcome trip = run({QStringLiteral("roundtrip"), network});
    EXPECT_EQ(trip.exitCode, 0) << trip.err.toStdString();
}

TEST_F(Morastore, WordsAreStoredInTheLanguageOfStoreAndHost) {
    for (const char *language : {"en", "zh"}) {
        const QString store = newStore(QLatin1String(language));
        ASSERT_EQ(run({QStringLiteral("import"), store, kExample, QStringLiteral("--lang"),
                       QLatin1String(language)})
                      .exitCode,
                  0);
        const bool english = qstrcmp(language, "en") == 0;
        EXPECT_EQ(
            row(store,
                QStringLiteral(
                    "select (select count(*) from Lane where ActionType = '%1'), (select count(*) from Link where linkType = '%2')")
                    .arg(english ? QStringLiteral("BusLane") : QStringLiteral("公交专用道"),
                         english ? QStringLiteral("SecondaryRoad") : QStringLiteral("城市次干道"))),
            (QVariantList{1, 2}));
    }
}

TEST_F(Morastore, DrawsPictures) {
    const QString store = newStore();
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample}).exitCode, 0);
    const QString png = file(QStringLiteral("p.png"));
    ASSERT_EQ(
        run({QStringLiteral("draw"), store, png, QStringLiteral("--size"), QStringLiteral("800")}).exitCode,
        0);
    const QByteArray bytes = read(png);
    // Width is the big-endian number at byte 16 of a PNG file.
    EXPECT_TRUE(bytes.startsWith("\x89PNG"));
    EXPECT_EQ(bytes.mid(16, 4), QByteArray("\0\0\x03\x20", 4));
    expectRefusal(
        [&] {
            return run({QStringLiteral("draw"), store, file(QStringLiteral("p.gif"))});
        },
        QStringLiteral("ends in .svg or .png"));
    expectRefusal(
        [&] {
            return run({QStringLiteral("draw"), store, file(QStringLiteral("q.svg")), QStringLiteral("--net"),
                        QStringLiteral("7")});
        },
        QStringLiteral("no network \"7\""));
}

TEST_F(Morastore, ImportsTrafficAndSaysWhatItLeavesOut) {
    const QString store = newStore();
    const QString routes = write(
        QStringLiteral("bad.rou.xml"),
        "<routes><flow id=\"good\" end=\"60\" number=\"6\"><route edges=\"west_in\"/></flow>"
        "<flow id=\"bad\" end=\"60\" number=\"5\"><route edges=\"nowhere\"/></flow>"
        "<flow id=\"bus\" line=\"7\" end=\"60\" number=\"2\"><route edges=\"west_in\"/></flow></routes>");
    const QStringList import{QStringLiteral("import"), store, kExample, QStringLiteral("--routes"), routes};
    expectRefusal(
        [&] {
            Outcome strict = run(import + QStringList(QStringLiteral("--strict")));
            EXPECT_TRUE(strict.err.contains(QStringLiteral("no edge \"nowhere\"; 5 vehicles")));
            strict.err = strict.err.mid(strict.err.indexOf(QStringLiteral("morastore: ")));
            return strict;
        },
        QStringLiteral("nothing was written: 1 flows would be left out"));

    const Outcome outcome = run(import);
    EXPECT_EQ(outcome.exitCode, 3) << outcome.err.toStdString();
    EXPECT_TRUE(outcome.out.contains(QStringLiteral("vehicles: 13 in the files, 6 depart, 2 run on lines")));
    EXPECT_EQ(row(store, QStringLiteral("select sum(vehiCount) from DepartureInterval")).first().toInt(), 6);
    EXPECT_EQ(row(store, QStringLiteral("select count(*) from SignalGroup")).first().toInt(), 1);
    const QString missing = file(QStringLiteral("missing.add.xml"));
    expectRefusal(
        [&] {
            return run({QStringLiteral("import"), store, kExample, QStringLiteral("--name"),
                        QStringLiteral("b"), QStringLiteral("--additional"), missing});
        },
        QStringLiteral("no such file"));
}

TEST_F(Morastore, ShowsEveryKind) {
    const QString example = QFileInfo(kExample).path();
    const QString store = newStore();
    const Outcome imported = run({QStringLiteral("import"), store, kExample, QStringLiteral("--additional"),
                                  example + QStringLiteral("/crossing.add.xml"), QStringLiteral("--routes"),
                                  example + QStringLiteral("/crossing.rou.xml")});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    const QJsonObject counted =
        QJsonDocument::fromJson(run({QStringLiteral("info"), store, QStringLiteral("--json")}).out.toUtf8())
            .object()
            .value(QStringLiteral("networks"))
            .toArray()
            .at(0)
            .toObject()
            .value(QStringLiteral("rows"))
            .toObject();
    for (const char *kind : {"vehicleTypes",
                             "vehicleCompositions",
                             "linkTypes",
                             "links",
                             "connectors",
                             "guideArrows",
                             "signalGroups",
                             "signalLamps",
                             "departurePoints",
                             "decisionPoints",
                             "routes",
                             "vehicleDetectors",
                             "queueCounters",
                             "travelTimeDetectors",
                             "drivingDataCollectors",
                             "busLines",
                             "busStations",
                             "accidentZones",
                             "roadWorkZones",
                             "speedReductionAreas"}) {
        const QString name = QLatin1String(kind);
        const Outcome list = run({QStringLiteral("show"), store, name, QStringLiteral("--json")});
        const QJsonArray objects = QJsonDocument::fromJson(list.out.toUtf8()).array();
        EXPECT_EQ(list.exitCode, 0) << kind << list.err.toStdString();
        EXPECT_EQ(objects.size(), counted.value(name).toInt(-1)) << kind;
        if (objects.isEmpty())
            continue;
        const QString id = QString::number(objects.last().toObject().value(QStringLiteral("id")).toInt());
        const Outcome one = run({QStringLiteral("show"), store, name, id, QStringLiteral("--json")});
        EXPECT_EQ(one.exitCode, 0) << kind << one.err.toStdString();
        EXPECT_FALSE(QJsonDocument::fromJson(one.out.toUtf8()).object().isEmpty()) << kind;
    }
    const Outcome line =
        run({QStringLiteral("show"), store, QStringLiteral("busLines"), QStringLiteral("1")});
    EXPECT_TRUE(line.out.contains(QStringLiteral("passengerCount         60"))) << line.out.toStdString();
    alter(store, {QStringLiteral("update Link set length = 123456.789012 where linkID = 1")});
    EXPECT_TRUE(run({QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("1")})
                    .out.contains(QStringLiteral("123456.789012")));
    const QVariantList links =
        row(store, QStringLiteral("select linkID from RoutingLink where routingID = 1 and num1 = 1 "
                                  "and num2 = 1"));
    const Outcome route = run({QStringLiteral("show"), store, QStringLiteral("routes"), QStringLiteral("1"),
                               QStringLiteral("--json")});
    EXPECT_EQ(QJsonDocument::fromJson(route.out.toUtf8())[QStringLiteral("linkChains")][0][0].toVariant(),
              links.first());
    expectRefusal(
        [&] {
            return run({QStringLiteral("show"), store, QStringLiteral("cows")});
        },
        QStringLiteral("no kind \"cows\""));
    expectRefusal(
        [&] {
            return run({QStringLiteral("show"), store, QStringLiteral("links"), QStringLiteral("99")});
        },
        QStringLiteral("has no 99"));
}

TEST_F(Morastore, WrongUsageIsToldFromFailure) {
    for (const QStringList &arguments :
         {QStringList{}, QStringList{QStringLiteral("fly")}, QStringList{QStringLiteral("info")},
          QStringList{QStringLiteral("draw"), QStringLiteral("a"), QStringLiteral("b"),
                      QStringLiteral("--size"), QStringLiteral("0")}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.out, QString());
        EXPECT_NE(outcome.err, QString());
    }
    for (const char *option : {"--help", "--version"}) {
        const Outcome outcome = run({QLatin1String(option)});
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_TRUE(outcome.out.contains(QLatin1String("morastore")));
    }
}

TEST_F(Morastore, ProtectsAStoreAndSaysSo) {
    const QString store = newStore();
    const QByteArray before = read(store);
    ASSERT_EQ(run({QStringLiteral("protect"), store}).exitCode, 0);
    const Outcome info = run({QStringLiteral("info"), store});
    EXPECT_EQ(info.exitCode, 1);
    EXPECT_TRUE(info.err.contains(QLatin1String("run \"morastore unprotect\""))) << info.err.toStdString();
    EXPECT_EQ(run({QStringLiteral("protect"), store}).exitCode, 1);
    ASSERT_EQ(run({QStringLiteral("unprotect"), store}).exitCode, 0);
    EXPECT_EQ(read(store), before);
    const Outcome again = run({QStringLiteral("unprotect"), store});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_EQ(again.err, QStringLiteral("morastore: %1: it is not protected\n").arg(store));

    ASSERT_EQ(run({QStringLiteral("protect"), store}).exitCode, 0);
    qputenv("MORA_CONFIG",
            QFile::encodeName(write(QStringLiteral("c.json"), "{\"__storekey\": \"geheim\"}")));
    const QStringList unprotect = {QStringLiteral("unprotect"), store};
    expectSentence(run(unprotect), QStringLiteral("\"morastore unprotect --library-key 1\""));
    const QStringList byKey = unprotect + QStringList{QStringLiteral("--library-key")};
    expectSentence(run(byKey + QStringList(QStringLiteral("2"))), QStringLiteral("with another key"));
    EXPECT_EQ(run(byKey + QStringList(QStringLiteral("1"))).exitCode, 0);
    expectSentence(run(byKey + QStringList(QStringLiteral("1"))), QStringLiteral("it is not protected"));
    EXPECT_EQ(read(store), before);
    ASSERT_TRUE(DBTools::encryptDecryptFileByKey2(store));
    EXPECT_EQ(run(byKey + QStringList(QStringLiteral("2"))).exitCode, 0);
    EXPECT_EQ(read(store), before);
    qunsetenv("MORA_CONFIG");
}

TEST_F(Morastore, SaysWhichVersionItIsAndWhatChanged) {
    const Outcome version = run({QStringLiteral("--version")});
    const Outcome changes = run({QStringLiteral("changes"), QStringLiteral("--json")});
    const QJsonObject newest = QJsonDocument::fromJson(changes.out.toUtf8()).array().first().toObject();
    const QString number = newest[QStringLiteral("version")].toString();
    EXPECT_EQ(version.out,
              QStringLiteral("morastore %1 (%2)\n").arg(number, newest[QStringLiteral("date")].toString()));
    EXPECT_EQ(run({QStringLiteral("changes"), QStringLiteral("--since"), number}).out,
              QStringLiteral("# Changes\n"))
        << "nothing is newer";
    EXPECT_EQ(run({QStringLiteral("changes"), QStringLiteral("--since"), QStringLiteral("1.x")}).exitCode, 1);
}
