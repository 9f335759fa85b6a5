#pragma once

class Store;

/// What a new network starts with.
namespace dictionaries {

/// Seeds the dictionaries that the store's network does not have yet.
bool seed(const Store &store, bool useTransaction);

} // namespace dictionaries
