#include "tools/differences/AlignedNetwork.h"

#include "tools/rows/NetworkCopy.h"
#include "tools/session/NewStore.h"
#include "tools/session/StoreSession.h"

namespace moratools {

namespace {

/// A store of one network keeps no identifiers of lane connectors: a copy gives them some.
bool hasAllIds(const StoreReader &store) {
    const StoreTable *ways = store.table(QStringLiteral("LaneConnector"));
    return !ways || ways->column(QStringLiteral("laneConnId"));
}

void copyAs(StoreReader &source, const NamedNetwork &network, const QString &path, const Renumbering &ids) {
    makeStore(path, newestTemplate());
    const StoreSession target(StoreAddress(path), Access::Write);
    copyWithIds(source, target, network, ids);
}

} // namespace

AlignedNetwork::AlignedNetwork(const StoreReader &one, const NamedNetwork &first, StoreReader &other,
                               const NamedNetwork &second, Matching matching)
    : mAddress(mFolder.newFile(QStringLiteral("aligned.db"))) {
    std::unique_ptr<TemporaryFolder> between;
    std::unique_ptr<StoreReader> numbered;
    StoreReader *source = &other;
    NamedNetwork network = second;
    if (!hasAllIds(other)) {
        between = std::make_unique<TemporaryFolder>();
        const QString path = between->newFile(QStringLiteral("numbered.db"));
        copyAs(other, second, path, {});
        numbered = std::make_unique<StoreReader>(StoreAddress(path));
        source = numbered.get();
        network = source->networks().first();
    }
    mAlignment = align(one, first, *source, network, matching);
    copyAs(*source, network, mAddress.path(), mAlignment.ids);
    mStore = std::make_unique<StoreReader>(mAddress);
}

AlignedNetwork::~AlignedNetwork() = default;

} // namespace moratools
