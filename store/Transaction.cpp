#include "store/Transaction.h"

#include "store/core/Engine.h"
#include "store/core/EngineHandle.h"
#include "store/core/Failures.h"
#include "store/core/OpenTransactions.h"
#include "store/core/Savepoint.h"
#include "store/opening/ProcessStore.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>

#include <algorithm>
#include <atomic>

namespace {

using Level = OpenTransactions::Level;

/// On a connection that was closed nothing runs.
bool run(const QSqlDriver *driver, const QString &sql) {
    return driver->isOpen() && QSqlQuery(driver->createResult()).exec(sql);
}

/// The same, with a record of what failed.
bool runOrRecord(const QSqlDriver *driver, const QString &sql) {
    QSqlQuery query(driver->createResult());
    if (driver->isOpen())
        query.exec(sql);
    return checkStatement(query, stateOf(driver).failures);
}

QString savepoint(quint64 number) {
    return QStringLiteral("savepoint transaction_%1").arg(number);
}

QString release(quint64 number) {
    return QStringLiteral("release savepoint transaction_%1").arg(number);
}

/// The failures that @p level counts.
FailureList failuresIn(const StoreState &state, const Level &level) {
    FailureList counted;
    for (const CallDbResult &failure : state.failuresAfter(level.failureBefore)) {
        if (level.counts(failure.number))
            counted.append(failure);
    }
    return counted;
}

void endGuard(const QSqlDriver *driver, const Level &level) {
    if (level.guard && !level.guard->isOn(driver))
        level.guard->forgetEngine();
}

/// Takes the innermost one back. What the engine has taken back by itself has no savepoint any more.
void rollBackInnermost(QSqlDriver *driver, OpenTransactions &open) {
    const Level level = std::move(open.levels.back());
    open.levels.pop_back();
    if (level.isBegun) {
        run(driver, QStringLiteral("rollback"));
    } else {
        run(driver, QStringLiteral("rollback to ") + savepoint(level.number));
        // Where the savepoint is the transaction, its end is a commit, of nothing.
        if (level.guard)
            level.guard->allow();
        run(driver, release(level.number));
    }
    endGuard(driver, level);
    if (!open.levels.empty())
        open.levels.back().undone.emplace_back(level.failureBefore, lastFailureNumber());
}

/// The place of a transaction among the open ones; their number when it is not open.
std::size_t placeOf(const OpenTransactions &open, quint64 number) {
    const auto found = std::find_if(open.levels.begin(), open.levels.end(),
                                    [number](const Level &level) { return level.number == number; });
    return std::size_t(found - open.levels.begin());
}

void rollBackFrom(QSqlDriver *driver, OpenTransactions &open, std::size_t first) {
    while (open.levels.size() > first)
        rollBackInnermost(driver, open);
}

bool commitInnermost(QSqlDriver *driver, OpenTransactions &open) {
    const Level &level = open.levels.back();
    if (level.guard)
        level.guard->allow();
    // On a server, the end of the savepoint tells whether the transaction is still there: a commit of one that
    // has failed is a roll back without an error.
    if (!runOrRecord(driver, release(level.number)) ||
        (level.isBegun && !runOrRecord(driver, QStringLiteral("commit")))) {
        rollBackInnermost(driver, open);
        return false;
    }
    endGuard(driver, level);
    const auto undone = level.undone;
    open.levels.pop_back();
    if (!open.levels.empty()) {
        auto &outer = open.levels.back().undone;
        outer.insert(outer.end(), undone.begin(), undone.end());
    }
    return true;
}

} // namespace

Transaction::Transaction(QSqlDatabase &db) {
    static std::atomic<quint64> begun{0};
    const OperationName operation("Transaction");
    if (!checkConnection(db, stateOf(db).failures))
        return;
    OpenTransactions &open = OpenTransactions::of(db.driver());
    // Where SQLite does not tell whether one is open, it begins one with the savepoint; so it does where nobody is to
    // write.
    const bool isFile = engine::isSqlite(db);
    const bool isInside = isFile ? enginehandle::transactionState(db) != enginehandle::TransactionState::None
                                 : Savepoint::isInsideTransaction(db);
    const bool begins = !isInside && !(isFile && stateOf(db).isReadOnly);
    Level level{++begun, begins, lastFailureNumber()};
    if (open.levels.empty() && isFile)
        level.guard = std::make_unique<CommitGuard>(db);
    // One that the host has begun is the host's to commit.
    if (level.guard && level.guard->isInTransaction())
        level.guard.reset();
    // A file's write lock is taken at once: what reads before it writes would be refused where another program writes
    // in between.
    if (begins &&
        !runOrRecord(db.driver(), isFile ? QStringLiteral("begin immediate") : QStringLiteral("begin")))
        return;
    if (!runOrRecord(db.driver(), savepoint(level.number))) {
        if (begins)
            run(db.driver(), QStringLiteral("rollback"));
        return;
    }
    mDriver = db.driver();
    mNumber = level.number;
    open.levels.push_back(std::move(level));
}

Transaction::~Transaction() {
    rollBack();
}

bool Transaction::isOpen() const {
    if (!mDriver || mNumber == 0)
        return false;
    const OpenTransactions &open = OpenTransactions::of(mDriver);
    return placeOf(open, mNumber) < open.levels.size();
}

bool Transaction::commit() {
    const OperationName operation("Transaction");
    if (!isOpen())
        return recordFailure(
            stateOf(mDriver.data()).failures, {},
            QStringLiteral("There is no transaction to commit: it was not begun, or has ended"), 0,
            FailureKind::Other);
    OpenTransactions &open = OpenTransactions::of(mDriver);
    const std::size_t place = placeOf(open, mNumber);
    rollBackFrom(mDriver, open, place + 1);
    StoreState &state = stateOf(mDriver.data());
    const FailureList failed = failuresIn(state, open.levels[place]);
    if (failed.isEmpty())
        return commitInnermost(mDriver, open);
    recordFailure(
        state.failures, {},
        QStringLiteral("The transaction is rolled back, since %1 of its calls failed, the first with: %2")
            .arg(QString::number(failed.size()), failed.first().error.trimmed()),
        0, FailureKind::Other);
    rollBackFrom(mDriver, open, place);
    return false;
}

void Transaction::rollBack() {
    if (!isOpen())
        return;
    OpenTransactions &open = OpenTransactions::of(mDriver);
    rollBackFrom(mDriver, open, placeOf(open, mNumber));
}
