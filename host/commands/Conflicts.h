#pragma once

#include "tools/differences/NetworkMerge.h"

#include <string>

namespace commands {

/// The two edits as one, with the answers of the file `resolve`, where one is given. Throws `Incomplete` while a
/// conflict has no answer: then the file `conflicts` names them all, and the user is told that `outcome` and what
/// to do. Throws `Failure` for answers to other conflicts.
moratools::MergedChanges mergeWithAnswers(const moratools::TwoEdits &edits, const std::string &resolve,
                                          const QString &conflicts, const QString &outcome);

} // namespace commands
