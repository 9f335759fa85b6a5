#include "tests/host/Morastore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

// A network that was imported, edited for weeks, and has a newer source now.

namespace {

class Update : public Morastore {
protected:
    void SetUp() override {
        const QString folder = QFileInfo(kExample).path();
        mSource = read(kExample);
        mOld = write(QStringLiteral("old.net.xml"), mSource);
        mStore = newStore();
        // Beside another network, so that its numbers are not those of an import of its own.
        ASSERT_EQ(run({QStringLiteral("import"), mStore, kExample}).exitCode, 0);
        ASSERT_EQ(
            run({QStringLiteral("import"), mStore, mOld, QStringLiteral("--name"), QStringLiteral("city"),
                 QStringLiteral("--additional"), folder + QStringLiteral("/crossing.add.xml"),
                 QStringLiteral("--routes"), folder + QStringLiteral("/crossing.rou.xml")})
                .exitCode,
            0);
        alter(mStore,
              {QStringLiteral("update Link set limitSpeed = 30 where NetId = 2 and linkName = 'west_in'"),
               QStringLiteral("update Lane set width = 3.9 where NetId = 2 and serialNumber = 1 and "
                              "linkID = (select linkID from Link where NetId = 2 and linkName = 'north_in')"),
               QStringLiteral(
                   "insert into GuideArrow select 2, 777, laneID, 2.5, 3, 4 from Lane where NetId = 2 "
                   "order by laneID limit 1")});
        mBefore = file(QStringLiteral("before"));
        ASSERT_TRUE(QFile::copy(mStore, mBefore));
    }

    /// The source with other speeds on all lanes of an edge.
    static QByteArray withSpeed(const QByteArray &source, const char *edge, const char *speed) {
        QString text = QString::fromUtf8(source);
        text.replace(
            QRegularExpression(
                QStringLiteral("(<lane id=\"%1_[0-9]\"[^>]* speed=\")[0-9.]+").arg(QLatin1String(edge))),
            QStringLiteral("\\1") + QLatin1String(speed));
        return text.toUtf8();
    }

    Outcome update(const QByteArray &source, const QStringList &options = {}) const {
        return run(QStringList{QStringLiteral("update"), mStore, QStringLiteral("city"),
                               write(QStringLiteral("new.net.xml"), source)} +
                   options);
    }

    QString changes() const {
        return run({QStringLiteral("diff"), mBefore, mStore, QStringLiteral("--net"), QStringLiteral("city"),
                    QStringLiteral("--net-b"), QStringLiteral("city")})
            .out;
    }

    QString digestOfOther() const {
        return run({QStringLiteral("digest"), mStore, QStringLiteral("--net"), QStringLiteral("1")}).out;
    }

    int linkCalled(const char *name) const {
        return row(mBefore, QStringLiteral("select linkID from Link where NetId = 2 and linkName = '%1'")
                                .arg(QLatin1String(name)))
            .first()
            .toInt();
    }

    QByteArray mSource;
    QString mOld;
    QString mStore;
    QString mBefore;
};

} // namespace

