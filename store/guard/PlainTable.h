#pragma once

#include <QString>

/// What an SQLite file says of its tables, judged by the statements that made them: the engine has no
/// question for checks and conflict clauses.
namespace plaintable {

/// What makes an entry of the catalogue (@p type: table, index, trigger, view) that belongs to a table of the
/// format more than a plain table or an index of columns: a noun for the user; empty where nothing does.
/// @param sql the statement that made it; empty for an index that goes with a key.
QString oddityOf(const QString &type, const QString &sql);

} // namespace plaintable
