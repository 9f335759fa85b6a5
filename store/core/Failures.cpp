#include "store/core/Failures.h"

#include "store/core/Engine.h"
#include "store/core/EngineHandle.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <atomic>
#include <utility>

namespace {

/// A statement on a closed connection, which a lost one soon is, does not run and yet leaves no error behind.
const QString kNotOpen = QStringLiteral("The store is not open");

thread_local const char *currentOperation = nullptr;
std::atomic<quint64> failuresSoFar{0};

bool isPostgreSql(const QSqlDriver *driver) {
    return driver && driver->dbmsType() == QSqlDriver::PostgreSQL;
}

long lastInsertId(const QSqlQuery &query) {
    // The PostgreSQL driver would ask the server for the last value of any sequence, which says nothing of
    // this statement and, where none was drawn yet, ends the caller's transaction.
    if (isPostgreSql(query.driver()))
        return 0;
    const QVariant id = query.lastInsertId();
    return id.isValid() ? static_cast<long>(id.toLongLong()) : 0;
}

/// The first table that a statement names.
QString tableOf(const QString &sql) {
    static const QRegularExpression name(QStringLiteral("\\b(?:into|from|update|table|copy)\\s+\"?(\\w+)"),
                                         QRegularExpression::CaseInsensitiveOption);
    return name.match(sql).captured(1);
}

/// https://www.sqlite.org/rescode.html; the low byte is the primary code.
FailureKind kindOfSqlite(int code) {
    switch (code & 0xff) {
    case 5: // busy
    case 6: // locked
        return FailureKind::Busy;
    case 10: // input/output error
    case 14: // cannot open
        return FailureKind::Lost;
    case 11: // corrupt
    case 26: // not a database
        return FailureKind::Damaged;
    case 18: // too big
    case 20: // mismatch
        return FailureKind::RefusedValue;
    case 19:
        return FailureKind::Constraint;
    default:
        return FailureKind::Other;
    }
}

/// https://www.postgresql.org/docs/15/errcodes-appendix.html. Without a state the server did not answer.
FailureKind kindOfServer(const QString &state) {
    static const QStringList busy{QStringLiteral("40001"), QStringLiteral("40P01"), QStringLiteral("55P03")};
    static const QStringList lost{QStringLiteral("57P01"), QStringLiteral("57P02"), QStringLiteral("57P03")};
    if (busy.contains(state))
        return FailureKind::Busy;
    if (state.isEmpty() || state.startsWith(QLatin1String("08")) || lost.contains(state))
        return FailureKind::Lost;
    if (state.startsWith(QLatin1String("22")))
        return FailureKind::RefusedValue;
    if (state.startsWith(QLatin1String("23")))
        return FailureKind::Constraint;
    return state.startsWith(QLatin1String("XX")) ? FailureKind::Damaged : FailureKind::Other;
}

CallDbResult notOpen() {
    CallDbResult failure;
    failure.error = kNotOpen;
    failure.kind = FailureKind::Lost;
    return failure;
}

} // namespace

OperationName::OperationName(const char *name) : mIsSet(!currentOperation) {
    if (mIsSet)
        currentOperation = name;
}

OperationName::OperationName(OperationName &&other) noexcept : mIsSet(std::exchange(other.mIsSet, false)) {}

OperationName &OperationName::operator=(OperationName &&other) noexcept {
    std::swap(mIsSet, other.mIsSet);
    return *this;
}

OperationName::~OperationName() {
    if (mIsSet)
        currentOperation = nullptr;
}

bool recordFailure(FailureList &failures, CallDbResult failure) {
    failure.number = ++failuresSoFar;
    // Compilers name what a template is filled with.
    failure.operation = QString::fromLatin1(currentOperation).section(QLatin1Char('<'), 0, 0);
    if (failure.table.isEmpty())
        failure.table = tableOf(failure.sql);
    failures.append(failure);
    return false;
}

bool recordFailure(FailureList &failures, const QString &sql, const QString &error, long id,
                   FailureKind kind) {
    CallDbResult failure;
    failure.sql = sql;
    failure.id = id;
    failure.error = error;
    failure.kind = kind;
    failure.objectId = id;
    return recordFailure(failures, std::move(failure));
}

quint64 lastFailureNumber() {
    return failuresSoFar;
}

FailureKind failureKind(const QString &code, bool isSqlite) {
    return isSqlite ? kindOfSqlite(code.toInt()) : kindOfServer(code);
}

CallDbResult failureOf(const QSqlError &error, const QSqlDriver *driver) {
    CallDbResult failure;
    failure.error = error.text();
    // Of SQLite's codes Qt gives the primary one.
    const int extended = driver ? enginehandle::extendedErrorCode(driver) : 0;
    failure.code = extended != 0 && (extended & 0xff) == error.nativeErrorCode().toInt()
                       ? QString::number(extended)
                       : error.nativeErrorCode();
    failure.kind = failureKind(failure.code, !isPostgreSql(driver));
    return failure;
}

bool checkStatement(const QSqlQuery &query, FailureList &failures, long objectId, const QString &sql) {
    const QSqlError error = query.lastError();
    const bool isOpen = !query.driver() || query.driver()->isOpen();
    if (!error.isValid() && isOpen)
        return true;
    CallDbResult failure = error.isValid() ? failureOf(error, query.driver()) : notOpen();
    failure.sql = sql.isEmpty() ? query.lastQuery() : sql;
    failure.id = lastInsertId(query);
    failure.objectId = objectId;
    return recordFailure(failures, std::move(failure));
}

bool checkConnection(const QSqlDatabase &db, FailureList &failures) {
    const QSqlError error = db.lastError();
    if (error.isValid() || !db.isOpen())
        return recordFailure(failures, error.isValid() ? failureOf(error, db.driver()) : notOpen());
    if (!engine::isSqlite(db))
        return true;
    QSqlQuery count(db);
    count.setForwardOnly(true);
    count.exec(QStringLiteral("select count(*) from IDGenerater"));
    return checkStatement(count, failures);
}
