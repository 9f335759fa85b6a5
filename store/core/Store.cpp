#include "store/core/Store.h"

#include "store/core/Probes.h"

Store::Store(QSqlDatabase &db, long netId, Generation generation, int schemaVersion, FailureList &failures)
    : mDb(db), mNetId(netId), mGeneration(generation), mSchemaVersion(schemaVersion), mFailures(failures) {}

bool Store::isUsable() const {
    if (mState == State::Unchecked)
        mState = checkConnection() ? State::Usable : State::Unusable;
    return mState == State::Usable;
}

bool Store::isSqlite() const {
    return mDb.driverName() == QLatin1String("QSQLITE");
}

bool Store::isPostgreSql() const {
    return mDb.driverName() == QLatin1String("QPSQL");
}

bool Store::fail(const QString &sql, const QString &error) const {
    CallDbResult failure;
    failure.sql = sql;
    failure.error = error;
    mFailures.append(failure);
    return false;
}

bool Store::hasColumn(const char *table, const char *column) const {
    if (!isUsable())
        return false;
    if (hasSeveralNets() && isPostgreSql())
        return true;
    const auto probe = [&] {
        return probes::tableHasField(mDb, QLatin1String(table), QLatin1String(column));
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
