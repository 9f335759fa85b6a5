#pragma once

#include "tests/support/Places.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QVariant>
#include <gtest/gtest.h>

#include <functional>

/// A small signalised network.
const QString kExample = sourceFolder() + QStringLiteral("/examples/crossing/crossing.net.xml");

/// What the program left when it ended.
struct Outcome {
    int exitCode = -1;
    QString out;
    QString err;
};

/// The program from outside, on the files of a folder that goes with the case.
class Morastore : public testing::Test {
protected:
    static Outcome start(const QString &program, const QStringList &arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(240000)) << process.errorString().toStdString();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    static Outcome run(const QStringList &arguments) { return start(morastoreProgram(), arguments); }

    /// What a command that succeeds prints.
    static QString succeed(const QStringList &command) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exitCode, 0) << command.join(QLatin1Char(' ')).toStdString() << "\n"
                                       << outcome.err.toStdString();
        return outcome.out;
    }

    /// The program as a shell starts it: `redirections` are its last words ("> /dev/full").
    static Outcome runInShell(const QStringList &arguments, const char *redirections,
                              const char *before = "") {
        return start(
            QStringLiteral("/bin/sh"),
            QStringList{
                QStringLiteral("-c"),
                QStringLiteral("%1 exec \"$@\" %2").arg(QLatin1String(before), QLatin1String(redirections)),
                QStringLiteral("sh"), morastoreProgram()} +
                arguments);
    }

    QString file(const QString &name) const { return mFolder.filePath(name); }

    QString newStore(const QString &name = QStringLiteral("store.mora")) const {
        const Outcome outcome = run({QStringLiteral("new"), file(name)});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        return file(name);
    }

    static QByteArray read(const QString &path) {
        QFile source(path);
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    QString write(const QString &name, const QByteArray &bytes) const {
        QFile target(file(name));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        EXPECT_EQ(target.write(bytes), bytes.size());
        return file(name);
    }

    /// The rows of a statement on a store, by a connection of the test's own.
    static QList<QVariantList> allRows(const QString &path, const QString &sql) {
        QList<QVariantList> rows;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("outside"));
            db.setDatabaseName(path);
            EXPECT_TRUE(db.open());
            QSqlQuery query(db);
            EXPECT_TRUE(query.exec(sql)) << sql.toStdString() << query.lastError().text().toStdString();
            while (query.next()) {
                rows.append(QVariantList());
                for (int i = 0; i < query.record().count(); ++i)
                    rows.last().append(query.value(i));
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("outside"));
        return rows;
    }

    /// The first of them.
    static QVariantList row(const QString &path, const QString &sql) {
        const QList<QVariantList> rows = allRows(path, sql);
        EXPECT_FALSE(rows.isEmpty()) << sql.toStdString();
        return rows.value(0);
    }

    /// Executes statements on a store, by a connection of the test's own.
    static void alter(const QString &path, const QStringList &statements) {
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("alter"));
            db.setDatabaseName(path);
            EXPECT_TRUE(db.open());
            QSqlQuery query(db);
            for (const QString &sql : statements)
                EXPECT_TRUE(query.exec(sql)) << query.lastError().text().toStdString();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("alter"));
    }

    static QList<int> counts(const QString &path) {
        QList<int> list;
        for (
            const QVariant &value :
            row(path,
                QStringLiteral(
                    "select (select count(*) from Link), (select count(*) from Lane), (select count(*) from Connector), (select count(*) from LaneConnector)")))
            list.append(value.toInt());
        return list;
    }

    /// The command failed with one sentence on stderr that contains `expected`, and said nothing on stdout.
    static void expectSentence(const Outcome &outcome, const QString &expected) {
        EXPECT_EQ(outcome.exitCode, 1) << expected.toStdString();
        EXPECT_TRUE(outcome.out.isEmpty()) << outcome.out.toStdString();
        EXPECT_TRUE(outcome.err.startsWith(QLatin1String("morastore: "))) << outcome.err.toStdString();
        EXPECT_TRUE(outcome.err.contains(expected)) << expected.toStdString() << "\n"
                                                    << outcome.err.toStdString();
        EXPECT_EQ(outcome.err.count(QLatin1Char('\n')), 1) << outcome.err.toStdString();
    }

    /// The command fails with a sentence and leaves every file of the folder as it was.
    void expectRefusal(const std::function<Outcome()> &command, const QString &expected) const {
        const auto contents = [this] {
            QMap<QString, QByteArray> files;
            for (const QString &name : QDir(mFolder.path()).entryList(QDir::Files | QDir::Hidden))
                files.insert(name, read(file(name)));
            return files;
        };
        const QMap<QString, QByteArray> before = contents();
        expectSentence(command(), expected);
        const QMap<QString, QByteArray> after = contents();
        EXPECT_EQ(after.keys(), before.keys()) << expected.toStdString();
        EXPECT_TRUE(after == before) << expected.toStdString();
    }

    QTemporaryDir mFolder;
};
