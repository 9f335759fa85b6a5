#pragma once

#include "store/catalogue/Catalogue.h"
#include "store/core/ConnectionName.h"
#include "store/core/StoreVersion.h"
#include "store/guard/ReadOnlyFile.h"
#include "tools/MoraToolsExport.h"
#include "tools/rows/NetworkRows.h"
#include "tools/rows/StoreTables.h"
#include "tools/session/NetworkChoice.h"
#include "tools/session/StoreAddress.h"

#include <QList>
#include <QSqlDatabase>
#include <QVector>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QSqlQuery;

namespace moratools {

/// A store of any generation as rows, on a connection of its own: it is neither upgraded nor changed in any
/// other way, and what is read is its state at one moment. One at a time.
class MORATOOLS_EXPORT StoreReader {
public:
    using Network = NamedNetwork;
    using Row = QVector<QVariant>;

    /// Throws `Failure` when the store cannot be had.
    explicit StoreReader(const StoreAddress &address);
    ~StoreReader();

    const QString &name() const { return mName; }
    bool isSqlite() const;
    bool hasSeveralNetworks() const { return probes::hasSeveralNets(mGeneration); }
    /// Null where the store has no such table.
    const StoreTable *table(const QString &named) const;
    /// All networks. An older store always has one: without a record of its own it is called after its file.
    const QList<Network> &networks() const { return mNetworks; }
    /// Those that `wanted` names, by number or name, or all without any. Throws `Failure` for one that the
    /// store does not have.
    QList<Network> networksOf(const std::vector<std::string> &wanted) const;
    /// The one that `wanted` names, or the first without any. Throws as networksOf() does.
    Network networkOf(const std::string &wanted) const;

    using Order = RowOrder;
    /// The rows of a network, as long as this object lives.
    NetworkRows rowsOf(const Network &network) const;
    /// Calls `use` with every row of a network in a table: its values in the order of the table's columns.
    void read(const StoreTable &table, const catalogue::Table &entry, const Network &network, Order order,
              const std::function<void(const Row &)> &use) const;
    qint64 count(const StoreTable &table, const Network &network) const;
    /// The distinct values of a column that are not NULL, ascending.
    std::vector<qint64> integers(const StoreTable &table, const StoreColumn &column,
                                 const Network &network) const;
    /// The largest of them; 0 without any.
    qint64 largest(const StoreTable &table, const StoreColumn &column, const Network &network) const;
    /// The texts of a column in the rows with these identifiers.
    QHash<qint64, QString> texts(const StoreTable &table, const StoreColumn &id, const StoreColumn &column,
                                 const Network &network, const std::vector<qint64> &ids) const;
    Language language(const Network &network) const;

    /// Tables and the number of their rows that belong to no network by the format (runs, plug-ins' tables,
    /// what older releases had), as far as there are any. In a store of one network the whole store is asked.
    QList<QPair<QString, qint64>> tablesBesides(const QList<Network> &networks) const;

    /// The rows that a statement gives, which may only ask. Throws `Failure` with the engine's words.
    QSqlQuery run(const QString &sql) const;
    /// Throws `Failure` where a statement ended early.
    void check(const QSqlQuery &query) const;
    /// " where ...", which takes the rows of a network from a table; empty where every row is the network's.
    QString condition(const StoreTable &table, const Network &network) const;

    /// Lets go of the moment, so that what was read may be changed.
    void finish();

private:
    Q_DISABLE_COPY(StoreReader)

    QSqlDatabase connection() const;
    void open(const StoreAddress &address);
    int readGeneration() const;
    void readNetworks(const StoreAddress &address);
    void takeOlderArrivals();

    QString mName;
    QString mConnection = newConnectionName("rows");
    std::unique_ptr<ReadOnlyFile> mFile; ///< how an SQLite file is read
    int mGeneration = 0;
    QHash<QString, StoreTable> mTables;
    QList<Network> mNetworks;
};

} // namespace moratools
