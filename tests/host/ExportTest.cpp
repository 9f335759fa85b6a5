#include "tests/host/Morastore.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QXmlStreamReader>

// Networks go out of a store for SUMO. What comes out is looked at with the comparison of the tests and with SUMO itself.

namespace {

bool isInstalled(const char *program) {
    return !QStandardPaths::findExecutable(QLatin1String(program)).isEmpty();
}

class Export : public Morastore {
protected:
    /// A store with the example and what belongs to it.
    QString exampleStore() const {
        const QString folder = sourceFolder() + QStringLiteral("/examples/crossing/");
        const Outcome outcome =
            run({QStringLiteral("import"), newStore(), kExample, QStringLiteral("--additional"),
                 folder + QStringLiteral("crossing.add.xml"), QStringLiteral("--routes"),
                 folder + QStringLiteral("crossing.rou.xml")});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return file(QStringLiteral("store.mora"));
    }

    Outcome exported(const QString &store, const QString &folder, const QStringList &options = {}) const {
        return run(QStringList{QStringLiteral("export"), store, file(folder), QStringLiteral("--sumo")} +
                   options);
    }

    /// The elements of a file, their attributes in alphabetical order.
    static QStringList elementsIn(const QString &path) {
        QFile source(path);
        EXPECT_TRUE(source.open(QIODevice::ReadOnly)) << path.toStdString();
        QXmlStreamReader xml(&source);
        QStringList elements;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            QStringList attributes;
            for (const QXmlStreamAttribute &each : xml.attributes())
                attributes.append(QStringLiteral("%1=%2").arg(each.name(), each.value()));
            attributes.sort();
            elements.append(xml.name() + QLatin1Char(' ') + attributes.join(QLatin1Char(' ')));
        }
        EXPECT_FALSE(xml.hasError()) << path.toStdString() << xml.errorString().toStdString();
        return elements;
    }

    /// By kind how many differ between two networks, as tests/netcompare sees it.
    static QMap<QString, int> differences(const QString &a, const QString &b) {
        const Outcome outcome = start(QStandardPaths::findExecutable(QStringLiteral("python3")),
                                      {sourceFolder() + QStringLiteral("/tests/netcompare/compare_nets.py"),
                                       QStringLiteral("--json"), a, b});
        EXPECT_LT(outcome.exitCode, 2) << outcome.err.toStdString();
        const QJsonObject kinds = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
        EXPECT_GT(kinds.size(), 30);
        QMap<QString, int> found;
        for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
            if (const int count = kind->toObject().value(QStringLiteral("differing")).toInt())
                found.insert(kind.key(), count);
        }
        return found;
    }
};

TEST_F(Export, WhatNetconvertMakesOfItIsTheNetworkThatWentIn) {
    if (!isInstalled("netconvert") || !isInstalled("python3"))
        GTEST_SKIP() << "no SUMO, or no Python";
    const Outcome outcome = exported(exampleStore(), QStringLiteral("out"), {QStringLiteral("--rebuild")});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    // netconvert has made the example, so it makes the same again of the same.
    const QMap<QString, int> found = differences(kExample, file(QStringLiteral("out/crossing.net.xml")));
    EXPECT_TRUE(found.isEmpty()) << QStringList(found.keys()).join(QStringLiteral(", ")).toStdString();
}

TEST_F(Export, VehiclesAndWhatStandsOnTheRoadsAreAsTheyStood) {
    const QString store = exampleStore();
    ASSERT_EQ(exported(store, QStringLiteral("out")).exitCode, 0);
    const QString folder = sourceFolder() + QStringLiteral("/examples/crossing/");
    for (const char *name : {"crossing.add.xml", "crossing.rou.xml"}) {
        const QStringList elements = elementsIn(file(QStringLiteral("out/") + QLatin1String(name)));
        EXPECT_GT(elements.size(), 20) << name;
        EXPECT_EQ(elements, elementsIn(folder + QLatin1String(name))) << name;
    }

    // What is changed in the store is changed in its file, and nothing else.
    alter(store,
          {QStringLiteral("update VehicleType set length = 5.25 where vehicleTypeName = 'saloon'"),
           QStringLiteral("update VehicleDrivInfoCollecter set dataInterval = 90 where name = 'west_loop_2'"),
           QStringLiteral("delete from VehicleQueueCounter")});
    ASSERT_EQ(exported(store, QStringLiteral("changed")).exitCode, 0);
    const QStringList before = elementsIn(file(QStringLiteral("out/crossing.add.xml")));
    const QStringList after = elementsIn(file(QStringLiteral("changed/crossing.add.xml")));
    EXPECT_EQ(after.size(), before.size() - 1);
    QStringList changed;
    for (const QString &element : after) {
        if (!before.contains(element))
            changed.append(element);
    }
    ASSERT_EQ(changed.size(), 2) << changed.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(changed[0].startsWith(QLatin1String("vType accel=2.8 decel=4.5 ")))
        << changed[0].toStdString();
    EXPECT_TRUE(changed[0].contains(QLatin1String("id=saloon length=5.25 maxSpeed=45 ")))
        << changed[0].toStdString();
    EXPECT_EQ(changed[1], QStringLiteral("inductionLoop file=NUL friendlyPos=true id=west_loop_2 "
                                         "lane=approach_market_2 period=90 pos=64.11"));
    EXPECT_EQ(elementsIn(file(QStringLiteral("changed/crossing.rou.xml"))),
              elementsIn(file(QStringLiteral("out/crossing.rou.xml"))));
}

