#pragma once

#include "model/CallDbResult.h"

class QSqlDatabase;
class QSqlDriver;
class QSqlError;
class QSqlQuery;

/// While it lives, failures that this thread records name the operation. Of several the outermost counts: that
/// is the one which the host called.
class OperationName {
public:
    OperationName() = default;
    /// @param name a literal.
    explicit OperationName(const char *name);
    OperationName(OperationName &&other) noexcept;
    OperationName &operator=(OperationName &&other) noexcept;
    ~OperationName();

private:
    bool mIsSet = false;
};

/// Appends a failure, with its number and the operation's name. @return false, for the caller to return.
bool recordFailure(FailureList &failures, CallDbResult failure);
/// The same for a failure that no engine has reported.
/// @param sql the statement; empty for a failure that is none of a statement.
/// @param id of the row or object that it is about; 0 for none.
bool recordFailure(FailureList &failures, const QString &sql, const QString &error, long id = 0,
                   FailureKind kind = FailureKind::Other);

/// The number of the failure that was recorded last in this process, in whichever list.
quint64 lastFailureNumber();

/// What an engine's code says; Other for those that say nothing in particular.
/// @param code SQLite's result code, extended or not, or an SQLSTATE.
FailureKind failureKind(const QString &code, bool isSqlite);
/// A record of what the driver reports.
CallDbResult failureOf(const QSqlError &error, const QSqlDriver *driver);

/// True when the last statement of @p query succeeded; otherwise its text, last insert id and error are
/// appended to @p failures.
/// @param objectId of the object or row that it is about, as far as the caller knows.
/// @param sql the statement, where it is another one than that which the engine ran.
bool checkStatement(const QSqlQuery &query, FailureList &failures, long objectId = 0,
                    const QString &sql = {});

/// True when @p db is usable: the driver reports no error and, on SQLite, table IDGenerater can be read,
/// which is what tells a store from any other file. A failure is appended to @p failures.
///
/// Qt keeps a driver's last error until the connection is opened again, so a failed commit makes every later
/// check fail as well: after such an error the store is left alone until it is reopened.
bool checkConnection(const QSqlDatabase &db, FailureList &failures);
