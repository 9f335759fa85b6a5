#pragma once

#include "store/catalogue/Catalogue.h"
#include "store/core/Engine.h"
#include "tools/rows/StoreReader.h"

#include <QSet>
#include <QSqlDatabase>

#include <vector>

class QSqlQuery;

namespace moratools {

class StoreSession;

/// The store that rows of networks go into, within a transaction of the caller's. Copies ask for one of generation
/// 6; the counters are raised in any.
class CopyTarget {
public:
    explicit CopyTarget(const StoreSession &store);

    const StoreSession &store() const { return mStore; }
    const StoreTable *table(const QString &name) const;
    /// All of them, as storeTables() has them.
    const QHash<QString, StoreTable> &tables() const { return mTables; }

    /// `wanted` when no network has it, else the next free one.
    long networkId(long wanted) const;
    bool hasDefaultNetwork() const;
    /// What the link types of the whole store say, as the library asks it.
    Language language() const;

    /// Which of `ids`, which ascend, rows of any network have.
    std::vector<qint64> taken(const catalogue::Table &entry, const std::vector<qint64> &ids) const;
    /// The largest identifier that any network has, reserved or drawn.
    qint64 largest(const catalogue::Table &entry) const;
    /// Sees to it that identifiers up to `largest` are not handed out again.
    void raiseCounters(long netId, const catalogue::Table &entry, qint64 largest) const;
    void raiseNetworkCounter(long netId) const;

private:
    bool isSqlite() const { return engine::isSqlite(mDb); }
    QSqlQuery run(const QString &sql) const;
    qint64 number(const QString &sql) const;
    QString sequence(const char *table) const;
    void raiseSequence(const QString &name, qint64 largest) const;

    const StoreSession &mStore;
    QSqlDatabase &mDb;
    QHash<QString, StoreTable> mTables;
    QSet<QString> mSequences;
};

} // namespace moratools
