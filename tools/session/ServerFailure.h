#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>

class QSqlQuery;

namespace moratools {

/// @{ Throws `Failure` where a statement failed for what is wrong with a server (it is gone, its disk is full, ...)
/// or between it and the user (a missing right, a time-out): the store and its rows are as they should be, and
/// a sentence about them would mislead. Otherwise the caller says what it means.
/// @param store what messages call it; may be empty.
MORATOOLS_EXPORT void requireServer(const QSqlQuery &failed, const QString &store = {});
/// @param code the SQLSTATE. @param text the server's words.
MORATOOLS_EXPORT void requireServer(const QString &code, const QString &text, const QString &store = {});
/// @}

/// What is said of a server that does not answer any more.
QString lostConnection(const QString &store);

} // namespace moratools
