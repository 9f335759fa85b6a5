#pragma once

#include "tools/differences/Alignment.h"
#include "tools/session/TemporaryFolder.h"

#include <memory>

namespace moratools {

/// A network under the identifiers of another one that it corresponds to by name: a copy in a temporary store,
/// which goes with this object. So what compares by identifiers compares by names.
class MORATOOLS_EXPORT AlignedNetwork {
public:
    /// Throws `Failure` where a store cannot be read, or the copy not be made. `other` is done with afterwards.
    AlignedNetwork(const StoreReader &one, const NamedNetwork &first, StoreReader &other,
                   const NamedNetwork &second, Matching matching = Matching::Names);
    ~AlignedNetwork();

    const Alignment &alignment() const { return mAlignment; }
    const StoreReader &store() const { return *mStore; }
    const NamedNetwork &network() const { return mStore->networks().first(); }
    /// Where the copy is, for a reader or a session of one's own.
    const StoreAddress &address() const { return mAddress; }

private:
    Q_DISABLE_COPY(AlignedNetwork)

    TemporaryFolder mFolder;
    StoreAddress mAddress;
    Alignment mAlignment;
    std::unique_ptr<StoreReader> mStore;
};

} // namespace moratools
