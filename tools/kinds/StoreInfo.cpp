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
#include <cstddef>
#include <vector>

namespace moratools {

namespace {

/// An older store may lack the table.
bool isTableMissing(const QSqlError &error) {
    constexpr const char *undefinedTable = "42P01";
    return error.nativeErrorCode() == QLatin1String(undefinedTable) ||
           error.databaseText().startsWith(QLatin1String("no such table"));
}

/// A query that has been read to its end. Where the connection was lost before, there is no error.
bool isWhole(const QSqlQuery &query) {
    return query.isActive() && !query.lastError().isValid();
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

/// Takes stock of some networks at once: with one statement, whatever their number.
class Stocktaking {
public:
    /// `records` are all that the store has, or one.
    Stocktaking(const StoreSession &store, const QList<NetRecord> &records);
    QList<NetworkInfo> take();

private:
    /// Columns of the answer: which kind it is about, the network, the rows, and what is asked of roads besides.
    enum Column { Kind, NetId, Count, Length, Low, High = Low + 3 };

    /// Asks about the kind at a place of the catalogue: a row for each network that has any.
    QString question(std::size_t place) const;
    /// Takes the answers to some questions in. @return what is not whole, and nothing learned, when the store refuses.
    QSqlQuery ask(const QString &questions);
    static void learn(NetworkInfo &network, const QSqlQuery &row);

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
        for (const catalogue::Kind &kind : catalogue::kinds())
            info.rows.append({QLatin1String(kind.plural), 0});
        mPlaces.insert(record.netId, mNetworks.size());
        mNetworks.append(info);
    }
}

QString Stocktaking::question(std::size_t place) const {
    const char *table = catalogue::kinds()[place].table;
    QStringList columns{QString::number(place), {}, QStringLiteral("count(*)")};
    // Servers keep decimal numbers, which they compare and add more slowly.
    const auto append = [&](const char *function, const char *column, const char *ofTable) {
        const bool isAsked = qstrcmp(table, ofTable) == 0;
        columns.append(
            QStringLiteral("%1(cast(%2 as double precision))")
                .arg(QLatin1String(isAsked ? function : ""), QLatin1String(isAsked ? column : "null")));
    };
    append("sum", "length", "Link");
    for (const char *function : {"min", "max"}) {
        for (const char *column : {"X", "Y", "Z"})
            append(function, column, "Vertex");
    }
    // In a store of one network every row belongs to it.
    const bool hasSeveral = mStore.hasSeveralNetworks();
    columns[NetId] = hasSeveral ? QStringLiteral("NetId") : QString::number(mNetworks.first().id);
    QString sql =
        QStringLiteral("select %1 from %2").arg(columns.join(QLatin1Char(',')), QLatin1String(table));
    if (hasSeveral && mNetworks.size() == 1)
        sql += QStringLiteral(" where NetId = %1").arg(mNetworks.first().id);
    return hasSeveral ? sql + QStringLiteral(" group by NetId") : sql;
}

void Stocktaking::learn(NetworkInfo &network, const QSqlQuery &row) {
    network.rows[row.value(Kind).toInt()].second = row.value(Count).toLongLong();
    network.linkLength += row.value(Length).toDouble();
    if (row.value(Low).isNull())
        return;
    network.hasExtent = true;
    for (int i = 0; i < 3; ++i) {
        network.low[i] = row.value(Low + i).toDouble();
        network.high[i] = row.value(High + i).toDouble();
    }
}

QSqlQuery Stocktaking::ask(const QString &questions) {
    const QList<NetworkInfo> before = mNetworks;
    QSqlQuery rows(mStore.db());
    rows.setForwardOnly(true);
    for (bool isThere = rows.exec(questions) && rows.next(); isThere; isThere = rows.next()) {
        if (!mStore.hasSeveralNetworks()) {
            for (NetworkInfo &network : mNetworks)
                learn(network, rows);
        } else if (const auto place = mPlaces.constFind(rows.value(NetId).toLongLong());
                   place != mPlaces.constEnd()) {
            learn(mNetworks[*place], rows);
        }
    }
    if (!isWhole(rows))
        mNetworks = before;
    return rows;
}

QList<NetworkInfo> Stocktaking::take() {
    if (mNetworks.isEmpty())
        return {};
    const std::vector<catalogue::Kind> &kinds = catalogue::kinds();
    QStringList questions;
    for (std::size_t place = 0; place < kinds.size(); ++place)
        questions.append(question(place));
    if (isWhole(ask(questions.join(QStringLiteral(" union all ")))))
        return mNetworks;
    // Each by itself tells which table cannot be read, or is not there.
    QList<int> missing;
    for (int place = 0; place < questions.size(); ++place) {
        const QSqlQuery answer = ask(questions[place]);
        if (isWhole(answer))
            continue;
        if (!isTableMissing(answer.lastError()))
            mStore.refuseReading(QLatin1String(kinds[std::size_t(place)].table), answer);
        missing.prepend(place);
    }
    for (NetworkInfo &network : mNetworks) {
        for (const int place : qAsConst(missing))
            network.rows.removeAt(place);
    }
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
