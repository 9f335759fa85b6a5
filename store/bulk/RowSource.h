#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <memory>

class Store;

/// A text that is not what is stored, or not to be read.
struct DamagedText {
    QByteArray column; ///< empty without one
    QString objection; ///< what it is, and what to do, as the end of a sentence
};

/// Where the rows of a cursor come from. Values are by number of column and convert as QVariant does.
class RowSource {
public:
    virtual ~RowSource() = default;

    /// Goes to the next row; false after the last one and after a failure, which is recorded.
    virtual bool next() = 0;
    /// The number of a column, whatever the case of its name; negative when there is none of that name.
    virtual int indexOf(const char *column) = 0;
    virtual bool isNull(int column) = 0;
    virtual QVariant value(int column) = 0;
    /// @{ @p isNumber becomes false where the value is neither NULL nor empty and no finite number of that
    /// kind.
    virtual double number(int column, bool &isNumber) = 0;
    virtual qint64 whole(int column, bool &isNumber) = 0;
    /// @}
    virtual QString text(int column) = 0;
    virtual QByteArray bytes(int column) = 0;
    /// One that has been read of the current row. Engines that keep such texts out need not look.
    virtual DamagedText damagedText() { return {}; }
};

/// The rows of @p sql on the engine itself; null where its handle is not to be had.
std::unique_ptr<RowSource> sqliteRows(const Store &store, const QString &sql);
/// The rows of @p sql through Qt's driver.
std::unique_ptr<RowSource> queryRows(const Store &store, const QString &sql);

/// @{ A value as a number, by QVariant's conversion; see RowSource.
double numberOf(const QVariant &value, bool &isNumber);
qint64 wholeOf(const QVariant &value, bool &isNumber);
/// @}
