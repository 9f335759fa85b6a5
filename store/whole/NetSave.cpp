#include "store/whole/NetSave.h"

#include "store/core/Query.h"
#include "store/families/Identifiers.h"

#include <algorithm>

NetSave::~NetSave() {
    for (long *id : mGiven)
        *id = 0;
}

void NetSave::giveIds(const char *table, const std::vector<long *> &ids) {
    const auto missing = std::count_if(ids.begin(), ids.end(), [](const long *id) { return *id == 0; });
    if (missing == 0 || !isGood())
        return;
    long largest = 0;
    for (const long *id : ids)
        largest = std::max(largest, *id);
    QList<long> given;
    check(identifiers::take(store, QLatin1String(table), largest, int(missing), given));
    for (long *id : ids) {
        if (*id != 0 || given.isEmpty())
            continue;
        *id = given.takeFirst();
        mGiven.push_back(id);
    }
}

void NetSave::empty(const char *table) {
    if (!isGood())
        return;
    const QString all = QLatin1String("delete from ") + QLatin1String(table);
    const QString own = QStringLiteral(" where NetId = %1").arg(store.netId());
    check(Query(store, store.hasSeveralNets() ? all + own : all).exec());
}
