#include "tests/host/Beside.h"
#include "tests/host/Morastore.h"

#include <QElapsedTimer>

#include <memory>
#include <vector>

// Commands that write, while another program holds the store.

namespace {

const QString kWaiting = QStringLiteral("another program holds the store; waiting, for up to 60 s\n");

class WaitingWriter : public Morastore {
protected:
    /// Starts a command, does what lets it go on once it says that it waits, and gives what it left.
    static Outcome runUntilItWaits(const QStringList &command, const std::function<void()> &letGo) {
        QProcess process;
        process.start(morastoreProgram(),
                      command + QStringList{QStringLiteral("--wait"), QStringLiteral("60")});
        QByteArray said;
        QElapsedTimer since;
        since.start();
        while (!said.contains('\n') && process.state() != QProcess::NotRunning && since.elapsed() < 60000) {
            process.waitForReadyRead(1000);
            said += process.readAllStandardError();
        }
        letGo();
        EXPECT_TRUE(process.waitForFinished(120000));
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(said + process.readAllStandardError())};
    }

    /// Six imports that are started together, and all that they say on stderr but that they wait.
    static QString importSix(const QString &store) {
        std::vector<std::unique_ptr<QProcess>> imports;
        for (int i = 0; i < 6; ++i) {
            imports.push_back(std::make_unique<QProcess>());
            imports.back()->start(morastoreProgram(),
                                  {QStringLiteral("import"), store, kExample, QStringLiteral("--name"),
                                   QString::number(i), QStringLiteral("--wait"), QStringLiteral("60")});
        }
        QString said;
        for (const auto &import : imports) {
            EXPECT_TRUE(import->waitForFinished(200000));
            EXPECT_EQ(import->exitCode(), 0);
            said += QString::fromUtf8(import->readAllStandardError()).remove(kWaiting);
        }
        return said;
    }

    static QStringList impatient(const QStringList &command) {
        return command + QStringList{QStringLiteral("--wait"), QStringLiteral("0")};
    }
};

/// Another program's transaction on a file.
class Holder {
public:
    explicit Holder(const QString &path) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("holder"));
        db.setDatabaseName(path);
        EXPECT_TRUE(db.open());
    }
    ~Holder() { QSqlDatabase::removeDatabase(QStringLiteral("holder")); }
    void run(const char *sql) const {
        QSqlQuery query(QSqlDatabase::database(QStringLiteral("holder")));
        EXPECT_TRUE(query.exec(QLatin1String(sql))) << sql;
        query.next();
    }

private:
    Q_DISABLE_COPY(Holder)
};

} // namespace

TEST_F(WaitingWriter, GoesOnInAFileWhenAnotherHasFinished) {
    const QString store = newStore();
    const QString other = newStore(QStringLiteral("other.mora"));
    ASSERT_EQ(run({QStringLiteral("import"), store, kExample, QStringLiteral("--name"), QStringLiteral("a")})
                  .exitCode,
              0);
    ASSERT_EQ(run({QStringLiteral("import"), other, kExample, QStringLiteral("--name"), QStringLiteral("b")})
                  .exitCode,
              0);
    const struct {
        QStringList command;
        const char *held = nullptr;
        const char *refusal = nullptr;
    } table[] = {
        {{QStringLiteral("copy"), other, store}, "begin immediate", "another program holds the store"},
        {{QStringLiteral("compact"), store}, "begin immediate", "another program holds the store"},
        {{QStringLiteral("import"), store, kExample}, "begin exclusive", "another program holds the store"},
        {{QStringLiteral("remove"), store, QStringLiteral("a"), QStringLiteral("--yes")},
         "begin",
         "another program is reading the store"},
    };
    for (const auto &entry : table) {
        SCOPED_TRACE(entry.command.first().toStdString());
        const Holder holder(store);
        holder.run(entry.held);
        holder.run("select count(*) from Net");
        expectSentence(run(impatient(entry.command)), QLatin1String(entry.refusal));
        const Outcome outcome = runUntilItWaits(entry.command, [&] { holder.run("rollback"); });
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.err, kWaiting);
    }
    EXPECT_EQ(
        row(store, QStringLiteral("select group_concat(name) from (select name from Net order by name)")),
        QVariantList{QStringLiteral("b,crossing")});
    {
        const QStringList protect{QStringLiteral("protect"), other};
        const Holder holder(other);
        holder.run("begin");
        holder.run("select count(*) from Net");
        expectSentence(run(impatient(protect)), QStringLiteral("another program is using the store"));
        const Outcome outcome = runUntilItWaits(protect, [&] { holder.run("rollback"); });
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.err, kWaiting);
        EXPECT_FALSE(read(other).startsWith("SQLite format 3"));
    }
    EXPECT_EQ(importSix(store), QString());
    EXPECT_EQ(row(store, QStringLiteral("select count(*), count(distinct NetId) from Lane")),
              (QVariantList{8 * 28, 8}));
}

TEST_F(WaitingWriter, GoesOnOnAServerWhenAnotherHasFinished) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "no server";
    const PostgresDatabase store;
    const Beside beside(store.name());
    const QStringList import{QStringLiteral("import"), store.connectionString(), kExample};
    qputenv("PGPASSWORD", PostgresDatabase::password().toUtf8());
    beside.value(QStringLiteral("begin"));
    beside.value(QStringLiteral("lock table Net in share mode"));
    expectSentence(run(impatient(import)), QStringLiteral("another program is writing to the store"));
    EXPECT_EQ(run(import + QStringList{QStringLiteral("--wait"), QStringLiteral("-1")}).exitCode, 2);
    const Outcome outcome = runUntilItWaits(import, [&] { beside.value(QStringLiteral("rollback")); });
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, kWaiting);
    EXPECT_EQ(importSix(store.connectionString()), QString());
    EXPECT_EQ(
        beside.value(QStringLiteral("select string_agg(name || count, ' ' order by name) from (select name, "
                                    "count(*) from Net join Lane using (NetId) group by name) as t")),
        QStringLiteral("028 128 228 328 428 528 crossing28"));
}
