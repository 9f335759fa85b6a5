#include "store/core/CommitGuard.h"

#include "store/core/EngineHandle.h"

#ifdef MORASTORE_WITH_SQLITE
#include <sqlite3.h>

CommitGuard::CommitGuard(const QSqlDatabase &db) : mEngine(enginehandle::sqlite(db)) {
    if (!mEngine)
        return;
    // A commit that the hook answers with something else than 0 becomes a rollback.
    sqlite3_commit_hook(
        mEngine, [](void *guard) { return static_cast<CommitGuard *>(guard)->mIsAllowed ? 0 : 1; }, this);
    sqlite3_rollback_hook(
        mEngine, [](void *guard) { static_cast<CommitGuard *>(guard)->mIsRolledBack = true; }, this);
}

bool CommitGuard::isInTransaction() const {
    return mEngine && sqlite3_get_autocommit(mEngine) == 0;
}

bool CommitGuard::isOn(const QSqlDriver *driver) const {
    return enginehandle::isOf(driver, mEngine);
}

CommitGuard::~CommitGuard() {
    if (!mEngine)
        return;
    sqlite3_commit_hook(mEngine, nullptr, nullptr);
    sqlite3_rollback_hook(mEngine, nullptr, nullptr);
}
#else
CommitGuard::CommitGuard(const QSqlDatabase &) : mEngine(nullptr) {}
CommitGuard::~CommitGuard() = default;
bool CommitGuard::isInTransaction() const {
    return false;
}
bool CommitGuard::isOn(const QSqlDriver *) const {
    return false;
}
#endif
