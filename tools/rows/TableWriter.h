#pragma once

#include "store/bulk/CopyStream.h"
#include "tools/rows/StoreTables.h"

#include <QSqlQuery>
#include <QVector>

#include <memory>

namespace moratools {

class StoreSession;

/// Writes rows into one table of a store: by one statement that is prepared once, or on a server as a
/// stream.
class TableWriter {
public:
    /// `store` must outlive this object.
    TableWriter(const StoreSession &store, const StoreTable &table, const QVector<StoreColumn> &columns);

    /// One row, its values in the order of the columns. Throws `Failure` for a value that the column cannot
    /// keep as it is, and for a row that the engine refuses.
    void write(QVector<QVariant> &row);
    /// After the last row, and before anything else runs on the connection. Throws `Failure` for a row that
    /// the engine refused.
    void finish();

private:
    void open();
    /// @param code of a server.
    [[noreturn]] void refuse(const QString &reason, const QString &code = {}) const;

    const StoreSession &mStore;
    QSqlDatabase &mDb;
    bool mIsServer;
    bool mIsOpen = false;
    QString mTable;
    QVector<StoreColumn> mColumns;
    QSqlQuery mInsert;                   ///< SQLite
    std::unique_ptr<CopyStream> mStream; ///< PostgreSQL
};

} // namespace moratools
