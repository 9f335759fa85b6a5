#include "tests/host/Morastore.h"
#include "tests/support/RealData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

// A network of SUMO's goes into a store, comes out, and goes in again. What comes out is held against the first file by
// tests/netcompare, which knows nothing of stores.

namespace {

QString pathOf(const char *network) {
    const QString real = realDataFile(QLatin1String(network));
    return QLatin1String(network) == QLatin1String("crossing") ? kExample : real;
}

class Circle : public Morastore, public testing::WithParamInterface<const char *> {
protected:
    void SetUp() override {
        if (pathOf(GetParam()).isEmpty())
            GTEST_SKIP() << "no real networks";
        if (QStandardPaths::findExecutable(QStringLiteral("python3")).isEmpty())
            GTEST_SKIP() << "no Python";
    }

    QString imported(const QString &store, const QString &network) const {
        const Outcome outcome = run({QStringLiteral("import"), newStore(store), network,
                                     QStringLiteral("--name"), QStringLiteral("n")});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return file(store);
    }

    /// The network file that comes out.
    QString exported(const QString &store, const QString &folder) const {
        const Outcome outcome =
            run({QStringLiteral("export"), store, file(folder), QStringLiteral("--sumo")});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return file(folder + QStringLiteral("/n.net.xml"));
    }

    /// What differs, by kind.
    static QJsonObject differences(const QString &a, const QString &b) {
        const Outcome outcome =
            start(QStandardPaths::findExecutable(QStringLiteral("python3")),
                  {sourceFolder() + QStringLiteral("/tests/netcompare/compare_nets.py"),
                   QStringLiteral("--json"), QStringLiteral("--first"), QStringLiteral("1000"), a, b});
        EXPECT_LT(outcome.exitCode, 2) << outcome.err.toStdString();
        QJsonObject kinds = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
        EXPECT_GT(kinds.size(), 30);
        for (const QString &kind : kinds.keys()) {
            if (kinds[kind].toObject().value(QStringLiteral("differing")).toInt() == 0)
                kinds.remove(kind);
        }
        return kinds;
    }

    static QString contentOf(const QString &store) {
        return run({QStringLiteral("digest"), QStringLiteral("--content"), store}).out;
    }

