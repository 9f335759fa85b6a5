#include "host/store/NetworkRemoval.h"

#include "host/Failure.h"
#include "host/store/GuardedTransaction.h"
#include "host/store/OpenStore.h"
#include "model/Net.h"
#include "store/DBTools.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>

namespace {

/// Tables of the format that refer to a network's objects and that no operation of the library writes.
constexpr const char *kOfOtherWriters[] = {"LinkFenceMiddle",       "LinkLimitVehicle", "LaneLimitVehicle",
                                           "ConnectorLimitVehicle", "Passenger",        "PassengerArriving"};

bool hasSeveralNetworks() {
    return DBTools::dbVer() >= 6;
}

/// Link types are settings, which stay with a store of one network.
bool belongsToStore(const QPair<QString, qint64> &rows) {
    return rows.first == QLatin1String("linkTypes");
}

bool isLedByNetwork(const QString &table) {
    const QSqlRecord columns = gDB.record(table);
    for (int i = 0; i < columns.count(); ++i) {
        if (columns.fieldName(i).compare(QLatin1String("NetId"), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

void deleteFrom(const QString &table, const QString &condition) {
    QSqlQuery query(gDB);
    if (query.exec(QStringLiteral("delete from %1%2").arg(table, condition)))
        return;
    requireServerAlive();
    throw Failure(QStringLiteral("table %1 keeps its rows (%2); nothing was removed")
                      .arg(table, query.lastError().databaseText()));
}

/// The library's removal reports the last statement of each group; what others refused shows in the rows.
void requireEmptied(const Net &net) {
    for (const auto &[kind, count] : takeStockOf(net).rows) {
        if (count > 0 && !belongsToStore({kind, count}))
            throw Failure(QStringLiteral("the store keeps its %1; nothing was removed").arg(kind));
    }
}

} // namespace

NetworkInfo networkCalled(const QString &wanted) {
    bool isNumber = false;
    const long id = wanted.toLong(&isNumber);
    const QList<Net> nets = DBTools::selectNets(gDB);
    QList<Net> found;
    const auto collect = [&](const auto &matches) {
        std::copy_if(nets.cbegin(), nets.cend(), std::back_inserter(found), matches);
    };
    if (isNumber)
        collect([id](const Net &net) { return net.id() == id; });
    if (found.isEmpty())
        collect([&wanted](const Net &net) { return net.netName() == wanted; });
    if (found.isEmpty())
        throw Failure(
            QStringLiteral("the store holds no network \"%1\"; \"morastore info\" lists them").arg(wanted));
    if (found.size() > 1)
        throw Failure(QStringLiteral("the store holds %1 networks \"%2\"; give the number of one")
                          .arg(QString::number(found.size()), wanted));
    NetworkInfo info = takeStockOf(found.first());
    if (!hasSeveralNetworks())
        info.rows.erase(std::remove_if(info.rows.begin(), info.rows.end(), belongsToStore), info.rows.end());
    return info;
}

void removeNetwork(long netId) {
    const Net *net = DBTools::selectNetById(gDB, netId);
    if (!net)
        throw Failure(QStringLiteral("network %1 is gone; nothing was removed").arg(netId));
    const QString ofNetwork = QStringLiteral(" where NetId = %1").arg(netId);
    QStringList tables = gDB.tables();
    // Stores of one network keep its settings, its link types and the usage log: they belong to the store.
    const auto isDeletedFrom = [](const QString &table) {
        return table.compare(QLatin1String("Net"), Qt::CaseInsensitive) != 0 && isLedByNetwork(table);
    };
    QStringList led;
    if (hasSeveralNetworks())
        std::copy_if(tables.cbegin(), tables.cend(), std::back_inserter(led), isDeletedFrom);

    const int failures = unexpectedFailures();
    GuardedTransaction transaction(gDB);
    for (const char *table : kOfOtherWriters) {
        if (tables.contains(QLatin1String(table), Qt::CaseInsensitive))
            deleteFrom(QLatin1String(table), hasSeveralNetworks() ? ofNetwork : QString());
    }
    if (!DBTools::removeNetData(gDB, netId, false) || unexpectedFailures() > failures) {
        requireServerAlive();
        throw Failure(QStringLiteral("the store refuses the removal (%1); nothing was removed")
                          .arg(firstFailureText()));
    }
    requireEmptied(*net);
    for (const QString &table : qAsConst(led))
        deleteFrom(table, ofNetwork);
    deleteFrom(QStringLiteral("Net"), ofNetwork);
    transaction.commit();
}
