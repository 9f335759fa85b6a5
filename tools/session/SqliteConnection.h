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
    /// The same where the file is to be written to, which may take other programs to let go of it (Patience.h).
    void runPatiently(const QString &sql) const;
    /// Throws `Failure` with the engine's words when the file is damaged.
    void requireIntegrity() const;

private:
    Q_DISABLE_COPY(SqliteConnection)

    QString mName;
};

} // namespace moratools
