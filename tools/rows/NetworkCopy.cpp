#include "tools/rows/NetworkCopy.h"

#include "store/DBTools.h"
#include "store/catalogue/Catalogue.h"
#include "tools/reports/Failure.h"
#include "tools/rows/TableCopy.h"
#include "tools/session/GuardedTransaction.h"

#include <QSet>

#include <algorithm>
#include <limits>

namespace moratools {

namespace {

/// The number of rows that are to be copied, and of those that are.
class Progression {
public:
    Progression(const StoreReader &source, const QList<StoreReader::Network> &networks,
                const Progress &progress)
        : mProgress(progress) {
        for (const catalogue::Table &entry : catalogue::tables()) {
            const StoreTable *table = source.table(QLatin1String(entry.name));
            for (const StoreReader::Network &network : networks)
                mAll += table ? source.count(*table, network) : 0;
        }
    }
    void step() { reportShare(mProgress, double(++mDone) / double(std::max<qint64>(mAll, 1))); }

private:
    const Progress &mProgress;
    qint64 mAll = 0;
    qint64 mDone = 0;
};

class NetworkCopy {
public:
    NetworkCopy(const StoreReader &source, const StoreReader::Network &network, const CopyTarget &target)
        : mSource(source),
          mNetwork(network),
          mTarget(target),
          mWords(source.language(network), target.language()),
          mChanges{target.networkId(network.id), mIds, mWords, 0} {}

    CopiedNetwork run(const QString &name, Progression &progression);
    /// In place of new identifiers for those that the target has.
    void give(const Renumbering &ids) {
        mIds = ids;
        mAreIdsGiven = true;
    }

private:
    void renumber();
    void renumber(const catalogue::Table &entry);
    qint64 largestMentioned(const catalogue::Table &entry, const std::vector<qint64> &own) const;
    void copyTable(const catalogue::Table &entry, Progression &progression);
    void settleRecord(TableCopy &copy, const StoreTable &source) const;

