// What objects of the model ask the open store by themselves.
#include "model/Link.h"
#include "model/Net.h"
#include "store/DBTools.h"

bool Link::nextLaneId(long &id) {
    return DBTools::getIDByTableName(gDB, QStringLiteral("Lane"), id);
}

bool Net::readConfiguration(QSqlDatabase &db) {
    return DBTools::selectConfiguration(db, netId, mConfig);
}
