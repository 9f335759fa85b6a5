#include "host/store/OpenStore.h"

#include "host/Failure.h"
#include "host/store/ConnectionSettings.h"
#include "host/store/Server.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QFileInfo>
#include <QSqlError>
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

QString openName;

void closeStore() {
    openName.clear();
    gNet.loadRecord(NetRecord());
    const QString connection = gDB.connectionName();
    gDB.close();
    gDB = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

} // namespace

OpenStore::OpenStore(const StoreAddress &address, Access access) {
    if (address.isServer())
        requireServerStore(address, access);
    else
        requireStore(address.path(), access);
    const ConnectionSettings settings(address);
    settings.applyToLibrary();
    const bool opened = DBTools::openDatabase(gDB, QFileInfo(address.path()).absoluteFilePath(), true);
    DBTools::mDbPassword.clear();
    if (!opened) {
        const QString reason = firstFailureText();
        logFailures();
        closeStore();
        throw Failure(QStringLiteral("%1: the store cannot be opened (%2)").arg(address.name(), reason));
    }
    openName = address.name();
    if (!address.isServer())
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

void requireServerAlive() {
    if (gDB.driverName() != QLatin1String("QPSQL"))
        return;
    QSqlQuery question(gDB);
    // A server that refuses to answer in a transaction that failed is alive, and gives a code.
    if (!question.exec(QStringLiteral("select 1")) && question.lastError().nativeErrorCode().isEmpty())
        throw Failure(QStringLiteral("%1: the connection to the server is lost, and nothing was changed; try "
                                     "again when the server runs")
                          .arg(openName));
}
