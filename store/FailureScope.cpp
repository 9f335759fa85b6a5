#include "store/FailureScope.h"

#include "store/core/Failures.h"
#include "store/opening/ProcessStore.h"

#include <QStringList>

namespace {

CallDbResult noFailure() {
    CallDbResult none;
    none.kind = FailureKind::None;
    return none;
}

} // namespace

FailureScope::FailureScope(const StoreState &state, quint64 after) : mState(&state), mAfter(after) {}

FailureScope::FailureScope(const QSqlDatabase &db) : FailureScope(stateOf(db), lastFailureNumber()) {}

FailureScope FailureScope::sinceOpening(const QSqlDatabase &db) {
    return {stateOf(db), 0};
}

QList<CallDbResult> FailureScope::failures() const {
    return mState->failuresAfter(mAfter);
}

CallDbResult FailureScope::first() const {
    const QList<CallDbResult> all = failures();
    return all.isEmpty() ? noFailure() : all.first();
}

CallDbResult FailureScope::last() const {
    const QList<CallDbResult> all = failures();
    return all.isEmpty() ? noFailure() : all.last();
}

QString FailureScope::text() const {
    QStringList lines;
    for (const CallDbResult &failure : failures()) {
        const QString line = failure.error.trimmed();
        if (!lines.contains(line))
            lines.append(line);
    }
    return lines.join(QLatin1Char('\n'));
}
