#pragma once

#include <QString>

/// A generation-6 store of a made-up network: a chain of two-lane links, each joined to the next by a
/// connector. Links and connectors are numbered from 1; connector i leads from link i to link i + 1.
namespace syntheticstore {

constexpr long kNet = 1;
constexpr int kVertices = 4;
constexpr int kLanes = 2;

/// Makes the store at @p path, which must not exist. It stays open on gDB.
/// @return whether every row was written.
bool make(const QString &path, long links);

} // namespace syntheticstore
