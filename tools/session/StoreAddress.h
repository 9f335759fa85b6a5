#pragma once

#include "tools/MoraToolsExport.h"

#include <QList>
#include <QString>

namespace moratools {

/// Where a store is: the path of an SQLite file, or a database on a PostgreSQL server.
class MORATOOLS_EXPORT StoreAddress {
public:
    /// One keyword of a connection string.
    struct Option {
        QByteArray keyword;
        QByteArray value;    ///< UTF-8
        QByteArray variable; ///< the environment variable that says the same; empty where there is none
        bool isSecret = false;
    };

    /// `text` as a user writes it: "dbname=... host=..." in libpq's keywords or a postgresql:// address is a
    /// database, anything else a path ("./host=x" is a file of that name). Throws `Failure` for a connection
    /// string that cannot be understood; the message does not repeat it, for the password that may be in it.
    StoreAddress(const QString &text); // NOLINT(google-explicit-constructor): commands take either

    bool isServer() const { return mIsServer; }
    /// The path as it was given; empty for a server.
    QString path() const { return mIsServer ? QString() : mName; }
    /// What messages call the store: the path, or the connection string without its secrets.
    const QString &name() const { return mName; }
    /// What the connection string says; empty for a file.
    const QList<Option> &options() const { return mOptions; }
    /// The value of a keyword; empty where the string does not have it.
    QString value(const char *keyword) const;
    /// The same server, another database.
    StoreAddress withDatabase(const QString &name) const;

private:
    StoreAddress() = default;
    void nameServer();

    bool mIsServer = false;
    QString mName;
    QList<Option> mOptions;
};

} // namespace moratools