TEST_F(Export, DemandIsMadeOfDeparturesAndShares) {
    ASSERT_EQ(exported(exampleStore(), QStringLiteral("out"), {QStringLiteral("--flows")}).exitCode, 0);
    // Beside the file that came in, which has types and routes still.
    const QStringList made = elementsIn(file(QStringLiteral("out/crossing-2.rou.xml")));
    EXPECT_TRUE(
        made.contains(QStringLiteral("route edges=south_in market_quay quay_east id=south_in_to_quay_east")));
    // Half of 150, in two slices: what is rounded up in one is taken back in the other.
    const QStringList toTheQuay = made.filter(
        QRegularExpression(QStringLiteral("^flow .* route=south_in_to_quay_east type=town_mix$")));
    ASSERT_EQ(toTheQuay.size(), 2);
    EXPECT_TRUE(toTheQuay[0].contains(QLatin1String(" number=38 "))) << toTheQuay[0].toStdString();
    EXPECT_TRUE(toTheQuay[1].contains(QLatin1String(" number=37 "))) << toTheQuay[1].toStdString();
    const QRegularExpressionMatch times =
        QRegularExpression(QStringLiteral("^flow begin=([0-9.]+) end=([0-9.]+) ")).match(toTheQuay[1]);
    EXPECT_GE(times.captured(1).toDouble(), 900);
    EXPECT_LT(times.captured(1).toDouble(), 900 + 900.0 / 37); // so that the last one departs before 1800
    EXPECT_NEAR(times.captured(2).toDouble() - times.captured(1).toDouble(), 900, 0.011);
    EXPECT_TRUE(
        made.contains(QStringLiteral("flow begin=0 end=3001 id=7 line=7 period=600 route=7 type=citybus")));
    EXPECT_TRUE(made.contains(QStringLiteral("personFlow begin=0 end=3600 id=7_market_stop number=60")));
    // Bicycles may not turn right at the market, so only what they may drive is for them.
    for (const QString &element : made)
        EXPECT_FALSE(element.contains(QLatin1String("north_in market_west"))) << element.toStdString();
    for (const QString &element : elementsIn(file(QStringLiteral("out/crossing.rou.xml"))))
        EXPECT_FALSE(element.startsWith(QLatin1String("flow")) ||
                     element.startsWith(QLatin1String("vehicle ")));
}

TEST_F(Export, WhatStandsOnTheRoadsIsMadeWhereNothingIsKept) {
    const QString store = exampleStore();
    alter(store,
          {QStringLiteral(
              "update Net set otherAttrsJson = json_remove(cast(otherAttrsJson as text), '$.sumo.files')")});
    ASSERT_EQ(exported(store, QStringLiteral("out")).exitCode, 3);
    QStringList made = elementsIn(file(QStringLiteral("out/crossing.add.xml")));
    made.removeFirst(); // the root
    // The places of examples/crossing/crossing.add.xml; those before the end of lanes of 245.57, 79.11 and 243.15 m.
    EXPECT_EQ(
        made,
        QStringList(
            {"busStop endPos=175.00 friendlyPos=true id=market_stop lane=west_in_0 startPos=150.00",
             "busStop endPos=210.57 friendlyPos=true id=quay_stop lane=market_quay_0 startPos=185.57",
             "inductionLoop file=crossing.loops.xml friendlyPos=true id=west_loop_1 lane=approach_market_1 period=60 pos=64.11",
             "inductionLoop file=crossing.loops.xml friendlyPos=true id=west_loop_2 lane=approach_market_2 period=60 pos=64.11",
             "laneAreaDetector endPos=238.15 file=crossing.queues.xml friendlyPos=true id=quay_queue jamThreshold=20 "
             "lane=quay_market_1 length=85.00 period=300 speedThreshold=1.3888888888888888",
             "entryExitDetector file=crossing.travels.xml id=market_to_quay period=300",
             "detEntry friendlyPos=true lane=market_quay_0 pos=10.00",
             "detEntry friendlyPos=true lane=market_quay_1 pos=10.00",
             "detExit friendlyPos=true lane=quay_east_0 pos=60.00",
             "detExit friendlyPos=true lane=quay_east_1 pos=60.00",
             "variableSpeedSign id=quay_road_30_east_quay_0_29.988_km/h lanes=east_quay_0",
             "step speed=8.33 time=600", "step speed=-1 time=1800",
             "variableSpeedSign id=quay_road_30_east_quay_1_29.988_km/h lanes=east_quay_1",
             "step speed=8.33 time=600", "step speed=-1 time=1800",
             "rerouter edges=east_quay harbour_in market_quay id=harbour_works", "interval begin=0 end=86400",
             "closingReroute id=harbour_out"}));
    const QStringList vehicles = elementsIn(file(QStringLiteral("out/crossing.rou.xml")));
    EXPECT_EQ(vehicles
                  .filter(QLatin1String(
                      "stop duration=86400 endPos=80.00 friendlyPos=true lane=market_west_0 startPos=70.00"))
                  .size(),
              1);
    EXPECT_EQ(vehicles.filter(QRegularExpression(QStringLiteral("^flow .* type=town_mix$"))).size(), 6);
}

