#pragma once

#include "store/core/Failures.h"

#include <QDateTime>
#include <QString>

/// The text that the log gets: a heading of the store's name and the time, then each failure with its number,
/// the quoted statement, the id and the error, a line each where there is something to say.
QString failureLogText(const QString &storeName, const QDateTime &now, const FailureList &failures);

/// Writes failureLogText() to the log named after the base name of @p databaseName.
void writeFailureLog(const QString &databaseName, const FailureList &failures);
