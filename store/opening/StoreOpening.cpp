#include "store/opening/StoreOpening.h"

#include "store/core/Engine.h"
#include "store/core/Probes.h"
#include "store/families/Networks.h"
#include "store/guard/ConnectionGuard.h"
#include "store/guard/FileGuard.h"
#include "store/guard/ReadOnlyFile.h"
#include "store/guard/SchemaGuard.h"
#include "store/ids/Identifiers.h"
#include "store/protection/FileProtection.h"
#include "store/schema/Upgrade.h"
#include "store/server/ConnectionWords.h"
#include "store/server/Pooler.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace opening {

namespace {

bool refuse(const QString &path, const QString &reason, FailureList &failures,
            FailureKind kind = FailureKind::Other) {
    return recordFailure(failures, {}, QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), reason),
                         0, kind);
}

/// Records why the file is not to be opened. SQLite would make a file for a path that does not exist, and
/// opening leaves no traces; of a protected file it would say that it is no database.
bool isStoreFile(const QString &path, FailureList &failures) {
    if (path.isEmpty())
        return recordFailure(failures, {},
                             QStringLiteral("The name of the store is empty; give the path of a file"), 0,
                             FailureKind::NotFound);
    if (!QFileInfo::exists(path))
        return refuse(path, QStringLiteral("no such file"), failures, FailureKind::NotFound);
    if (fileprotection::isProtected(path))
        return refuse(path, QStringLiteral("the store is protected; unprotect it first"), failures);
    return true;
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
    ConnectionWords words = connectionwords::parsed(db.connectOptions());
    const QByteArray options = connectionwords::value(connectionwords::resolved(words), "options");
    words.append(ConnectionWord{"options", options + " -c standard_conforming_strings=on"});
    db.setConnectOptions(connectionwords::text(words));
    return connectionguard::open(db);
}

bool execute(const QSqlDatabase &db, const char *sql, FailureList &failures) {
    const QSqlQuery query(QLatin1String(sql), db);
    return checkStatement(query, failures);
}

bool hasFittingVersion(const StoreState &state, const QSqlDatabase &db, FailureList &failures) {
    return schemaguard::hasFittingVersion(db, QDir::toNativeSeparators(state.settings.name), failures);
}

bool judgeLanguage(StoreState &state, const QSqlDatabase &db) {
    // A store whose link types carry the Chinese default names is a Chinese store, any other an English one.
    const auto isChinese =
        probes::returnsRow(db, QStringLiteral("select * from LinkType where typeName='高速路'"),
                           state.failures, QStringLiteral("LinkType"));
    if (!isChinese)
        return false;
    state.isInternational = !*isChinese;
    state.words.setDbIsEnglish(state.isInternational);
    return true;
}

bool learnAboutStore(StoreState &state, QSqlDatabase &db, const QString &path, bool resetIdCache,
                     bool mayUpgrade) {
    if (!checkConnection(db, state.failures) || !hasFittingVersion(state, db, state.failures))
        return false;
    const auto version = probes::dbVersion(db, state.failures);
    if (!version)
        return false;
    state.version = static_cast<int>(*version);
    if (resetIdCache)
        state.reservedIds.clear();
    if (mayUpgrade && !bringForward(state, db))
        return false;
    const Store store(db, state, 0,
                      probes::hasSeveralNets(state.version) ? Generation::SeveralNets : Generation::OneNet,
                      state.version, state.failures);
    if (!judgeLanguage(state, db) || !identifiers::passLaneConnectors(store))
        return false;
    const auto hasRoadId =
        probes::tableHasField(db, QStringLiteral("Link"), QStringLiteral("roadid"), state.failures);
    if (!hasRoadId)
        return false;
    state.linkHasRoadId = *hasRoadId;
    state.path = engine::isSqlite(db) ? path : QString();
    return true;
}

/// The bits of a file count also for those whom they do not bind.
bool isWritable(const QFileInfo &file) {
    constexpr QFileDevice::Permissions any =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    return file.isWritable() && (file.permissions() & any);
}

