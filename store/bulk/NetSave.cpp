#include "store/bulk/NetSave.h"

#include "store/core/Query.h"
#include "store/ids/Identifiers.h"

#include <algorithm>

NetSave::~NetSave() {
    for (auto undo = mUndo.rbegin(); undo != mUndo.rend(); ++undo)
        (*undo)();
}

void NetSave::giveIds(const char *table, const std::vector<long *> &ids) {
    if (!isGood())
        return;
    std::vector<long> own;
    for (const long *id : ids) {
        if (*id != 0)
            own.push_back(*id);
    }
    keepIds(table, own);
    const std::size_t missing = ids.size() - own.size();
    if (missing == 0 || !isGood())
        return;
    const long largest = own.empty() ? 0 : *std::max_element(own.begin(), own.end());
    QList<long> given;
    check(identifiers::take(store, QLatin1String(table), largest, int(missing), given));
    for (long *id : ids) {
        if (*id != 0 || given.isEmpty())
            continue;
        set(*id, given.takeFirst());
    }
}

void NetSave::keepIds(const char *table, const std::vector<long> &ids) {
    if (isGood() && !isRecorded())
        check(identifiers::keepFrom(store, QLatin1String(table), ids));
}

bool NetSave::refuse(long id, const QString &reason) {
    check(store.fail({}, reason, id));
    return false;
}

void NetSave::empty(const char *table) {
    if (!isGood() || isRecorded())
        return;
    const QString all = QLatin1String("delete from ") + QLatin1String(table);
    const QString own = QStringLiteral(" where NetId = %1").arg(store.netId());
    check(Query(store, store.hasSeveralNets() ? all + own : all).exec());
}
