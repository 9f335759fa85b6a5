#include "store/bulk/RowSource.h"
#include "store/core/EngineHandle.h"
#include "store/core/StorableValue.h"
#include "store/core/Store.h"
#include "store/core/Utf8.h"

#ifdef MORASTORE_WITH_SQLITE

#include <QtNumeric>

#include <sqlite3.h>

#include <cstring>
#include <vector>

namespace {

/// Rows straight from the engine. What it stores in the expected class is read without a detour; the rest is
/// made into what Qt's driver would give and converted by QVariant.
class SqliteRows : public RowSource {
public:
    SqliteRows(const Store &store, sqlite3 *engine, const QString &sql)
        : mStore(store), mEngine(engine), mSql(sql) {
        const QByteArray text = sql.toUtf8();
        mReady = sqlite3_prepare_v2(engine, text.constData(), text.size(), &mStatement, nullptr) == SQLITE_OK;
        if (!mReady)
            recordFailure();
        mLastTexts.resize(std::size_t(sqlite3_column_count(mStatement)));
    }
    ~SqliteRows() override { sqlite3_finalize(mStatement); }
    SqliteRows(const SqliteRows &) = delete;
    SqliteRows &operator=(const SqliteRows &) = delete;

    bool next() override {
        if (!mReady)
            return false;
        const int result = sqlite3_step(mStatement);
        mDamaged = {};
        if (result == SQLITE_ROW)
            return true;
        mReady = false;
        if (result != SQLITE_DONE)
            recordFailure();
        return false;
    }

    int indexOf(const char *column) override {
        for (int i = 0; i < sqlite3_column_count(mStatement); ++i) {
            if (sqlite3_stricmp(sqlite3_column_name(mStatement, i), column) == 0)
                return i;
        }
        return -1;
    }

    bool isNull(int column) override { return sqlite3_column_type(mStatement, column) == SQLITE_NULL; }

    QVariant value(int column) override {
        switch (sqlite3_column_type(mStatement, column)) {
        case SQLITE_INTEGER:
            return qint64(sqlite3_column_int64(mStatement, column));
        case SQLITE_FLOAT:
            return sqlite3_column_double(mStatement, column);
        case SQLITE_BLOB:
            return bytes(column);
        case SQLITE_TEXT:
            return decoded(column);
        default:
            return {};
        }
    }

    double number(int column, bool &isNumber) override {
        switch (sqlite3_column_type(mStatement, column)) {
        case SQLITE_INTEGER:
        case SQLITE_FLOAT: {
            const double number = sqlite3_column_double(mStatement, column);
            isNumber = isNumber && qIsFinite(number);
            return number;
        }
        case SQLITE_NULL:
            return 0;
        default:
            return numberOf(value(column), isNumber);
        }
    }

    qint64 whole(int column, bool &isNumber) override {
        switch (sqlite3_column_type(mStatement, column)) {
        case SQLITE_INTEGER:
            return sqlite3_column_int64(mStatement, column);
        case SQLITE_NULL:
            return 0;
        default:
            return wholeOf(value(column), isNumber);
        }
    }

    QString text(int column) override {
        using storablevalue::kLongestText;
        constexpr int bytesOfUnit = 3; // at most, in UTF-8
        const int type = sqlite3_column_type(mStatement, column);
        const bool hasBytes = type == SQLITE_TEXT || type == SQLITE_BLOB;
        // What is far too long is not even decoded.
        const bool isHuge = hasBytes && sqlite3_column_bytes(mStatement, column) > bytesOfUnit * kLongestText;
        QString text = isHuge ? QString() : type == SQLITE_TEXT ? decoded(column) : value(column).toString();
        if (isHuge || text.size() > kLongestText)
            mDamaged = {nameOf(column),
                        QStringLiteral("is longer than %1 characters: shorten it").arg(kLongestText)};
        return text;
    }

    QByteArray bytes(int column) override {
        if (sqlite3_column_type(mStatement, column) == SQLITE_TEXT)
            return decoded(column).toUtf8();
        const auto *start = static_cast<const char *>(sqlite3_column_blob(mStatement, column));
        return {start, sqlite3_column_bytes(mStatement, column)};
    }

    DamagedText damagedText() override { return mDamaged; }

private:
    struct LastText {
        QByteArray bytes;
        QString text;
        bool isWhole = true;
    };

    QByteArray nameOf(int column) const { return sqlite3_column_name(mStatement, column); }

    /// What a column holds as text.
    QString decoded(int column) {
        // Asked before the number of bytes, as the engine wants it. It makes UTF-8 of what it keeps as
        // UTF-16.
        const char *text = reinterpret_cast<const char *>(sqlite3_column_text(mStatement, column));
        const int size = sqlite3_column_bytes(mStatement, column);
        // Without memory the engine has no address to compare with.
        if (size == 0)
            return QStringLiteral("");
        // Many columns hold the same word in row after row: their objects share one copy of it.
        LastText &last = mLastTexts[std::size_t(column)];
        if (size != last.bytes.size() || std::memcmp(text, last.bytes.constData(), std::size_t(size)) != 0) {
            last.bytes.resize(0);
            last.bytes.append(text, size);
            last.text = utf8::decoded(text, size);
            last.isWhole = utf8::isWhole(last.text, text, size);
        }
        if (!last.isWhole)
            mDamaged = {nameOf(column), QStringLiteral("is not UTF-8: write it anew")};
        return last.text;
    }

    void recordFailure() {
        mStore.failWithCode(mSql, QString::fromUtf8(sqlite3_errmsg(mEngine)),
                            QString::number(sqlite3_extended_errcode(mEngine)));
    }

    const Store &mStore;
    sqlite3 *mEngine;
    QString mSql;
    sqlite3_stmt *mStatement = nullptr;
    bool mReady = false;
    DamagedText mDamaged;
    std::vector<LastText> mLastTexts;
};

} // namespace

std::unique_ptr<RowSource> sqliteRows(const Store &store, const QString &sql) {
    sqlite3 *engine = enginehandle::sqlite(store.db());
    return engine ? std::make_unique<SqliteRows>(store, engine, sql) : nullptr;
}

#else

std::unique_ptr<RowSource> sqliteRows(const Store &, const QString &) {
    return nullptr;
}

#endif
