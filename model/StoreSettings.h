#pragma once

#include <QString>
#include <QSysInfo>

/// How a store is reached: a file by its name alone, a database by all of these.
struct StoreSettings {
    QString driver = QStringLiteral("QSQLITE"); ///< Qt driver: "QSQLITE" or "QPSQL"
    QString host = QSysInfo::machineHostName(); ///< server host (PostgreSQL)
    int port = 5432;                            ///< server port (PostgreSQL)
    QString name;                               ///< database name; for SQLite the file path
    QString user;                               ///< user name (PostgreSQL)
    QString password;                           ///< password (PostgreSQL)
};
