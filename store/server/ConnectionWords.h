#pragma once

#include "model/MoraStoreExport.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <vector>

/// One of libpq's words for a connection, with its value in UTF-8:
/// https://www.postgresql.org/docs/15/libpq-connect.html#LIBPQ-PARAMKEYWORDS
struct ConnectionWord {
    QByteArray keyword;
    QByteArray value;
};

using ConnectionWords = QList<ConnectionWord>;

class QSqlDatabase;
struct pg_conn;
struct StoreSettings;

/// What connections to a server are asked for. Nothing here connects to one.
namespace connectionwords {

/// The words of a connection string, in libpq's order; empty where it cannot be understood, and when the
/// library was built without libpq's headers.
MORASTORE_EXPORT ConnectionWords parsed(const QString &text);
/// A connection string of the words.
MORASTORE_EXPORT QString text(const ConnectionWords &words);
/// A value as connection strings spell it.
MORASTORE_EXPORT QString spelled(const QByteArray &value);

/// All that a connection goes by which is asked for by @p given: also what its service file and the environment
/// say.
MORASTORE_EXPORT ConnectionWords resolved(const ConnectionWords &given);
/// All that a connection which is there goes by.
ConnectionWords of(pg_conn *connection);
/// What leads to where that connection does, past names that may lead elsewhere the next time.
ConnectionWords beside(pg_conn *connection);
/// The value of a keyword; empty where the words do not have it.
MORASTORE_EXPORT QByteArray value(const ConnectionWords &words, const char *keyword);

/// libpq's arrays of words, which end with nulls and point into the words.
struct MORASTORE_EXPORT Arrays {
    explicit Arrays(const ConnectionWords &words);
    explicit Arrays(ConnectionWords &&) = delete;

    std::vector<const char *> keywords;
    std::vector<const char *> values;
};

/// @p given with limits on how long a server may be silent, each where nobody has set it: 10 s for an answer
/// to a new connection, and 45 s on one that is there (store/server/ServerWatch.h).
MORASTORE_EXPORT ConnectionWords withLimits(const ConnectionWords &given);

/// Has @p db name the store, of whichever engine, when it is opened. What the settings of a server leave open
/// gets withLimits().
MORASTORE_EXPORT void nameStore(QSqlDatabase &db, const StoreSettings &settings);

} // namespace connectionwords
