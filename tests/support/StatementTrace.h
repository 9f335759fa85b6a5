#pragma once

#include <QStringList>

struct sqlite3;
class QSqlDatabase;

/// The engine's own handle of an SQLite connection; null on other engines.
sqlite3 *engineOf(const QSqlDatabase &db);

/// Records what the SQLite engine executes on a connection, in order and with its placeholders unfilled,
/// until it is destroyed. What the engine refuses to prepare never executes. One trace at a time on a
/// connection.
class StatementTrace {
public:
    /// @param db an open SQLite connection; it must stay open as long as the trace.
    explicit StatementTrace(const QSqlDatabase &db);
    ~StatementTrace();
    StatementTrace(const StatementTrace &) = delete;
    StatementTrace &operator=(const StatementTrace &) = delete;

    const QStringList &statements() const { return mStatements; }

    /// Whether Qt's driver runs on the engine that this program is linked with. A driver with an engine of
    /// its own cannot be traced from here.
    static bool canTrace(const QSqlDatabase &db);

private:
    sqlite3 *mEngine;
    QStringList mStatements;
};