/// The record to load where a host names no network; null in a store that has none.
const NetRecord *firstChoice(const QList<NetRecord> &records) {
    const auto chosen =
        std::find_if(records.cbegin(), records.cend(), [](const auto &each) { return each.isDefault; });
    return chosen != records.cend() ? &*chosen : records.isEmpty() ? nullptr : &records.first();
}

bool makeCurrent(StoreState &state, QSqlDatabase &db, const QString &name) {
    const Store store = storeOfOneNet(state, db, 0);
    const quint64 before = lastFailureNumber();
    const QList<NetRecord> records = networks::readRecords(store);
    if (lastFailureNumber() != before)
        return false;
    QStringList names;
    for (const NetRecord &record : records)
        names.append(QLatin1Char('"') + record.name + QLatin1Char('"'));
    const auto named = std::find_if(records.cbegin(), records.cend(),
                                    [&name](const auto &each) { return each.name == name; });
    const NetRecord *chosen = name.isEmpty()            ? firstChoice(records)
                              : named != records.cend() ? &*named
                                                        : nullptr;
    if (chosen)
        state.net.loadRecord(*chosen);
    if (chosen || name.isEmpty())
        return true;
    return store.fail(
        {},
        QStringLiteral("The store has no network \"%1\"; it has %2")
            .arg(name, names.isEmpty() ? QStringLiteral("none") : names.join(QLatin1String(", "))),
        0, FailureKind::NotFound);
}

bool readDatabase(StoreState &state, QSqlDatabase &db, const QString &path, bool resetIdCache) {
    state.isReadOnly = openGuarded(db, state.failures) &&
                       learnAboutStore(state, db, path, resetIdCache, false) &&
                       execute(db, "set default_transaction_read_only = on", state.failures);
    return state.isReadOnly;
}

} // namespace

bool isWritableStoreFile(const QString &path, FailureList &failures) {
    if (!isStoreFile(path, failures))
        return false;
    const QString reason = fileguard::refusal(path, fileguard::Purpose::Write);
    return reason.isEmpty() || refuse(path, reason, failures);
}

bool openGuarded(QSqlDatabase &db, FailureList &failures) {
    if (!openWithPlainBackslashes(db))
        return true;
    if (const QString objection = pooler::objection(db); !objection.isEmpty())
        return recordFailure(failures, {}, QStringLiteral("%1: %2").arg(db.databaseName(), objection));
    const connectionguard::QuickQuestions quick(db);
    return schemaguard::hasPlainTables(db, QDir::toNativeSeparators(db.databaseName()), failures);
}

bool forWriting(StoreState &state, QSqlDatabase &db, const QString &path, bool resetIdCache) {
    const bool isSqlite = state.settings.driver == QLatin1String("QSQLITE");
    state.isReadOnly = false;
    if (isSqlite && !isWritableStoreFile(path, state.failures))
        return false;
    return openGuarded(db, state.failures) && learnAboutStore(state, db, path, resetIdCache, isSqlite);
}

bool forReading(StoreState &state, QSqlDatabase &db, const QString &path, bool resetIdCache) {
    if (state.settings.driver != QLatin1String("QSQLITE"))
        return readDatabase(state, db, path, resetIdCache);
    if (!isStoreFile(path, state.failures))
        return false;
    const auto readOnlyFile = std::make_shared<ReadOnlyFile>(path);
    state.fileCopy = readOnlyFile;
    if (!readOnlyFile->refusal().isEmpty())
        return refuse(path, readOnlyFile->refusal(), state.failures);
    readOnlyFile->applyTo(db);
    if (!openGuarded(db, state.failures) || !checkConnection(db, state.failures))
        return false;
    const auto isFirst = upgrade::isFirstGeneration(db, state.failures);
    const auto isPending = isFirst ? upgrade::isPending(db, state.failures) : std::nullopt;
    if (!isPending)
        return false;
    const bool isOlder = *isFirst || *isPending;
    if (isOlder && !readOnlyFile->isCopy()) {
        db.close();
        if (!readOnlyFile->turnIntoCopy())
            return refuse(path, readOnlyFile->refusal(), state.failures);
        readOnlyFile->applyTo(db);
        if (!openGuarded(db, state.failures))
            return false;
    }
    if (*isFirst && hasFittingVersion(state, db, state.failures))
        bringFirstGenerationForward(state, db);
    if (!learnAboutStore(state, db, path, resetIdCache, isOlder))
        return false;
    readOnlyFile->hideCopy();
    state.isReadOnly = execute(db, "pragma query_only = on", state.failures);
    return state.isReadOnly;
}

