#pragma once

#include "host/rows/StoreTables.h"

#include <QSqlQuery>
#include <QVector>

/// Writes rows into one table of the open store, by one statement that is prepared once.
class RowWriter {
public:
    RowWriter(QSqlDatabase &db, const StoreTable &table, const QVector<StoreColumn> &columns);

    /// One row, its values in the order of the columns. Throws `Failure` for a value that the column cannot
    /// keep as it is, and for a row that the engine refuses.
    void write(QVector<QVariant> &row);

private:
    bool mIsSqlite;
    QString mTable;
    QVector<StoreColumn> mColumns;
    QSqlQuery mInsert;
};
