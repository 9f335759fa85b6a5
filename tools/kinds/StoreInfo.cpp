#include "tools/kinds/StoreInfo.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/catalogue/Catalogue.h"
#include "tools/session/StoreSession.h"

#include <QHash>
#include <QJsonArray>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <functional>

namespace moratools {

namespace {

/// An older store may lack the table.
bool isTableMissing(const QSqlError &error) {
    constexpr const char *undefinedTable = "42P01";
    return error.nativeErrorCode() == QLatin1String(undefinedTable) ||
           error.databaseText().startsWith(QLatin1String("no such table"));
}

} // namespace

QSqlQuery rowsOfNetwork(const StoreSession &store, const QString &columns, const char *table, long netId,
                        const QString &end) {
    QString sql = QStringLiteral("select %1 from %2").arg(columns, QLatin1String(table));
    if (store.hasSeveralNetworks())
        sql += QStringLiteral(" where NetId = %1").arg(netId);
    QSqlQuery query(store.db());
    query.setForwardOnly(true);
    if (!query.exec(sql + end)) {
        if (!isTableMissing(query.lastError()))
            store.refuseReading(QLatin1String(table), query);
        return QSqlQuery(store.db());
    }
    return query;
}

namespace {

/// Takes stock of some networks at once: a statement a table, whatever their number.
class Stocktaking {
public:
    /// `records` are all that the store has, or one.
    Stocktaking(const StoreSession &store, const QList<NetRecord> &records);
    QList<NetworkInfo> take();

private:
    using Reader = std::function<void(NetworkInfo &, const QSqlQuery &)>;
    /// Reads the row that each network has of `columns` in a table; a network without rows has none. False when there
    /// is no such table.
    bool readEach(const QString &columns, const char *table, const Reader &read);

    const StoreSession &mStore;
    QList<NetworkInfo> mNetworks;
    QHash<qint64, int> mPlaces; ///< of networks, by id
};

Stocktaking::Stocktaking(const StoreSession &store, const QList<NetRecord> &records) : mStore(store) {
    for (const NetRecord &record : records) {
        NetworkInfo info;
        info.id = record.netId;
        info.name = record.name;
        info.sourceType = record.sourceType;
        info.sourceUrl = record.sourceUrl;
        info.isDefault = record.isDefault;
        mPlaces.insert(record.netId, mNetworks.size());
        mNetworks.append(info);
    }
}

bool Stocktaking::readEach(const QString &columns, const char *table, const Reader &read) {
    // In a store of one network every row belongs to it.
    const bool hasOne = !mStore.hasSeveralNetworks();
    QString sql =
        (hasOne ? QStringLiteral("select 0, %1 from %2") : QStringLiteral("select NetId, %1 from %2"))
            .arg(columns, QLatin1String(table));
    if (!hasOne && mNetworks.size() == 1)
        sql += QStringLiteral(" where NetId = %1").arg(mNetworks.first().id);
    if (!hasOne)
        sql += QStringLiteral(" group by NetId");
    QSqlQuery rows(mStore.db());
    rows.setForwardOnly(true);
    if (!rows.exec(sql)) {
        if (!isTableMissing(rows.lastError()))
            mStore.refuseReading(QLatin1String(table), rows);
        return false;
    }
    while (rows.next()) {
        if (hasOne) {
            for (NetworkInfo &network : mNetworks)
                read(network, rows);
            continue;
        }
        const auto place = mPlaces.constFind(rows.value(0).toLongLong());
        if (place != mPlaces.constEnd())
            read(mNetworks[*place], rows);
    }
    if (rows.lastError().isValid())
        mStore.refuseReading(QLatin1String(table), rows);
    return true;
}

QList<NetworkInfo> Stocktaking::take() {
    if (mNetworks.isEmpty())
        return {};
    for (const catalogue::Kind &kind : catalogue::kinds()) {
        QHash<long, qint64> counts;
        if (!readEach(QStringLiteral("count(*)"), kind.table,
                      [&](const NetworkInfo &network, const QSqlQuery &row) {
                          counts.insert(network.id, row.value(1).toLongLong());
                      }))
            continue;
        for (NetworkInfo &network : mNetworks)
            network.rows.append({QLatin1String(kind.plural), counts.value(network.id)});
    }
    readEach(
        QStringLiteral("coalesce(sum(length), 0)"), "Link",
        [](NetworkInfo &network, const QSqlQuery &row) { network.linkLength = row.value(1).toDouble(); });
    readEach(QStringLiteral("min(X), min(Y), min(Z), max(X), max(Y), max(Z)"), "Vertex",
             [](NetworkInfo &network, const QSqlQuery &row) {
                 network.hasExtent = !row.value(1).isNull();
                 for (int i = 0; network.hasExtent && i < 3; ++i) {
                     network.low[i] = row.value(1 + i).toDouble();
                     network.high[i] = row.value(4 + i).toDouble();
                 }
             });
    return mNetworks;
}

} // namespace

NetworkInfo takeStockOf(const StoreSession &store, const NetRecord &record) {
    return Stocktaking(store, {record}).take().first();
}

StoreInfo takeStock(const StoreSession &store, const QString &path, std::optional<long> netId) {
    StoreInfo info;
    info.path = path;
    info.generation = store.generation();
    info.isEnglish = store.isEnglish();
    const int failuresBefore = store.unexpectedFailures();
    QList<NetRecord> records = DBTools::selectNetRecords(store.db());
    if (store.unexpectedFailures() > failuresBefore)
        store.refuseReading(QStringLiteral("the list of networks"));
    info.networkCount = records.size();
    if (netId)
        records.erase(std::remove_if(records.begin(), records.end(),
                                     [netId](const NetRecord &record) { return record.netId != *netId; }),
                      records.end());
    info.networks = Stocktaking(store, records).take();
    return info;
}

QJsonObject StoreInfo::toJson() const {
    QJsonArray list;
    for (const NetworkInfo &network : networks) {
        QJsonObject rows;
        for (const auto &kind : network.rows)
            rows.insert(kind.first, kind.second);
        QJsonObject entry{{QStringLiteral("id"), qint64(network.id)},
                          {QStringLiteral("name"), network.name},
                          {QStringLiteral("sourceType"), network.sourceType},
                          {QStringLiteral("sourceUrl"), network.sourceUrl},
                          {QStringLiteral("isDefault"), network.isDefault},
                          {QStringLiteral("rows"), rows},
                          {QStringLiteral("linkLength"), network.linkLength}};
        if (network.hasExtent)
            entry.insert(
                QStringLiteral("extent"),
                QJsonObject{
                    {QStringLiteral("low"), QJsonArray{network.low[0], network.low[1], network.low[2]}},
                    {QStringLiteral("high"), QJsonArray{network.high[0], network.high[1], network.high[2]}}});
        list.append(entry);
    }
    return {{QStringLiteral("path"), path},
            {QStringLiteral("generation"), generation},
            {QStringLiteral("language"), isEnglish ? QStringLiteral("en") : QStringLiteral("zh")},
            {QStringLiteral("networks"), list}};
}

} // namespace moratools
