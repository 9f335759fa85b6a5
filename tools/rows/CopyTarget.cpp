#include "tools/rows/CopyTarget.h"

#include "store/catalogue/Catalogue.h"
#include "store/ids/LargestIds.h"
#include "tools/reports/Failure.h"
#include "tools/rows/Renumbering.h"
#include "tools/session/ServerFailure.h"
#include "tools/session/StoreSession.h"
#include "tools/session/TextLiteral.h"
#include "tools/session/UnusedNumber.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace moratools {

CopyTarget::CopyTarget(const StoreSession &store) : mStore(store), mDb(store.db()) {
    mTables = storeTables(mDb);
    if (isSqlite())
        return;
    QSqlQuery names = run(QStringLiteral("select relname from pg_class where relkind = 'S' and "
                                         "pg_table_is_visible(oid)"));
    while (names.next())
        mSequences.insert(names.value(0).toString());
}

const StoreTable *CopyTarget::table(const QString &name) const {
    const auto found = mTables.constFind(name.toLower());
    return found == mTables.constEnd() ? nullptr : &*found;
}

QSqlQuery CopyTarget::run(const QString &sql) const {
    QSqlQuery query(mDb);
    query.setForwardOnly(true);
    if (query.exec(sql))
        return query;
    requireServer(query);
    throw Failure(QStringLiteral("the store refuses a statement (%1); nothing was changed")
                      .arg(query.lastError().databaseText().simplified()));
}

qint64 CopyTarget::number(const QString &sql) const {
    QSqlQuery query = run(sql);
    return query.next() ? query.value(0).toLongLong() : 0;
}

long CopyTarget::networkId(long wanted) const {
    const bool isFree =
        wanted > 0 && number(QStringLiteral("select count(*) from Net where NetId = %1").arg(wanted)) == 0;
    const long chosen =
        isFree ? wanted
               : long(Renumbering::firstAfter(number(QStringLiteral("select max(NetId) from Net")), 1,
                                              QStringLiteral("Net")));
    return unusedNumber(mStore, chosen);
}

bool CopyTarget::hasDefaultNetwork() const {
    return number(QStringLiteral("select count(*) from Net where isDefault = 'T'")) > 0;
}

Language CopyTarget::language() const {
    if (number(QStringLiteral("select count(*) from LinkType")) == 0)
        return Language::Unknown;
    return number(QStringLiteral("select count(*) from LinkType where typeName = '高速路'")) > 0
               ? Language::Chinese
               : Language::English;
}

std::vector<qint64> CopyTarget::taken(const catalogue::Table &entry, const std::vector<qint64> &ids) const {
    std::vector<qint64> found;
    if (ids.empty() || !table(QLatin1String(entry.name)))
        return found;
    const QString column = QLatin1String(entry.id);
    QSqlQuery rows = run(QStringLiteral("select %1 from %2 where %1 between %3 and %4 order by %1")
                             .arg(column, QLatin1String(entry.name), QString::number(ids.front()),
                                  QString::number(ids.back())));
    auto own = ids.begin();
    while (own != ids.end() && rows.next()) {
        const qint64 other = rows.value(0).toLongLong();
        own = std::lower_bound(own, ids.end(), other);
        if (own != ids.end() && *own == other)
            found.push_back(*own++);
    }
    return found;
}

qint64 CopyTarget::largest(const catalogue::Table &entry) const {
    const QString name = QLatin1String(entry.name);
    qint64 value = number(identifiers::largestOfAllNets(mDb, entry, mStore.hasSeveralNetworks()));
    value = std::max(
        value,
        number(
            QStringLiteral("select max(ID) from IDGenerater where TableName = %1").arg(textLiteral(name))));
    if (!isSqlite())
        value =
            std::max(value, number(QStringLiteral("select last_value from %1").arg(sequence(entry.name))));
    return value;
}

QString CopyTarget::sequence(const char *table) const {
    const QString own = QStringLiteral("seq_%1_id").arg(QString::fromLatin1(table).toLower());
    return mSequences.contains(own) ? own : QStringLiteral("seq_table_id");
}

void CopyTarget::raiseSequence(const QString &name, qint64 largest) const {
    if (!mSequences.contains(name))
        return;
    const qint64 missing =
        largest - number(QStringLiteral("select case when is_called then last_value else last_value - 1 end "
                                        "from %1")
                             .arg(name));
    if (missing <= 0)
        return;
    // What another program draws meanwhile stays its own. Setting a sequence could take it back behind that,
    // so its values are drawn; only where that would take long it is set, and nobody draws as many in one
    // statement's time.
    constexpr qint64 most = 1000000;
    run(missing <= most ? QStringLiteral("select count(nextval('%1')) from generate_series(1, %2)")
                              .arg(name, QString::number(missing))
                        : QStringLiteral("select setval('%1', %2) from %1 where last_value < %3")
                              .arg(name, QString::number(largest), QString::number(largest - most / 2)));
}

void CopyTarget::raiseCounters(long netId, const catalogue::Table &entry, qint64 largest) const {
    if (!isSqlite()) {
        raiseSequence(sequence(entry.name), largest);
        return;
    }
    const QString name = QLatin1String(entry.name);
    const QString count = QString::number(largest);
    if (mStore.hasSeveralNetworks()) {
        const QString net = QString::number(netId);
        run(QStringLiteral(
                "insert into IDGenerater(NetId, TableName, ID) select %1, '%2', %3 where not exists "
                "(select 1 from IDGenerater where NetId = %1 and TableName = '%2')")
                .arg(net, name, count));
        run(QStringLiteral("update IDGenerater set ID = %3 where NetId = %1 and TableName = '%2' and ID < %3")
                .arg(net, name, count));
        return;
    }
    run(QStringLiteral("insert into IDGenerater(TableName, ID) select '%1', %2 where not exists "
                       "(select 1 from IDGenerater where TableName = '%1')")
            .arg(name, count));
    run(QStringLiteral("update IDGenerater set ID = %2 where TableName = '%1' and ID < %2").arg(name, count));
}

void CopyTarget::raiseNetworkCounter(long netId) const {
    if (!isSqlite())
        raiseSequence(QStringLiteral("seq_net_id"), netId);
}

} // namespace moratools
