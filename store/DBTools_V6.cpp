#include "store/DBTools_V6.h"

#include "store/core/Store.h"
#include "store/families/Networks.h"
#include "store/ids/Identifiers.h"
#include "store/opening/ProcessStore.h"
#include "store/opening/StoreOpening.h"

Store DBTools_V6::storeOf(QSqlDatabase &db, long netId, const char *operation) {
    Store store = opening::storeOfSeveralNets(stateOf(db), db, netId);
    store.carry(OperationName(operation));
    return store;
}

Store DBTools_V6::currentStoreOf(QSqlDatabase &db, const char *operation) {
    return storeOf(db, stateOf(db).net.netId, operation);
}

Store DBTools_V6::ownStore(QSqlDatabase &db, long netId, const char *operation) {
    return storeOf(db, netId, operation);
}

QList<CallDbResult> &DBTools_V6::failuresOf(const QSqlDriver *driver) {
    return *stateOf(driver).severalNetsFailures;
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
    return networks::insertNetwork(storeOf(db, id), record, useTransaction);
}

bool DBTools_V6::updateNet(QSqlDatabase &db, long id, QString name, QString sourceUrl, QString sourceType,
                           QString backgroundUrl, double centerX, double centerY, QString caption,
                           QString otherAttrsJson, bool isDefault, bool useTransaction) {
    const networks::Record record{id,      name,    sourceUrl, sourceType,     backgroundUrl,
                                  centerX, centerY, caption,   otherAttrsJson, isDefault,
                                  {}};
    return networks::updateNetwork(storeOf(db, id), record, useTransaction);
}
