#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A PostgreSQL server that a test has for itself and may stop, kill and copy. Its superuser `postgres` needs no
/// password on its Unix socket. It is gone with the object.
class OwnServer {
public:
    /// Whether the programs of a server are installed; a test that needs one skips itself otherwise.
    static bool isPossible();

    /// @param settings lines for postgresql.conf.
    explicit OwnServer(const QStringList &settings = {}, int port = 5432);
    /// A port of 127.0.0.1 that nobody has.
    static int freePort();
    /// A standby that streams what @p primary writes.
    static std::unique_ptr<OwnServer> standbyOf(const OwnServer &primary);
    ~OwnServer();
    OwnServer(const OwnServer &) = delete;
    OwnServer &operator=(const OwnServer &) = delete;

    /// The folder of the Unix socket, which is all of the server's.
    QString folder() const { return mFolder.path(); }
    QString dataFolder() const { return folder() + QStringLiteral("/data"); }
    int port() const { return mPort; }
    QString connectionString(const QString &database, const QString &more = {}) const;

    /// Starts it, also after a crash.
    void start();
    /// @param mode as pg_ctl knows it: "smart", "fast" or "immediate".
    void stop(const char *mode);
    /// As kill -9 does.
    void kill();

    /// The first value that a statement gives the superuser.
    QString value(const QString &database, const QString &sql) const;
    /// Runs a program as the user that the server runs as; what it printed.
    QString run(const QString &program, const QStringList &arguments) const;
    /// Gives a file to the server's user, and to nobody else.
    void own(const QString &path) const;

private:
    struct Unmade {};
    explicit OwnServer(Unmade);

    QTemporaryDir mFolder;
    int mPort = 5432;
};
