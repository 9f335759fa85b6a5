#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/kinds/Description.h"
#include "tools/kinds/TrafficObjects.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace moratools {

/// The objects of a kind of `TrafficObjects` in network `netId` of the open store, in ascending order of
/// their ids, read through the library. Links, and for lamps the signal groups, must have been read before.
/// `progress` hears the share that has been read. Throws `Failure` for an object that the store lists and
/// that cannot be read, and for a list that cannot be.
template <class T>
MORATOOLS_EXPORT Objects<T> readAll(long netId, const std::function<void(double)> &progress = {});

/// What an object of a kind is called: "signal group".
template <class T>
MORATOOLS_EXPORT const char *kindWord();

/// Reads every kind of `TrafficObjects`.
MORATOOLS_EXPORT void readTraffic(long netId, TrafficObjects &into);

/// What must have been read before objects of a kind.
enum class Before { Nothing, Links, SignalGroups };

/// An object as a list of its kind shows it.
struct NamedObject {
    long id = 0;
    QString name;
};

/// A kind of object, whatever its class.
struct NamedKind {
    QString name; ///< as `morastore info` calls it
    Before before;
    /// All that the store lists, in ascending order of ids, whether they can be read or not: by one
    /// statement. Throws `Failure` when the list cannot be read.
    std::function<QList<NamedObject>(long netId)> list;
    /// Nothing where the store has no such object.
    std::function<std::optional<Description>(long netId, long id)> read;
};

/// All kinds of objects that the library reads one by one, and the settings of a network.
MORATOOLS_EXPORT const std::vector<NamedKind> &namedKinds();

} // namespace moratools
