#pragma once

#include "tools/MoraToolsExport.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

class QSqlQuery;
struct NetRecord;

namespace moratools {

class StoreSession;

/// What the store holds.
struct NetworkInfo {
    long id = 0;
    QString name;
    QString sourceType;
    QString sourceUrl;
    bool isDefault = false;
    QList<QPair<QString, qint64>>
        rows; ///< kind of object and number of rows; kinds the store has no table for are missing
    double linkLength = 0;     ///< metres
    bool hasExtent = false;    ///< false for a network without vertices
    double low[3] = {0, 0, 0}; ///< x, y, z in metres
    double high[3] = {0, 0, 0};
};

struct MORATOOLS_EXPORT StoreInfo {
    QString path;
    int generation = 0;
    bool isEnglish = false; ///< language of the stored words, else Chinese
    int networkCount = 0;   ///< of the store, of which one may have been asked for
    QList<NetworkInfo> networks;

    QJsonObject toJson() const;
};

/// Asks the store for `columns` of the rows of network `netId` in a table; `end` closes the statement
/// (" order by ..."). A store of one network gives all rows, one that lacks the table gives none. Throws
/// `Failure` when the table cannot be read; while the rows are fetched, the query's error tells.
MORATOOLS_EXPORT QSqlQuery rowsOfNetwork(const StoreSession &store, const QString &columns, const char *table,
                                         long netId, const QString &end = {});

/// Takes stock of one network of the store.
MORATOOLS_EXPORT NetworkInfo takeStockOf(const StoreSession &store, const NetRecord &record);

/// Takes stock of the store, of network `netId` alone where that is given. In a store of one network every row
/// belongs to it.
MORATOOLS_EXPORT StoreInfo takeStock(const StoreSession &store, const QString &path,
                                     std::optional<long> netId = std::nullopt);

} // namespace moratools
