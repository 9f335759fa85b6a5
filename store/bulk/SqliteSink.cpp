#include "store/bulk/RowSink.h"
#include "store/core/EngineHandle.h"
#include "store/core/Store.h"

#ifdef MORASTORE_WITH_SQLITE

#include <sqlite3.h>

#include <vector>

namespace {

/// One prepared statement, run for each row.
class SqliteSink : public RowSink {
public:
    SqliteSink(const Store &store, sqlite3 *engine, const QString &sql, int placeholders)
        : mStore(store), mEngine(engine), mSql(sql), mHeld(std::size_t(placeholders)) {
        const QByteArray text = sql.toUtf8();
        if (sqlite3_prepare_v2(engine, text.constData(), text.size(), &mStatement, nullptr) != SQLITE_OK)
            mStatement = nullptr;
    }
    ~SqliteSink() override { sqlite3_finalize(mStatement); }
    SqliteSink(const SqliteSink &) = delete;
    SqliteSink &operator=(const SqliteSink &) = delete;

    void setNull(int column) override { sqlite3_bind_null(mStatement, column + 1); }
    void set(int column, qint64 value) override { sqlite3_bind_int64(mStatement, column + 1, value); }
    void set(int column, double value) override { sqlite3_bind_double(mStatement, column + 1, value); }
    void set(int column, const QString &value) override {
        const QByteArray &text = hold(column, value.toUtf8());
        sqlite3_bind_text(mStatement, column + 1, text.constData(), text.size(), SQLITE_STATIC);
    }
    void set(int column, const QByteArray &json) override {
        const QByteArray &bytes = hold(column, json);
        sqlite3_bind_blob(mStatement, column + 1, bytes.constData(), bytes.size(), SQLITE_STATIC);
    }

    bool write() override {
        const int result = mStatement ? sqlite3_step(mStatement) : SQLITE_ERROR;
        const bool written = result == SQLITE_DONE;
        if (!written)
            recordFailure();
        sqlite3_reset(mStatement);
        return written;
    }
    bool finish() override { return true; }

private:
    /// Keeps bytes until the row is written: the engine makes no copy of its own.
    const QByteArray &hold(int column, const QByteArray &bytes) { return mHeld[std::size_t(column)] = bytes; }

    void recordFailure() {
        mStore.failWithCode(mSql, QString::fromUtf8(sqlite3_errmsg(mEngine)),
                            QString::number(sqlite3_extended_errcode(mEngine)));
        // The engine may have ended the transaction by itself (a full disk): what followed would be kept.
        if (sqlite3_get_autocommit(mEngine) != 0)
            mStore.giveUp();
    }

    const Store &mStore;
    sqlite3 *mEngine;
    QString mSql;
    sqlite3_stmt *mStatement = nullptr;
    std::vector<QByteArray> mHeld;
};

} // namespace

std::unique_ptr<RowSink> sqliteStatement(const Store &store, const QString &sql, int placeholders) {
    sqlite3 *engine = enginehandle::sqlite(store.db());
    return engine ? std::make_unique<SqliteSink>(store, engine, sql, placeholders) : nullptr;
}

#else

std::unique_ptr<RowSink> sqliteStatement(const Store &, const QString &, int) {
    return nullptr;
}

#endif

std::unique_ptr<RowSink> sqliteSink(const Store &store, const QString &table, const QStringList &columns) {
    return sqliteStatement(store, insertStatement(table, columns), columns.size());
}