TEST_F(Update, WhatIsNewInTheSourceComesAndEditsStay) {
    const QString other = digestOfOther();
    const Outcome outcome = update(withSpeed(mSource, "quay_east", "8.33"));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const QString told = changes();
    EXPECT_TRUE(told.contains(
        QStringLiteral("link %1 \"quay_east\": desiredSpeed 50.004 -> 29.988, limitSpeed 50.004 -> 29.988,")
            .arg(linkCalled("quay_east"))))
        << told.toStdString();
    // The rest of it is what imports keep of the edge and of the junction before it, and the connectors to it.
    for (const QString &line : told.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        EXPECT_TRUE(line.startsWith(QStringLiteral("Net: sourceUrl ")) ||
                    line.contains(QStringLiteral("quay_east\"")) ||
                    line.contains(QRegularExpression(
                        QStringLiteral("^link [0-9]+ \"[^\"]*\": otherAttrsJson changed"))))
            << line.toStdString();
    EXPECT_EQ(
        row(mStore,
            QStringLiteral("select (select limitSpeed from Link where NetId = 2 and linkName = 'west_in'), "
                           "(select count(*) from Lane where NetId = 2 and width = 3.9), "
                           "(select count(*) from GuideArrow where NetId = 2 and guideArrowID = 777), "
                           "(select count(*) from VehicleQueueCounter where NetId = 2)")),
        QVariantList({30, 1, 1, 1}));
    EXPECT_EQ(digestOfOther(), other);
    const QStringList copies = QFileInfo(mStore).dir().entryList(
        {QFileInfo(mStore).fileName() + QStringLiteral(".before-update-*")});
    ASSERT_EQ(copies.size(), 1);
    EXPECT_EQ(run({QStringLiteral("digest"), QFileInfo(mStore).dir().filePath(copies.first())}).out,
              run({QStringLiteral("digest"), mBefore}).out);
}

TEST_F(Update, TheSameSourceChangesNothing) {
    // Wherever the file is that it was imported from.
    EXPECT_EQ(update(mSource, {QStringLiteral("--base"), kExample}).exitCode, 0);
    EXPECT_EQ(update(mSource, {QStringLiteral("--base"), mOld}).exitCode, 0);
    EXPECT_EQ(changes().count(QLatin1Char('\n')), 1) << changes().toStdString();
    EXPECT_TRUE(changes().startsWith(QStringLiteral("Net: sourceUrl ")));
}

TEST_F(Update, WhatBothChangedIsAskedFor) {
    const QByteArray source = withSpeed(mSource, "west_in", "11.11");
    const QString digest = run({QStringLiteral("digest"), mStore}).out;
    const QString conflicts = file(QStringLiteral("conflicts"));
    const Outcome outcome = update(source, {QStringLiteral("--conflicts"), conflicts});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("the network is as it was")))
        << outcome.err.toStdString();
    EXPECT_EQ(run({QStringLiteral("digest"), mStore}).out, digest);
    const QList<QByteArray> lines = read(conflicts).split('\n');
    ASSERT_EQ(lines.size(), 3);
    const QJsonObject conflict = QJsonDocument::fromJson(lines[1]).object();
    EXPECT_EQ(conflict.value(QStringLiteral("column")).toString(), QStringLiteral("limitSpeed"));
    EXPECT_EQ(conflict.value(QStringLiteral("ours")).toDouble(), 30);
    EXPECT_EQ(conflict.value(QStringLiteral("theirs")).toDouble(), 11.11 * 3.6);
    for (const auto &answer : {std::make_pair("\"ours\"", 30.0), std::make_pair("{\"value\":35}", 35.0)}) {
        const QString answered =
            write(QStringLiteral("answered"),
                  read(conflicts).replace("\"take\":null", QByteArray("\"take\":") + answer.first));
        EXPECT_TRUE(QFile::remove(mStore) && QFile::copy(mBefore, mStore));
        const Outcome resolved =
            update(source, {QStringLiteral("--resolve"), answered, QStringLiteral("--no-backup")});
        EXPECT_EQ(resolved.exitCode, 0) << resolved.err.toStdString();
        EXPECT_EQ(row(mStore, QStringLiteral(
                                  "select limitSpeed, desiredSpeed from Link where NetId = 2 and linkName = "
                                  "'west_in'")),
                  QVariantList({answer.second, 11.11 * 3.6}));
    }
}

TEST_F(Update, ItSaysWhatItNeeds) {
    ASSERT_TRUE(QFile::remove(mOld));
    const QString source = write(QStringLiteral("new.net.xml"), mSource);
    const QString broken = write(QStringLiteral("broken.net.xml"), "<net>");
    const QString old = file(QStringLiteral("one"));
    ASSERT_EQ(
        run({QStringLiteral("new"), old, QStringLiteral("--template"), QStringLiteral("EmptyNet_V3.0.0")})
            .exitCode,
        0);
    ASSERT_EQ(run({QStringLiteral("import"), old, kExample}).exitCode, 0);
    const auto refused = [&](const QString &store, const QString &net, const QString &file,
                             const char *reason,
                             const QStringList &options = {QStringLiteral("--base"), kExample}) {
        expectRefusal(
            [&] {
                return run(QStringList{QStringLiteral("update"), store, net, file} + options);
            },
            QLatin1String(reason));
    };
    const QString city = QStringLiteral("city");
    refused(mStore, city, source, "name the file as it was then with --base", {});
    refused(mStore, QStringLiteral("town"), source, "town");
    refused(mStore, city, broken, "broken.net.xml");
    refused(mStore, city, mOld, "old.net.xml");
    refused(old, QStringLiteral("1"), source, "a store of one network");
}
