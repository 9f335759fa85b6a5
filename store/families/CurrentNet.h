#pragma once

#include "store/core/Store.h"

/// Whether the tables of the current network speak for the store's network: always in a store of one network,
/// and in generation 6 while that is the current one. Elsewhere the same ids name other objects, and so they may where
/// the generation could not be read.
inline bool isCurrentNet(const Store &store) {
    return !store.isGivenUp() && (!store.hasSeveralNets() || store.net().isCurrent(store.netId()));
}
