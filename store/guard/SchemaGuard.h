#pragma once

#include "model/CallDbResult.h"
#include "model/MoraStoreExport.h"

#include <QString>
#include <QStringList>

class QSqlDatabase;

/// What the schema of an open store must be before the store is trusted: tables and rows, and nothing that
/// runs when they are read or written.
namespace schemaguard {

/// The tables that are the format's in any generation; all others are a plug-in's.
MORASTORE_EXPORT const QStringList &tablesOfTheFormat();

/// Whether the tables of the format are plain tables: no views, virtual or foreign tables; without triggers,
/// rules, checks, generated columns, computed defaults, conflict clauses, indexes of expressions or of some
/// rows. No store has ever had any of these, and each would do what its author wrote, or drop rows unseen,
/// with the operations of whoever opens the store. Tables of plug-ins are not looked at. The leaves of a
/// partitioned table are held to the same, but that one may be on another PostgreSQL server.
///
/// Otherwise, and when the store cannot be asked, the reason is appended to @p failures; @p name is what it
/// calls the store; without one the reason stands alone.
MORASTORE_EXPORT bool hasPlainTables(const QSqlDatabase &db, const QString &name, FailureList &failures);

/// Whether the version that the store names is a known one, and that of its tables: keys led by the network
/// from version 6 on, and not before. A store that names none, having no table of versions or no row in it,
/// is taken as it is. Records as hasPlainTables() does.
MORASTORE_EXPORT bool hasFittingVersion(const QSqlDatabase &db, const QString &name, FailureList &failures);

} // namespace schemaguard
