#pragma once

#include <QMap>
#include <QStringList>

namespace differential {

/// The rows of a table: for each row its columns by lower-case name, as literals that tell NULL, texts,
/// numbers and bytes apart.
using TableRows = QList<QMap<QString, QString>>;

/// Every row that the store on gDB has of a network, by lower-case name of the table. Tables and columns come
/// from the engine's own catalogue. Left out are the network's number, so that rows of two networks can be
/// compared, and the counters of identifiers, which single inserts do not move.
/// @param severalNets otherwise every row of the store.
QMap<QString, TableRows> storedRows(long netId, bool severalNets);

/// A line for each row, tables and rows in an order that does not depend on the store.
QStringList linesOf(const QMap<QString, TableRows> &tables);

/// Notes by table, and by table and column with a dot between, whether there is a value.
void noteFilled(const QMap<QString, TableRows> &rows, QMap<QString, bool> &isFilled);

} // namespace differential
