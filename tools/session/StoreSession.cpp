#include "tools/session/StoreSession.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/core/Engine.h"
#include "store/guard/ConnectionGuard.h"
#include "tools/reports/Failure.h"
#include "tools/session/ConnectionSettings.h"
#include "tools/session/Server.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <optional>

namespace moratools {

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

QString openName;

void closeStore() {
    openName.clear();
    gNet.loadRecord(NetRecord());
    const QString connection = gDB.connectionName();
    gDB.close();
    gDB = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

/// Brings a store of the first generation to the layout that opening expects; what was refused.
QList<CallDbResult> passFirstGeneration(const QString &path) {
    DBTools::mlCallDbResult.clear();
    gDB = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    gDB.setDatabaseName(path);
    connectionguard::open(gDB);
    DBTools::updateDatabase1x(gDB);
    const QList<CallDbResult> refused = DBTools::mlCallDbResult;
    closeStore();
    return refused;
}

/// How old the store is; none for a database of a server, which is current from the start.
std::optional<Age> ageOf(const StoreAddress &address, Access access) {
    if (address.isServer()) {
        requireServerStore(address, access);
        return std::nullopt;
    }
    const Age age = requireStore(address.path(), access);
    if (age == Age::FirstGeneration && access == Access::Write)
        throw Failure(
            QStringLiteral("%1: the store is of the first generation; run \"morastore upgrade\" on it first")
                .arg(address.name()));
    return age;
}

} // namespace

void StoreSession::require(const StoreAddress &address, Access access) {
    ageOf(address, access);
}

StoreSession::StoreSession(const StoreAddress &address, Access access) {
    // An absolute path is never one of the names that SQLite takes for something else.
    const QString path = QFileInfo(address.path()).absoluteFilePath();
    QList<CallDbResult> earlier;
    if (ageOf(address, access) == Age::FirstGeneration && access == Access::Upgrade)
        earlier = passFirstGeneration(path);
    const ConnectionSettings settings(address);
    settings.applyToLibrary();
    const auto open = access == Access::Read ? DBTools::openDatabaseReadOnly : DBTools::openDatabase;
    const bool opened = open(gDB, path, true);
    DBTools::mDbPassword.clear();
    if (!opened) {
        const QString reason = firstFailureText();
        logFailures();
        closeStore();
        throw Failure(QStringLiteral("%1: the store cannot be opened (%2)").arg(address.name(), reason));
    }
    DBTools::mlCallDbResult = earlier + DBTools::mlCallDbResult;
    openName = address.name();
    if (!address.isServer())
        QSqlQuery(QStringLiteral("PRAGMA busy_timeout = 500"), gDB);
}

StoreSession::~StoreSession() {
    logFailures();
    closeStore();
}

int StoreSession::generation() const {
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

void requireServerAlive() {
    if (!engine::isPostgreSql(gDB))
        return;
    QSqlQuery question(gDB);
    // A server that refuses to answer in a transaction that failed is alive, and gives a code.
    if (!question.exec(QStringLiteral("select 1")) && question.lastError().nativeErrorCode().isEmpty())
        throw Failure(QStringLiteral("%1: the connection to the server is lost, and nothing was changed; try "
                                     "again when the server runs")
                          .arg(openName));
}

void refuseReading(const QString &what, const QString &reason) {
    requireServerAlive();
    throw Failure(
        reason.isEmpty()
            ? QStringLiteral("%1 cannot be read; the store is damaged, restore it from a copy").arg(what)
            : QStringLiteral("%1 cannot be read (%2); try again when no other program writes to the "
                             "store, or else restore it from a copy")
                  .arg(what, reason.simplified()));
}

} // namespace moratools
