#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

class Net;

/// What the open store holds.
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

struct StoreInfo {
    QString path;
    int generation = 0;
    bool isEnglish = false; ///< language of the stored words, else Chinese
    QList<NetworkInfo> networks;

    QJsonObject toJson() const;
    QString toText() const;
};

/// Takes stock of one network of the open store.
NetworkInfo takeStockOf(const Net &net);

/// Takes stock of the open store. In a store of one network every row belongs to it.
StoreInfo takeStock(const QString &path);
