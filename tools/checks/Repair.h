#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/session/StoreAddress.h"

#include <QStringList>

#include <string>
#include <vector>

namespace moratools {

/// What repairs did to a store.
struct Repairs {
    QStringList done; ///< a sentence for each; empty where there was nothing to repair
    QString copy;     ///< the file that keeps the store as it was; empty without one
};

/// Repairs networks of a store (by number or name; without any all) where that cannot be wrong:
///
/// - counters of identifiers that are behind their rows; in files also those that are missing, or of networks that are
///   gone;
/// - rows that are only a part of something that is gone, and have no identifier of their own;
/// - points of lines that repeat the one before, to the last digit, in all lines that have as many points and
///   belong together: those of a lane, and those of a link with its vertices;
/// - shares of a composition, of the routes of a decision point, and of their flow ratios that add up to 1 or to 100 percent but
///   for what rounding to two decimals takes away: the largest one makes up for it.
///
/// All of it in one transaction, or, on a failure, nothing. Where there is nothing to repair the store is left
/// as it is; otherwise an SQLite store is copied before, as upgradeStore() does, with `keepsCopy`. Throws `Failure`
/// when the store cannot be had for writing or read.
MORATOOLS_EXPORT Repairs repairStore(const StoreAddress &address, const std::vector<std::string> &networks,
                                     bool keepsCopy);

} // namespace moratools
