#pragma once

#include "tools/MoraToolsExport.h"

#include <QSqlQuery>
#include <QString>

namespace moratools {

/// A connection to an SQLite file, beside those of open stores. It closes with the object.
class MORATOOLS_EXPORT SqliteConnection {
public:
    explicit SqliteConnection(const QString &path);
    ~SqliteConnection();

    /// Executes a statement. Throws `Failure` with the engine's words.
    QSqlQuery run(const QString &sql) const;
    /// Throws `Failure` with the engine's words when the file is damaged.
    void requireIntegrity() const;

private:
    Q_DISABLE_COPY(SqliteConnection)

    QString mName;
};

} // namespace moratools
