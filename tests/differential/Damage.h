#pragma once

#include "model/NetContents.h"
#include "tests/differential/RandomNet.h"
#include "tests/differential/StoredRows.h"

namespace differential {

/// Writes the rows of every table of a network anew in a random order, so that children of different owners
/// come mixed.
void scatterRows(RandomNet &random, long netId, bool severalNets);

/// Does a few things to a stored network that other programs, or a hand, may have done: rows that are gone,
/// references that lead nowhere or to what belongs to another object, numbers that come twice, second rows of
/// settings, JSON that does not parse, values of another kind.
/// @return what was done, for a message.
QStringList damage(RandomNet &random, long netId, bool severalNets);

/// The tables whose rows are neither among the objects of a load nor in its report, each with the numbers; an
/// object that the load has taken only in part counts as taken.
QStringList rowsUnaccountedFor(const NetContents &loaded, const QMap<QString, TableRows> &stored);

} // namespace differential
