#include "tests/host/Morastore.h"
#include "tests/support/OwnServer.h"

#include <QThread>

// Reading from a server that streams what another one writes, and takes no changes.

namespace {

class Standby : public Morastore {
protected:
    void SetUp() override {
        if (!OwnServer::isPossible())
            GTEST_SKIP() << "no PostgreSQL server";
        mPrimary = std::make_unique<OwnServer>();
        ASSERT_EQ(run({QStringLiteral("new"), QStringLiteral("--postgres"), primary()}).exitCode, 0);
        ASSERT_EQ(run({QStringLiteral("import"), primary(), kExample}).exitCode, 0);
        mStandby = OwnServer::standbyOf(*mPrimary);
    }

    QString primary() const { return mPrimary->connectionString(QStringLiteral("city")); }
    QString standby() const { return mStandby->connectionString(QStringLiteral("city")); }
    void catchUp() const {
        const QString written =
            mPrimary->value(QStringLiteral("city"), QStringLiteral("select pg_current_wal_lsn()"));
        const QString question = QStringLiteral("select pg_last_wal_replay_lsn() >= '%1'").arg(written);
        for (int i = 0; i < 200; ++i) {
            if (mStandby->value(QStringLiteral("city"), question) == QLatin1String("t"))
                return;
            QThread::msleep(50);
        }
        ADD_FAILURE() << "the standby does not catch up";
    }
    static QString said(const QStringList &command) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exitCode, 0) << command.first().toStdString() << outcome.err.toStdString();
        EXPECT_FALSE(outcome.out.isEmpty()) << command.first().toStdString();
        return outcome.out;
    }

    std::unique_ptr<OwnServer> mPrimary;
    std::unique_ptr<OwnServer> mStandby;
};

} // namespace

TEST_F(Standby, ItIsReadAndNotWritten) {
    catchUp();
    EXPECT_EQ(mStandby->value(QStringLiteral("city"), QStringLiteral("select pg_is_in_recovery()")),
              QStringLiteral("t"));
    for (const QStringList &rest :
         {QStringList{QStringLiteral("digest")}, QStringList{QStringLiteral("check")},
          QStringList{QStringLiteral("show"), QStringLiteral("links")}}) {
        const auto of = [&rest](const QString &store) {
            return said(QStringList{rest.first(), store} + rest.mid(1));
        };
        EXPECT_EQ(of(standby()), of(primary()));
    }
    EXPECT_TRUE(said({QStringLiteral("info"), standby()}).contains(QLatin1String("networks    1\n")));
    const QString copy = newStore();
    EXPECT_EQ(run({QStringLiteral("copy"), standby(), copy}).exitCode, 0);
    EXPECT_EQ(said({QStringLiteral("digest"), copy}), said({QStringLiteral("digest"), primary()}));
    EXPECT_EQ(run({QStringLiteral("draw"), standby(), file(QStringLiteral("a.svg"))}).exitCode, 0);

    const QStringList import{QStringLiteral("import"), standby(), kExample, QStringLiteral("--name"),
                             QStringLiteral("two")};
    for (const QStringList &command : {import,
                                       QStringList{QStringLiteral("remove"), standby(),
                                                   QStringLiteral("crossing"), QStringLiteral("--yes")},
                                       QStringList{QStringLiteral("copy"), copy, standby(),
                                                   QStringLiteral("--name"), QStringLiteral("two")}})
        expectSentence(run(command),
                       QStringLiteral("the server takes no changes; use the server that it is a copy of"));

    // What the other one writes arrives; a list of hosts finds it for writing.
    const QString both =
        QStringLiteral("dbname=city host=%1,%2 user=postgres target_session_attrs=read-write")
            .arg(mStandby->folder(), mPrimary->folder());
    QStringList through = import;
    through[1] = both;
    EXPECT_EQ(run(through).exitCode, 0);
    catchUp();
    const QString digest = said({QStringLiteral("digest"), standby()});
    EXPECT_EQ(digest.count(QLatin1Char('\n')), 2);
    EXPECT_EQ(digest, said({QStringLiteral("digest"), primary()}));
}
