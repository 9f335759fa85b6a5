#include "store/bulk/CopyStream.h"

#include "store/core/EngineHandle.h"
#include "store/server/ServerWatch.h"

#ifdef MORASTORE_WITH_POSTGRESQL

#include <QSqlDriver>
#include <QVariant>

#include <libpq-fe.h>

#include <charconv>
#include <cmath>

namespace {

constexpr int kChunk = 64 * 1024;

template <class Number>
void appendNumber(QByteArray &value, Number number) {
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, number);
    value.append(text, int(written.ptr - text));
}

/// In COPY's text form: https://www.postgresql.org/docs/15/sql-copy.html
void appendEscaped(QByteArray &value, const QByteArray &text) {
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

/// Whether tables of the database are on another server. Asked once for a connection: that they are there is a
/// matter of speed alone.
bool hasTablesElsewhere(const QSqlDatabase &db, PGconn *connection) {
    constexpr char known[] = "morastoreHasTablesElsewhere";
    QVariant answer = db.driver()->property(known);
    if (!answer.isValid()) {
        PGresult *result = PQexec(connection, "select 1 from pg_foreign_table limit 1");
        answer = PQntuples(result) > 0;
        PQclear(result);
        db.driver()->setProperty(known, answer);
    }
    return answer.toBool();
}

} // namespace

bool CopyStream::serves(const QSqlDatabase &db) {
    return enginehandle::postgresql(db) != nullptr;
}

CopyStream::CopyStream(const QSqlDatabase &db, const QString &table, const QStringList &columns)
    : mConnection(enginehandle::postgresql(db)),
      mSql(QStringLiteral("copy %1(%2) from stdin").arg(table, columns.join(QLatin1String(", ")))),
      mValues(std::size_t(columns.size())) {
    mBuffer.reserve(2 * kChunk);
    QString copy = mSql;
    if (hasTablesElsewhere(db, mConnection) &&
        enginehandle::transactionState(db) == enginehandle::TransactionState::Open) {
        const QString listed = columns.join(QLatin1String(", "));
        const auto filled = [&](const char *sql) {
            return QString::fromLatin1(sql)
                .replace(QLatin1String("{table}"), table)
                .replace(QLatin1String("{columns}"), listed);
        };
        if (!execute(
                filled("create temp table morastore_rows on commit drop as select {columns} from {table} "
                       "with no data")))
            return;
        copy = filled("copy morastore_rows({columns}) from stdin");
        mPassOn = filled("insert into {table}({columns}) select {columns} from morastore_rows; "
                         "drop table morastore_rows");
    }
    mIsOpen = execute(copy);
    serverwatch::makesRows(mConnection, mIsOpen);
}

bool CopyStream::execute(const QString &sql) {
    PGresult *result = PQexec(mConnection, sql.toUtf8().constData());
    const ExecStatusType status = PQresultStatus(result);
    const bool good = status == PGRES_COPY_IN || status == PGRES_COMMAND_OK;
    if (!good)
        mError = QString::fromUtf8(PQresultErrorMessage(result)).simplified();
    mErrorCode = QString::fromLatin1(PQresultErrorField(result, PG_DIAG_SQLSTATE));
    PQclear(result);
    return good;
}

CopyStream::~CopyStream() {
    if (mIsOpen)
        end("given up");
}

QByteArray &CopyStream::emptied(int column) {
    QByteArray &value = mValues[std::size_t(column)];
    value.resize(0);
    return value;
}

void CopyStream::setNull(int column) {
    emptied(column) += "\\N";
}

void CopyStream::set(int column, qint64 value) {
    appendNumber(emptied(column), value);
}

void CopyStream::set(int column, double value) {
    // The sign that a NaN may have is no number for the server.
    if (std::isnan(value))
        emptied(column) += "NaN";
    else
        appendNumber(emptied(column), value);
}

void CopyStream::set(int column, const QString &value) {
    setText(column, value.toUtf8());
}

void CopyStream::setText(int column, const QByteArray &value) {
    appendEscaped(emptied(column), value);
}

void CopyStream::setBytes(int column, const QByteArray &value) {
    emptied(column).append("\\\\x").append(value.toHex());
}

bool CopyStream::write() {
    if (!mIsOpen)
        return false;
    for (std::size_t i = 0; i < mValues.size(); ++i) {
        if (i > 0)
            mBuffer += '\t';
        mBuffer += mValues[i];
    }
    mBuffer += '\n';
    return mBuffer.size() < kChunk || send();
}

bool CopyStream::finish() {
    return mIsOpen && send() && end(nullptr) && (mPassOn.isEmpty() || execute(mPassOn));
}

bool CopyStream::send() {
    serverwatch::makesRows(mConnection, false);
    const bool sent = PQputCopyData(mConnection, mBuffer.constData(), mBuffer.size()) == 1;
    serverwatch::makesRows(mConnection, true);
    mBuffer.resize(0);
    if (!sent) {
        const QString reason = QString::fromUtf8(PQerrorMessage(mConnection)).simplified();
        end("the rows could not be sent");
        mError = reason;
    }
    return sent;
}

/// Ends the stream. @param reason why it is to fail; null for a good end.
bool CopyStream::end(const char *reason) {
    mIsOpen = false;
    serverwatch::makesRows(mConnection, false);
    bool good = PQputCopyEnd(mConnection, reason) == 1;
    while (PGresult *result = PQgetResult(mConnection)) {
        const ExecStatusType status = PQresultStatus(result);
        if (status != PGRES_COMMAND_OK) {
            good = false;
            mError = QString::fromUtf8(PQresultErrorMessage(result)).simplified();
            mErrorCode = QString::fromLatin1(PQresultErrorField(result, PG_DIAG_SQLSTATE));
        }
        PQclear(result);
        // A stream that could not be ended has no end of results either.
        if (status == PGRES_COPY_IN)
            break;
    }
    return good;
}

#else

bool CopyStream::serves(const QSqlDatabase &) {
    return false;
}

// Without libpq no connection is served, and none of these is called.
CopyStream::CopyStream(const QSqlDatabase &, const QString &, const QStringList &) : mConnection(nullptr) {}
CopyStream::~CopyStream() = default;
void CopyStream::setNull(int) {}
void CopyStream::set(int, qint64) {}
void CopyStream::set(int, double) {}
void CopyStream::set(int, const QString &) {}
void CopyStream::setText(int, const QByteArray &) {}
void CopyStream::setBytes(int, const QByteArray &) {}
bool CopyStream::write() {
    return false;
}
bool CopyStream::finish() {
    return false;
}

#endif
