#pragma once

#include "tools/MoraToolsExport.h"

#include <functional>

class QSqlDatabase;
class QSqlError;
class QSqlQuery;
class QString;

namespace moratools {

/// How long this process waits for other programs that hold a store which it is to write to. Without a word of the
/// program it does not: what is held is refused.
///
/// Waited is for the write lock of a file or of a server's store, for programs that read a file which is to be
/// committed, and for those that have a file to themselves when it is opened.
namespace patience {

/// For all that follows in this process; set it before the first store is opened.
/// @param seconds 0 for none.
/// @param isWaiting is told whenever a wait begins to last, in the thread that waits.
MORATOOLS_EXPORT void set(int seconds, std::function<void()> isWaiting);

/// In milliseconds; 0 for none.
MORATOOLS_EXPORT int most();
/// Somebody waits now.
MORATOOLS_EXPORT void tellWaiting();
/// Whether SQLite refuses a statement for a lock that another connection has: its result code, of which the low
/// byte is the primary one, https://www.sqlite.org/rescode.html.
bool isHeld(const QSqlError &error);
/// Executes a statement on an SQLite file. Where another program holds that, it is tried for @p quick milliseconds,
/// and then for as long as the process waits.
QSqlQuery exec(const QSqlDatabase &db, const QString &sql, int quick);

} // namespace patience

} // namespace moratools
