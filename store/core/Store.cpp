#include "store/core/Store.h"

#include "store/core/Engine.h"
#include "store/core/Probes.h"

#include <QSqlError>

namespace {

/// Whether SQLite may have ended the transaction by itself: it does so when it cannot write (a full disk, an
/// input/output error, no memory) or was interrupted. Statements that followed would be kept one by one.
/// Result codes: https://www.sqlite.org/lang_transaction.html; the low byte is the primary code.
bool endsTransaction(int code) {
    constexpr int noMemory = 7;
    constexpr int interrupted = 9;
    constexpr int inputOutput = 10;
    constexpr int full = 13;
    return code == noMemory || code == interrupted || code == inputOutput || code == full;
}

} // namespace

Store::Store(QSqlDatabase &db, StoreState &state, long netId, Generation generation, int schemaVersion,
             FailureList &failures)
    : mDb(db),
      mState(state),
      mScope(&state),
      mNetId(netId),
      mGeneration(generation),
      mSchemaVersion(schemaVersion),
      mFailures(failures) {}

Store Store::in(NetScope &scope) const {
    Store store(mDb, mState, mNetId, mGeneration, mSchemaVersion, mFailures);
    store.mScope = &scope;
    if (isGivenUp())
        store.giveUp();
    return store;
}

bool Store::isUsable() const {
    if (mUse == Use::Unchecked)
        mUse = checkConnection() ? Use::Allowed : Use::Forbidden;
    return mUse == Use::Allowed;
}

bool Store::isSqlite() const {
    return engine::isSqlite(mDb);
}

bool Store::isPostgreSql() const {
    return engine::isPostgreSql(mDb);
}

void Store::requireAnswer(bool isThere) const {
    if (isThere)
        return;
    mLacksAnswer = true;
    giveUp();
}

void Store::heed(const QSqlError &error) const {
    constexpr int busy = 5;
    const int code = isSqlite() ? error.nativeErrorCode().toInt() & 0xff : 0;
    if (endsTransaction(code) || (code == busy && mHasOwnTransaction))
        giveUp();
}

bool Store::fail(const QString &sql, const QSqlError &error) const {
    CallDbResult failure = failureOf(error, mDb.driver());
    failure.sql = sql;
    return recordFailure(mFailures, std::move(failure));
}

bool Store::failWithCode(const QString &sql, const QString &error, const QString &code) const {
    CallDbResult failure;
    failure.sql = sql;
    failure.error = error;
    failure.code = code;
    failure.kind = failureKind(code, isSqlite());
    return recordFailure(mFailures, std::move(failure));
}

bool Store::hasColumn(const char *table, const char *column) const {
    if (!isUsable())
        return false;
    if (hasSeveralNets() && isPostgreSql())
        return true;
    const auto probe = [&] {
        const probes::Answer answer =
            probes::tableHasField(mDb, QLatin1String(table), QLatin1String(column), mFailures);
        requireAnswer(answer.has_value());
        return answer.value_or(false);
    };
    if (!mKept)
        return probe();
    const QString name = QLatin1String(table) + QLatin1Char('.') + QLatin1String(column);
    const auto known = mKept->columns.constFind(name);
    return known != mKept->columns.cend() ? *known : *mKept->columns.insert(name, probe());
}

std::optional<QSqlQuery> Store::takeStatement(const QString &text) const {
    if (!mKept || !mKept->statements.contains(text))
        return std::nullopt;
    return mKept->statements.take(text);
}

void Store::keepStatement(const QString &text, QSqlQuery &statement) const {
    if (!mKept)
        return;
    statement.finish();
    mKept->statements.insert(text, statement);
}

QString Store::text(const Sql &sql, std::initializer_list<long> ids) const {
    const QString spelled = text(sql);
    return fillNumbers(hasSeveralNets() ? fillNumber(spelled, mNetId) : spelled, ids);
}