StoreAccess possibleAccess(const StoreSettings &settings, StoreAccess wanted) {
    const QFileInfo file(settings.name);
    if (settings.driver != QLatin1String("QSQLITE") || !file.exists())
        return wanted;
    return isWritable(file) && isWritable(QFileInfo(file.absolutePath())) ? wanted : StoreAccess::Read;
}

bool applyOptions(StoreState &state, QSqlDatabase &db, const OpenOptions &options) {
    const bool isForeign = options.words == ShownWords::AsStored ? state.words.dbIsEnglish
                                                                 : options.words == ShownWords::English;
    state.words.setLangIsNotZh(isForeign);
    state.words.initVars();
    return makeCurrent(state, db, options.network);
}

Store storeOfOneNet(StoreState &state, QSqlDatabase &db, long netId) {
    return {db, state, netId, Generation::OneNet, state.version, state.failures};
}

Store storeOfSeveralNets(StoreState &state, QSqlDatabase &db, long netId) {
    return {db, state, netId, Generation::SeveralNets, 6, *state.severalNetsFailures};
}

Store storeByVersion(StoreState &state, QSqlDatabase &db, long netId, const char *operation) {
    OperationName name(operation);
    const std::optional<long> version = probes::dbVersion(db, state.failures);
    Store store = probes::hasSeveralNets(version.value_or(0)) ? storeOfSeveralNets(state, db, netId)
                                                              : storeOfOneNet(state, db, netId);
    store.carry(std::move(name));
    // Statements for one network would reach the rows of all networks.
    if (!version)
        store.giveUp();
    return store;
}

bool bringForward(StoreState &state, QSqlDatabase &db) {
    const bool isAnswered = upgrade::toCurrentSchema(storeOfOneNet(state, db, 0));
    readCatalogue(state, db);
    return isAnswered;
}

void bringFirstGenerationForward(StoreState &state, QSqlDatabase &db) {
    if (engine::isPostgreSql(db))
        return;
    // A host opens such a store by itself.
    connectionguard::harden(db);
    const QString name = QDir::toNativeSeparators(db.databaseName());
    if (!schemaguard::hasPlainTables(db, name, state.failures) ||
        !schemaguard::hasFittingVersion(db, name, state.failures))
        return;
    const auto version = probes::dbVersion(db, state.failures);
    // No store of several networks has ever been of the first generation.
    if (!version || probes::hasSeveralNets(*version))
        return;
    upgrade::firstGeneration(storeOfOneNet(state, db, 0));
    state.version = static_cast<int>(probes::dbVersion(db, state.failures).value_or(0));
}

bool passFirstGeneration(StoreState &state, QSqlDatabase &db, const QString &path) {
    if (state.settings.driver != QLatin1String("QSQLITE"))
        return true;
    if (!isWritableStoreFile(path, state.failures) || !openGuarded(db, state.failures))
        return false;
    const auto isFirst = upgrade::isFirstGeneration(db, state.failures);
    if (isFirst.value_or(false))
        bringFirstGenerationForward(state, db);
    db.close();
    // Identifiers are counted anew in what has become of the store.
    state.forgetIdentifiers();
    return isFirst.has_value();
}

void readCatalogue(StoreState &state, QSqlDatabase &db) {
    if (!state.tableNames.isEmpty())
        return;
    const auto tables = probes::tables(db, state.failures);
    const auto keys = tables ? probes::keyColumns(db, tables->plain, state.failures) : std::nullopt;
    if (!keys)
        return;
    state.tableNames = tables->names;
    state.keyColumns = *keys;
}

} // namespace opening
