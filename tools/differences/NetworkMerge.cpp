#include "tools/differences/NetworkMerge.h"

#include "tools/differences/NetworkDiff.h"
#include "tools/differences/PatchApplication.h"
#include "tools/reports/Failure.h"
#include "tools/rows/NetworkCopy.h"
#include "tools/session/FileInMaking.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreBackup.h"
#include "tools/session/StoreSession.h"
#include "tools/session/TemporaryFolder.h"

#include <QFile>

#include <algorithm>

namespace moratools {

namespace {

/// A store and the network of it that is meant.
struct OpenVersion {
    explicit OpenVersion(const NetworkVersion &version)
        : store(version.store), network(store.networkOf(version.network)) {}

    StoreReader store;
    NamedNetwork network;
};

struct Edits {
    std::vector<RowChange> changes;
    ComparedNetworks compared;
};

Edits editsOf(const OpenVersion &base, const StoreReader &store, const NamedNetwork &network,
              const Progress &progress) {
    Edits edits;
    edits.compared = diffNetworks(
        base.store, base.network, store, network,
        [&edits](const RowChange &change) { edits.changes.push_back(change); }, progress);
    return edits;
}

qint64 largestOf(const OpenVersion &version, const catalogue::Table &entry) {
    const StoreTable *table = version.store.table(QLatin1String(entry.name));
    const StoreColumn *id = table ? table->column(QLatin1String(entry.id)) : nullptr;
    return id ? version.store.largest(*table, *id, version.network) : 0;
}

/// New identifiers behind those of both versions.
Renumbering numbersFor(const QHash<const catalogue::Table *, std::vector<qint64>> &clashing,
                       const OpenVersion &ours, const OpenVersion &theirs) {
    Renumbering numbers;
    for (const catalogue::Table &entry : catalogue::tables()) {
        const StoreTable *table = theirs.store.table(QLatin1String(entry.name));
        const StoreColumn *id = entry.uniqueId() && table ? table->column(QLatin1String(entry.id)) : nullptr;
        if (!id)
            continue;
        const QString name = QLatin1String(entry.name);
        const bool isRoad = name == QLatin1String("Link") || name == QLatin1String("Connector");
        numbers.add(name, isRoad ? theirs.store.integers(*table, *id, theirs.network) : std::vector<qint64>(),
                    clashing.value(&entry), std::max(largestOf(ours, entry), largestOf(theirs, entry)));
    }
    return numbers;
}

} // namespace

TwoEdits compareVersions(const NetworkVersion &base, const NetworkVersion &ours, const NetworkVersion &theirs,
                         const Progress &progress) {
    const OpenVersion first(base);
    const OpenVersion our(ours);
    OpenVersion their(theirs);
    Edits mine =
        editsOf(first, our.store, our.network, [&](double share) { reportShare(progress, share / 3); });
    Edits others = editsOf(first, their.store, their.network,
                           [&](double share) { reportShare(progress, (1 + share) / 3); });
    TwoEdits edits;
    edits.words = mine.compared.words;
    edits.digests = {mine.compared.before, mine.compared.after, others.compared.after};
    const auto clashing = clashingIds(mine.changes, others.changes);
    if (!clashing.isEmpty()) {
        if (!their.store.hasSeveralNetworks())
            throw Failure(
                QStringLiteral("%1: new objects have the identifiers of other new ones, and a store of one "
                               "network keeps too few for new ones; copy the three networks into stores "
                               "made by \"morastore new\" first")
                    .arg(their.store.name()));
        const Renumbering numbers = numbersFor(clashing, our, their);
        edits.renumbered = numbers.count();
        TemporaryFolder folder;
        const QString path = folder.newFile(QStringLiteral("renumbered.db"));
        makeStore(path, newestTemplate());
        {
            const StoreSession copy(StoreAddress(path), Access::Write);
            copyWithIds(their.store, copy, their.network, numbers);
        }
        const StoreReader copy{StoreAddress(path)};
        others = editsOf(first, copy, copy.networks().first(),
                         [&](double share) { reportShare(progress, (2 + share) / 3); });
    }
    edits.ours = std::move(mine.changes);
    edits.theirs = std::move(others.changes);
    return edits;
}

void writeMerged(const QString &path, const NetworkVersion &ours, const TwoEdits &edits,
                 const std::vector<RowChange> &changes, const Progress &progress) {
    // Under another name until it is whole.
    FileInMaking making(path);
    QFile::remove(making.path());
    OpenVersion our(ours);
    long netId = our.network.id;
    if (our.store.hasSeveralNetworks()) {
        makeStore(making.path(), newestTemplate());
        const StoreSession copy(StoreAddress(making.path()), Access::Write);
        netId = copyNetworks(our.store, copy, {our.network}, QString()).first().id;
    } else {
        backUpStore(ours.store.path(), making.path());
    }
    {
        const StoreSession store(StoreAddress(making.path()), Access::Write);
        applyChanges(store, netId, changes, PatchHeader{edits.digests.ours, {}, edits.words}, progress);
    }
    making.publish();
}

} // namespace moratools
