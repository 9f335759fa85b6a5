#include "tools/session/Patience.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>

#include <utility>

namespace moratools::patience {

namespace {

struct State {
    int milliseconds = 0;
    std::function<void()> isWaiting;
};

State &state() {
    static State ofProcess;
    return ofProcess;
}

} // namespace

void set(int seconds, std::function<void()> isWaiting) {
    state() = {seconds * 1000, std::move(isWaiting)};
}

int most() {
    return state().milliseconds;
}

void tellWaiting() {
    if (state().isWaiting)
        state().isWaiting();
}

bool isHeld(const QSqlError &error) {
    constexpr int busy = 5;
    return (error.nativeErrorCode().toInt() & 0xff) == busy;
}

QSqlQuery exec(const QSqlDatabase &db, const QString &sql, int quick) {
    const QString limit = QStringLiteral("pragma busy_timeout = %1");
    QSqlQuery(db).exec(limit.arg(quick));
    QSqlQuery query(db);
    if (query.exec(sql) || !isHeld(query.lastError()) || most() <= quick)
        return query;
    tellWaiting();
    query.finish();
    QSqlQuery(db).exec(limit.arg(most()));
    query.exec(sql);
    QSqlQuery(db).exec(limit.arg(quick));
    return query;
}

} // namespace moratools::patience
