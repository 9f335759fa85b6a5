#include "model/Net.h"
#include "model/SpecialWords.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/core/Engine.h"
#include "store/core/Probes.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/FileGuard.h"
#include "store/guard/ReadOnlyFile.h"
#include "store/guard/SchemaGuard.h"
#include "store/ids/Identifiers.h"
#include "store/protection/FileProtection.h"
#include "store/schema/Upgrade.h"

#include <MoraInterfaces/MoraInterfaces.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QSqlQuery>

#include <memory>
#include <optional>

namespace {

/// Copies the settings that the host names into @p targets; keys that are absent or null leave theirs alone.
void takeTexts(const QJsonObject &settings,
               std::initializer_list<std::pair<const char *, QString *>> targets) {
    for (const auto &[key, target] : targets) {
        const QJsonValue value = settings.value(QLatin1String(key));
        if (!value.isUndefined() && !value.isNull())
            *target = value.toString();
    }
}

QJsonObject hostSettings() {
    return gpMoraInterface ? gpMoraInterface->jsonSettings() : QJsonObject();
}

/// Gives up a handle on Qt's default connection, closing the connection.
void releaseDefault(QSqlDatabase &handle) {
    if (handle.connectionName() != QLatin1String(QSqlDatabase::defaultConnection))
        return;
    handle.close();
    handle = QSqlDatabase();
}

/// Makes @p db Qt's default connection with @p driver. The process-wide handles on the one that it replaces
/// are given up first: Qt would otherwise keep it alive and complain that it is in use. gNet's tables are
/// emptied: the same ids name other objects in another store.
void replaceDefaultConnection(QSqlDatabase &db, const QString &driver) {
    const QString name = QLatin1String(QSqlDatabase::defaultConnection);
    releaseDefault(db);
    releaseDefault(gDB);
    releaseDefault(gDBForBackup);
    gsDbPath.clear();
    gNet.releaseNet();
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);
    db = QSqlDatabase::addDatabase(driver);
}

bool refuse(const QString &path, const QString &reason, FailureList &failures) {
    return recordFailure(failures, {}, QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), reason));
}

/// Records why the file is not to be opened. SQLite would make a file for a path that does not exist, and
/// opening leaves no traces; of a protected file it would say that it is no database.
bool isStoreFile(const QString &path, FailureList &failures) {
    if (!QFileInfo::exists(path))
        return refuse(path, QStringLiteral("no such file"), failures);
    if (fileprotection::isProtected(path))
        return refuse(path, QStringLiteral("the store is protected; unprotect it first"), failures);
    return true;
}

bool isWritableStoreFile(const QString &path, FailureList &failures) {
    if (!isStoreFile(path, failures))
        return false;
    const QString reason = fileguard::refusal(path, fileguard::Purpose::Write);
    return reason.isEmpty() || refuse(path, reason, failures);
}

/// Opens a connection that takes a backslash in a text for what it is, as the library's statements count on.
/// The driver finds out while it connects what the server is set to, and escapes bound texts accordingly: to
/// change the setting afterwards would double their backslashes.
bool openWithPlainBackslashes(QSqlDatabase &db) {
    if (!connectionguard::open(db) || !engine::isPostgreSql(db))
        return db.isOpen();
    {
        QSqlQuery setting(QStringLiteral("show standard_conforming_strings"), db);
        if (!setting.next() || setting.value(0).toString() == QLatin1String("on"))
            return true;
    }
    db.close();
    QString options =
        qEnvironmentVariable("PGOPTIONS") + QStringLiteral(" -c standard_conforming_strings=on");
    options.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\''), QLatin1String("\\'"));
    db.setConnectOptions(QStringLiteral("options='%1'").arg(options));
    return db.open();
}

/// Opens the connection and asks what must be known before anything of the store is used. A connection that
/// cannot be opened passes: it has its record when it is validated.
bool openGuarded(QSqlDatabase &db, FailureList &failures) {
    if (!openWithPlainBackslashes(db))
        return true;
    const connectionguard::QuickQuestions quick(db);
    return schemaguard::hasPlainTables(db, QDir::toNativeSeparators(db.databaseName()), failures);
}

/// How the store of the default connection is read, while it is open read-only.
std::unique_ptr<ReadOnlyFile> readOnlyFile;

bool execute(const QSqlDatabase &db, const char *sql, FailureList &failures) {
    const QSqlQuery query(QLatin1String(sql), db);
    return checkStatement(query, failures);
}

} // namespace

bool DBTools::takeSettings() {
    takeTexts(hostSettings(), {{"__dbdriver", &mDbDriver},
                               {"__dbhost", &mDbHost},
                               {"__dbname", &mDbName},
                               {"__dbuser", &mDbUser},
                               {"__dbpassword", &mDbPassword}});
    return mDbDriver == QLatin1String("QSQLITE");
}

bool DBTools::nameStore(QSqlDatabase &db, const QString &path) {
    mhId.clear();
    mhNetMaxId.clear();
    mlCallDbResult.clear();
    DBTools_V6::mlCallDbResult.clear();
    const bool isSqlite = takeSettings();
    if (isSqlite && path.isEmpty())
        return false;
    if (isSqlite)
        mDbName = path;
    replaceDefaultConnection(db, mDbDriver);
    readOnlyFile.reset();
    db.setHostName(mDbHost);
    db.setPort(mDbPort);
    db.setDatabaseName(mDbName);
    db.setUserName(mDbUser);
    db.setPassword(mDbPassword);
    return true;
}

