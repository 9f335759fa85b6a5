#pragma once

#include <QString>
#include <QStringList>

// What an SQLite store holds as text, read apart from the library, for comparisons as a whole.

/// The statements that create its tables and indexes, by name, and the rows of the identifier counters.
QStringList catalogueOf(const QString &path);

/// The catalogue and every row of every table, the rows of a table in an order of their own.
QStringList contentOf(const QString &path);

/// Every row that carries a network's number, led by the name of its table.
QStringList contentOfNetwork(const QString &path, long netId);

/// What the engine's integrity check says.
QString integrityOf(const QString &path);