    static QString text(const QJsonObject &kinds) { return QString::fromUtf8(QJsonDocument(kinds).toJson()); }
};

TEST_P(Circle, WhatWasNotEditedComesOutAsItWentInAndGoesInAgain) {
    const QString first = pathOf(GetParam());
    const QString store = imported(QStringLiteral("a.mora"), first);
    const QString second = exported(store, QStringLiteral("out"));
    const QJsonObject kinds = differences(first, second);
    EXPECT_TRUE(kinds.isEmpty()) << text(kinds).toStdString();
    const QString again = imported(QStringLiteral("b.mora"), second);
    EXPECT_EQ(contentOf(again), contentOf(store));
}

TEST_P(Circle, AnEditedLinkDiffersAndTheJunctionsItTouchesAndNothingElse) {
    if (QStandardPaths::findExecutable(QStringLiteral("netconvert")).isEmpty())
        GTEST_SKIP() << "no SUMO";
    const QString first = pathOf(GetParam());
    if (first.contains(QLatin1String("badhersfeld")))
        GTEST_SKIP() << "netconvert takes long for it";
    const QString store = imported(QStringLiteral("a.mora"), first);
    const QVariantList link =
        allRows(store,
                QStringLiteral("select linkID, linkName, f.nodeName, t.nodeName from Link join Node f on "
                               "f.nodeID = StartNodeID join Node t on t.nodeID = EndNodeID where "
                               "laneNumber = 2 limit 1"))
            .value(0);
    ASSERT_EQ(link.size(), 4);
    allRows(store, QStringLiteral("update Lane set width = 4.5 where linkID = %1").arg(link[0].toInt()));
    const QJsonObject kinds = differences(first, exported(store, QStringLiteral("out")));

    const QString edge = link[1].toString();
    EXPECT_EQ(kinds.value(QStringLiteral("lane widths")).toObject().value(QStringLiteral("first")).toArray(),
              (QJsonArray{edge + QStringLiteral("_0"), edge + QStringLiteral("_1")}))
        << text(kinds).toStdString();
    EXPECT_TRUE(kinds.contains(QStringLiteral("junction shapes")));
    static const QStringList ofJunctions{
        QStringLiteral("connection paths"), QStringLiteral("connection states"),
        QStringLiteral("inner lanes"),      QStringLiteral("junction shapes"),
        QStringLiteral("inner junctions"),  QStringLiteral("inner connections"),
        QStringLiteral("right of way"),     QStringLiteral("lane widths")};
    for (const QString &kind : kinds.keys())
        EXPECT_TRUE(ofJunctions.contains(kind)) << kind.toStdString() << text(kinds).toStdString();
    for (const QJsonValue &inner :
         kinds.value(QStringLiteral("inner lanes")).toObject().value(QStringLiteral("first")).toArray()) {
        const QString junction = inner.toString().mid(1).section(QLatin1Char('_'), 0, -3);
        EXPECT_TRUE(junction == link[2].toString() || junction == link[3].toString())
            << junction.toStdString();
    }
    for (const QJsonValue &junction :
         kinds.value(QStringLiteral("junction shapes")).toObject().value(QStringLiteral("first")).toArray())
        EXPECT_TRUE(junction == link[2].toString() || junction == link[3].toString());
}

class Damaged : public Circle {};

TEST_P(Damaged, InsidesAreMadeAnew) {
    if (QStandardPaths::findExecutable(QStringLiteral("netconvert")).isEmpty())
        GTEST_SKIP() << "no SUMO";
    const QString store = imported(QStringLiteral("a.mora"), pathOf(GetParam()));
    const QString whole = QString::fromUtf8(read(exported(store, QStringLiteral("whole"))));
    const QList<QByteArray> texts{"x",
                                  "",
                                  "<edge id=\"a\n\n\n\n",
                                  "<edge/>\n\n<junction/>\n\n\n<connection",
                                  "<edge/>\n\n<junction/>\n\n\n<net/>\n",
                                  "<edge/>\n\n\n\n<connection/>\n"};
    for (const QByteArray &text : texts) {
        allRows(store,
                QStringLiteral("update Link set otherAttrsJson = cast(json_set(cast(otherAttrsJson as text), "
                               "'$.sumo.junction.inside', '%1') as blob) where linkName = 'east_quay'")
                    .arg(QString::fromLatin1(qCompress(text).toBase64())));
        const Outcome outcome = run({QStringLiteral("export"), store,
                                     file(QString::number(texts.indexOf(text))), QStringLiteral("--sumo")});
        EXPECT_EQ(outcome.exitCode, 0) << text.toStdString();
        EXPECT_TRUE(outcome.err.contains(QStringLiteral("junctions whose links were edited: quay")))
            << text.toStdString();
        const QString network = QString::fromUtf8(
            read(file(QString::number(texts.indexOf(text)) + QStringLiteral("/n.net.xml"))));
        EXPECT_EQ(network.count(QStringLiteral("<connection ")), whole.count(QStringLiteral("<connection ")));
    }
}

INSTANTIATE_TEST_SUITE_P(Networks, Damaged, testing::Values("crossing"));

INSTANTIATE_TEST_SUITE_P(
    Networks, Circle,
    testing::Values("crossing", "rilsa/net.net.xml", "bologna/joined_buslanes.net.xml.gz",
                    "berlin/net.net.xml.gz", "badhersfeld/osm_edited.net.xml.gz"),
    [](const auto &network) {
        return QString::fromLatin1(network.param).section(QLatin1Char('/'), 0, 0).toStdString();
    });

} // namespace
