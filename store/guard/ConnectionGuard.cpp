#include "store/guard/ConnectionGuard.h"

#include "store/core/Engine.h"
#include "store/core/EngineHandle.h"
#include "store/server/OpeningWatch.h"
#include "store/server/ServerWatch.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#ifdef MORASTORE_WITH_SQLITE
#include <sqlite3.h>
#endif

namespace connectionguard {

namespace {

// https://www.sqlite.org/security.html. A background map is the largest value that a store holds (texts have
// a limit of their own, store/core/StorableValue.h); statements of the library have no expression that is
// deeper than a few levels.
constexpr int kLongestValue = 256 * 1024 * 1024;
constexpr int kLongestStatement = 1024 * 1024;
constexpr int kDeepestExpression = 100;
constexpr int kDeepestTrigger = 10;

// About a second of the engine's work; the questions of an opening take a thousandth.
constexpr int kOperationsInAStep = 10000;
constexpr int kSteps = 2000;

} // namespace

bool open(QSqlDatabase &db) {
    const OpeningWatch watch(db);
    if (!db.open())
        return false;
    harden(db);
    serverwatch::watch(db);
    return true;
}

void harden(const QSqlDatabase &db) {
    if (!db.isOpen() || !engine::isSqlite(db))
        return;
    for (const char *setting : {"pragma trusted_schema = off", "pragma cell_size_check = on"})
        const QSqlQuery done(QLatin1String(setting), db);
#ifdef MORASTORE_WITH_SQLITE
    sqlite3 *engine = enginehandle::sqlite(db);
    if (!engine)
        return;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the engine's interface
    sqlite3_db_config(engine, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(engine, SQLITE_LIMIT_LENGTH, kLongestValue);
    sqlite3_limit(engine, SQLITE_LIMIT_SQL_LENGTH, kLongestStatement);
    sqlite3_limit(engine, SQLITE_LIMIT_EXPR_DEPTH, kDeepestExpression);
    sqlite3_limit(engine, SQLITE_LIMIT_TRIGGER_DEPTH, kDeepestTrigger);
#endif
}

void runNoTriggers(const QSqlDatabase &db) {
#ifdef MORASTORE_WITH_SQLITE
    if (sqlite3 *engine = enginehandle::sqlite(db))
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the engine's interface
        sqlite3_db_config(engine, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
#else
    Q_UNUSED(db)
#endif
}

QuickQuestions::QuickQuestions(const QSqlDatabase &db)
    : mEngine(enginehandle::sqlite(db)), mStepsLeft(kSteps) {
#ifdef MORASTORE_WITH_SQLITE
    if (mEngine)
        sqlite3_progress_handler(mEngine, kOperationsInAStep, &QuickQuestions::step, this);
#endif
}

QuickQuestions::~QuickQuestions() {
#ifdef MORASTORE_WITH_SQLITE
    if (mEngine)
        sqlite3_progress_handler(mEngine, 0, nullptr, nullptr);
#endif
}

int QuickQuestions::step(void *questions) {
    return --static_cast<QuickQuestions *>(questions)->mStepsLeft < 0 ? 1 : 0;
}

} // namespace connectionguard
