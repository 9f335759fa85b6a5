#pragma once

#include "store/core/Failures.h"
#include "store/core/StoreVersion.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

class QSqlDatabase;

/// Questions to an open store.
///
/// A failure is never a no: what cannot be asked (a locked file, a lost connection, a missing right) is
/// appended to the list of failures that the question takes, and there is no answer then. A question does not
/// end a transaction of the caller's.
namespace probes {

using Answer = std::optional<bool>;

/// The store's generation: versionId of the first row of DbVersion; 0 without a row, and without the table,
/// which the oldest stores lack. What is no integer from 1 to the newest version, and rows that disagree on
/// whether there are several networks, are a failure: statements for one network would reach the rows of all.
std::optional<long> dbVersion(const QSqlDatabase &db, FailureList &failures);

/// Whether an SQLite store has @p table.
Answer hasTable(const QSqlDatabase &db, const QString &table, FailureList &failures);

/// Whether @p table has a column whose name contains @p field, upper and lower case told apart (SQLite).
///
/// On PostgreSQL the schema is compared with the word 'table_schema' itself, so the answer is false for every
/// table of an ordinary schema; hosts rely on that answer.
Answer tableHasField(const QSqlDatabase &db, const QString &table, const QString &field,
                     FailureList &failures);

/// Whether @p sql returns at least one row.
/// @param table one that a store may lack; it has no row then, which is no failure.
Answer returnsRow(const QSqlDatabase &db, const QString &sql, FailureList &failures,
                  const QString &table = {});

/// The first column of the first row of @p sql; 0 without a row.
/// @param table as for returnsRow().
std::optional<qint64> number(const QSqlDatabase &db, const QString &sql, FailureList &failures,
                             const QString &table = {});

/// The columns of @p table (SQLite) whose name contains @p part, upper and lower case told apart.
std::optional<QStringList> columnsContaining(const QSqlDatabase &db, const QString &table,
                                             const QString &part, FailureList &failures);

/// The tables of an SQLite store.
struct Tables {
    QStringList names; ///< of all, ascending
    /// Without virtual ones, which a plug-in may have: to ask for their columns would run their module.
    QStringList plain;
};
std::optional<Tables> tables(const QSqlDatabase &db, FailureList &failures);

/// Whether a column of any table carries the misspelling "Nnumber" of first-generation stores.
Answer hasMisspeltColumn(const QSqlDatabase &db, FailureList &failures);

/// For each of @p tables the first column of its primary key; the network column is skipped in every table
/// but Net, so that generation-6 tables give the column of their own id.
std::optional<QHash<QString, QString>> keyColumns(const QSqlDatabase &db, const QStringList &tables,
                                                  FailureList &failures);

} // namespace probes
