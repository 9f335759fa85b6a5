#pragma once

#include "tools/differences/RowChange.h"
#include "tools/rows/NetworkRows.h"
#include "tools/rows/RowsTakenBack.h"

#include <QSqlQuery>
#include <QVector>

namespace moratools {

/// The rows of a network in a store that is open for writing, one by one.
class PatchedRows {
public:
    /// `taken`, which may be null, hears of every row that changes. Both outlive this.
    PatchedRows(const NetworkRows &rows, RowsTakenBack *taken);

    /// Makes a change where what it is about stands there as it says. Otherwise nothing changes, and the reason is
    /// given, which ends a sentence; empty when it is done. Both throw `Failure` where the store cannot be read.
    QString make(const RowChange &change);
    /// Why the network would be worse for a change: it refers to what is not there, or takes away what others refer
    /// to; empty where it would not.
    QString danglingAfter(const RowChange &change) const;

private:
    struct StoredRow {
        QVariant place; ///< what the engine calls it
        RowValues values;
    };
    using Binding = QPair<const StoreColumn *, QVariant>;

    QString add(const RowChange &change, const StoreTable &table);
    QString update(const RowChange &change, const StoreTable &table);
    QString remove(const RowChange &change, const StoreTable &table);
    QList<StoredRow> find(const RowChange &change, const StoreTable &table, const RowValues &key) const;
    /// What a statement makes of a row; none is there before it is added and after it is removed.
    struct Effect {
        const RowChange *change;
        RowValues before;
        RowValues after;
    };
    /// Executes a statement with these values in the order of its placeholders.
    QString run(const QString &sql, QVector<Binding> values, const Effect &effect) const;
    bool isReferredTo(const catalogue::Table &to, const QVariant &id) const;
    bool hasRow(const catalogue::Table &table, const char *column, const QVariant &value) const;

    const NetworkRows &mRows;
    RowsTakenBack *mTaken;
    bool mIsSqlite;
};

} // namespace moratools
