#include "store/DBTools_V6.h"

#include "store/core/Store.h"
#include "store/core/Transaction.h"
#include "store/families/Connectors.h"
#include "store/families/GuideArrows.h"
#include "store/families/Identifiers.h"
#include "store/families/LinkTypes.h"
#include "store/families/Links.h"
#include "store/families/Networks.h"
#include "store/schema/Dictionaries.h"

#include <QSysInfo>

QString DBTools_V6::mDbDriver = QStringLiteral("QSQLITE");
QString DBTools_V6::mDbHost = QSysInfo::machineHostName();
int DBTools_V6::mDbPort = 5432;
QString DBTools_V6::mDbName;
QString DBTools_V6::mDbUser;
QString DBTools_V6::mDbPassword;
int DBTools_V6::mDbVer = 2;
bool DBTools_V6::mbInter = false;
QList<CallDbResult> DBTools_V6::mlCallDbResult;
QStringList DBTools_V6::mlTableName;
QHash<QString, QString> DBTools_V6::mhTablePK;

namespace {

Store storeOf(QSqlDatabase &db, long netId) {
    return {db, netId, Generation::SeveralNets, 6, DBTools_V6::mlCallDbResult};
}

} // namespace

bool DBTools_V6::validateDatabase(QSqlDatabase &db) {
    return checkConnection(db, mlCallDbResult);
}

bool DBTools_V6::validateQuery(QSqlQuery &query) {
    return checkStatement(query, mlCallDbResult);
}

bool DBTools_V6::initDictionary(QSqlDatabase &db, long netId, bool useTransaction) {
    return dictionaries::seed(storeOf(db, netId), useTransaction);
}

bool DBTools_V6::getIDByTableName(QSqlDatabase &db, long netId, QString table, long &id) {
    return identifiers::next(storeOf(db, netId), table, id);
}

bool DBTools_V6::insertNet(QSqlDatabase &db, long id, QString name, QPointF center, QString sourceType,
                           QString backgroundUrl, QString otherAttrsJson, bool isDefault,
                           bool useTransaction) {
    networks::Record record;
    record.id = id;
    record.name = name;
    record.centerX = center.x();
    record.centerY = center.y();
    record.sourceType = sourceType;
    record.backgroundUrl = backgroundUrl;
    record.otherAttrsJson = otherAttrsJson;
    record.isDefault = isDefault;
    return networks::insert(storeOf(db, id), record, useTransaction);
}

bool DBTools_V6::updateNet(QSqlDatabase &db, long id, QString name, QString sourceUrl, QString sourceType,
                           QString backgroundUrl, double centerX, double centerY, QString caption,
                           QString otherAttrsJson, bool isDefault, bool useTransaction) {
    const networks::Record record{id,      name,    sourceUrl, sourceType,     backgroundUrl,
                                  centerX, centerY, caption,   otherAttrsJson, isDefault};
    return networks::update(storeOf(db, id), record, useTransaction);
}

bool DBTools_V6::insertLink(QSqlDatabase &db, long netId, Link *link, bool inTransaction) {
    return links::insert(storeOf(db, netId), link, inTransaction);
}

Link *DBTools_V6::selectLinkByID(QSqlDatabase &db, long netId, long linkId) {
    return links::read(storeOf(db, netId), linkId);
}

bool DBTools_V6::selectLinkIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return links::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::insertConnector(QSqlDatabase &db, long netId, Connector *connector, bool inTransaction) {
    return connectors::insert(storeOf(db, netId), connector, inTransaction);
}

bool DBTools_V6::insertConnectors(QSqlDatabase &db, long netId, QList<Connector *> &connectors,
                                  bool inTransaction) {
    const Store store = storeOf(db, netId);
    Transaction transaction(store, inTransaction);
    bool written = store.isUsable();
    for (Connector *connector : qAsConst(connectors))
        written = store.isUsable() && insertConnector(db, netId, connector, false) && written;
    return transaction.commit(written);
}

Connector *DBTools_V6::selectConnectorByID(QSqlDatabase &db, long netId, long connectorId) {
    return connectors::read(storeOf(db, netId), connectorId);
}

bool DBTools_V6::selectConnectorIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return connectors::listIds(storeOf(db, netId), ids);
}

bool DBTools_V6::selectLinkType(QSqlDatabase &db, long netId, QList<LinkType> &types) {
    return linktypes::readAll(storeOf(db, netId), types);
}

bool DBTools_V6::insertGuideArrow(QSqlDatabase &db, long netId, GuideArrow *arrow, bool inTransaction) {
    return guidearrows::insert(storeOf(db, netId), arrow, inTransaction);
}

GuideArrow *DBTools_V6::selectGuideArrowByID(QSqlDatabase &db, long netId, long id) {
    return guidearrows::read(storeOf(db, netId), id);
}

bool DBTools_V6::selectGuideArrowIDs(QSqlDatabase &db, long netId, QList<long> &ids) {
    return guidearrows::listIds(storeOf(db, netId), ids);
}