TEST_F(Export, SumoRunsItWithoutAWarning) {
    if (!isInstalled("sumo") || !isInstalled("netconvert"))
        GTEST_SKIP() << "no SUMO";
    const QString store = exampleStore();
    for (const QStringList &options :
         {QStringList(), QStringList{QStringLiteral("--rebuild"), QStringLiteral("--flows")}}) {
        const QString folder = options.isEmpty() ? QStringLiteral("kept") : QStringLiteral("flows");
        ASSERT_EQ(exported(store, folder, options).exitCode, 0);
        const Outcome run = start(QStringLiteral("sumo"),
                                  {QStringLiteral("-c"), file(folder + QStringLiteral("/crossing.sumocfg")),
                                   QStringLiteral("--end"), QStringLiteral("3600"),
                                   QStringLiteral("--no-step-log"), QStringLiteral("-X"),
                                   QStringLiteral("never"), QStringLiteral("--duration-log.statistics")});
        EXPECT_EQ(run.exitCode, 0);
        QStringList warnings = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        // A trip without a route goes any way, and may come to a detector's end by another than its start.
        if (options.contains(QLatin1String("--flows")))
            warnings = warnings.filter(QRegularExpression(QStringLiteral("^(?!.* left e3Detector )")));
        EXPECT_EQ(warnings.join(QLatin1Char('\n')).toStdString(), "");
        // As many as are in the files, the lorry that has broken down among them.
        EXPECT_TRUE(run.out.contains(QLatin1String("Inserted: 359"))) << run.out.toStdString();
    }
}

TEST_F(Export, WithoutNetconvertThePlainFormComesOut) {
    const QString store = exampleStore();
    const Outcome outcome = runInShell({QStringLiteral("export"), store, file(QStringLiteral("out")),
                                        QStringLiteral("--sumo"), QStringLiteral("--rebuild")},
                                       "", "PATH=/nowhere");
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(outcome.err.contains(QLatin1String("netconvert is not installed")))
        << outcome.err.toStdString();
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("out/crossing.net.xml"))));
    EXPECT_EQ(
        elementsIn(file(QStringLiteral("out/plain/crossing.edg.xml"))).filter(QLatin1String("edge ")).size(),
        13);
}

TEST_F(Export, AFolderThatIsNotEmptyStaysAsItIs) {
    const QString store = exampleStore();
    QDir(mFolder.path()).mkdir(QStringLiteral("full"));
    write(QStringLiteral("full/.hidden"), "mine");
    write(QStringLiteral("file"), "mine");
    expectRefusal([&] { return exported(store, QStringLiteral("full")); }, QStringLiteral("is not empty"));
    expectRefusal([&] { return exported(store, QStringLiteral("file")); }, QStringLiteral("is a file"));
    expectRefusal([&] { return exported(store, QStringLiteral("none/out")); },
                  QStringLiteral("cannot be made"));
    EXPECT_EQ(QDir(file(QStringLiteral("full")))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                  .size(),
              1);
    // An empty one is taken, and nothing is left beside it.
    QDir(mFolder.path()).mkdir(QStringLiteral("empty"));
    EXPECT_EQ(exported(store, QStringLiteral("empty"), {QStringLiteral("--plain-only")}).exitCode, 0);
    EXPECT_EQ(QDir(mFolder.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList({QStringLiteral("empty"), QStringLiteral("full")}));
}

} // namespace
