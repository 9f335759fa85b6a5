#include "tests/host/Morastore.h"
#include "tests/support/RealData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <map>
#include <zlib.h>

// What --report says of an import, beside a count of the same files with Qt's own parser.

namespace {

/// By element and attribute; the element itself has an empty one.
using Counts = std::map<std::pair<QString, QString>, qint64>;

void countPlainly(const QByteArray &xml, Counts &counts) {
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString name = reader.name().toString();
        ++counts[{name, QString()}];
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            ++counts[{name, attribute.qualifiedName().toString()}];
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
}

QByteArray inflated(const QString &path) {
    const gzFile file = gzopen(QFile::encodeName(path).constData(), "rb");
    QByteArray all;
    char part[65536];
    for (int got = gzread(file, part, sizeof part); got > 0; got = gzread(file, part, sizeof part))
        all.append(part, got);
    gzclose(file);
    return all;
}

class Report : public Morastore {
protected:
    /// Imports the files, the first being the network, and gives the report.
    QJsonObject reportOf(const QStringList &files, int exitCode) {
        const QString path = file(QStringLiteral("report.json"));
        QStringList arguments{QStringLiteral("import"), newStore(QString::number(++mStores)), files.first(),
                              QStringLiteral("--report"), path};
        for (const QString &name : files.mid(1))
            arguments << QStringLiteral("--additional") << name;
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err.toStdString();
        QJsonObject report = QJsonDocument::fromJson(read(path)).object();
        EXPECT_EQ(report.value(QStringLiteral("files")).toArray().size(), files.size());
        return report;
    }

    int mStores = 0;

    static Counts sumsOf(const QJsonObject &report) {
        Counts sums;
        const QJsonArray rows = report.value(QStringLiteral("elements")).toArray();
        for (const QJsonValue &value : rows) {
            const QJsonObject row = value.toObject();
            const bool isLeftOut = row.value(QStringLiteral("target")) == QStringLiteral("leftOut");
            EXPECT_EQ(row.contains(QStringLiteral("reason")), isLeftOut);
            EXPECT_EQ(row.value(QStringLiteral("where")).isNull(), isLeftOut);
            sums[{row.value(QStringLiteral("element")).toString(),
                  row.value(QStringLiteral("attribute")).toString()}] +=
                qint64(row.value(QStringLiteral("read")).toDouble());
        }
        return sums;
    }

