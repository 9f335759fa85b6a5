#pragma once

#include "model/StoredJson.h"
#include "store/core/Store.h"

#include <QByteArray>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

/// One statement on one store: named binds, results read by column name.
///
/// A statement that fails is recorded once, by exec(). On a store that is not usable nothing runs and nothing
/// more is recorded. A value that not every engine keeps (storablevalue) makes the statement fail before it
/// runs. Column names are matched without regard to case, as the engines do.
class Query {
public:
    /// @p sql in the store's spelling; its number placeholders take the network id first (generation 6 only),
    /// then
    /// @p ids in order.
    Query(const Store &store, const Sql &sql, std::initializer_list<long> ids = {});
    /// A statement that reads the same in both generations, its number placeholders filled from @p ids alone.
    Query(const Store &store, const char *sql, std::initializer_list<long> ids = {});
    /// A statement whose text is complete.
    Query(const Store &store, const QString &text);

    ~Query();
    Query(const Query &) = delete;
    Query &operator=(const Query &) = delete;

    const Store &store() const { return mStore; }

    /// @{ Bind a value to the placeholder named @p name (with its colon). A text that was never set binds as
    /// the empty text, never as NULL.
    Query &bind(const char *name, long value) {
        return bindValue(name, QVariant::fromValue<qlonglong>(value));
    }
    Query &bind(const char *name, int value) { return bindValue(name, value); }
    Query &bind(const char *name, double value) { return bindValue(name, value); }
    Query &bind(const char *name, const QString &value);
    Query &bind(const char *name, const QByteArray &value) { return bindValue(name, value); }
    Query &bind(const char *name, const StoredJson &value);
    /// @}
    /// Binds a switch as "T" or "F".
    Query &bindFlag(const char *name, bool value);
    /// Binds :NetId in generation 6; stores of one network have no such placeholder.
    Query &bindNet();
    /// Binds what none of the above covers (dates).
    Query &bindValue(const char *name, const QVariant &value);

    /// Runs the statement; false after a failure, which is recorded.
    bool exec() { return run(), check(); }
    /// @{ The halves of exec(), for an operation that has more to do before a failure is recorded: run()
    /// tells whether the statement went well, check() records it when it did not.
    bool run();
    bool check() const;
    /// @}
    /// Runs the statement, then goes to the first row of its result; false without one.
    bool execAndNext() { return exec() && next(); }
    /// Runs a statement that reads a part of an object. Without an answer the store is given up, since half
    /// an object is not what is stored (Store::whole()); a table or column that older stores lack has none.
    bool execPart();
    /// Runs the statement; whether it returns a row. None when it failed, which is recorded: a failure is no
    /// answer.
    std::optional<bool> returnsRow();

    /// Goes to the next row; false after the last one, and where the engine cannot read on, which is
    /// recorded.
    /// So it is where a row of a file holds a text that is not UTF-8, which SQLite would replace without a
    /// word, or one that is too long.
    bool next() { return mQuery.next() ? isWhole() : breaksOff(); }
    /// False once reading broke off before the last row.
    bool isComplete() const { return !mBrokeOff; }
    /// Ends reading, so that another statement may change what was read.
    void finish() { mQuery.finish(); }

    /// @{ The value of a column in the current row; the type's own empty value for NULL or an unknown column.
    QVariant value(const char *column);
    bool isNull(const char *column) { return value(column).isNull(); }
    bool hasColumn(const char *column) { return columnIndex(column) >= 0; }
    QString text(const char *column) { return value(column).toString(); }
    double number(const char *column) { return value(column).toDouble(); }
    int integer(const char *column) { return value(column).toInt(); }
    /// An identifier: 64 bits wide in the store, narrowed to 32.
    long id(const char *column) { return narrowedId(value(column)); }
    /// A JSON object with its text; empty when the text is empty or does not parse.
    StoredJson json(const char *column) { return StoredJson::fromText(value(column).toByteArray()); }
    /// @}
    /// The first column of the current row as a whole number.
    qint64 firstInteger() const { return mQuery.value(0).toLongLong(); }
    /// The first column of the current row as an identifier.
    long firstId() const { return narrowedId(mQuery.value(0)); }

    /// Identifiers are 64 bits wide in the store and 32 in memory, on every platform.
    static long narrowedId(const QVariant &value) {
        return static_cast<long>(static_cast<qint32>(value.toLongLong()));
    }

private:
    Query(const Store &store, const QString &text, bool isForOneObject);
    /// Binds a value; while there is an objection to it the statement does not run.
    Query &put(const char *name, const QVariant &value, const QString &objection);
    /// Keeps the first identifier that is bound beside the network's: that of the row, or of its owner.
    void noteObject(const char *name, const QVariant &value);
    void prepare();
    /// Records why there is no next row, unless that was the last one; false.
    bool breaksOff();
    /// Whether the texts of the current row are what is stored; recorded when one is not.
    bool isWhole();
    /// Why the value of a column is none that can be read, and what to do; empty when it is one.
    QString objectionTo(int column) const;
    bool isStoredAsUtf8(int column) const;
    int columnIndex(const char *column);

    const Store &mStore;
    QString mText;
    QSqlQuery mQuery;
    bool mIsForOneObject; ///< identifiers are part of the text
    bool mPrepared = false;
    bool mPrepareFailed = false;
    bool mRan = false;
    bool mBrokeOff = false;
    bool mIsPart = false;
    int mRow = -1; ///< number of the current row
    /// What the statement is about, for the record of a failure: by the numbers in its text, or bound.
    QByteArray mObjectName;
    long mObjectId = 0;
    /// The placeholder with a value that cannot be stored, and why; empty when there is none.
    QByteArray mRefusedName;
    QString mRefusal;
    QSqlRecord mResult; ///< describes the columns; its values are those of no row
    QStringList mColumnNames;
    /// Columns by the address of their name: the names are literals, and one read asks for the same ones row
    /// by row.
    std::vector<std::pair<const char *, int>> mColumns;
};

/// Appends the identifiers that @p sql lists; false when the statement failed.
bool appendIds(const Store &store, const Sql &sql, QList<long> &ids);
