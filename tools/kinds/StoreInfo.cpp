#include "tools/kinds/StoreInfo.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/catalogue/Catalogue.h"
#include "tools/session/StoreSession.h"

#include <QJsonArray>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace moratools {

namespace {

/// An older store may lack the table.
bool isTableMissing(const QSqlError &error) {
    constexpr const char *undefinedTable = "42P01";
    return error.nativeErrorCode() == QLatin1String(undefinedTable) ||
           error.databaseText().startsWith(QLatin1String("no such table"));
}

/// The first row; invalid when there is no such table.
QSqlQuery selectOf(const StoreSession &store, const char *columns, const char *table, long netId) {
    QSqlQuery query = rowsOfNetwork(store, QLatin1String(columns), table, netId);
    query.next();
    return query;
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

NetworkInfo takeStockOf(const StoreSession &store, const Net &net) {
    NetworkInfo info;
    info.id = net.id();
    info.name = net.netName();
    info.sourceType = net.type();
    info.sourceUrl = net.url();
    info.isDefault = net.isDefault;
    for (const catalogue::Kind &kind : catalogue::kinds()) {
        const QSqlQuery count = selectOf(store, "count(*)", kind.table, info.id);
        if (count.isValid())
            info.rows.append({QLatin1String(kind.plural), count.value(0).toLongLong()});
    }
    info.linkLength = selectOf(store, "coalesce(sum(length), 0)", "Link", info.id).value(0).toDouble();
    const QSqlQuery extent =
        selectOf(store, "min(X), min(Y), min(Z), max(X), max(Y), max(Z)", "Vertex", info.id);
    info.hasExtent = extent.isValid() && !extent.value(0).isNull();
    for (int i = 0; info.hasExtent && i < 3; ++i) {
        info.low[i] = extent.value(i).toDouble();
        info.high[i] = extent.value(3 + i).toDouble();
    }
    return info;
}

StoreInfo takeStock(const StoreSession &store, const QString &path) {
    StoreInfo info;
    info.path = path;
    info.generation = store.generation();
    info.isEnglish = store.isEnglish();
    const NetRecord before = store.net().record();
    const int failuresBefore = store.unexpectedFailures();
    const QList<Net> nets = DBTools::selectNets(store.db());
    for (const Net &listed : nets) {
        // The list gives id and name alone.
        const Net *net = DBTools::selectNetById(store.db(), listed.id());
        info.networks.append(takeStockOf(store, net ? *net : listed));
    }
    store.net().loadRecord(before);
    if (store.unexpectedFailures() > failuresBefore)
        store.refuseReading(QStringLiteral("the list of networks"));
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
