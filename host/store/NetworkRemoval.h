#pragma once

#include "host/store/StoreInfo.h"

#include <QString>

/// The network of the open store that `wanted` names: its number or else its name. Throws `Failure`.
NetworkInfo networkCalled(const QString &wanted);

/// Removes a network of the open store as a whole or, on a `Failure`, not at all: its objects, its record
/// and, in a store of several networks, every other row that is led by its number.
void removeNetwork(long netId);
