#pragma once

#include "model/Net.h"
#include "store/core/Store.h"

/// Whether gNet's tables speak for the store's network: always in a store of one network, and in generation 6
/// while that network is the current one. Elsewhere the same ids name other objects, and so they may where
/// the generation could not be read.
inline bool isCurrentNet(const Store &store) {
    return !store.isGivenUp() && (!store.hasSeveralNets() || gNet.isCurrent(store.netId()));
}
