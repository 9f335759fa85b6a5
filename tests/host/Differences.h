#pragma once

#include "tests/host/Morastore.h"
#include "tests/support/PostgresDatabase.h"

/// Two versions of a network in stores, and what the commands make of their differences.
class Differences : public Morastore {
protected:
    void SetUp() override {
        if (PostgresDatabase::hasServer())
            qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    }

    /// The crossing with all its companions.
    QString crossing(const QString &name) const {
        const QString folder = QFileInfo(kExample).path();
        QString store = newStore(name);
        EXPECT_EQ(run({QStringLiteral("import"), store, kExample, QStringLiteral("--additional"),
                       folder + QStringLiteral("/crossing.add.xml"), QStringLiteral("--routes"),
                       folder + QStringLiteral("/crossing.rou.xml"), QStringLiteral("--routes"),
                       folder + QStringLiteral("/turns.xml")})
                      .exitCode,
                  0);
        return store;
    }

    QString copyOf(const QString &store, const QString &name, const QStringList &changes) const {
        EXPECT_TRUE(QFile::copy(store, file(name)));
        alter(file(name), changes);
        return file(name);
    }

    static QString diff(const QString &one, const QString &other, const QStringList &options = {}) {
        const Outcome outcome = run(QStringList{QStringLiteral("diff"), one, other} + options);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return outcome.out;
    }

    QByteArray patch(const QString &one, const QString &other) const {
        EXPECT_EQ(diff(one, other, {QStringLiteral("-o"), file(QStringLiteral("patch"))}), QString());
        return read(file(QStringLiteral("patch")));
    }
};

/// What makes another version of the crossing: of every kind of difference one.
const QStringList kChanges{
    QStringLiteral("update Net set caption = 'c', isDefault = 'F'"),
    QStringLiteral("update Link set limitSpeed = 30, linkName = 'Quay' || char(10) where linkID = 1"),
    QStringLiteral("update Lane set width = 3.25, otherAttrsJson = '{\"a\": 1}', leftBreakPointsJson = "
                   "'{\"data\":[{\"x\":1,\"y\":2,\"z\":0}]}' where laneID = 5"),
    QStringLiteral("delete from LinkVertex where linkID = 2 and num = 4"),
    QStringLiteral("update SignalColor set timeLength = 46 where signalPhaseID = 1 and serialNumber = 1"),
    QStringLiteral("insert into GuideArrow values(1, 77, 1, 2.5, 3, 4)"),
    QStringLiteral("insert into SignalGroup values(1, 98, 'night', 60, 0, 9)"),
    QStringLiteral("insert into SignalPhase values(1, 99, 98, 9, 'extra')"),
    QStringLiteral("insert into SignalColor values(1, 99, 1, 'Red', 3), (1, 99, 1, 'Red', 3)"),
    // Two rows change their numbers, and so their places by key.
    QStringLiteral("update LaneConnector set laneConnId = -1 where laneConnId = 1"),
    QStringLiteral("update LaneConnector set laneConnId = 1 where laneConnId = 2"),
    QStringLiteral("update LaneConnector set laneConnId = 2 where laneConnId = -1"),
};
