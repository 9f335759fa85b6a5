// Opening the store of the process, on Qt's default connection.
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/OpenStore.h"
#include "store/Stores.h"
#include "store/core/Engine.h"
#include "store/guard/SchemaGuard.h"
#include "store/ids/Identifiers.h"
#include "store/opening/ProcessStore.h"
#include "store/opening/StoreOpening.h"
#include "store/server/ConnectionWords.h"

#include <MoraInterfaces/MoraInterfaces.h>

#include <QJsonObject>

#ifdef MORASTORE_STATIC
// A linker leaves out of an archive what nobody names, and nobody names a resource. The macro wants to stand in no
// namespace.
static bool takeResourcesAlong() {
    Q_INIT_RESOURCE(EmptyNet);
    Q_INIT_RESOURCE(Changelog);
    return true;
}
static const bool kHasResources = takeResourcesAlong();
#endif

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

/// Closes Qt's default connection. The process-wide handles on it are given up first: Qt would otherwise keep it
/// alive and complain that it is in use. gNet's tables are emptied: the same ids name other objects in another
/// store.
void removeDefaultConnection() {
    const QString name = QLatin1String(QSqlDatabase::defaultConnection);
    releaseDefault(gDB);
    releaseDefault(gDBForBackup);
    gsDbPath.clear();
    gNet.releaseNet();
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);
    processStore().state.fileCopy.reset();
    processStore().state.isReadOnly = false;
}

/// Makes @p db Qt's default connection with @p driver, in place of the one before it.
void replaceDefaultConnection(QSqlDatabase &db, const QString &driver) {
    releaseDefault(db);
    removeDefaultConnection();
    db = QSqlDatabase::addDatabase(driver);
}

/// The handle of an OpenStore stays with it; records that.
bool isOfProcess(const QSqlDatabase &db, FailureList &failures) {
    return &stateOf(db) == &processStore().state ||
           recordFailure(
               failures, {},
               QStringLiteral("The connection belongs to an OpenStore: open the store on gDB, or as "
                              "an OpenStore of its own"));
}

/// What is known of the store that was open is not that of the next one.
void forget(StoreState &state) {
    state.forgetIdentifiers();
    state.failures.clear();
    state.severalNetsFailures->clear();
}

/// @p db as the default connection to what the settings and the host's name; false when that is nothing.
bool connectDefault(StoreState &state, QSqlDatabase &db, const QString &path) {
    forget(state);
    if (!isOfProcess(db, state.failures))
        return false;
    StoreSettings &settings = state.settings;
    takeTexts(hostSettings(), {{"__dbdriver", &settings.driver},
                               {"__dbhost", &settings.host},
                               {"__dbname", &settings.name},
                               {"__dbuser", &settings.user},
                               {"__dbpassword", &settings.password}});
    const bool isSqlite = settings.driver == QLatin1String("QSQLITE");
    if (isSqlite && path.isEmpty())
        return false;
    if (isSqlite)
        settings.name = path;
    replaceDefaultConnection(db, settings.driver);
    connectionwords::nameStore(db, settings);
    return true;
}

/// Opens what @p settings name on gDB in place of what is open.
bool openDefault(const StoreSettings &settings, const OpenOptions &options) {
    StoreState &state = processStore().state;
    forget(state);
    state.settings = settings;
    replaceDefaultConnection(gDB, settings.driver);
    connectionwords::nameStore(gDB, settings);
    const bool isOpened = options.access == StoreAccess::Read
                              ? opening::forReading(state, gDB, settings.name, true)
                              : opening::forWriting(state, gDB, settings.name, true);
    return isOpened && opening::applyOptions(state, gDB, options);
}

} // namespace

bool stores::open(const QString &path, const OpenOptions &options) {
    StoreSettings settings;
    settings.name = path;
    return open(settings, options);
}

