#include "tools/rows/RowCursor.h"

#include "store/core/Engine.h"
#include "store/core/EngineHandle.h"
#include "store/core/StorableValue.h"
#include "store/core/Utf8.h"
#include "tools/reports/Failure.h"
#include "tools/session/ServerFailure.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

#ifdef MORATOOLS_WITH_SQLITE
#include <sqlite3.h>
#endif

namespace moratools {

namespace {

using storablevalue::kLongestText;

struct Question {
    QSqlDatabase db;
    QString store;
    StoreTable table;
    QString sql;
    RowCursor::Pull pull;

    [[noreturn]] void refuse(const QString &reason) const {
        throw Failure(QStringLiteral("%1: the store cannot be read (%2); check it, or the server")
                          .arg(store, reason.simplified()));
    }
    [[noreturn]] void refuse(const QSqlQuery &failed) const {
        requireServer(failed, store);
        refuse(failed.lastError().databaseText());
    }
    /// A text or bytes in a column of a row, counted from 1.
    [[noreturn]] void refuse(int column, qint64 row, const QString &objection) const {
        throw Failure(
            QStringLiteral("%1: the text in column %2 of table %3, row %4, %5")
                .arg(store, table.columns[column].name, table.name, QString::number(row), objection));
    }
    [[noreturn]] void refuseLong(int column, qint64 row) const {
        refuse(column, row, QStringLiteral("is longer than %1 characters; shorten it").arg(kLongestText));
    }
    [[noreturn]] void refuseInvalid(int column, qint64 row) const {
        refuse(column, row, QStringLiteral("is not UTF-8; write it anew"));
    }
};

} // namespace

class RowCursor::Source {
public:
    explicit Source(const Question &question) : mQuestion(question) {}
    virtual ~Source() = default;
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;

    virtual bool next() = 0;
    virtual bool isNull(int column) const = 0;
    virtual QVariant value(int column) const = 0;
    virtual bool appendCanonical(QByteArray &bytes, int column) const {
        const QVariant content = value(column);
        if (content.isValid())
            rowvalue::appendCanonical(bytes, content);
        return content.isValid();
    }

protected:
    ColumnKind kind(int column) const { return mQuestion.table.columns[column].kind; }

    Question mQuestion;
};

namespace {

/// Through Qt's driver.
class QuerySource : public RowCursor::Source {
public:
    explicit QuerySource(const Question &question)
        : Source(question), mQuery(question.db), mIsSqlite(engine::isSqlite(question.db)) {
        // Of a server this takes the rows one by one.
        mQuery.setForwardOnly(question.pull == RowCursor::Pull::Single || mIsSqlite);
        if (!mQuery.exec(question.sql))
            question.refuse(mQuery);
    }

    bool next() override {
        const bool hasRow = mQuery.next();
        if (!hasRow && mQuery.lastError().isValid())
            mQuestion.refuse(mQuery);
        mRow += hasRow ? 1 : 0;
        return hasRow;
    }
    bool isNull(int column) const override { return !value(column).isValid(); }
    QVariant value(int column) const override {
        if (mIsSqlite)
            requireText(column);
        return rowvalue::fromDriver(mQuery.value(column), mIsSqlite, kind(column));
    }

private:
    /// SQLite's driver replaces what is not UTF-8 by a character that may as well be stored: then the bytes
    /// are asked for.
    void requireText(int column) const {
        const QVariant value = mQuery.value(column);
        const bool isText = value.userType() == QMetaType::QString;
        const int size = isText                                      ? value.toString().size()
                         : value.userType() == QMetaType::QByteArray ? value.toByteArray().size()
                                                                     : 0;
        const StoreTable &table = mQuestion.table;
        if (size > kLongestText && !storablevalue::mayBeLonger(table.columns[column].name))
            mQuestion.refuseLong(column, mRow);
        if (!isText || !value.toString().contains(QChar::ReplacementCharacter))
            return;
        QSqlQuery encoding(QStringLiteral("pragma encoding"), mQuestion.db);
        if (encoding.next() && encoding.value(0).toString() != QLatin1String("UTF-8"))
            return;
        QSqlQuery stored(
            QStringLiteral("select cast(%1 as blob) from (%2) limit 1 offset %3")
                .arg(quotedName(table.columns[column].name), mQuestion.sql, QString::number(mRow)),
            mQuestion.db);
        if (!stored.next() || stored.value(0).toByteArray() != value.toString().toUtf8())
            mQuestion.refuseInvalid(column, mRow);
    }

