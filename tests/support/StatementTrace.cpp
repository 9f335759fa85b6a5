#include "tests/support/StatementTrace.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

#include <cstring>
#include <sqlite3.h>

sqlite3 *engineOf(const QSqlDatabase &db) {
    const QVariant handle = db.driver()->handle();
    if (!handle.isValid() || std::strcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

namespace {

int append(unsigned, void *statements, void *, void *text) {
    static_cast<QStringList *>(statements)->append(QString::fromUtf8(static_cast<const char *>(text)));
    return 0;
}

} // namespace

StatementTrace::StatementTrace(const QSqlDatabase &db) : mEngine(engineOf(db)) {
    sqlite3_trace_v2(mEngine, SQLITE_TRACE_STMT, append, &mStatements);
}

StatementTrace::~StatementTrace() {
    sqlite3_trace_v2(mEngine, 0, nullptr, nullptr);
}

bool StatementTrace::canTrace(const QSqlDatabase &db) {
    QSqlQuery source(QStringLiteral("select sqlite_source_id()"), db);
    return engineOf(db) && source.next() && source.value(0).toString() == QLatin1String(sqlite3_sourceid());
}
