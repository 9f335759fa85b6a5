#pragma once

#include <QStringList>

#include <cstdio>

class QSqlDatabase;
struct pg_conn;

/// Records the messages that a PostgreSQL connection sends to its server, a line each with its statement, until it is
/// destroyed. The client library writes them down itself. One trace at a time on a connection.
class ServerTrace {
public:
    /// @param db an open connection to a server; it must stay open as long as the trace.
    explicit ServerTrace(const QSqlDatabase &db);
    ~ServerTrace();
    ServerTrace(const ServerTrace &) = delete;
    ServerTrace &operator=(const ServerTrace &) = delete;

    /// What was sent so far.
    QStringList statements() const;

private:
    pg_conn *mConnection;
    std::FILE *mFile;
};
