#include "tests/host/Beside.h"
#include "tests/host/Morastore.h"
#include "tests/support/PostgresDatabase.h"

// Passwords and names of any characters: taken whole, from wherever they may come, and passwords shown nowhere.

namespace {

class Secrets : public Morastore {
protected:
    void SetUp() override {
        if (!PostgresDatabase::hasServer())
            GTEST_SKIP() << "no PostgreSQL server";
        // A locale that knows no such characters.
        qputenv("LC_ALL", "C");
    }
    void TearDown() override {
        for (const char *name : {"PGPASSWORD", "PGPASSFILE", "PGSERVICEFILE", "PGCLIENTENCODING"})
            qunsetenv(name);
    }

    QString secretFile(const QString &name, const QString &text) const {
        const QString path = write(name, text.toUtf8());
        EXPECT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
        return path;
    }

    /// Runs a command with a password from each place in turn.
    template <class Check>
    void fromEachPlace(const PostgresDatabase &store, const QString &password, const Check &check) const {
        const QString address = store.connectionString();
        QString spelled = password;
        spelled.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
            .replace(QLatin1Char('\''), QLatin1String("\\'"));
        check(address + QStringLiteral(" password='%1'").arg(spelled));
        qputenv("PGPASSWORD", password.toUtf8());
        check(address);
        qunsetenv("PGPASSWORD");
        spelled = password;
        spelled.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
            .replace(QLatin1Char(':'), QLatin1String("\\:"));
        qputenv(
            "PGPASSFILE",
            secretFile(QStringLiteral("passwords"), QStringLiteral("*:*:*:*:%1\n").arg(spelled)).toUtf8());
        check(address);
        qunsetenv("PGPASSFILE");
        qputenv("PGSERVICEFILE",
                secretFile(QStringLiteral("services"), QStringLiteral("[city]\npassword=%1\n").arg(password))
                    .toUtf8());
        check(address + QStringLiteral(" service=city"));
        qunsetenv("PGSERVICEFILE");
    }
};

} // namespace

TEST_F(Secrets, APasswordOfAnyCharactersIsTakenWholeAndShownNowhere) {
    const PostgresDatabase store;
    const QString right = PostgresDatabase::password();
    ASSERT_TRUE(right.contains(QLatin1Char('"')) && right.contains(QLatin1String("%1")) &&
                right.contains(QStringLiteral("路")));
    fromEachPlace(store, right, [&](const QString &address) {
        const Outcome outcome = run({QStringLiteral("info"), address, QStringLiteral("--verbose")});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        EXPECT_FALSE((outcome.out + outcome.err).contains(right)) << outcome.out.toStdString();
    });
    const QString wrong = QStringLiteral("s3cr3t %1%2' \\ \" 路:x");
    fromEachPlace(store, wrong, [&](const QString &address) {
        const Outcome outcome =
            run({QStringLiteral("import"), address, kExample, QStringLiteral("--verbose")});
        expectSentence(outcome, QStringLiteral("refuses the user or the password"));
        EXPECT_FALSE(outcome.err.contains(QLatin1String("s3cr3t"))) << outcome.err.toStdString();
    });
}

TEST_F(Secrets, AProgramThatIsStartedIsNotToldOnItsCommandLine) {
    const PostgresDatabase empty(PostgresDatabase::Content::Nothing);
    write(
        QStringLiteral("pg_restore"),
        QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\" >'%1'\nprintf '%s' \"$PGPASSWORD\" >'%2'\nexit 1\n")
            .arg(file(QStringLiteral("arguments")), file(QStringLiteral("told")))
            .toUtf8());
    ASSERT_TRUE(
        QFile::setPermissions(file(QStringLiteral("pg_restore")), QFile::ReadOwner | QFile::ExeOwner));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", mFolder.path().toUtf8() + ':' + path);
    const QString password = PostgresDatabase::password();
    const QString address = empty.connectionString() + QStringLiteral(" password='%1'").arg(password);
    expectSentence(run({QStringLiteral("new"), QStringLiteral("--postgres"), address}),
                   QStringLiteral("the store cannot be made"));
    qputenv("PATH", path);
    EXPECT_TRUE(read(file(QStringLiteral("arguments"))).contains("--dbname="));
    EXPECT_FALSE(read(file(QStringLiteral("arguments"))).contains(password.toUtf8()));
    EXPECT_EQ(QString::fromUtf8(read(file(QStringLiteral("told")))), password);
}

TEST_F(Secrets, TextsAreUtf8WhateverTheClientIsSetTo) {
    qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    const PostgresDatabase store;
    qputenv("PGCLIENTENCODING", "LATIN1");
    const QString name = QStringLiteral("路 ä %1 '\"\\");
    for (const char *more : {"", " client_encoding=LATIN1"}) {
        const QString address = store.connectionString() + QLatin1String(more);
        const Outcome outcome =
            run({QStringLiteral("import"), address, kExample, QStringLiteral("--name"), name});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
        const Beside beside(store.name());
        EXPECT_EQ(beside.value(QStringLiteral("select encode(convert_to(name, 'UTF8'), 'hex') from Net")),
                  QString::fromLatin1(name.toUtf8().toHex()));
        EXPECT_TRUE(run({QStringLiteral("digest"), address}).out.contains(name));
        EXPECT_EQ(run({QStringLiteral("remove"), address, name, QStringLiteral("--yes")}).exitCode, 0);
    }
    qunsetenv("PGCLIENTENCODING");
    const Beside beside(store.name());
    const QString narrow = store.name() + QStringLiteral("_latin1");
    beside.value(
        QStringLiteral("create database %1 encoding 'LATIN1' locale 'C' template template0").arg(narrow));
    const QString address = store.connectionString().replace(store.name(), narrow);
    expectSentence(run({QStringLiteral("new"), QStringLiteral("--postgres"), address}),
                   QStringLiteral("does not keep its texts in UTF-8"));
    beside.value(QStringLiteral("drop database %1").arg(narrow));
}
