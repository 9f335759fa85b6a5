#include "tools/session/Placement.h"

#include "store/catalogue/Catalogue.h"
#include "tools/reports/Failure.h"
#include "tools/session/Partitions.h"
#include "tools/session/Server.h"

#include <QStringList>

#include <algorithm>

namespace moratools {

namespace {

/// Any of the parents: what holds of one holds of all.
constexpr char kAnyParent[] = "link";
/// Where the tables on the other side of a move are until it is done, and what is left of a move back whose
/// rows on the other server could not be emptied.
constexpr char kMoving[] = "part_moving";

/// A session with the store's server that has what moves need.
class Mover {
public:
    explicit Mover(const StoreAddress &address) : mServer(address), mName(address.name()) {
        mCount = mServer
                     .value(QStringLiteral("select count(*) from pg_inherits where inhparent = "
                                           "to_regclass('%1')")
                                .arg(QLatin1String(kAnyParent)))
                     .toInt();
        if (mCount == 0)
            throw Failure(
                QStringLiteral("%1: the store has no partitions; make one with \"morastore new --postgres "
                               "... --partitions N\" and copy the networks into it")
                    .arg(mName));
    }
    Server &server() { return mServer; }
    int count() const { return mCount; }

    void requirePartition(int partition) const {
        if (partition < 0 || partition >= mCount)
            throw Failure(QStringLiteral("%1: there is no partition %2; they are 0 to %3")
                              .arg(mName, QString::number(partition), QString::number(mCount - 1)));
    }
    /// The foreign server of a partition; empty for the store's own.
    QString placeOf(int partition) {
        return mServer.value(
            QStringLiteral("select srvname from pg_inherits join pg_class c on c.oid = inhrelid join "
                           "pg_foreign_table on ftrelid = c.oid join pg_foreign_server s on s.oid = "
                           "ftserver where inhparent = '%1'::regclass and "
                           "pg_get_expr(relpartbound, c.oid) like '%, remainder %2)'")
                .replace(QLatin1String("%1"), QLatin1String(kAnyParent))
                .replace(QLatin1String("%2"), QString::number(partition)));
    }
    /// SQL that holds of a network of the partition.
    QString isIn(int partition) const {
        return QStringLiteral("satisfies_hash_partition('%1'::regclass, %2, %3, NetId)")
            .arg(QLatin1String(kAnyParent), QString::number(mCount), QString::number(partition));
    }

    /// Begins a transaction that keeps others from writing to the store.
    void begin() {
        mServer.run(QStringLiteral("begin"));
        mServer.run(QStringLiteral("set local lock_timeout = '10s'"));
        mServer.run(QStringLiteral("lock table Net in share row exclusive mode"));
        mTables = orderedParents();
        forEach(QStringLiteral("lock table only {t} in share mode"));
    }
    void commit() { mServer.run(QStringLiteral("commit")); }

    /// For each parent a statement, "{t}" standing for its name: referred ones first.
    void forEach(const QString &sql) {
        for (const QString &table : qAsConst(mTables))
            mServer.run(QString(sql).replace(QLatin1String("{t}"), table));
    }
    /// The same for a value, whose sum it returns; those that refer to others first.
    qint64 sumBackwards(const QString &sql) {
        qint64 sum = 0;
        for (auto table = mTables.crbegin(); table != mTables.crend(); ++table)
            sum += mServer.value(QString(sql).replace(QLatin1String("{t}"), *table)).toLongLong();
        return sum;
    }
    QString listed(const QString &schema) const {
        QStringList names;
        for (const QString &table : mTables)
            names.append(schema + QLatin1Char('.') + table);
        return names.join(QLatin1String(", "));
    }

    void makeForeignTables(const QString &name, int partition);
    void moveRows(const QString &from, const QString &to);
    void exchangeLeaves(int partition, bool isLocal);

private:
    QStringList orderedParents();