bool DBTools::learnAboutStore(QSqlDatabase &db, const QString &path, bool resetIdCache, bool mayUpgrade) {
    if (!validateDatabase(db) ||
        !schemaguard::hasFittingVersion(db, QDir::toNativeSeparators(mDbName), mlCallDbResult))
        return false;
    const auto version = probes::dbVersion(db, mlCallDbResult);
    if (!version)
        return false;
    mDbVer = static_cast<int>(*version);
    if (resetIdCache)
        mhId.clear();
    if (mayUpgrade && !bringForward(db))
        return false;
    const Store store(db, mState, 0, mDbVer >= 6 ? Generation::SeveralNets : Generation::OneNet, mDbVer,
                      mlCallDbResult);
    if (!judgeIsInter(db) || !identifiers::passLaneConnectors(store))
        return false;
    const auto hasRoadId =
        probes::tableHasField(db, QStringLiteral("Link"), QStringLiteral("roadid"), mlCallDbResult);
    if (!hasRoadId)
        return false;
    mbLinkHasRouadId = *hasRoadId;
    gsDbPath = engine::isSqlite(db) ? path : QString();
    return true;
}

bool DBTools::openDatabase(QSqlDatabase &db, QString path, bool resetIdCache) {
    if (!nameStore(db, path))
        return false;
    const bool isSqlite = mDbDriver == QLatin1String("QSQLITE");
    if (isSqlite && !isWritableStoreFile(path, mlCallDbResult))
        return false;
    return openGuarded(db, mlCallDbResult) && learnAboutStore(db, path, resetIdCache, isSqlite);
}

bool DBTools::openDatabaseReadOnly(QSqlDatabase &db, QString path, bool resetIdCache) {
    if (!nameStore(db, path))
        return false;
    if (mDbDriver != QLatin1String("QSQLITE"))
        return openGuarded(db, mlCallDbResult) && learnAboutStore(db, path, resetIdCache, false) &&
               execute(db, "set default_transaction_read_only = on", mlCallDbResult);
    if (!isStoreFile(path, mlCallDbResult))
        return false;
    readOnlyFile = std::make_unique<ReadOnlyFile>(path);
    if (!readOnlyFile->refusal().isEmpty())
        return refuse(path, readOnlyFile->refusal(), mlCallDbResult);
    readOnlyFile->applyTo(db);
    if (!openGuarded(db, mlCallDbResult) || !validateDatabase(db))
        return false;
    const auto isFirst = upgrade::isFirstGeneration(db, mlCallDbResult);
    const auto isPending = isFirst ? upgrade::isPending(db, mlCallDbResult) : std::nullopt;
    if (!isPending)
        return false;
    const bool isOlder = *isFirst || *isPending;
    if (isOlder && !readOnlyFile->isCopy()) {
        db.close();
        if (!readOnlyFile->turnIntoCopy())
            return refuse(path, readOnlyFile->refusal(), mlCallDbResult);
        readOnlyFile->applyTo(db);
        if (!openGuarded(db, mlCallDbResult))
            return false;
    }
    if (*isFirst && schemaguard::hasFittingVersion(db, QDir::toNativeSeparators(path), mlCallDbResult))
        updateDatabase1x(db);
    if (!learnAboutStore(db, path, resetIdCache, isOlder))
        return false;
    readOnlyFile->hideCopy();
    return execute(db, "pragma query_only = on", mlCallDbResult);
}

bool DBTools::judgeIsInter(QSqlDatabase &db) {
    // A store whose link types carry the Chinese default names is a Chinese store, any other an English one.
    const auto isChinese =
        probes::returnsRow(db, QStringLiteral("select * from LinkType where typeName='高速路'"),
                           mlCallDbResult, QStringLiteral("LinkType"));
    if (!isChinese)
        return false;
    mbInter = !*isChinese;
    gSpecialWords.setDbIsEnglish(mbInter);
    return true;
}

bool DBTools::transToPostgreSql(QSqlDatabase &db) {
    if (!engine::isSqlite(db))
        return false;
    const QJsonObject settings = hostSettings();
    takeTexts(settings, {{"__pgdbdriver", &mDbDriver},
                         {"__pgdbhost", &mDbHost},
                         {"__pgdbname", &mDbName},
                         {"__pgdbuser", &mDbUser},
                         {"__pgdbpassword", &mDbPassword}});
    const QJsonValue port = settings.value(QLatin1String("__pgdbport"));
    if (!port.isUndefined() && !port.isNull())
        mDbPort = port.toInt();
    // Of whatever name: what was read of the file is not to be written to any more.
    db.close();
    replaceDefaultConnection(db, mDbDriver);
    mhId.clear();
    mhNetMaxId.clear();
    // The port is not applied: hosts that switch rely on the driver's default.
    db.setHostName(mDbHost);
    db.setDatabaseName(mDbName);
    db.setUserName(mDbUser);
    db.setPassword(mDbPassword);
    if (!openGuarded(db, mlCallDbResult) || !validateDatabase(db) ||
        !schemaguard::hasFittingVersion(db, mDbName, mlCallDbResult) ||
        !identifiers::passLaneConnectors(
            Store(db, mState, 0, Generation::SeveralNets, mDbVer, mlCallDbResult)))
        return false;
    // The switch has succeeded whatever becomes of the removal; that records its own failures.
    removeNetData(db, 1, true);
    return true;
}

bool DBTools_V6::openDatabaseForBackup(QSqlDatabase &db, QString path, bool) {
    replaceDefaultConnection(db, QStringLiteral("QSQLITE"));
    db.setHostName(QStringLiteral("127.0.0.1"));
    db.setDatabaseName(path);
    if (!isWritableStoreFile(path, mlCallDbResult))
        return false;
    return openGuarded(db, mlCallDbResult) && validateDatabase(db);
}
