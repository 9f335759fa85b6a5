#include "store/DBTools.h"

#include "store/DBTools_V6.h"
#include "store/core/Engine.h"
#include "store/core/FailureLog.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Probes.h"
#include "store/core/StorableValue.h"
#include "store/core/Store.h"
#include "store/families/Links.h"
#include "store/families/Networks.h"
#include "store/ids/Identifiers.h"
#include "store/ids/Sequences.h"
#include "store/opening/ProcessStore.h"
#include "store/opening/StoreOpening.h"
#include "store/protection/FileProtection.h"

QSqlDatabase &gDB = processStore().state.db;
QSqlDatabase gDBForBackup;
QString &gsDbPath = processStore().state.path;

bool &DBTools::mbLinkHasRouadId = processStore().state.linkHasRoadId;
QHash<long, QHash<QString, QList<long>>> &DBTools::mhId = processStore().state.reservedIds;
QHash<long, QHash<QString, long>> &DBTools::mhNetMaxId = processStore().state.highestIds;

namespace {

networks::Record networkRecord(long id, const QString &name, const QPointF &center, const QString &sourceType,
                               const QString &backgroundUrl) {
    networks::Record record;
    record.id = id;
    record.name = name;
    record.centerX = center.x();
    record.centerY = center.y();
    record.sourceType = sourceType;
    record.backgroundUrl = backgroundUrl;
    return record;
}

} // namespace

Store DBTools::ownStore(QSqlDatabase &db, long netId, const char *operation) {
    Store store = opening::storeOfOneNet(stateOf(db), db, netId);
    store.carry(OperationName(operation));
    return store;
}

Store DBTools::storeOf(QSqlDatabase &db, long netId, const char *operation) {
    return opening::storeByVersion(stateOf(db), db, netId, operation);
}

Store DBTools::currentStoreOf(QSqlDatabase &db, const char *operation) {
    StoreState &state = stateOf(db);
    return opening::storeByVersion(state, db, state.net.netId, operation);
}

QList<CallDbResult> &DBTools::failuresOf(const QSqlDriver *driver) {
    return stateOf(driver).failures;
}

int DBTools::dbVer() {
    return mDbVer;
}

void DBTools::setDbVersion(int version) {
    mDbVer = version;
}

bool DBTools::isInternational() {
    return mbInter;
}

void DBTools::logError(QSqlDatabase &db) {
    if (!db.isOpen())
        return;
    const StoreState &state = stateOf(db);
    const bool isOneList = state.severalNetsFailures == &state.failures;
    writeFailureLog(db.databaseName(),
                    isOneList ? state.failures : state.failures + *state.severalNetsFailures);
}

long DBTools::selectDbVersion(QSqlDatabase &db) {
    const OperationName operation(__func__);
    return probes::dbVersion(db, failuresOf(db.driver())).value_or(0);
}

bool DBTools::hasTable(QSqlDatabase &db, QString table) {
    const OperationName operation(__func__);
    return probes::hasTable(db, table, failuresOf(db.driver())).value_or(false);
}

bool DBTools::tableHasField(QSqlDatabase &db, QString table, QString field) {
    const OperationName operation(__func__);
    return probes::tableHasField(db, table, field, failuresOf(db.driver())).value_or(false);
}

bool DBTools::checkConstraint(QSqlDatabase &db, QString sql) {
    const OperationName operation(__func__);
    return probes::returnsRow(db, sql, failuresOf(db.driver())).value_or(false);
}

bool DBTools::hasErrorFieldName(QSqlDatabase &db) {
    const OperationName operation(__func__);
    return probes::hasMisspeltColumn(db, failuresOf(db.driver())).value_or(false);
}

void DBTools::metadata(QSqlDatabase &db) {
    const OperationName operation(__func__);
    opening::readCatalogue(stateOf(db), db);
}

QHash<QString, QString> DBTools::tablePK() {
    return mhTablePK;
}

void DBTools::updateDatabase(QSqlDatabase &db) {
    const OperationName operation(__func__);
    // Databases of a server are never upgraded.
    if (!engine::isPostgreSql(db))
        opening::bringForward(stateOf(db), db);
}

void DBTools::updateDatabase1x(QSqlDatabase &db) {
    const OperationName operation(__func__);
    opening::bringFirstGenerationForward(stateOf(db), db);
}

bool DBTools::getIDByTableName(QSqlDatabase &db, QString table, long &id) {
    return identifiers::next(currentStoreOf(db), table, id);
}

bool DBTools::getID(QSqlDatabase &db, long &id) {
    if (engine::isSqlite(db))
        return getIDByTableName(db, QStringLiteral("General"), id);
    return engine::isPostgreSql(db) && sequences::drawGeneral(ownStore(db, 0), id);
}

QString DBTools::getIDName(QString table) {
    return identifiers::idColumn(table);
}

long DBTools::getMaxID(QSqlDatabase &db, long netId, QString table) {
    const OperationName operation(__func__);
    const qint64 largest = identifiers::largestInUse(db, netId, table, failuresOf(db.driver())).value_or(0);
    return identifiers::requireId(ownStore(db, netId), table, largest)
               ? static_cast<long>(largest)
               : static_cast<long>(storablevalue::kLargestId);
}

