#pragma once

#include "tools/MoraToolsExport.h"

#include <QSqlQuery>
#include <QString>

namespace moratools {

/// A connection of the host's own to an SQLite file, beside the library's. It closes with the object.
class MORATOOLS_EXPORT SqliteConnection {
public:
    /// `name` is the connection's in Qt; one at a time has it.
    SqliteConnection(const char *name, const QString &path);
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
