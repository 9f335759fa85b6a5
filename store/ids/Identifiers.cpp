#include "store/ids/Identifiers.h"

#include "model/LaneConnector.h"
#include "store/catalogue/Catalogue.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/core/StorableValue.h"
#include "store/ids/LargestIds.h"
#include "store/ids/Sequences.h"

#include <algorithm>

namespace identifiers {

namespace {

constexpr long kBlock = 100;

constexpr Sql kRead = {"select ID from IDGenerater where TableName = '%1'",
                       "select ID from IDGenerater where NetId = %0 and TableName = '%1'"};
constexpr Sql kInsert = {"insert into IDGenerater(TableName, ID) values('%1', %0)",
                         "insert into IDGenerater(NetId, TableName, ID) values(%1, '%2', %0)"};
constexpr Sql kMoveOn = {"update IDGenerater set ID = ID + 1 where TableName = '%1'",
                         "update IDGenerater set ID = ID + 100 where NetId = %1 and TableName = '%2'"};
constexpr Sql kMovePast = {"update IDGenerater set ID = %0 + 1 where TableName = '%1'",
                           "update IDGenerater set ID = %1 + 100 where NetId = %2 and TableName = '%3'"};
constexpr Sql kSet = {"update IDGenerater set ID = %0 where TableName = '%1'",
                      "update IDGenerater set ID = %0 where NetId = %1 and TableName = '%2'"};

const QString kLaneConnector = QStringLiteral("LaneConnector");

/// The spelling of @p sql for the store, its placeholders filled with @p numbers, the network's id
/// (generation 6 only) and the name of a table.
QString statement(const Store &store, const Sql &sql, std::initializer_list<long> numbers,
                  const QString &table) {
    const QString filled = fillNumbers(store.text(sql), numbers);
    return (store.hasSeveralNets() ? fillNumber(filled, store.netId()) : filled).arg(quoted(table));
}

/// The highest identifier of @p table that this process has handed out or reserved in the store's network.
long &highestReserved(const Store &store, const QString &table) {
    // Stores of one network count without regard to its id.
    return store.state().highestIds[store.hasSeveralNets() ? store.netId() : 0][table];
}

/// Up to @p highest the identifiers of @p table are taken by this process, whatever becomes of the counter.
void reserve(const Store &store, const QString &table, qint64 highest) {
    long &reserved = highestReserved(store, table);
    reserved = std::max(reserved, static_cast<long>(highest));
    // Those that are made without asking the store come after them.
    if (table == kLaneConnector)
        LaneConnector::passId(reserved);
}

/// The counter of a table in the store's network.
struct Counter {
    bool isThere;
    qint64 stored; ///< 0 without a row
};

std::optional<Counter> readCounter(const Store &store, const QString &table) {
    Query row(store, statement(store, kRead, {}, table));
    const auto isThere = row.returnsRow();
    if (!isThere)
        return std::nullopt;
    return Counter{*isThere, *isThere ? row.firstInteger() : 0};
}

/// The column with the identifiers of @p table; there are more of them than hosts are told.
QString columnOf(const QString &table) {
    const catalogue::Table *entry = catalogue::find(table);
    return entry ? QString::fromLatin1(entry->id) : QString();
}

std::optional<qint64> largestIn(const QSqlDatabase &db, std::optional<long> netId, const QString &table,
                                const QString &column, FailureList &failures) {
    const QString sql = netId ? QStringLiteral("select max(%0) from %1 where NetId = %2")
                                    .arg(column, identifier(table), QString::number(*netId))
                              : QStringLiteral("select max(%0) from %1").arg(column, identifier(table));
    // A table without an id column makes the statement invalid: nothing is in use there, and that it fails
    // says nothing.
    if (column.isEmpty()) {
        FailureList unrecorded;
        probes::number(db, sql, unrecorded);
        return 0;
    }
    return probes::number(db, sql, failures, table);
}

std::optional<qint64> largestInUse(const Store &store, const QString &table) {
    const auto netId = store.hasSeveralNets() ? std::make_optional(store.netId()) : std::nullopt;
    return largestIn(store.db(), netId, table, columnOf(table), store.failures());
}

/// The highest identifier that is taken: by the counter, by rows that were written without it, or by this
/// process, whose transaction may have been rolled back with what it wrote to the counter.
std::optional<qint64> highestTaken(const Store &store, const QString &table, const Counter &counter) {
    const auto inUse = largestInUse(store, table);
    if (!inUse)
        return std::nullopt;
    return std::max({*inUse, counter.stored, qint64(highestReserved(store, table))});
}

/// Moves the counter @p count identifiers on, the first of which is @p first; @p last is the last one, fewer
/// when they come to an end.
bool claim(const Store &store, const QString &table, long count, long &first, long &last) {
    const auto counter = readCounter(store, table);
    const auto taken = counter ? highestTaken(store, table, *counter) : std::nullopt;
    if (!taken || !requireId(store, table, *taken + 1))
        return false;
    first = static_cast<long>(*taken + 1);
    last = static_cast<long>(std::min(*taken + count, storablevalue::kLargestId));
    const QString sql = !counter->isThere          ? statement(store, kInsert, {last}, table)
                        : *taken > counter->stored ? statement(store, kMovePast, {first - 1}, table)
                                                   : statement(store, kMoveOn, {}, table);
    if (!Query(store, sql).exec())
        return false;
    reserve(store, table, last);
    return true;
}

/// Stores of one network: the counter moves with every draw.
bool nextOfOneNet(const Store &store, const QString &table, long &id) {
    long last = 0;
    return claim(store, table, 1, id, last);
}

/// Generation 6: draws come from a block that is reserved at once.
bool nextOfNet(const Store &store, const QString &table, long &id) {
    QList<long> &reserved = store.state().reservedIds[store.netId()][table];
    if (reserved.isEmpty()) {
        long first = 0;
        long last = 0;
        if (!claim(store, table, kBlock, first, last)) {
            id = 0;
            return false;
        }
        for (long each = first; each <= last; ++each)
            reserved.append(each);
    }
    id = reserved.takeFirst();
    return true;
}

/// Moves the counter of @p table to @p value.
bool setCounter(const Store &store, const QString &table, const Counter &counter, long value) {
    if (!counter.isThere)
        return Query(store, statement(store, kInsert, {value}, table)).exec();
    return counter.stored == value || Query(store, statement(store, kSet, {value}, table)).exec();
}

/// Before the first draw the sequence passes what rows use, which may have been written without it; later
/// ones rely on it.
bool nextOfSequence(const Store &store, const QString &table, long &id) {
    if (highestReserved(store, table) == 0) {
        const auto inUse = largestInUse(store, table);
        if (!inUse || !sequences::pass(store, table, *inUse))
            return false;
    }
    QList<long> drawn;
    if (!sequences::draw(store, table, 1, drawn))
        return false;
    id = drawn.first();
    reserve(store, table, id);
    return true;
}

} // namespace

bool next(const Store &store, const QString &table, long &id) {
    if (store.isGivenUp())
        return false;
    // Older stores do not keep the ids of lane connectors.
    if (!store.hasSeveralNets() && table == kLaneConnector && store.schemaVersion() < 6) {
        if (!requireId(store, table, qint64(LaneConnector::lastId()) + 1))
            return false;
        id = LaneConnector::nextId();
        return true;
    }
    if (store.isPostgreSql())
        return nextOfSequence(store, table, id);
    if (!store.isSqlite())
        return store.hasSeveralNets();
    return store.hasSeveralNets() ? nextOfNet(store, table, id) : nextOfOneNet(store, table, id);
}

bool take(const Store &store, const QString &table, long floor, int count, QList<long> &ids) {
    if (store.isPostgreSql()) {
        const auto inUse = largestInUse(store, table);
        if (!inUse || !sequences::pass(store, table, std::max(qint64(floor), *inUse)) ||
            !sequences::draw(store, table, count, ids))
            return false;
        reserve(store, table, ids.last());
        return true;
    }
    const auto counter = readCounter(store, table);
    const auto taken = counter ? highestTaken(store, table, *counter) : std::nullopt;
    if (!taken)
        return false;
    const qint64 base = std::max(qint64(floor), *taken);
    if (!requireId(store, table, base + count) ||
        !setCounter(store, table, *counter, static_cast<long>(base + count)))
        return false;
    for (int i = 1; i <= count; ++i)
        ids.append(static_cast<long>(base + i));
    reserve(store, table, base + count);
    return true;
}

std::optional<qint64> lastGiven(const Store &store, const QString &table) {
    const qint64 byProcess = highestReserved(store, table);
    if (store.isPostgreSql()) {
        const auto last = sequences::last(store, table);
        return last ? std::make_optional(std::max(*last, byProcess)) : std::nullopt;
    }
    const auto counter = readCounter(store, table);
    return counter ? std::make_optional(std::max(counter->stored, byProcess)) : std::nullopt;
}

bool draw(const Store &store, const QString &table, const std::unordered_set<long> &brought, int count,
          QList<long> &ids) {
    // In a block, or in memory, one after the other costs nothing; elsewhere each is a statement or more.
    const bool isInMemory = table == kLaneConnector && !store.hasSeveralNets();
    const bool isReserved = store.hasSeveralNets() && store.isSqlite() && count <= kBlock;
    if (count > 1 && !isInMemory && !isReserved) {
        const auto largest = std::max_element(brought.begin(), brought.end());
        return take(store, table, largest == brought.end() ? 0 : *largest, count, ids);
    }
    for (long id = 0; count > 0;) {
        if (!next(store, table, id))
            return false;
        if (brought.count(id) > 0)
            continue;
        ids.append(id);
        --count;
    }
    return true;
}

bool keepFrom(const Store &store, const QString &table, std::vector<long> ids) {
    if (ids.empty())
        return true;
    std::sort(ids.begin(), ids.end());
    const long largest = ids.back();
    if (!requireId(store, table, largest))
        return false;
    if (table == kLaneConnector)
        LaneConnector::passId(largest);
    if (store.isPostgreSql())
        return sequences::pass(store, table, largest);
    QList<long> &reserved = store.state().reservedIds[store.netId()][table];
    const auto isUsed = [&ids](long id) { return std::binary_search(ids.begin(), ids.end(), id); };
    reserved.erase(std::remove_if(reserved.begin(), reserved.end(), isUsed), reserved.end());
    const auto counter = readCounter(store, table);
    return counter && (counter->stored >= largest || setCounter(store, table, *counter, largest));
}

QString idColumn(const QString &table) {
    const catalogue::Table *entry = catalogue::find(table);
    const bool isTold = entry && entry->isIdTold && table == QLatin1String(entry->name);
    return isTold ? QString::fromLatin1(entry->id) : QString();
}

std::optional<qint64> largestInUse(const QSqlDatabase &db, long netId, const QString &table,
                                   FailureList &failures) {
    const auto version = probes::dbVersion(db, failures);
    if (!version)
        return std::nullopt;
    return largestIn(db, probes::hasSeveralNets(*version) ? std::make_optional(netId) : std::nullopt, table,
                     idColumn(table), failures);
}

bool passLaneConnectors(const Store &store) {
    if (!store.hasSeveralNets())
        return true;
    FailureList unanswered;
    auto largest =
        probes::number(store.db(), largestOfAllNets(store.db(), *catalogue::find(kLaneConnector), true),
                       unanswered, kLaneConnector);
    // Networks that are on another server are not there while that is away; the store's others are. What was
    // drawn is known here, which not every user may read.
    if (!largest && store.isPostgreSql() && unanswered.last().code.startsWith(QLatin1String("08"))) {
        FailureList unread;
        largest =
            probes::number(store.db(), QStringLiteral("select last_value from seq_laneconnector_id"), unread)
                .value_or(0);
    } else {
        store.failures() += unanswered;
    }
    if (largest)
        LaneConnector::passId(static_cast<long>(std::min(*largest, storablevalue::kLargestId)));
    return largest.has_value();
}

bool requireId(const Store &store, const QString &table, qint64 id) {
    return storablevalue::holdsId(id) ||
           store.fail(
               {}, QStringLiteral("Table %1 would get the identifier %2, and %3 is the largest there can be: "
                                  "check its counter (table IDGenerater, or the sequence) and its rows, "
                                  "and import the network anew where rows are at the end")
                       .arg(table, QString::number(id), QString::number(storablevalue::kLargestId)));
}

Reservations::Reservations(const Store &store)
    : mState(store.state()), mReserved(mState.reservedIds), mHighest(mState.highestIds) {}

Reservations::~Reservations() {
    if (mKept)
        return;
    mState.reservedIds = mReserved;
    mState.highestIds = mHighest;
}

bool giveBackUnused(const Store &store, bool useTransaction) {
    if (!store.isSqlite())
        return true;
    OperationTransaction transaction(store, useTransaction);
    bool verdict = true;
    const QHash<QString, QList<long>> reserved = store.state().reservedIds.value(store.netId());
    QStringList tables = reserved.keys();
    tables.sort();
    for (const QString &table : qAsConst(tables)) {
        const QList<long> ids = reserved.value(table);
        if (ids.isEmpty())
            continue;
        // The rows of all networks are set: hosts that give ids back rely on the statement as it stands.
        Query update(store,
                     fillNumber(QStringLiteral("update IDGenerater set ID = %1 where TableName = '%2'"),
                                ids.first() - 1)
                         .arg(quoted(table)));
        verdict = update.exec() && verdict;
    }
    // After a commit that failed the host decides whether to try once more or to roll back.
    return transaction.commitOrLeaveOpen(verdict);
}

} // namespace identifiers