bool DBTools::updateIds(QSqlDatabase &db, bool useTransaction) {
    return identifiers::giveBackUnused(ownStore(db, stateOf(db).net.netId), useTransaction);
}

bool DBTools::getMaxIdByAllTables(QSqlDatabase &db, long &maxId, QString schema) {
    return sequences::largestKey(ownStore(db, 0), schema, maxId);
}

bool DBTools::initSequence(QSqlDatabase &db, QString schema) {
    return sequences::rebase(ownStore(db, 0), schema);
}

bool DBTools::insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                        QString backgroundUrl, QJsonObject otherAttrs, bool useTransaction) {
    networks::Record record = networkRecord(id, name, center, sourceType, backgroundUrl);
    record.setAttributes(StoredJson(otherAttrs));
    return networks::insertNetwork(ownStore(db, id), record, useTransaction);
}

bool DBTools::insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                        QString backgroundUrl, QString otherAttrsJson, bool useTransaction) {
    // Never forwarded: on a generation-6 store the row lacks isDefault and is refused.
    networks::Record record = networkRecord(id, name, center, sourceType, backgroundUrl);
    record.otherAttrsJson = otherAttrsJson;
    return networks::insertNetwork(ownStore(db, id), record, useTransaction);
}

bool DBTools::insertNet(QSqlDatabase &db, bool useTransaction) {
    const Net &net = stateOf(db).net;
    return networks::insertNetwork(ownStore(db, net.netId), networks::recordOf(net), useTransaction);
}

bool DBTools::updateNet(QSqlDatabase &db, long id, bool useTransaction) {
    const Store store = storeOf(db, id);
    if (!store.hasSeveralNets())
        return !store.isGivenUp();
    return networks::updateNetwork(store, networks::recordOf(store.net()), useTransaction);
}

Net *DBTools::selectNetById(QSqlDatabase &db, long id) {
    return networks::loadNetworkById(ownStore(db, id));
}

Net *DBTools::selectNetIdByName(QSqlDatabase &db, QString name) {
    return networks::loadNetworkByName(ownStore(db, 0), name);
}

bool DBTools::selectNetId(QSqlDatabase &db, long id) {
    return networks::networkExists(ownStore(db, id)).value_or(false);
}

long DBTools::selectMaxNetId(QSqlDatabase &db) {
    return networks::largestNetworkId(ownStore(db, 0));
}

QList<NetRecord> DBTools::selectNetRecords(QSqlDatabase &db) {
    return networks::readBriefRecords(currentStoreOf(db));
}

QList<QPair<long, QString>> DBTools::selectNetNames(QSqlDatabase &db) {
    return networks::readNames(ownStore(db, 0));
}

QList<Net> DBTools::selectNets(QSqlDatabase &db) {
    return networks::readNetworks(ownStore(db, 0));
}

QByteArray DBTools::selectBackgroundMap(QSqlDatabase &db, long netId) {
    return networks::readBackgroundMap(storeOf(db, netId));
}

bool DBTools::insertLinks(QSqlDatabase &db, long netId, QList<Link *> &links, bool inTransaction) {
    // The frame's own failures are recorded in this class whatever the generation.
    const Store frame = ownStore(db, netId);
    OperationTransaction transaction(frame, inTransaction);
    bool written = frame.isUsable();
    if (written && !links.isEmpty()) {
        Store store = storeOf(db, netId);
        store.setOwnTransaction(frame.hasOwnTransaction());
        written = links::insertLinks(store, links);
    }
    return transaction.commitOrRecord(written);
}

bool DBTools::checkLinkVertex(QSqlDatabase &db, long linkId, long vertexId) {
    const OperationName operation(__func__);
    return links::linkHasVertex(db, linkId, vertexId, failuresOf(db.driver())).value_or(false);
}

QString DBTools::breakPoints(QJsonObject geometry) {
    return links::breakPoints(geometry);
}

bool DBTools::checkNodeVertex(QSqlDatabase &db, long nodeId, long vertexId) {
    const OperationName operation(__func__);
    return links::nodeStandsOn(db, nodeId, vertexId, failuresOf(db.driver())).value_or(false);
}

bool DBTools::encryptFile(QString path) {
    const OperationName operation(__func__);
    return fileprotection::protect(path, storekeys::preferred(), mlCallDbResult);
}

bool DBTools::decryptFile(QString path) {
    const OperationName operation(__func__);
    return fileprotection::unprotect(path, {}, mlCallDbResult);
}

bool DBTools::encryptDecryptFile(QString path) {
    const OperationName operation(__func__);
    return fileprotection::toggle(path, {}, mlCallDbResult);
}

bool DBTools::encryptDecryptFileByKey1(QString path) {
    const OperationName operation(__func__);
    return fileprotection::toggle(path, storekeys::Key::Library1, mlCallDbResult);
}

bool DBTools::encryptDecryptFileByKey2(QString path) {
    const OperationName operation(__func__);
    return fileprotection::toggle(path, storekeys::Key::Library2, mlCallDbResult);
}

bool DBTools::isFileEncrypted(QString path) {
    return fileprotection::isProtected(path);
}
