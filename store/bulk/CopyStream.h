#pragma once

#include "model/MoraStoreExport.h"

#include <QByteArray>
#include <QSqlDatabase>
#include <QStringList>

#include <vector>

struct pg_conn;

/// Rows on their way into one table by PostgreSQL's COPY, many times faster than inserts. While one is open
/// the connection runs no other statement. Values are by number of column; each row sets every one.
///
/// Where tables of the database are on another server, rows of a transaction wait in a temporary table for the
/// last one: the server would pass each on by itself, and so it passes them on by the thousand.
class MORASTORE_EXPORT CopyStream {
public:
    /// Whether the connection is one whose rows can be streamed.
    static bool serves(const QSqlDatabase &db);

    /// @param db one that this class serves.
    /// @param table,columns as a statement spells them.
    CopyStream(const QSqlDatabase &db, const QString &table, const QStringList &columns);
    /// What was not finished is given up.
    ~CopyStream();
    CopyStream(const CopyStream &) = delete;
    CopyStream &operator=(const CopyStream &) = delete;

    void setNull(int column);
    void set(int column, qint64 value);
    void set(int column, double value);
    void set(int column, const QString &value);
    /// A text in UTF-8.
    void setText(int column, const QByteArray &value);
    /// Bytes for a column of type bytea.
    void setBytes(int column, const QByteArray &value);

    /// Sends the row of these values; false when the connection is lost or the stream was refused.
    bool write();
    /// False when the server refuses a row, a key or the connection; all rows are lost then.
    bool finish();

    /// The statement.
    QString sql() const { return mSql; }
    /// Why the last call gave false, in the server's words.
    QString error() const { return mError; }
    /// Its SQLSTATE; empty where the server gave none.
    QString errorCode() const { return mErrorCode; }

private:
    QByteArray &emptied(int column);
    bool send();
    bool end(const char *reason);
    bool execute(const QString &sql);

    pg_conn *mConnection; ///< the driver's
    QString mSql;
    QString mPassOn; ///< what brings the rows from where they wait into the table; empty where they do not
    QString mError;
    QString mErrorCode;
    std::vector<QByteArray> mValues;
    QByteArray mBuffer;
    bool mIsOpen = false;
};
