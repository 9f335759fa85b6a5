#pragma once

#include "store/catalogue/Catalogue.h"
#include "tools/MoraToolsExport.h"
#include "tools/rows/RowCursor.h"
#include "tools/rows/StoreTables.h"

#include <QHash>
#include <QSqlDatabase>

namespace moratools {

/// The words that the link types of a network are in.
enum class Language { Unknown, Chinese, English };

/// In which order rows are read.
enum class RowOrder {
    Written,  ///< as the rows were written, where the engine knows
    Canonical ///< by `catalogue::Table::key`
};

/// The rows of one network, table by table, on a connection that somebody else has opened and keeps open.
class MORATOOLS_EXPORT NetworkRows {
public:
    /// `store` is what messages call the store; `tables` are those of storeTables().
    NetworkRows(const QSqlDatabase &db, const QString &store, const QHash<QString, StoreTable> &tables,
                bool hasSeveralNetworks, long netId);

    /// Those of the same tables that a condition holds of, whatever their network. Cursors over them hold all
    /// of them, so that there may be several at a time.
    NetworkRows restrictedTo(const QString &condition) const;

    const QSqlDatabase &db() const { return mDb; }
    const QString &store() const { return mStore; }
    long netId() const { return mNetId; }
    bool hasSeveralNetworks() const { return mHasSeveralNetworks; }
    /// Null where the store has no such table.
    const StoreTable *table(const QString &named) const;
    /// Throws as RowCursor() does.
    RowCursor read(const StoreTable &table, const catalogue::Table &entry, RowOrder order) const;
    /// What a statement on the table asks for to have this network's rows alone: " where ..." or nothing.
    QString condition(const StoreTable &table) const;
    /// What the link types of the network say. Throws `Failure` where they cannot be read.
    Language language() const;

private:
    QSqlDatabase mDb;
    QString mStore;
    QHash<QString, StoreTable> mTables;
    bool mHasSeveralNetworks;
    long mNetId;
    QString mRestriction;
};

} // namespace moratools
