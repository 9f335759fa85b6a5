#include "tests/support/OwnServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <memory>

#include <unistd.h>

namespace {

/// Where the server's programs are: on Debian in a folder of each version.
QString programFolder() {
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    int newest = 0;
    for (const QString &name : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        newest = std::max(newest, name.toInt());
    if (newest > 0)
        return versions.filePath(QStringLiteral("%1/bin/").arg(newest));
    return QStandardPaths::findExecutable(QStringLiteral("initdb")).section(QLatin1Char('/'), 0, -2) +
           QLatin1Char('/');
}

} // namespace

bool OwnServer::isPossible() {
    return QFile::exists(programFolder() + QStringLiteral("initdb"));
}

// The path of a Unix socket must stay short.
OwnServer::OwnServer(Unmade) : mFolder(QStringLiteral("/tmp/mora-own-XXXXXX")) {
    EXPECT_TRUE(mFolder.isValid());
    own(folder());
    // Others connect, too.
    EXPECT_EQ(QProcess::execute(QStringLiteral("chmod"), {QStringLiteral("755"), folder()}), 0);
}

OwnServer::OwnServer(const QStringList &settings, int port) : OwnServer(Unmade{}) {
    mPort = port;
    run(programFolder() + QStringLiteral("initdb"),
        {QStringLiteral("-D"), dataFolder(), QStringLiteral("-U"), QStringLiteral("postgres"),
         QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("-E"), QStringLiteral("UTF8"),
         QStringLiteral("--locale=C.UTF-8"), QStringLiteral("--no-sync")});
    QFile conf(dataFolder() + QStringLiteral("/postgresql.conf"));
    EXPECT_TRUE(conf.open(QIODevice::Append));
    const QStringList all =
        QStringList{QStringLiteral("listen_addresses=''"), QStringLiteral("port=%1").arg(port),
                    QStringLiteral("fsync=off"), QStringLiteral("autovacuum=off")} +
        settings;
    conf.write(all.join(QLatin1Char('\n')).toUtf8() + '\n');
    conf.close();
    start();
}

std::unique_ptr<OwnServer> OwnServer::standbyOf(const OwnServer &primary) {
    std::unique_ptr<OwnServer> standby(new OwnServer(Unmade{}));
    standby->mPort = primary.mPort;
    standby->run(programFolder() + QStringLiteral("pg_basebackup"),
                 {QStringLiteral("-h"), primary.folder(), QStringLiteral("-p"),
                  QString::number(primary.mPort), QStringLiteral("-U"), QStringLiteral("postgres"),
                  QStringLiteral("-D"), standby->dataFolder(), QStringLiteral("-R"),
                  QStringLiteral("--checkpoint=fast"), QStringLiteral("--no-sync")});
    standby->start();
    return standby;
}

OwnServer::~OwnServer() {
    if (QFile::exists(dataFolder() + QStringLiteral("/postmaster.pid")))
        stop("immediate");
}

int OwnServer::freePort() {
    QTcpServer server;
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    return server.serverPort();
}

QString OwnServer::connectionString(const QString &database, const QString &more) const {
    return QStringLiteral("dbname=%1 host=%2 port=%3 user=postgres %4")
        .arg(database, folder(), QString::number(mPort), more);
}

void OwnServer::start() {
    // What a killed server had in memory is in use until its last process has noticed.
    const QString option = QStringLiteral("-c unix_socket_directories='%1'").arg(folder());
    run(QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"),
         QStringLiteral(
             "for i in 1 2 3 4 5 6 7 8 9 10; do '%1pg_ctl' -D '%2' -l '%3/log' -w -o \"%4\" start >/dev/null "
             "&& exit 0; sleep 0.5; done; tail '%3/log'; exit 1")
             .arg(programFolder(), dataFolder(), folder(), option)});
}

void OwnServer::stop(const char *mode) {
    run(programFolder() + QStringLiteral("pg_ctl"),
        {QStringLiteral("-D"), dataFolder(), QStringLiteral("-m"), QLatin1String(mode), QStringLiteral("-w"),
         QStringLiteral("stop")});
}

void OwnServer::kill() {
    QFile file(dataFolder() + QStringLiteral("/postmaster.pid"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const int pid = file.readLine().trimmed().toInt();
    ASSERT_GT(pid, 1);
    EXPECT_EQ(::kill(pid, SIGKILL), 0);
}

QString OwnServer::value(const QString &database, const QString &sql) const {
    return run(programFolder() + QStringLiteral("psql"),
               {QStringLiteral("-XqAt"), QStringLiteral("-v"), QStringLiteral("ON_ERROR_STOP=1"),
                QStringLiteral("-h"), folder(), QStringLiteral("-p"), QString::number(mPort),
                QStringLiteral("-U"), QStringLiteral("postgres"), QStringLiteral("-d"), database,
                QStringLiteral("-c"), sql})
        .trimmed();
}

QString OwnServer::run(const QString &program, const QStringList &arguments) const {
    // The server refuses to run as root.
    const QStringList asServer = geteuid() == 0
                                     ? QStringList{QStringLiteral("runuser"), QStringLiteral("-u"),
                                                   QStringLiteral("postgres"), QStringLiteral("--")}
                                     : QStringList();
    const QStringList command = asServer + QStringList{program} + arguments;
    QProcess process;
    process.setWorkingDirectory(QStringLiteral("/tmp"));
    process.start(command.first(), command.mid(1));
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    const QString error = QString::fromUtf8(process.readAllStandardError());
    const QString out = QString::fromUtf8(process.readAllStandardOutput());
    EXPECT_EQ(process.exitCode(), 0) << program.toStdString() << ' ' << (out + error).toStdString();
    return out;
}

void OwnServer::own(const QString &path) const {
    EXPECT_TRUE(
        QFile::setPermissions(path, QFile::permissions(path) & ~(QFile::ReadGroup | QFile::WriteGroup |
                                                                 QFile::ReadOther | QFile::WriteOther)));
    if (geteuid() == 0) {
        EXPECT_EQ(QProcess::execute(QStringLiteral("chown"), {QStringLiteral("postgres"), path}), 0);
    }
}
