#include "host/rows/CopyStream.h"

#include "host/rows/StoreTables.h"

#include <QLocale>
#include <QSqlDriver>

#include <libpq-fe.h>

#include <cmath>

namespace {

constexpr int kBufferSize = 1 << 16;

/// The connection below Qt's.
PGconn *handleOf(const QSqlDatabase &db) {
    const QVariant handle = db.driver()->handle();
    return qstrcmp(handle.typeName(), "PGconn*") == 0 ? *static_cast<PGconn *const *>(handle.constData())
                                                      : nullptr;
}

void appendText(QByteArray &line, const QByteArray &text) {
    for (const char byte : text) {
        switch (byte) {
        case '\\':
            line.append("\\\\");
            break;
        case '\n':
            line.append("\\n");
            break;
        case '\r':
            line.append("\\r");
            break;
        case '\t':
            line.append("\\t");
            break;
        default:
            line.append(byte);
        }
    }
}

QByteArray spelled(double number) {
    if (std::isnan(number))
        return "NaN";
    if (std::isinf(number))
        return number < 0 ? "-Infinity" : "Infinity";
    return QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
}

/// COPY's text form, https://www.postgresql.org/docs/15/sql-copy.html.
void appendValue(QByteArray &line, const QVariant &value) {
    switch (value.userType()) {
    case QMetaType::UnknownType:
        line.append("\\N");
        break;
    case QMetaType::LongLong:
        line.append(QByteArray::number(value.toLongLong()));
        break;
    case QMetaType::Double:
        line.append(spelled(value.toDouble()));
        break;
    case QMetaType::QByteArray:
        line.append("\\\\x").append(value.toByteArray().toHex());
        break;
    default:
        appendText(line, value.toString().toUtf8());
    }
}

} // namespace

CopyStream::CopyStream(const QSqlDatabase &db, const QString &table, const QStringList &columns)
    : mConnection(handleOf(db)) {
    const QString sql =
        QStringLiteral("copy %1(%2) from stdin").arg(quotedName(table), columns.join(QLatin1Char(',')));
    PGresult *result = PQexec(mConnection, sql.toUtf8().constData());
    mIsOpen = PQresultStatus(result) == PGRES_COPY_IN;
    if (!mIsOpen)
        mError = QString::fromUtf8(PQerrorMessage(mConnection));
    PQclear(result);
    mBuffer.reserve(2 * kBufferSize);
}

CopyStream::~CopyStream() {
    if (mIsOpen)
        end("given up");
}

bool CopyStream::write(const QVector<QVariant> &row) {
    for (int i = 0; i < row.size(); ++i) {
        if (i > 0)
            mBuffer.append('\t');
        appendValue(mBuffer, row[i]);
    }
    mBuffer.append('\n');
    return mBuffer.size() < kBufferSize ? mIsOpen : flush();
}

bool CopyStream::flush() {
    const bool sent = mIsOpen && PQputCopyData(mConnection, mBuffer.constData(), mBuffer.size()) == 1;
    mBuffer.clear();
    if (!sent && mError.isEmpty())
        mError = QString::fromUtf8(PQerrorMessage(mConnection));
    return sent;
}

bool CopyStream::finish() {
    const bool sent = flush();
    return mIsOpen && end(nullptr) && sent;
}

bool CopyStream::end(const char *reason) {
    mIsOpen = false;
    bool kept = PQputCopyEnd(mConnection, reason) == 1;
    while (PGresult *result = PQgetResult(mConnection)) {
        const ExecStatusType status = PQresultStatus(result);
        if (status != PGRES_COMMAND_OK) {
            kept = false;
            mError = QString::fromUtf8(PQresultErrorMessage(result));
        }
        PQclear(result);
        // A stream that could not be ended has no end of results either.
        if (status == PGRES_COPY_IN)
            break;
    }
    return kept;
}

QString CopyStream::error() const {
    return mError.simplified();
}