bool stores::open(const StoreSettings &settings, const OpenOptions &options) {
    const OperationName operation("open");
    StoreState &state = processStore().state;
    OpenOptions possible = options;
    {
        const OpenStore trial(settings, options);
        if (!trial.isOpen()) {
            state.failures += trial.failures();
            return false;
        }
        possible.access = trial.isReadOnly() ? StoreAccess::Read : StoreAccess::Write;
    }
    const bool wasOpen = gDB.isOpen();
    const StoreSettings before = state.settings;
    const OpenOptions optionsBefore{state.isReadOnly ? StoreAccess::Read : StoreAccess::Write,
                                    gSpecialWords.langIsNotZh ? ShownWords::English : ShownWords::Chinese,
                                    gNet.name};
    if (openDefault(settings, possible))
        return true;
    // What could be opened a moment ago cannot be any more.
    const FailureList reasons = state.failures;
    if (wasOpen)
        openDefault(before, optionsBefore);
    else
        close();
    state.failures += reasons;
    return false;
}

void stores::close() {
    StoreState &state = processStore().state;
    removeDefaultConnection();
    state.forgetIdentifiers();
    gNet = Net();
    gNet.releaseNet();
    ghVehicleType.clear();
    ghVehicleComposition.clear();
    glLinkType.clear();
}

bool DBTools::openDatabase(QSqlDatabase &db, QString path, bool resetIdCache) {
    const OperationName operation(__func__);
    StoreState &state = processStore().state;
    return connectDefault(state, db, path) && opening::forWriting(state, db, path, resetIdCache);
}

bool DBTools::openDatabaseReadOnly(QSqlDatabase &db, QString path, bool resetIdCache) {
    const OperationName operation(__func__);
    StoreState &state = processStore().state;
    return connectDefault(state, db, path) && opening::forReading(state, db, path, resetIdCache);
}

bool DBTools::transToPostgreSql(QSqlDatabase &db) {
    const OperationName operation(__func__);
    StoreState &state = processStore().state;
    if (!engine::isSqlite(db) || !isOfProcess(db, state.failures))
        return false;
    StoreSettings &settings = state.settings;
    const QJsonObject named = hostSettings();
    takeTexts(named, {{"__pgdbdriver", &settings.driver},
                      {"__pgdbhost", &settings.host},
                      {"__pgdbname", &settings.name},
                      {"__pgdbuser", &settings.user},
                      {"__pgdbpassword", &settings.password}});
    const QJsonValue port = named.value(QLatin1String("__pgdbport"));
    if (!port.isUndefined() && !port.isNull())
        settings.port = port.toInt();
    // Of whatever name: what was read of the file is not to be written to any more.
    db.close();
    replaceDefaultConnection(db, settings.driver);
    state.forgetIdentifiers();
    // The port is not applied: hosts that switch rely on the driver's default.
    StoreSettings reached = settings;
    reached.port = -1;
    connectionwords::nameStore(db, reached);
    if (!opening::openGuarded(db, state.failures) || !validateDatabase(db) ||
        !schemaguard::hasFittingVersion(db, settings.name, state.failures) ||
        !identifiers::passLaneConnectors(
            Store(db, state, 0, Generation::SeveralNets, state.version, state.failures)))
        return false;
    // The switch has succeeded whatever becomes of the removal; that records its own failures.
    removeNetData(db, 1, true);
    return true;
}

bool DBTools_V6::openDatabaseForBackup(QSqlDatabase &db, QString path, bool) {
    const OperationName operation(__func__);
    if (!isOfProcess(db, mlCallDbResult))
        return false;
    replaceDefaultConnection(db, QStringLiteral("QSQLITE"));
    db.setHostName(QStringLiteral("127.0.0.1"));
    db.setDatabaseName(path);
    if (!opening::isWritableStoreFile(path, mlCallDbResult))
        return false;
    return opening::openGuarded(db, mlCallDbResult) && validateDatabase(db);
}
