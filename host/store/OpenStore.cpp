#include "host/store/OpenStore.h"

#include "host/Failure.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QFileInfo>
#include <QSqlQuery>

#include <algorithm>

namespace {

/// In a store of several networks counters are per network, so the row that belongs to none is refused when
/// the first opening adds table Rsu.
bool isByDesign(const CallDbResult &failure) {
    return failure.sql.contains(QLatin1String("IDGenerater")) && failure.sql.contains(QLatin1String("'Rsu'"));
}

QList<CallDbResult> failures() {
    QList<CallDbResult> all = DBTools::mlCallDbResult + DBTools_V6::mlCallDbResult;
    if (DBTools::dbVer() >= 6)
        all.erase(std::remove_if(all.begin(), all.end(), isByDesign), all.end());
    return all;
}

void closeStore() {
    gNet.loadRecord(NetRecord());
    const QString connection = gDB.connectionName();
    gDB.close();
    gDB = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

} // namespace

OpenStore::OpenStore(const QString &path, Access access) {
    // An absolute path is never one of the names that SQLite takes for something else.
    const QString absolute = QFileInfo(path).absoluteFilePath();
    requireStore(path, access);
    if (!DBTools::openDatabase(gDB, absolute, true)) {
        const QString reason = firstFailureText();
        logFailures();
        closeStore();
        throw Failure(QStringLiteral("%1: the store cannot be opened (%2)").arg(path, reason));
    }
    QSqlQuery(QStringLiteral("PRAGMA busy_timeout = 500"), gDB);
}

OpenStore::~OpenStore() {
    logFailures();
    closeStore();
}

int OpenStore::generation() const {
    return DBTools::dbVer();
}

int unexpectedFailures() {
    return failures().size();
}

QString firstFailureText() {
    return failures().isEmpty() ? QString() : failures().first().error.trimmed();
}

void logFailures() {
    if (unexpectedFailures() > 0)
        DBTools::logError(gDB);
}
