#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/kinds/NetworkObjects.h"
#include "tools/rows/StoreReader.h"

#include <memory>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>

namespace moratools {

/// What rules look at: a network of a store as rows and, for rules on objects, as objects. What several rules
/// need is made once, when the first asks for it.
class MORATOOLS_EXPORT Checked {
public:
    /// For rules on the store as a whole: no network.
    explicit Checked(const StoreReader &rows) : mRows(rows) {}
    /// `network` is null for rules on rows, and where the network could not be loaded, for the reason
    /// `refusal`. All must outlive this.
    Checked(const StoreReader &rows, const StoreReader::Network &net, const NetworkObjects *network,
            const QString &refusal)
        : mRows(rows), mNet(net), mNetwork(network), mRefusal(refusal) {}

    /// The store's rows, all of one moment.
    const StoreReader &rows() const { return mRows; }
    /// Number and name of the network.
    const StoreReader::Network &net() const { return mNet; }
    /// The objects: for rules of Scope::Objects only, which run where there are any.
    const NetworkObjects &network() const { return *mNetwork; }
    /// Why the network could not be loaded; empty where it was.
    const QString &refusal() const { return mRefusal; }

    /// What several rules need, made of this when the first asks for it: `checked.made<LinkGraph>()`.
    template <class T>
    const T &made() const {
        std::shared_ptr<const void> &slot = mMade[std::type_index(typeid(T))];
        if (!slot)
            slot = std::make_shared<const T>(*this);
        return *static_cast<const T *>(slot.get());
    }

private:
    Q_DISABLE_COPY(Checked)

    const StoreReader &mRows;
    StoreReader::Network mNet;
    const NetworkObjects *mNetwork = nullptr;
    QString mRefusal;
    mutable std::unordered_map<std::type_index, std::shared_ptr<const void>> mMade;
};

/// Whether a store has no network: a new one of a single network has not even a record.
bool isEmpty(const StoreReader &rows);

} // namespace moratools
