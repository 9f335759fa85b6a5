#pragma once

#include "store/core/Store.h"

#include <QHash>
#include <QList>

#include <optional>
#include <unordered_set>
#include <vector>

/// Row identifiers. SQLite stores count in table IDGenerater, PostgreSQL stores in sequences.
///
/// An identifier is above what the counter says, above what rows use, and above what this process has given
/// out since the store was opened, rolled back or not. One beyond 32 bits is refused: nothing is written
/// then, and the failure is recorded.
namespace identifiers {

/// The next identifier for @p table in the store's network.
bool next(const Store &store, const QString &table, long &id);

/// Appends @p count new identifiers for @p table in the store's network, all above @p floor and above what is
/// in use. Reserved ones of the process stay reserved.
bool take(const Store &store, const QString &table, long floor, int count, QList<long> &ids);

/// The highest identifier for @p table in the store's network that the counter or the sequence has given out, or
/// this process; none when the store cannot be asked. Rows that were written without it may have higher ones.
std::optional<qint64> lastGiven(const Store &store, const QString &table);

/// Appends @p count new identifiers for @p table in the store's network, ascending, none of them among
/// @p brought, which objects have already that may not be in the store. From the reserved ones of the process
/// where these are few.
bool draw(const Store &store, const QString &table, const std::unordered_set<long> &brought, int count,
          QList<long> &ids);

/// Makes sure that no identifier is given out later that is among @p ids, which rows of @p table are written
/// with. Without a counter the first draw would begin at 1, whatever rows there are.
bool keepFrom(const Store &store, const QString &table, std::vector<long> ids);

/// The id column of @p table as hosts are told it; empty for a table without one, for one that they are not told
/// of, and for a name that is spelled otherwise.
QString idColumn(const QString &table);

/// The largest identifier that rows of @p table use (of @p netId in generation 6); 0 without one, and where
/// the store has no such table. None when it could not be read, which is recorded in @p failures.
std::optional<qint64> largestInUse(const QSqlDatabase &db, long netId, const QString &table,
                                   FailureList &failures);

/// Lane connectors number themselves without asking a store: from now on past those that the open store of
/// generation 6 has. False when it could not be asked, which is recorded.
bool passLaneConnectors(const Store &store);

/// Refuses, with a record, an identifier of @p table that is beyond 32 bits.
bool requireId(const Store &store, const QString &table, qint64 id);

/// What this process has reserved of the open store: taken back when this object goes before keep().
class Reservations {
public:
    explicit Reservations(const Store &store);
    ~Reservations();
    Reservations(const Reservations &) = delete;
    Reservations &operator=(const Reservations &) = delete;

    void keep() { mKept = true; }

private:
    StoreState &mState;
    QHash<long, QHash<QString, QList<long>>> mReserved;
    QHash<long, QHash<QString, long>> mHighest;
    bool mKept = false;
};

/// Sets the counters back to the identifiers that were reserved but not used.
bool giveBackUnused(const Store &store, bool useTransaction);

} // namespace identifiers
