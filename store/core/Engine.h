#pragma once

#include <QSqlDatabase>

/// The engines of a store, by the names of Qt's drivers.
namespace engine {

inline bool isSqlite(const QSqlDatabase &db) {
    return db.driverName() == QLatin1String("QSQLITE");
}

inline bool isPostgreSql(const QSqlDatabase &db) {
    return db.driverName() == QLatin1String("QPSQL");
}

} // namespace engine
