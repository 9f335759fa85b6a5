#pragma once

#include "store/catalogue/Catalogue.h"
#include "store/core/Query.h"
#include "store/editing/Ids.h"

#include <QByteArray>
#include <QSet>

#include <functional>
#include <vector>

/// The rows of one network, by the identifiers in one of their columns. What statements fail with is recorded.
class NetRows {
public:
    using Visit = std::function<void(Query &row)>;

    explicit NetRows(const Store &store);

    const Store &store() const { return mStore; }
    /// Whether the tables of the store could be listed; recorded when not.
    bool isGood() const { return mIsGood; }
    /// Whether the store has the table: older ones lack some.
    bool has(const catalogue::Table &table) const;

    /// Calls @p visit with each row that has one of @p ids in @p column, with its columns @p columns; as they
    /// were written where the engine can tell. No @p column: all rows of the network.
    bool forEach(const catalogue::Table &table, const std::vector<QByteArray> &columns, const char *column,
                 const Ids &ids, const Visit &visit) const;
    /// Deletes those rows.
    bool remove(const catalogue::Table &table, const char *column, const Ids &ids) const;
    /// Sets @p column of the rows that have one of @p ids there to 0.
    bool clear(const catalogue::Table &table, const char *column, const Ids &ids) const;
    /// Runs a statement that returns nothing.
    bool run(const QString &sql) const;

    /// The condition that a row is one of the network: "NetId = 1 and ", or nothing where there is one network.
    QString ofNet() const;

private:
    bool forEachPart(const char *column, const Ids &ids,
                     const std::function<bool(const QString &)> &run) const;

    const Store &mStore;
    QSet<QString> mTables; ///< in lower case
    bool mIsGood = false;
};
