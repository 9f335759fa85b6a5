#include "store/families/Identifiers.h"

#include "model/LaneConnector.h"
#include "store/DBTools.h"
#include "store/core/Probes.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"

#include <algorithm>
#include <functional>

namespace identifiers {

namespace {

constexpr long kBlock = 100;

/// Fills the number placeholders of @p sql with @p numbers, then the remaining one with a table name.
QString withTable(const char *sql, std::initializer_list<long> numbers, const QString &table) {
    return fillNumbers(QString::fromLatin1(sql), numbers).arg(quoted(table));
}

/// The first value of what @p sql returns; false without a row.
bool firstValue(const Store &store, const QString &sql, long &value) {
    Query query(store, sql);
    if (!query.execAndNext())
        return false;
    value = query.firstId();
    return true;
}

/// Stores of one network: one counter row per table, moved with every draw past the largest id in use.
bool nextOfOneNet(const Store &store, const QString &table, long &id) {
    Query counter(store, withTable("select ID from IDGenerater where TableName = '%1'", {}, table));
    if (!counter.exec())
        return false;
    if (!counter.next()) {
        Query insert(store, withTable("insert into IDGenerater(TableName, ID) values('%1', 1)", {}, table));
        if (!insert.exec())
            return false;
        id = 1;
        return true;
    }
    const long stored = counter.firstId();
    counter.finish();
    const auto inUse = largestInUse(store.db(), store.netId(), table, store.failures());
    if (!inUse)
        return false;
    const long largest = std::max(*inUse, stored);
    Query move(store,
               largest > stored
                   ? withTable("update IDGenerater set ID = %0 + 1 where TableName = '%1'", {largest}, table)
                   : withTable("update IDGenerater set ID = ID + 1 where TableName = '%1'", {}, table));
    if (!move.exec())
        return false;
    id = largest + 1;
    return true;
}

/// Generation 6: reserves a block of identifiers, above what rows use and what this process reserved before.
bool reserveBlock(const Store &store, const QString &table) {
    const long net = store.netId();
    long &highestReserved = DBTools::mhNetMaxId[net][table];
    Query counter(
        store, withTable("select ID from IDGenerater where NetId = %0 and TableName = '%1'", {net}, table));
    if (!counter.exec())
        return false;
    long base = 0;
    QString claim;
    if (!counter.next()) {
        claim =
            withTable("insert into IDGenerater(NetId, TableName, ID) values(%0, '%1', 100)", {net}, table);
    } else {
        const long stored = counter.firstId();
        counter.finish();
        const auto inUse = largestInUse(store.db(), net, table, store.failures());
        if (!inUse)
            return false;
        base = std::max(*inUse, highestReserved);
        if (base > stored) {
            claim = withTable("update IDGenerater set ID = %1 + 100 where NetId = %2 and TableName = '%3'",
                              {base, net}, table);
        } else {
            base = stored;
            claim = withTable("update IDGenerater set ID = ID + 100 where NetId = %1 and TableName = '%2'",
                              {net}, table);
        }
    }
    if (!Query(store, claim).exec())
        return false;
    QList<long> &reserved = DBTools::mhId[net][table];
    for (long id = base + 1; id <= base + kBlock; ++id)
        reserved.append(id);
    highestReserved = base + kBlock;
    return true;
}

bool nextOfNet(const Store &store, const QString &table, long &id) {
    QList<long> &reserved = DBTools::mhId[store.netId()][table];
    if (reserved.isEmpty() && !reserveBlock(store, table)) {
        id = 0;
        return false;
    }
    id = reserved.takeFirst();
    return true;
}

/// Whether the statements, which name no schema, find the sequence @p name.
std::optional<bool> hasSequence(const Store &store, const QString &name) {
    const QString sql = QStringLiteral(
        "select 1 from pg_class where relkind = 'S' and relname = '%1' and pg_table_is_visible(oid)");
    return Query(store, sql.arg(quoted(name))).returnsRow();
}

/// A sequence as an argument of the server's functions: a text that holds an identifier.
QString sequenceText(const QString &name) {
    return quoted(identifierAsStored(name));
}

/// The sequence that identifiers of @p table come from; empty without one, which is recorded.
QString sequenceFor(const Store &store, const QString &table) {
    const QString own = QStringLiteral("seq_%1_id").arg(table.toLower());
    const QString shared = QStringLiteral("seq_table_id");
    for (const QString &name : {own, shared}) {
        const auto isThere = hasSequence(store, name);
        if (!isThere)
            return {};
        if (*isThere)
            return name;
    }
    if (store.isUsable())
        store.fail({}, QStringLiteral("There is neither a sequence %1 nor %2").arg(own, shared));
    return {};
}

/// Sequences serve all networks of a database; tables without one of their own share seq_table_id.
bool nextOfSequence(const Store &store, const QString &table, long &id) {
    const QString name = sequenceFor(store, table);
    return !name.isEmpty() &&
           firstValue(store, QStringLiteral("select nextval('%1')").arg(sequenceText(name)), id);
}

/// Moves the counter of @p table to where @p target puts it, given its stored value (0 without a row).
bool moveCounter(const Store &store, const QString &table, const std::function<long(long)> &target) {
    const QString condition = withTable(
        store.hasSeveralNets() ? " where NetId = %0 and TableName = '%1'" : " where TableName = '%1'",
        store.hasSeveralNets() ? std::initializer_list<long>{store.netId()} : std::initializer_list<long>{},
        table);
    Query counter(store, QLatin1String("select ID from IDGenerater") + condition);
    if (!counter.exec())
        return false;
    const bool isThere = counter.next();
    const long stored = isThere ? counter.firstId() : 0;
    counter.finish();
    const long moved = target(stored);
    if (isThere)
        return moved == stored ||
               Query(store, QStringLiteral("update IDGenerater set ID = %1").arg(moved) + condition).exec();
    return Query(store,
                 store.hasSeveralNets()
                     ? withTable("insert into IDGenerater(NetId, TableName, ID) values(%0, '%2', %1)",
                                 {store.netId(), moved}, table)
                     : withTable("insert into IDGenerater(TableName, ID) values('%2', %1)", {moved}, table))
        .exec();
}

/// Moves the sequence of @p table to @p floor at least.
bool raiseSequence(const Store &store, const QString &name, long floor) {
    return Query(store, QStringLiteral("select setval('%1', %3) from %2 where last_value < %3")
                            .arg(sequenceText(name), identifierAsStored(name), QString::number(floor)))
        .exec();
}

bool takeFromSequence(const Store &store, const QString &table, long floor, int count, QList<long> &ids) {
    const QString name = sequenceFor(store, table);
    if (name.isEmpty() || !raiseSequence(store, name, floor))
        return false;
    Query drawn(store, QStringLiteral("select nextval('%1') from generate_series(1, %2)")
                           .arg(sequenceText(name), QString::number(count)));
    if (!drawn.exec())
        return false;
    while (drawn.next())
        ids.append(drawn.firstId());
    return drawn.isComplete();
}

} // namespace

bool next(const Store &store, const QString &table, long &id) {
    if (store.isGivenUp())
        return false;
    // Older stores do not keep the ids of lane connectors.
    if (!store.hasSeveralNets() && table == QLatin1String("LaneConnector") && DBTools::dbVer() < 6) {
        id = ++LaneConnector::generId;
        return true;
    }
    if (store.isPostgreSql())
        return nextOfSequence(store, table, id);
    if (!store.isSqlite())
        return store.hasSeveralNets();
    return store.hasSeveralNets() ? nextOfNet(store, table, id) : nextOfOneNet(store, table, id);
}

bool take(const Store &store, const QString &table, long floor, int count, QList<long> &ids) {
    if (store.isPostgreSql())
        return takeFromSequence(store, table, floor, count, ids);
    const auto inUse = largestInUse(store.db(), store.netId(), table, store.failures());
    if (!inUse)
        return false;
    long base = std::max(floor, *inUse);
    if (store.hasSeveralNets())
        base = std::max(base, DBTools::mhNetMaxId.value(store.netId()).value(table));
    const auto pastBlock = [&base, count](long stored) {
        base = std::max(base, stored);
        return base + count;
    };
    if (!moveCounter(store, table, pastBlock))
        return false;
    for (int i = 1; i <= count; ++i)
        ids.append(base + i);
    return true;
}

bool keepFrom(const Store &store, const QString &table, std::vector<long> ids) {
    if (ids.empty())
        return true;
    std::sort(ids.begin(), ids.end());
    const long largest = ids.back();
    if (store.isPostgreSql()) {
        const QString name = sequenceFor(store, table);
        return !name.isEmpty() && raiseSequence(store, name, largest);
    }
    QList<long> &reserved = DBTools::mhId[store.netId()][table];
    const auto isUsed = [&ids](long id) { return std::binary_search(ids.begin(), ids.end(), id); };
    reserved.erase(std::remove_if(reserved.begin(), reserved.end(), isUsed), reserved.end());
    return moveCounter(store, table, [largest](long stored) { return std::max(stored, largest); });
}

bool nextGeneral(QSqlDatabase &db, long &id) {
    if (db.driverName() == QLatin1String("QSQLITE"))
        return DBTools::getIDByTableName(db, QStringLiteral("General"), id);
    if (db.driverName() != QLatin1String("QPSQL"))
        return false;
    // The sequence is named "seg", not "seq", in databases and hosts alike.
    const Store store(db, 0, Generation::OneNet, DBTools::dbVer(), DBTools::mlCallDbResult);
    return firstValue(store, QStringLiteral("select nextval('\"seg_table_id\"')"), id);
}

QString idColumn(const QString &table) {
    static const QHash<QString, QString> columns = {
        {QStringLiteral("Vertex"), QStringLiteral("VertexID")},
        {QStringLiteral("Link"), QStringLiteral("linkID")},
        {QStringLiteral("Lane"), QStringLiteral("laneID")},
        {QStringLiteral("Connector"), QStringLiteral("ConnID")},
        {QStringLiteral("DecisionPoint"), QStringLiteral("deciPointID")},
        {QStringLiteral("DeparturePoint"), QStringLiteral("departurePointID")},
        {QStringLiteral("BusLine"), QStringLiteral("busLineID")},
        {QStringLiteral("BusStation"), QStringLiteral("busStationID")},
        {QStringLiteral("BusStationLine"), QStringLiteral("stationLineID")},
        // The column is spelled without its I in every store.
        {QStringLiteral("DepartureInterval"), QStringLiteral("departureIntervalD")},
        {QStringLiteral("Node"), QStringLiteral("nodeID")},
        {QStringLiteral("ReduceSpeedArea"), QStringLiteral("reduceSpeedAreaID")},
        {QStringLiteral("ReduceSpeedInterval"), QStringLiteral("intervalID")},
        {QStringLiteral("Routing"), QStringLiteral("routingID")},
        {QStringLiteral("RoutingFLowRatio"), QStringLiteral("RoutingFLowRatioID")},
        {QStringLiteral("SignalGroup"), QStringLiteral("signalGroupID")},
        {QStringLiteral("SignalPhase"), QStringLiteral("signalPhaseID")},
        {QStringLiteral("SignalLamp"), QStringLiteral("signalLampID")},
        {QStringLiteral("VehicleConstitutent"), QStringLiteral("vehicleConsCode")},
        {QStringLiteral("VehicleDrivInfoCollecter"), QStringLiteral("collecterID")},
        {QStringLiteral("VehicleQueueCounter"), QStringLiteral("QueueCounterID")},
        {QStringLiteral("VehicleTravelDetector"), QStringLiteral("detectorId")},
        {QStringLiteral("GuideArrow"), QStringLiteral("guideArrowID")},
        {QStringLiteral("VehicleDetector"), QStringLiteral("vehicleDetectorId")},
    };
    return columns.value(table);
}

std::optional<long> largestInUse(const QSqlDatabase &db, long netId, const QString &table,
                                 FailureList &failures) {
    const auto version = probes::dbVersion(db, failures);
    if (!version)
        return std::nullopt;
    const QString column = idColumn(table);
    const QString sql = *version >= 6
                            ? QStringLiteral("select max(%0) from %1 where NetId = %2")
                                  .arg(column, identifier(table), QString::number(netId))
                            : QStringLiteral("select max(%0) from %1").arg(column, identifier(table));
    // A table without an id column makes the statement invalid: nothing is in use there, and that it fails
    // says nothing.
    if (column.isEmpty()) {
        FailureList unrecorded;
        probes::number(db, sql, unrecorded);
        return 0;
    }
    const auto largest = probes::number(db, sql, failures, table);
    return largest ? std::make_optional(Query::narrowedId(*largest)) : std::nullopt;
}

bool giveBackUnused(const Store &store, bool useTransaction) {
    if (!store.isSqlite())
        return true;
    Transaction transaction(store, useTransaction);
    bool verdict = true;
    const QHash<QString, QList<long>> reserved = DBTools::mhId.value(store.netId());
    QStringList tables = reserved.keys();
    tables.sort();
    for (const QString &table : qAsConst(tables)) {
        const QList<long> ids = reserved.value(table);
        if (ids.isEmpty())
            continue;
        // The rows of all networks are set: hosts that give ids back rely on the statement as it stands.
        Query update(store, withTable("update IDGenerater set ID = %1 where TableName = '%2'",
                                      {ids.first() - 1}, table));
        verdict = update.exec() && verdict;
    }
    // After a commit that failed the host decides whether to try once more or to roll back.
    return transaction.commitOrLeaveOpen(verdict);
}

} // namespace identifiers
