#pragma once

#include "model/MoraStoreExport.h"

#include <QHash>
#include <QString>

class QSqlDatabase;

/// From here on the operations on a PostgreSQL connection also write the rows that they add, change and remove
/// into tables beside, each in one statement with what it does: what is rolled back is no longer there, either.
/// Whole networks are written row by row then, not as streams. Ends with the connection.
/// @param tables by the lower case name of the tables that are recorded, as a statement spells them; each has a
///        flag, true for a row that came and false for one that went, and the columns of the table.
/// @param condition which rows are wanted: "NetId = 1"; empty for all.
MORASTORE_EXPORT void recordRows(const QSqlDatabase &db, const QHash<QString, QString> &tables,
                                 const QString &condition);
/// Ends that.
MORASTORE_EXPORT void recordNoRows(const QSqlDatabase &db);
/// The statement that does what @p sql does and keeps its rows, while rows are recorded on the connection; @p sql
/// itself elsewhere. For those who write by statements of their own.
MORASTORE_EXPORT QString asRecorded(const QSqlDatabase &db, const QString &sql);
