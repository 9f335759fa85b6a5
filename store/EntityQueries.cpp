// What objects of the model ask an open store by themselves.
#include "model/Link.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "store/opening/ProcessStore.h"

namespace {

/// The store whose current network has the object in its tables, or that of the process.
StoreState &storeOf(const Link &link) {
    const QSqlDatabase *connection = link.net() ? link.net()->connection() : nullptr;
    return connection ? stateOf(*connection) : processStore().state;
}

} // namespace

const SpecialWords &Link::words() const {
    return storeOf(*this).words;
}

bool Link::nextLaneId(long &id) const {
    return DBTools::getIDByTableName(storeOf(*this).db, QStringLiteral("Lane"), id);
}

bool Net::readConfiguration(QSqlDatabase &db) {
    return DBTools::selectConfiguration(db, netId, mConfig);
}
