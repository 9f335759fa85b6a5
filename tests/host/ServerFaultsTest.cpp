#include "tests/host/Morastore.h"
#include "tests/support/OwnServer.h"
#include "tests/support/Proxy.h"

#include <iostream>
#include <random>

// What becomes of a store when its server, or the way to it, fails at any moment of any work: it has all of
// the work or nothing.

namespace {

enum class Fault { Cut, Terminate, Stall, StopFast, StopImmediate, Kill };

struct Kind {
    Fault fault;
    const char *name;
    int ofHundred;
};

constexpr Kind kKinds[] = {
    {Fault::Cut, "connection cut", 50},
    {Fault::Terminate, "session ended", 29},
    {Fault::Stall, "silence", 6},
    {Fault::StopFast, "server stopped", 5},
    {Fault::StopImmediate, "server stopped at once", 5},
    {Fault::Kill, "server killed", 5},
};

class ServerFaults : public Morastore {
protected:
    void SetUp() override {
        if (!OwnServer::isPossible())
            GTEST_SKIP() << "no PostgreSQL server";
        mServer = std::make_unique<OwnServer>();
        mProxy = std::make_unique<Proxy>(mServer->folder(), mServer->port());
        ASSERT_EQ(run({QStringLiteral("new"), QStringLiteral("--postgres"), direct()}).exitCode, 0);
        ASSERT_EQ(run({QStringLiteral("import"), direct(), kExample, QStringLiteral("--name"),
                       QStringLiteral("base")})
                      .exitCode,
                  0);
        mBase = digest();
        mCounts = countsOf(QStringLiteral("base"));
        ASSERT_TRUE(mCounts.startsWith(QLatin1String("1|"))) << mCounts.toStdString();
    }

    QString direct() const { return mServer->connectionString(QStringLiteral("city")); }
    QString address() const {
        return QStringLiteral(
                   "dbname=city host=127.0.0.1 port=%1 user=postgres tcp_user_timeout=900 connect_timeout=2")
            .arg(mProxy->port());
    }
    QString digest() const {
        return run({QStringLiteral("digest"), direct(), QStringLiteral("--net"), QStringLiteral("base")}).out;
    }
    /// How many rows of each sort the network of a name has.
    QString countsOf(const QString &name) const {
        QStringList parts;
        for (const char *table :
             {"Net", "Link", "Lane", "Node", "Vertex", "Connector", "LaneConnector", "SignalGroup",
              "SignalPhase", "SignalLamp", "VehicleType", "LinkType", "Configuration"})
            parts.append(
                QStringLiteral(
                    "(select count(*) from %1 where NetId in (select NetId from Net where name = '%2'))")
                    .arg(QLatin1String(table), name));
        return mServer->value(QStringLiteral("city"),
                              QStringLiteral("select ") + parts.join(QLatin1Char(',')));
    }

    /// Arms the proxy; a fault of the server comes by the clock.
    void arm(Fault fault, int at) {
        mProxy->stallAfter(fault == Fault::Stall ? at : -1);
        mProxy->cutAfter(fault == Fault::Cut ? at : -1);
    }
    void strike(Fault fault) {
        if (fault == Fault::Terminate)
            mServer->value(QStringLiteral("postgres"),
                           QStringLiteral("select count(pg_terminate_backend(pid)) from pg_stat_activity "
                                          "where application_name = 'morastore'"));
        else if (fault == Fault::StopFast)
            mServer->stop("fast");
        else if (fault == Fault::StopImmediate)
            mServer->stop("immediate");
        else if (fault == Fault::Kill)
            mServer->kill();
    }
    static bool isOfServer(Fault fault) {
        return fault == Fault::StopFast || fault == Fault::StopImmediate || fault == Fault::Kill;
    }

    /// Runs a command into a fault and says how it ended; -1 when it hung.
    int runInto(const QStringList &command, Fault fault, int bytes, int milliseconds) {
        arm(fault, bytes);
        QProcess process;
        process.start(morastoreProgram(), command);
        if (fault != Fault::Cut && fault != Fault::Stall) {
            process.waitForFinished(milliseconds);
            strike(fault);
        }
        const bool hasEnded = process.state() == QProcess::NotRunning || process.waitForFinished(20000);
        arm(Fault::Terminate, -1);
        if (isOfServer(fault))
            mServer->start();
        mSaid = QString::fromUtf8(process.readAllStandardError());
        return hasEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    std::unique_ptr<OwnServer> mServer;
    std::unique_ptr<Proxy> mProxy;
    QString mBase;
    QString mCounts;
    QString mSaid;
};

} // namespace

TEST_F(ServerFaults, AllOfAWorkIsThereOrNothing) {
    const int faults = qEnvironmentVariableIsSet("MORASTORE_FAULTS")
                           ? qEnvironmentVariableIntValue("MORASTORE_FAULTS")
                           : 100;
    const QString none = QStringLiteral("0|0|0|0|0|0|0|0|0|0|0|0|0");
    const QString name = QStringLiteral("it");
    const QStringList import{QStringLiteral("import"), address(), kExample, QStringLiteral("--name"), name};
    const QStringList copy{
        QStringLiteral("copy"),   address(), address(), QStringLiteral("--net"), QStringLiteral("base"),
        QStringLiteral("--name"), name};
    const QStringList remove{QStringLiteral("remove"), address(), name, QStringLiteral("--yes")};
    std::mt19937 random(1); // the same faults each time
    const auto below = [&random](int end) { return int(random() % unsigned(end)); };
    QMap<QString, int> done;
    QMap<QString, int> undone;
    int lost = 0;
    bool isThere = false;
    for (int i = 0; i < faults; ++i) {
        int place = i * 100 / faults;
        const Kind *kind = kKinds;
        for (; place >= kind->ofHundred; ++kind)
            place -= kind->ofHundred;
        const QStringList command = isThere ? remove : below(2) == 0 ? import : copy;
        const int bytes = below(40000);
        const int exitCode = runInto(command, kind->fault, bytes, below(250));
        SCOPED_TRACE(
            (QLatin1String(kind->name) + QLatin1Char(' ') + command.first() + QLatin1Char(' ') + mSaid)
                .toStdString());
        const QString counts = countsOf(name);
        const bool isWhole = counts == mCounts || counts == none;
        const bool wasThere = isThere;
        isThere = counts == mCounts;
        // Success is said of what is done, and failure of what is not, but when the answer to the commit is missing.
        const bool isAsSaid = exitCode == 0 ? isThere != wasThere
                              : exitCode == 1
                                  ? isThere == wasThere || mSaid.contains(QLatin1String("at the very end"))
                                  : false;
        const bool isGood = isWhole && isAsSaid && digest() == mBase &&
                            mSaid.count(QLatin1String("morastore: ")) == (exitCode == 0 ? 0 : 1);
        EXPECT_TRUE(isGood) << exitCode << ' ' << counts.toStdString();
        lost += isGood ? 0 : 1;
        ++(isThere == wasThere ? undone : done)[QLatin1String(kind->name)];
    }
    for (const Kind &kind : kKinds) {
        const QString of = QLatin1String(kind.name);
        std::cout << kind.name << ": " << done.value(of) + undone.value(of) << " faults, " << done.value(of)
                  << " after the work, " << undone.value(of) << " that undid it\n";
    }
    std::cout << faults << " faults, " << lost << " lost" << std::endl;
    EXPECT_EQ(lost, 0);
}
