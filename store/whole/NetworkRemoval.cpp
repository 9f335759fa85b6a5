#include "store/whole/NetworkRemoval.h"

#include "store/catalogue/Catalogue.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/core/Savepoint.h"
#include "store/families/CurrentNet.h"

#include <QSqlError>

namespace networkremoval {

namespace {

/// Runs the statements of a group back to back; the last one's verdict is the group's. None follows one after
/// which the store is given up.
bool removeGroup(const Store &store, const catalogue::Group &tables) {
    const QString condition = store.text({"", " where NetId = %1"}, {});
    QSqlQuery query(store.db());
    for (const char *table : tables) {
        Savepoint savepoint(store.db());
        if (savepoint.end(
                query.exec(store.asRun(QStringLiteral("delete from ") + QLatin1String(table) + condition))))
            continue;
        store.heed(query.lastError());
        if (store.isGivenUp())
            break;
    }
    return store.check(query);
}

} // namespace

bool removeNetworkData(const Store &store, bool useTransaction) {
    OperationTransaction transaction(store, useTransaction);
    if (!store.isUsable() || (useTransaction && !store.checkConnection()))
        return transaction.rollBack();
    const bool isCurrent = isCurrentNet(store);
    bool removed = true;
    bool begun = false;
    for (const auto &group : catalogue::removalOrder(store.hasSeveralNets())) {
        removed = removed && removeGroup(store, group);
        begun = begun || removed;
    }
    // What is gone answers no read, nor does what may be gone.
    if (begun && isCurrent)
        store.net().releaseNet();
    return transaction.commit(removed);
}

} // namespace networkremoval
