#pragma once

#include "model/CallDbResult.h"

class QSqlDatabase;
class QSqlQuery;

/// Appends a failure. @return false, for the caller to return.
/// @param sql the statement; empty for a failure that is none of a statement.
/// @param id of the row or object that it is about; 0 for none.
bool recordFailure(FailureList &failures, const QString &sql, const QString &error, long id = 0);

/// True when the last statement of @p query succeeded; otherwise its text, last insert id and error are
/// appended to @p failures.
bool checkStatement(const QSqlQuery &query, FailureList &failures);

/// True when @p db is usable: the driver reports no error and, on SQLite, table IDGenerater can be read,
/// which is what tells a store from any other file. A failure is appended to @p failures.
///
/// Qt keeps a driver's last error until the connection is opened again, so a failed begin or commit makes
/// every later check fail as well: after such an error the store is left alone until it is reopened.
bool checkConnection(const QSqlDatabase &db, FailureList &failures);
