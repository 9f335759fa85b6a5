#include "tools/rows/NetworkDeletion.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/core/Engine.h"
#include "store/core/TableNames.h"
#include "store/guard/ConnectionGuard.h"
#include "tools/reports/Failure.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>

namespace moratools {

namespace {

/// Tables of the format that refer to a network's objects and that no operation of the library writes.
constexpr const char *kOfOtherWriters[] = {"LinkFenceMiddle",       "LinkLimitVehicle", "LaneLimitVehicle",
                                           "ConnectorLimitVehicle", "Passenger",        "PassengerArriving"};

/// Link types are settings, which stay with a store of one network.
bool belongsToStore(const QPair<QString, qint64> &rows) {
    return rows.first == QLatin1String("linkTypes");
}

bool isLedByNetwork(const QSqlDatabase &db, const QString &table) {
    const QSqlRecord columns = db.record(table);
    for (int i = 0; i < columns.count(); ++i) {
        if (columns.fieldName(i).compare(QLatin1String("NetId"), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

void deleteFrom(const StoreSession &store, const QString &table, const QString &condition) {
    QSqlQuery query(store.db());
    if (query.exec(QStringLiteral("delete from %1%2").arg(table, condition)))
        return;
    requireServer(query);
    throw Failure(QStringLiteral("table %1 keeps its rows (%2); nothing was removed")
                      .arg(table, query.lastError().databaseText()));
}

/// The library's removal goes on past a table that keeps its rows, and reports what comes of that.
void requireRightToDelete(const StoreSession &store, const QStringList &tables) {
    if (engine::isSqlite(store.db()))
        return;
    QSqlQuery query(store.db());
    query.prepare(QStringLiteral("select name from unnest(string_to_array(:names, '/')) name where not "
                                 "has_table_privilege(quote_ident(name), 'delete') limit 1"));
    query.bindValue(QStringLiteral(":names"), tables.join(QLatin1Char('/')));
    query.exec();
    requireServer(query);
    if (query.next())
        throw Failure(
            QStringLiteral("the user has no right to do this (no right to delete from table %1); ask the "
                           "owner of the store to grant it. Nothing was changed")
                .arg(query.value(0).toString()));
}

/// The library's removal reports the last statement of each group; what others refused shows in the rows.
void requireEmptied(const StoreSession &store, const Net &net) {
    for (const auto &[kind, count] : takeStockOf(store, net).rows) {
        if (count > 0 && !belongsToStore({kind, count}))
            throw Failure(QStringLiteral("the store keeps its %1; nothing was removed").arg(kind));
    }
}

} // namespace

NetworkInfo takeStockBeforeRemoval(const StoreSession &store, long netId) {
    const Net *net = DBTools::selectNetById(store.db(), netId);
    if (!net)
        store.refuseReading(QStringLiteral("network %1").arg(netId));
    NetworkInfo info = takeStockOf(store, *net);
    if (!store.hasSeveralNetworks())
        info.rows.erase(std::remove_if(info.rows.begin(), info.rows.end(), belongsToStore), info.rows.end());
    return info;
}

void removeNetwork(const StoreSession &store, long netId) {
    const Net *net = DBTools::selectNetById(store.db(), netId);
    if (!net)
        throw Failure(QStringLiteral("network %1 is gone; nothing was removed").arg(netId));
    const QString ofNetwork = QStringLiteral(" where NetId = %1").arg(netId);
    const QStringList tables = tableNames(store.db());
    // Stores of one network keep its settings, its link types and the usage log: they belong to the store.
    const auto isDeletedFrom = [&store](const QString &table) {
        return table.compare(QLatin1String("Net"), Qt::CaseInsensitive) != 0 &&
               isLedByNetwork(store.db(), table);
    };
    QStringList led;
    if (store.hasSeveralNetworks())
        std::copy_if(tables.cbegin(), tables.cend(), std::back_inserter(led), isDeletedFrom);

    requireRightToDelete(store, led);

    const int failures = store.unexpectedFailures();
    // What a plug-in's table would do to the others when its rows go is not asked for.
    connectionguard::runNoTriggers(store.db());
    GuardedTransaction transaction(store);
    for (const char *table : kOfOtherWriters) {
        if (tables.contains(QLatin1String(table), Qt::CaseInsensitive))
            deleteFrom(store, QLatin1String(table), store.hasSeveralNetworks() ? ofNetwork : QString());
    }
    if (!DBTools::removeNetData(store.db(), netId, false) || store.unexpectedFailures() > failures) {
        store.requireServerAlive();
        throw Failure(QStringLiteral("the store refuses the removal (%1); nothing was removed")
                          .arg(store.firstFailureText()));
    }
    requireEmptied(store, *net);
    for (const QString &table : qAsConst(led))
        deleteFrom(store, table, ofNetwork);
    deleteFrom(store, QStringLiteral("Net"), ofNetwork);
    transaction.commit();
}

} // namespace moratools
