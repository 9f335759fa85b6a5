#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <memory>

class Store;

/// What takes the rows of a writer. Values are by number of column; each row sets every one.
class RowSink {
public:
    virtual ~RowSink() = default;

    virtual void setNull(int column) = 0;
    virtual void set(int column, qint64 value) = 0;
    virtual void set(int column, double value) = 0;
    virtual void set(int column, const QString &value) = 0;
    /// A JSON text: bytes on SQLite, text elsewhere.
    virtual void set(int column, const QByteArray &json) = 0;
    /// Writes the row of these values; false after a failure, which is recorded.
    virtual bool write() = 0;
    /// No more rows come; false when what was written cannot stay, which is recorded.
    virtual bool finish() = 0;
};

/// @{ A sink for @p columns of @p table; null where the engine's handle is not to be had.
std::unique_ptr<RowSink> sqliteSink(const Store &store, const QString &table, const QStringList &columns);
std::unique_ptr<RowSink> copySink(const Store &store, const QString &table, const QStringList &columns);
/// @}
/// A sink through Qt's driver.
std::unique_ptr<RowSink> querySink(const Store &store, const QString &table, const QStringList &columns);

/// A sink whose rows are the values of a statement's positional placeholders: on the engine itself where it is
/// SQLite's and its handle is to be had, through Qt's driver elsewhere.
std::unique_ptr<RowSink> statementSink(const Store &store, const QString &sql, int placeholders);
/// The same, or null where the engine's handle is not to be had.
std::unique_ptr<RowSink> sqliteStatement(const Store &store, const QString &sql, int placeholders);

/// The insert that writes a row of these columns with positional placeholders.
QString insertStatement(const QString &table, const QStringList &columns);
