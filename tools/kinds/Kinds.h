#pragma once

#include "model/Description.h"
#include "tools/MoraToolsExport.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace moratools {

class StoreSession;

/// An object as a list of its kind shows it.
struct NamedObject {
    long id = 0;
    QString name;
};

/// A kind of object, whatever its class.
struct NamedKind {
    QString name; ///< as `morastore info` calls it
    /// Its objects refer to others, which are found among the current network's: the network must have been
    /// loaded before.
    bool needsNetwork;
    /// All that the store lists, in ascending order of ids, whether they can be read or not: by one
    /// statement. Throws `Failure` when the list cannot be read.
    std::function<QList<NamedObject>(const StoreSession &store, long netId)> list;
    /// Nothing where the store has no such object.
    std::function<std::optional<Description>(const StoreSession &store, long netId, long id)> read;
};

/// All kinds of objects that the library reads one by one, and the settings of a network.
MORATOOLS_EXPORT const std::vector<NamedKind> &namedKinds();

} // namespace moratools
