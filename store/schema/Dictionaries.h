#pragma once

class Store;

/// What a new network starts with.
namespace dictionaries {

/// Seeds the dictionaries that the store's network does not have yet.
bool seedDictionaries(const Store &store, bool useTransaction);

/// Seeds the coefficient sets of the car-following model alone, where there are none.
bool seedFollowingSets(const Store &store);

} // namespace dictionaries