    Server mServer;
    QString mName;
    int mCount = 0;
    QStringList mTables;
};

QStringList Mover::orderedParents() {
    QStringList found =
        mServer
            .value(QStringLiteral("select string_agg(relname, ' ' order by relname) from pg_class "
                                  "where relkind = 'p' and pg_table_is_visible(oid)"))
            .split(QLatin1Char(' '));
    QStringList ordered;
    for (const catalogue::Table &table : catalogue::tables()) {
        const QString name = QString::fromLatin1(table.name).toLower();
        if (found.removeOne(name))
            ordered.append(name);
    }
    return ordered + found;
}

/// Makes the foreign tables of a partition in the schema of what moves.
void Mover::makeForeignTables(const QString &name, int partition) {
    const QString moving = QLatin1String(kMoving);
    mServer.run(QStringLiteral("drop schema if exists %1 cascade").arg(moving));
    mServer.run(QStringLiteral("create schema %1").arg(moving));
    mServer.run(QStringLiteral("import foreign schema %1 limit to (%2) from server %3 into %4")
                    .arg(partitions::schemaOf(partition), mTables.join(QLatin1String(", ")),
                         mServer.identifier(name), moving));
    const int made = mServer
                         .value(QStringLiteral("select count(*) from pg_class where relkind = 'f' and "
                                               "relnamespace = '%1'::regnamespace")
                                    .arg(moving))
                         .toInt();
    if (made != mTables.size())
        throw Failure(QStringLiteral("server %1 lacks tables of partition %2; make a database for them with "
                                     "\"morastore new --postgres ... --leaves %3\"")
                          .arg(name, QString::number(partition), QString::number(mCount)));
    // Rows go and come in batches rather than one by one and by the hundred.
    forEach(
        QStringLiteral("alter foreign table %1.{t} options (add batch_size '1000', add fetch_size '10000')")
            .arg(moving));
}

/// Copies the rows of networks and sees that as many have arrived.
void Mover::moveRows(const QString &from, const QString &to) {
    const QString ofNetworks = QStringLiteral(" where NetId in (select NetId from Net)");
    forEach(QStringLiteral("insert into %1.{t} select * from %2.{t}%3").arg(to, from, ofNetworks));
    const qint64 sent = sumBackwards(QStringLiteral("select count(*) from %1.{t}%2").arg(from, ofNetworks));
    const qint64 arrived = sumBackwards(QStringLiteral("select count(*) from %1.{t}").arg(to));
    if (sent != arrived)
        throw Failure(QStringLiteral("%1: %2 rows were sent and %3 are there; nothing was changed")
                          .arg(mName, QString::number(sent), QString::number(arrived)));
}

/// The tables in the schema of what moves become the leaves of the partition, and the leaves what moves.
void Mover::exchangeLeaves(int partition, bool isLocal) {
    const QString leaves = partitions::schemaOf(partition);
    const QString moving = QLatin1String(kMoving);
    forEach(QStringLiteral("alter table {t} detach partition %1.{t}").arg(leaves));
    mServer.run(QStringLiteral("alter schema %1 rename to part_old").arg(leaves));
    mServer.run(QStringLiteral("alter schema %1 rename to %2").arg(moving, leaves));
    if (isLocal)
        partitions::attachLeaves(mServer, partition, mCount);
    else
        forEach(QStringLiteral(
                    "alter table {t} attach partition %1.{t} for values with (modulus %2, remainder %3)")
                    .arg(leaves, QString::number(mCount), QString::number(partition)));
    mServer.run(QStringLiteral("alter schema part_old rename to %1").arg(moving));
}

void moveAway(Mover &mover, int partition, const QString &server, bool mayEmpty) {
    const QString moving = QLatin1String(kMoving);
    mover.begin();
    mover.makeForeignTables(server, partition);
    if (mayEmpty)
        mover.server().run(QStringLiteral("truncate %1").arg(mover.listed(moving)));
    else if (mover.sumBackwards(
                 QStringLiteral("select count(*) from (select 1 from %1.{t} limit 1) r").arg(moving)) > 0)
        throw Failure(
            QStringLiteral(
                "the tables of partition %1 on server %2 hold rows already; when no other store has "
                "placed them there, give --empty")
                .arg(QString::number(partition), server));
    mover.moveRows(partitions::schemaOf(partition), moving);
    mover.exchangeLeaves(partition, false);
    mover.server().run(QStringLiteral("drop schema %1 cascade").arg(moving));
    mover.commit();
}

void moveBack(Mover &mover, int partition) {
    const QString moving = QLatin1String(kMoving);
    mover.begin();
    mover.server().run(QStringLiteral("drop schema if exists %1 cascade").arg(moving));
    partitions::makeLeaves(mover.server(), moving);
    mover.moveRows(partitions::schemaOf(partition), moving);
    mover.exchangeLeaves(partition, true);
    mover.commit();
    // Only now: what is taken away there before the store's own commit would be lost without it.
    mover.begin();
    mover.server().run(QStringLiteral("truncate %1").arg(mover.listed(moving)));
    mover.server().run(QStringLiteral("drop schema %1 cascade").arg(moving));
    mover.commit();
}

} // namespace

QList<Partition> partitionsOf(const StoreAddress &store) {
    requireServerStore(store, Access::Read);
    Mover mover(store);
    QList<Partition> all;
    for (int number = 0; number < mover.count(); ++number) {
        const QString networks = mover.server().value(
            QStringLiteral("select string_agg(NetId || ' ' || name, E'\\n' order by NetId) from Net where ") +
            mover.isIn(number));
        all.append({number, mover.placeOf(number), networks.split(QLatin1Char('\n'), Qt::SkipEmptyParts)});
    }
    return all;
}

int partitionOf(const StoreAddress &store, const QString &wanted) {
    requireServerStore(store, Access::Read);
    Mover mover(store);
    const QString text = mover.server().literal(wanted);
    const QString network = mover.server().value(
        QStringLiteral(
            "select NetId from Net where NetId::text = %1 or name = %1 order by NetId::text <> %1 limit 1")
            .replace(QLatin1String("%1"), text));
    if (network.isEmpty())
        throw Failure(QStringLiteral("%1: there is no network \"%2\"").arg(store.name(), wanted));
    for (int number = 0; number < mover.count(); ++number) {
        if (mover.server().value(
                QStringLiteral("select %1 from Net where NetId = %2").arg(mover.isIn(number), network)) ==
            QLatin1String("t"))
            return number;
    }
    throw Failure(QStringLiteral("%1: network %2 is in no partition").arg(store.name(), network));
}

void placePartition(const StoreAddress &store, int partition, const QString &server, bool mayEmpty) {
    requireServerStore(store, Access::Write);
    Mover mover(store);
    mover.requirePartition(partition);
    const QString before = mover.placeOf(partition);
    if (before == server)
        throw Failure(QStringLiteral("%1: partition %2 is there already")
                          .arg(store.name(), QString::number(partition)));
    if (!server.isEmpty() && !before.isEmpty())
        throw Failure(QStringLiteral("%1: partition %2 is on server %3; bring it back first (--back)")
                          .arg(store.name(), QString::number(partition), before));
    if (server.isEmpty())
        moveBack(mover, partition);
    else
        moveAway(mover, partition, server, mayEmpty);
}

qint64 tidyPartitions(const StoreAddress &store) {
    requireServerStore(store, Access::Write);
    Mover mover(store);
    qint64 removed = 0;
    for (int number = 0; number < mover.count(); ++number) {
        if (mover.placeOf(number).isEmpty())
            continue;
        mover.begin();
        removed += mover.sumBackwards(
            QStringLiteral(
                "with gone as (delete from %1.{t} where NetId not in (select NetId from Net) returning 1) select "
                "count(*) from gone")
                .arg(partitions::schemaOf(number)));
        mover.commit();
    }
    return removed;
}

} // namespace moratools