    const StoreReader &mSource;
    const StoreReader::Network &mNetwork;
    const CopyTarget &mTarget;
    Renumbering mIds;
    bool mAreIdsGiven = false;
    Translation mWords;
    RowChanges mChanges;
    CopiedNetwork mResult;
};

CopiedNetwork NetworkCopy::run(const QString &name, Progression &progression) {
    mResult.from = mNetwork.id;
    mResult.id = mChanges.netId;
    mResult.name = name.isEmpty() ? mNetwork.name : name;
    requireFreeName(mTarget.store(), mResult.name);
    renumber();
    for (const catalogue::Table &entry : catalogue::tables())
        copyTable(entry, progression);
    mTarget.raiseNetworkCounter(mChanges.netId);
    mResult.renumbered = mIds.count();
    return mResult;
}

void NetworkCopy::renumber() {
    for (const catalogue::Table &entry : catalogue::tables()) {
        if (entry.uniqueId() && !mAreIdsGiven)
            renumber(entry);
    }
}

void NetworkCopy::renumber(const catalogue::Table &entry) {
    const QString name = QLatin1String(entry.name);
    const StoreTable *table = mSource.table(name);
    if (!table)
        return;
    const StoreColumn *column = table->column(QLatin1String(entry.id));
    if (!column) {
        // Only older lane connectors have none.
        mChanges.nextLaneConnector =
            Renumbering::firstAfter(mTarget.largest(entry), mSource.count(*table, mNetwork), name);
        return;
    }
    std::vector<qint64> own = mSource.integers(*table, *column, mNetwork);
    const std::vector<qint64> taken = mTarget.taken(entry, own);
    const qint64 largest = taken.empty() ? 0 : std::max(mTarget.largest(entry), largestMentioned(entry, own));
    // Only roads are asked whose they are.
    const bool isRoad = name == QLatin1String("Link") || name == QLatin1String("Connector");
    mIds.add(name, isRoad ? std::move(own) : std::vector<qint64>(), taken, largest);
}

/// The largest identifier of a table that the network has or refers to: a reference that leads nowhere does
/// not come to lead somewhere.
qint64 NetworkCopy::largestMentioned(const catalogue::Table &entry, const std::vector<qint64> &own) const {
    const QString name = QLatin1String(entry.name);
    const bool isRoad = name == QLatin1String("Link") || name == QLatin1String("Connector");
    qint64 largest = own.empty() ? 0 : own.back();
    for (const catalogue::Table &other : catalogue::tables()) {
        const StoreTable *table = mSource.table(QLatin1String(other.name));
        for (const catalogue::Reference &reference : other.references) {
            const StoreColumn *column = table ? table->column(QLatin1String(reference.column)) : nullptr;
            const bool refers = reference.table ? name == QLatin1String(reference.table) : isRoad;
            const qint64 mentioned = column && refers ? mSource.largest(*table, *column, mNetwork) : 0;
            if (mentioned <= std::numeric_limits<qint32>::max())
                largest = std::max(largest, mentioned);
        }
    }
    return largest;
}

void NetworkCopy::copyTable(const catalogue::Table &entry, Progression &progression) {
    const StoreTable *source = mSource.table(QLatin1String(entry.name));
    const StoreTable *target = mTarget.table(QLatin1String(entry.name));
    const bool isRecord = &entry == &catalogue::tables().front();
    if (!target) {
        const qint64 rows = source ? mSource.count(*source, mNetwork) : 0;
        if (rows > 0)
            mResult.leftOut.append(
                QStringLiteral("table %1: %2 rows").arg(source->name, QString::number(rows)));
        return;
    }
    const StoreTable none;
    TableCopy copy(entry, source ? *source : none, *target, mTarget, mChanges);
    if (isRecord)
        settleRecord(copy, source ? *source : none);
    if (source)
        mSource.read(*source, entry, mNetwork, StoreReader::Order::Written, [&](const StoreReader::Row &row) {
            copy.add(row);
            progression.step();
        });
    // A store of one network may be without a record of it.
    if (isRecord && copy.rows() == 0)
        copy.add(StoreReader::Row(source ? source->columns.size() : 0));
    copy.finish();
    if (copy.largestNumber() > 0)
        mTarget.raiseCounters(mChanges.netId, entry, copy.largestNumber());
    mResult.rows += copy.rows();
    mResult.words += copy.words();
    mResult.leftOut += copy.leftOut();
}

void NetworkCopy::settleRecord(TableCopy &copy, const StoreTable &source) const {
    copy.replace(QStringLiteral("name"), mResult.name);
    // One network at most is opened by default; stores that hold one have no word for it.
    if (mTarget.hasDefaultNetwork())
        copy.replace(QStringLiteral("isdefault"), QStringLiteral("F"));
    else if (!source.column(QStringLiteral("isdefault")))
        copy.replace(QStringLiteral("isdefault"), QStringLiteral("T"));
}

} // namespace

void requireFreeNames(const StoreSession &store, const QList<StoreReader::Network> &networks,
                      const QString &name) {
    QSet<QString> names;
    for (const StoreReader::Network &network : networks) {
        const QString own = name.isEmpty() ? network.name : name;
        requireFreeName(store, own);
        if (names.contains(own))
            throw Failure(QStringLiteral("two of the networks are called \"%1\"; copy them one by "
                                         "one, and give one of them another name")
                              .arg(own));
        names.insert(own);
    }
}

CopiedNetwork copyWithIds(StoreReader &source, const StoreSession &store, const StoreReader::Network &network,
                          const Renumbering &ids) {
    GuardedTransaction transaction(store);
    const CopyTarget target(store);
    const Progress unheard;
    Progression progression(source, {network}, unheard);
    NetworkCopy copy(source, network, target);
    copy.give(ids);
    CopiedNetwork copied = copy.run({}, progression);
    source.finish();
    transaction.commit();
    return copied;
}

QList<CopiedNetwork> copyNetworks(StoreReader &source, const StoreSession &store,
                                  const QList<StoreReader::Network> &networks, const QString &name,
                                  const Progress &progress) {
    GuardedTransaction transaction(store);
    const CopyTarget target(store);
    Progression progression(source, networks, progress);
    QList<CopiedNetwork> copies;
    for (const StoreReader::Network &network : networks)
        copies.append(NetworkCopy(source, network, target).run(name, progression));
    source.finish();
    transaction.commit();
    return copies;
}

} // namespace moratools
