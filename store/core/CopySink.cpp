#include "store/core/EngineHandle.h"
#include "store/core/RowSink.h"
#include "store/core/Store.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include <libpq-fe.h>

#include <charconv>
#include <vector>

namespace {

/// Rows into one COPY in its text format: https://www.postgresql.org/docs/15/sql-copy.html
class CopySink : public RowSink {
public:
    CopySink(const Store &store, PGconn *connection, const QString &sql, int columns)
        : mStore(store), mConnection(connection), mSql(sql), mValues(std::size_t(columns)) {
        PGresult *result = PQexec(connection, sql.toUtf8().constData());
        mOpen = PQresultStatus(result) == PGRES_COPY_IN;
        if (!mOpen)
            recordFailure(result);
        PQclear(result);
    }
    ~CopySink() override {
        if (mOpen)
            end("the save was given up");
    }
    CopySink(const CopySink &) = delete;
    CopySink &operator=(const CopySink &) = delete;

    void setNull(int column) override { valueAt(column) += "\\N"; }
    void set(int column, qint64 value) override { setNumber(column, value); }
    void set(int column, double value) override { setNumber(column, value); }
    void set(int column, const QString &value) override { escape(valueAt(column), value.toUtf8()); }
    void set(int column, const QByteArray &json) override { escape(valueAt(column), json); }

    bool write() override {
        if (!mOpen)
            return false;
        for (std::size_t i = 0; i < mValues.size(); ++i) {
            if (i > 0)
                mBuffer += '\t';
            mBuffer += mValues[i];
        }
        mBuffer += '\n';
        return mBuffer.size() < kChunk || send();
    }
    bool finish() override { return mOpen && send() && end(nullptr); }

private:
    static constexpr int kChunk = 64 * 1024;

    QByteArray &valueAt(int column) {
        QByteArray &value = mValues[std::size_t(column)];
        value.resize(0);
        return value;
    }

    template <class Number>
    void setNumber(int column, Number value) {
        char text[32];
        const auto written = std::to_chars(text, text + sizeof text, value);
        valueAt(column).append(text, int(written.ptr - text));
    }

    static void escape(QByteArray &value, const QByteArray &text) {
        for (const char c : text) {
            switch (c) {
            case '\\':
                value += "\\\\";
                break;
            case '\t':
                value += "\\t";
                break;
            case '\n':
                value += "\\n";
                break;
            case '\r':
                value += "\\r";
                break;
            default:
                value += c;
            }
        }
    }

    bool send() {
        const bool sent = PQputCopyData(mConnection, mBuffer.constData(), mBuffer.size()) == 1;
        mBuffer.resize(0);
        if (!sent)
            end("the rows could not be sent");
        return sent;
    }

    /// Ends the copy. @param reason why it is to fail; null for a good end.
    bool end(const char *reason) {
        mOpen = false;
        PQputCopyEnd(mConnection, reason);
        bool good = true;
        while (PGresult *result = PQgetResult(mConnection)) {
            if (PQresultStatus(result) != PGRES_COMMAND_OK) {
                good = false;
                if (!reason)
                    recordFailure(result);
            }
            PQclear(result);
        }
        return good;
    }

    void recordFailure(const PGresult *result) {
        CallDbResult failure;
        failure.sql = mSql;
        failure.error = QString::fromUtf8(PQresultErrorMessage(result)).trimmed();
        mStore.failures().append(failure);
    }

    const Store &mStore;
    PGconn *mConnection;
    QString mSql;
    std::vector<QByteArray> mValues;
    QByteArray mBuffer;
    bool mOpen = false;
};

} // namespace

std::unique_ptr<RowSink> copySink(const Store &store, const QString &table, const QStringList &columns) {
    PGconn *connection = enginehandle::postgresql(store.db());
    if (!connection)
        return nullptr;
    const QString sql =
        QStringLiteral("copy %1(%2) from stdin").arg(table, columns.join(QLatin1String(", ")));
    return std::make_unique<CopySink>(store, connection, sql, columns.size());
}

#else

std::unique_ptr<RowSink> copySink(const Store &, const QString &, const QStringList &) {
    return nullptr;
}

#endif
