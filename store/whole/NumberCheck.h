#pragma once

#include "model/NetContents.h"

#include <QString>

#include <vector>

/// The numbers of a network's objects that are to name another one and match none, sorted: the lane of a lamp or
/// of a route, the road and the signal group of a detector, a vehicle type, and so on. 0 names nothing. A
/// network without vehicle types, or without compositions, is saved beside those of the store, and their
/// numbers are not among them.
std::vector<UnmatchedNumber> unmatchedNumbers(const NetContents &contents);

/// The sentence for a failure.
QString textOf(const UnmatchedNumber &number);