    QSqlQuery mQuery;
    bool mIsSqlite;
    qint64 mRow = 0;
};

#ifdef MORATOOLS_WITH_SQLITE

bool isAscii(const char *text, int size) {
    return std::all_of(text, text + size, [](char byte) { return (quint8(byte) & 0x80) == 0; });
}

/// Straight from the engine: Qt's driver makes a QVariant of every value, which costs more than all the rest.
class SqliteSource : public RowCursor::Source {
public:
    SqliteSource(const Question &question, sqlite3 *engine) : Source(question), mEngine(engine) {
        const QByteArray sql = question.sql.toUtf8();
        if (sqlite3_prepare_v2(engine, sql.constData(), sql.size(), &mStatement, nullptr) != SQLITE_OK)
            mQuestion.refuse(QString::fromUtf8(sqlite3_errmsg(engine)));
        QSqlQuery encoding(QStringLiteral("pragma encoding"), question.db);
        mIsUtf8 = encoding.next() && encoding.value(0).toString() == QLatin1String("UTF-8");
        for (const StoreColumn &column : question.table.columns)
            mMayBeLonger.append(storablevalue::mayBeLonger(column.name));
    }
    ~SqliteSource() override { sqlite3_finalize(mStatement); }
    SqliteSource(const SqliteSource &) = delete;
    SqliteSource &operator=(const SqliteSource &) = delete;

    bool next() override {
        const int result = sqlite3_step(mStatement);
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            mQuestion.refuse(QString::fromUtf8(sqlite3_errmsg(mEngine)));
        mRow += result == SQLITE_ROW ? 1 : 0;
        return result == SQLITE_ROW;
    }
    bool isNull(int column) const override { return sqlite3_column_type(mStatement, column) == SQLITE_NULL; }
    QVariant value(int column) const override {
        switch (sqlite3_column_type(mStatement, column)) {
        case SQLITE_INTEGER:
            return qint64(sqlite3_column_int64(mStatement, column));
        case SQLITE_FLOAT:
            return sqlite3_column_double(mStatement, column);
        case SQLITE_TEXT:
            requireText(column, text(column), SQLITE_TEXT);
            return rowvalue::fromDriver(utf8::decoded(text(column), size(column)), true, kind(column));
        case SQLITE_BLOB:
            requireText(column, blob(column), SQLITE_BLOB);
            return QByteArray(blob(column), size(column));
        default:
            return {};
        }
    }
    bool appendCanonical(QByteArray &bytes, int column) const override {
        const int type = sqlite3_column_type(mStatement, column);
        switch (type) {
        case SQLITE_NULL:
            return false;
        case SQLITE_INTEGER:
            rowvalue::appendInteger(bytes, sqlite3_column_int64(mStatement, column));
            return true;
        case SQLITE_FLOAT:
            rowvalue::appendReal(bytes, sqlite3_column_double(mStatement, column));
            return true;
        default:
            break;
        }
        if (type == SQLITE_TEXT && kind(column) == ColumnKind::Date)
            return Source::appendCanonical(bytes, column);
        const char *content = type == SQLITE_TEXT ? text(column) : blob(column);
        requireText(column, content, type);
        rowvalue::appendBytes(bytes, content, size(column));
        return true;
    }

private:
    // Asked before the number of bytes, as the engine wants it. Without any it has no address.
    const char *text(int column) const {
        const auto *start = reinterpret_cast<const char *>(sqlite3_column_text(mStatement, column));
        return start ? start : "";
    }
    const char *blob(int column) const {
        const auto *start = static_cast<const char *>(sqlite3_column_blob(mStatement, column));
        return start ? start : "";
    }
    int size(int column) const { return sqlite3_column_bytes(mStatement, column); }

    void requireText(int column, const char *start, int type) const {
        const int bytes = size(column);
        const bool isLong = bytes > kLongestText && !mMayBeLonger[column];
        if (type == SQLITE_BLOB || isAscii(start, bytes)) {
            if (isLong)
                mQuestion.refuseLong(column, mRow);
            return;
        }
        const QString decoded = utf8::decoded(start, bytes);
        if (isLong && decoded.size() > kLongestText)
            mQuestion.refuseLong(column, mRow);
        // What the engine itself would not hand out as UTF-16 counts as none, either.
        const bool isWhole = utf8::isWhole(decoded, start, bytes) && !decoded.contains(QChar(0xfffe)) &&
                             !decoded.contains(QChar(0xffff));
        if (mIsUtf8 && !isWhole)
            mQuestion.refuseInvalid(column, mRow);
    }

    sqlite3 *mEngine;
    sqlite3_stmt *mStatement = nullptr;
    bool mIsUtf8 = true;
    QVector<bool> mMayBeLonger;
    qint64 mRow = 0;
};

#endif

std::unique_ptr<RowCursor::Source> sourceFor(const Question &question) {
#ifdef MORATOOLS_WITH_SQLITE
    if (sqlite3 *engine = enginehandle::sqlite(question.db))
        return std::make_unique<SqliteSource>(question, engine);
#endif
    return std::make_unique<QuerySource>(question);
}

} // namespace

RowCursor::RowCursor(const QSqlDatabase &db, const QString &store, const StoreTable &table,
                     const QString &sql, Pull pull)
    : mSource(sourceFor({db, store, table, sql, pull})) {}

RowCursor::RowCursor(RowCursor &&other) noexcept = default;

RowCursor::~RowCursor() = default;

bool RowCursor::next() {
    return mSource->next();
}

bool RowCursor::isNull(int column) const {
    return mSource->isNull(column);
}

QVariant RowCursor::value(int column) const {
    return mSource->value(column);
}

bool RowCursor::appendCanonical(QByteArray &bytes, int column) const {
    return mSource->appendCanonical(bytes, column);
}

} // namespace moratools