    /// How many of an element or an attribute have a target and a reason or a place.
    static qint64 countOf(const QJsonObject &report, const char *element, const char *attribute,
                          const char *target, const char *whereOrReason) {
        qint64 count = 0;
        const QJsonArray rows = report.value(QStringLiteral("elements")).toArray();
        for (const QJsonValue &value : rows) {
            const QJsonObject row = value.toObject();
            const QString why =
                row.value(QLatin1String("reason")).toString(row.value(QLatin1String("where")).toString());
            if (row.value(QLatin1String("element")) == QLatin1String(element) &&
                row.value(QLatin1String("attribute")).toString() == QLatin1String(attribute) &&
                row.value(QLatin1String("target")) == QLatin1String(target) &&
                why == QLatin1String(whereOrReason))
                count += qint64(row.value(QLatin1String("read")).toDouble());
        }
        return count;
    }
};

TEST_F(Report, KeptAndLeftOutAreWhatThePlainCountGives) {
    const char *cities[][8] = {
        {"rilsa/net.net.xml", "rilsa/tls.add.xml", "rilsa/vtypes.add.xml", "rilsa/routes.rou.xml.gz"},
        {"bologna/joined_buslanes.net.xml.gz", "bologna/joined_vtypes.add.xml",
         "bologna/joined_bus_stops.add.xml", "bologna/joined_detectors.add.xml", "bologna/joined_tls.add.xml",
         "bologna/joined_busses.rou.xml", "bologna/joined.rou.xml.gz"},
        {"berlin/net.net.xml.gz", "berlin/stops.add.xml", "berlin/flows_2.rou.xml", "berlin/turn_ratio.xml",
         "berlin/pt_lines.rou.xml"},
        {"badhersfeld/osm_edited.net.xml.gz", "badhersfeld/induction_loops.add.xml",
         "badhersfeld/osm_parking_rerouters.add.xml.gz"},
    };
    const QString crossing = sourceFolder() + QStringLiteral("/examples/crossing/");
    std::vector<QStringList> scenarios{{crossing + QStringLiteral("crossing.net.xml")}};
    for (const auto &city : cities) {
        QStringList files;
        for (const char *name : city) {
            if (name)
                files << realDataFile(QLatin1String(name));
        }
        if (!files.contains(QString()))
            scenarios.push_back(files);
    }
    for (const QStringList &files : scenarios) {
        SCOPED_TRACE(files.first().toStdString());
        Counts plain;
        for (const QString &name : files)
            countPlainly(inflated(name), plain);
        const bool hasMistakes = files.first().contains(QLatin1String("/berlin/"));
        EXPECT_EQ(sumsOf(reportOf(files, hasMistakes ? 3 : 0)), plain);
    }
}

TEST_F(Report, WhatIsLeftOutGoesWithAllThatIsInIt) {
    QByteArray twice = read(sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml"));
    twice.replace("</net>",
                  "<connection from=\"west_in\" to=\"approach_market\" fromLane=\"0\" toLane=\"0\" dir=\"s\" "
                  "paint=\"red\"><param key=\"k\" value=\"v\"/></connection></net>");
    const QString net = write(QStringLiteral("twice.net.xml"), twice);
    const QString companions = write(
        QStringLiteral("more.xml"),
        "<additional><vType id=\"t\" tau=\"1\"/>"
        "<vehicle id=\"a\" depart=\"0\"><route edges=\"gone\"/><stop lane=\"gone_0\" duration=\"5\"/></vehicle>"
        "<vehicle id=\"b\" depart=\"0\"><route edges=\"west_in approach_market\"/></vehicle>"
        "<vehicle id=\"c\" depart=\"0\"><route edges=\"missing\"/></vehicle>"
        "<vehicle id=\"d\" depart=\"triggered\"><route edges=\"west_in approach_market\"/></vehicle>"
        "<person id=\"p\" depart=\"5\"><walk edges=\"west_in\"/></person>"
        "<inductionLoop id=\"l\" lane=\"gone_0\" paint=\"red\"/>"
        "<inductionLoop id=\"k\" lane=\"west_in_0\" paint=\"red\"/></additional>");
    const QJsonObject report = reportOf({net, companions}, 3);
    EXPECT_EQ(countOf(report, "connection", "paint", "leftOut", "it occurs a second time"), 1);
    EXPECT_EQ(countOf(report, "param", "key", "leftOut", "it occurs a second time"), 1);
    EXPECT_EQ(countOf(report, "vehicle", "", "leftOut", "no edge"), 2) << "one reason, whatever the name";
    EXPECT_EQ(countOf(report, "vehicle", "depart", "column", "DepartureInterval.interval"), 1);
    // A vehicle without a time and a person who does not ride are kept, and nothing is made of them.
    EXPECT_EQ(countOf(report, "vehicle", "depart", "attributes", "Net.otherAttrsJson sumo.files"), 1);
    EXPECT_EQ(countOf(report, "person", "", "attributes", "Net.otherAttrsJson sumo.files"), 1);
    EXPECT_EQ(countOf(report, "route", "edges", "attributes", "Net.otherAttrsJson sumo.files"), 1);
    EXPECT_EQ(countOf(report, "stop", "duration", "leftOut", "no edge"), 1);
    EXPECT_EQ(countOf(report, "route", "edges", "column", "RoutingLink.linkID"), 1);
    EXPECT_EQ(countOf(report, "inductionLoop", "paint", "leftOut", "no lane"), 1);
    EXPECT_EQ(countOf(report, "inductionLoop", "paint", "attributes", "Net.otherAttrsJson sumo.files"), 1);
    EXPECT_EQ(countOf(report, "vType", "tau", "attributes", "Net.otherAttrsJson sumo.files"), 1);
}

TEST_F(Report, IsWrittenAsAWholeOrNotAtAll) {
    const QString net = sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml");
    const QString store = newStore();
    const QByteArray before = read(store);
    // A store is no place for it, which is said before anything is read.
    const Outcome refused = run({QStringLiteral("import"), store, net, QStringLiteral("--report"), store});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains(QLatin1String("this is a store; give another path for the report")))
        << refused.err.toStdString();
    EXPECT_EQ(read(store), before);
    const QString nowhere = file(QStringLiteral("gone/report.json"));
    const Outcome lost = run({QStringLiteral("import"), store, net, QStringLiteral("--report"), nowhere});
    EXPECT_EQ(lost.exitCode, 4);
    EXPECT_TRUE(lost.err.contains(QLatin1String("is in the store, but the report is not written")))
        << lost.err.toStdString();
    EXPECT_EQ(row(store, QStringLiteral("select count(*) from Link")).first(), 13);
}

} // namespace
