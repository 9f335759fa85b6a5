#pragma once

#include <QString>
#include <QSysInfo>

/// How a store is reached: a file by its name alone, a database by all of these.
struct StoreSettings {
    QString driver = QStringLiteral("QSQLITE"); ///< Qt driver: "QSQLITE" or "QPSQL"
    QString host = QSysInfo::machineHostName(); ///< server host (PostgreSQL)
    int port = 5432;  ///< server port (PostgreSQL); -1: as the options or the environment say
    QString name;     ///< database name; for SQLite the file path
    QString user;     ///< user name (PostgreSQL)
    QString password; ///< password (PostgreSQL)
    /// Further words of libpq as a connection string has them ("sslmode=require keepalives_idle=30"), without
    /// semicolons, which Qt's driver takes for blanks (PostgreSQL).
    QString options;
};
