#pragma once

#include <QByteArray>
#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>
#include <QVector>

struct pg_conn;

/// Rows on their way into one table by PostgreSQL's COPY, many times faster than inserts. While one is open
/// the connection runs no other statement.
class CopyStream {
public:
    CopyStream(const QSqlDatabase &db, const QString &table, const QStringList &columns);
    /// What was not finished is given up.
    ~CopyStream();

    /// A row of values as rowvalue has them; false when the connection is lost.
    bool write(const QVector<QVariant> &row);
    /// False when the server refuses a row, a key or the connection; all rows are lost then.
    bool finish();
    /// Why the last call gave false.
    QString error() const;

private:
    Q_DISABLE_COPY(CopyStream)

    bool flush();
    bool end(const char *reason);

    pg_conn *mConnection; ///< the driver's
    bool mIsOpen = false;
    QByteArray mBuffer;
    QString mError;
};
