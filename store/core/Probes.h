#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

class QSqlDatabase;

/// Questions about the schema of an open store. Nothing here records a failure: a probe that cannot be
/// answered is answered with no.
namespace probes {

/// The store's generation: versionId of the first row of DbVersion, 0 without a row.
long dbVersion(const QSqlDatabase &db);

/// Whether an SQLite store has @p table.
bool hasTable(const QSqlDatabase &db, const QString &table);

/// Whether @p table has a column whose name contains @p field, upper and lower case told apart (SQLite).
///
/// On PostgreSQL the schema is compared with the word 'table_schema' itself, so the answer is false for every
/// table of an ordinary schema; hosts rely on that answer.
bool tableHasField(const QSqlDatabase &db, const QString &table, const QString &field);

/// Whether @p sql runs and returns at least one row.
bool returnsRow(const QSqlDatabase &db, const QString &sql);

/// The columns of @p table (SQLite) whose name contains @p part, upper and lower case told apart.
QStringList columnsContaining(const QSqlDatabase &db, const QString &table, const QString &part);

/// Whether a column of any table carries the misspelling "Nnumber" of first-generation stores.
bool hasMisspeltColumn(const QSqlDatabase &db);

/// Names of all tables of an SQLite store, ascending.
QStringList tableNames(const QSqlDatabase &db);

/// For each of @p tables the first column of its primary key; the network column is skipped in every table
/// but Net, so that generation-6 tables give the column of their own id.
QHash<QString, QString> keyColumns(const QSqlDatabase &db, const QStringList &tables);

} // namespace probes
