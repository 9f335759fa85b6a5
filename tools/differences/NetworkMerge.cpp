#include "tools/differences/NetworkMerge.h"

#include "tools/differences/NetworkDiff.h"
#include "tools/differences/PatchApplication.h"
#include "tools/differences/References.h"
#include "tools/rows/NetworkCopy.h"
#include "tools/session/FileInMaking.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreBackup.h"
#include "tools/session/StoreSession.h"

#include <QFile>

#include <algorithm>
#include <map>

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
        [&edits](const RowChange &change) { edits.changes.push_back(change); }, progress, Roads::LookedUp);
    return edits;
}

qint64 largestOf(const OpenVersion &version, const catalogue::Table &entry) {
    const StoreTable *table = version.store.table(QLatin1String(entry.name));
    const StoreColumn *id = table ? table->column(QLatin1String(entry.id)) : nullptr;
    return id ? version.store.largest(*table, *id, version.network) : 0;
}

using NewIds = std::map<RowId, qint64>;

/// Behind those of both versions.
NewIds newIdsFor(const QHash<const catalogue::Table *, std::vector<qint64>> &clashing,
                 const OpenVersion &ours, const OpenVersion &theirs) {
    const auto largestOfBoth = [&](const catalogue::Table &entry) {
        return std::max(largestOf(ours, entry), largestOf(theirs, entry));
    };
    const catalogue::Table *const roads[] = {catalogue::find(QStringLiteral("Link")),
                                             catalogue::find(QStringLiteral("Connector"))};
    // One number for a link and a connector would leave it to other columns which of them is meant.
    qint64 road = std::max(largestOfBoth(*roads[0]), largestOfBoth(*roads[1]));
    NewIds numbers;
    for (auto ids = clashing.cbegin(); ids != clashing.cend(); ++ids) {
        const bool isRoad = ids.key() == roads[0] || ids.key() == roads[1];
        qint64 own = largestOfBoth(*ids.key());
        qint64 &last = isRoad ? road : own;
        for (const qint64 id : ids.value())
            numbers[{ids.key(), id}] = ++last;
    }
    return numbers;
}

/// New rows get their new identifiers, and what refers to them follows.
void renumber(std::vector<RowChange> &changes, const NewIds &numbers) {
    for (RowChange &change : changes) {
        if (change.kind == RowChange::Kind::Removed)
            continue;
        const RowChange said = change;
        const auto replace = [&](const QString &column, const RowId &id) {
            const auto number = numbers.find(id);
            if (number == numbers.end())
                return;
            change.after.insert(column, number->second);
            change.roads.insert(number->second, id.first);
            if (change.key.contains(column))
                change.key.insert(column, number->second);
        };
        if (change.kind == RowChange::Kind::Added) {
            const auto owner = numbers.find(ownerOf(change));
            if (owner != numbers.end())
                change.owner = owner->second;
            const RowId id = idOf(said);
            if (id.first)
                replace(said.key.firstKey(), id);
        }
        for (const catalogue::Reference &reference : change.table->references)
            replace(columnOf(*change.table, reference), referredBy(said, reference, said.after));
    }
}

} // namespace

TwoEdits compareVersions(const NetworkVersion &base, const NetworkVersion &ours, const NetworkVersion &theirs,
                         const Progress &progress) {
    const OpenVersion first(base);
    const OpenVersion our(ours);
    const OpenVersion their(theirs);
    Edits mine =
        editsOf(first, our.store, our.network, [&](double share) { reportShare(progress, share / 2); });
    Edits others = editsOf(first, their.store, their.network,
                           [&](double share) { reportShare(progress, (1 + share) / 2); });
    TwoEdits edits;
    edits.words = mine.compared.words;
    edits.digests = {mine.compared.before, mine.compared.after, others.compared.after};
    const auto clashing = clashingIds(mine.changes, others.changes);
    if (!clashing.isEmpty()) {
        const NewIds numbers = newIdsFor(clashing, our, their);
        edits.renumbered = qint64(numbers.size());
        renumber(others.changes, numbers);
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
