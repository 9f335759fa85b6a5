#include "tools/sumo/import/IdSource.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/NetIds.h"
#include "store/catalogue/Catalogue.h"
#include "store/core/Engine.h"
#include "store/ids/LargestIds.h"
#include "tools/reports/Failure.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <limits>

namespace moratools {

namespace {

constexpr qint64 kLargest = std::numeric_limits<qint32>::max();

/// How far ahead the counters of other networks are moved: an import that fits in leaves them alone.
constexpr qint64 kAhead = 10000;

/// Stores of one network number lane connectors in memory: they have no such column, and nothing is in use.
bool isNumberedInMemory(const StoreSession &store, const char *table) {
    return !store.hasSeveralNetworks() && qstrcmp(table, "LaneConnector") == 0;
}

[[noreturn]] void refuse(const StoreSession &store, const QString &table) {
    store.requireServerAlive();
    const QString reason = store.firstFailureText().simplified();
    throw Failure(QStringLiteral("the store gives no identifier for table %1%2; it may be damaged or full, "
                                 "so check it and import into a copy")
                      .arg(table, reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason)));
}

} // namespace

long IdSource::next(const char *table) {
    if (isNumberedInMemory(mStore, table)) {
        long id = 0;
        if (!DBTools::getIDByTableName(mStore.db(), QLatin1String(table), id))
            refuse(mStore, QLatin1String(table));
        return id;
    }
    // The name is a literal: its address serves as the key without a copy.
    const QByteArray key = QByteArray::fromRawData(table, int(qstrlen(table)));
    auto ids = mTables.find(key);
    if (ids == mTables.end())
        ids = mTables.insert(key, {floorOf(table), 0, {}});
    if (ids->floor + ids->count >= kLargest)
        throw Failure(
            QStringLiteral("table %1 of the store has the identifier %2, and none can follow it: %3 "
                           "is the largest; import into a new store")
                .arg(QLatin1String(table), QString::number(ids->floor + ids->count),
                     QString::number(kLargest)));
    return ids->at(ids->count++);
}

qint64 IdSource::floorOf(const char *table) const {
    const QString name = QLatin1String(table);
    QSqlQuery query(mStore.db());
    if (!query.exec(identifiers::largestOfAllNets(mStore.db(), *catalogue::find(name),
                                                  mStore.hasSeveralNetworks())) ||
        !query.next())
        mStore.refuseReading(name, query);
    const qint64 highest = query.value(0).toLongLong();
    query.finish();
    if (highest >= kLargest)
        return highest;
    const auto given = NetIds(mStore.db(), mStore.net().id()).lastGiven(name);
    if (!given)
        refuse(mStore, name);
    return std::max(highest, qint64(*given));
}

bool IdSource::draw() {
    bool isAsGiven = true;
    for (auto ids = mTables.begin(); ids != mTables.end(); ++ids)
        isAsGiven = draw(ids.key(), *ids) && isAsGiven;
    if (isAsGiven) {
        passInOtherNetworks();
    } else {
        for (OfTable &ids : mTables)
            ids.count = 0;
    }
    return isAsGiven;
}

bool IdSource::draw(const QByteArray &table, OfTable &ids) const {
    const int known = ids.drawn.size();
    const int missing = ids.count - known;
    if (missing <= 0)
        return true;
    const QList<long> drawn = NetIds(mStore.db(), mStore.net().id())
                                  .nextAbove(QString::fromLatin1(table), long(ids.floor), missing);
    if (drawn.isEmpty())
        refuse(mStore, QString::fromLatin1(table));
    bool isAsGiven = true;
    for (int i = 0; i < missing; ++i)
        isAsGiven = isAsGiven && drawn.at(i) == ids.at(known + i);
    ids.drawn += drawn;
    return isAsGiven;
}

void IdSource::passInOtherNetworks() const {
    if (mTables.isEmpty() || !mStore.hasSeveralNetworks() || !engine::isSqlite(mStore.db()))
        return;
    QStringList names;
    QStringList last;
    QStringList ahead;
    for (auto ids = mTables.begin(); ids != mTables.end(); ++ids) {
        const qint64 own = ids->at(ids->count - 1);
        names.append(QStringLiteral("'%1'").arg(QLatin1String(ids.key())));
        last.append(QStringLiteral("when %1 then %2").arg(names.last(), QString::number(own)));
        ahead.append(QStringLiteral("when %1 then %2")
                         .arg(names.last(), QString::number(std::min(own + kAhead, kLargest))));
    }
    const QString sql =
        QStringLiteral("update IDGenerater set ID = case TableName %1 end where TableName in (%2) "
                       "and ID < case TableName %3 end")
            .arg(ahead.join(QLatin1Char(' ')), names.join(QLatin1Char(',')), last.join(QLatin1Char(' ')));
    QSqlQuery update(mStore.db());
    if (!update.exec(sql))
        throw Failure(QStringLiteral("the store refuses a statement (%1); nothing was changed")
                          .arg(update.lastError().databaseText().simplified()));
}

} // namespace moratools
