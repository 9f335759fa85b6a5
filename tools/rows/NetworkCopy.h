#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"
#include "tools/rows/Renumbering.h"
#include "tools/rows/StoreReader.h"

namespace moratools {

class StoreSession;

/// What a copy made of a network.
struct CopiedNetwork {
    long from = 0;
    long id = 0;
    QString name;
    qint64 rows = 0;
    qint64 renumbered = 0; ///< identifiers that the target had already
    qint64 words = 0;      ///< put into the language of the target
    QStringList leftOut;   ///< what the target has no place for, a line each
};

/// Throws `Failure` when a network of `target`, or another of `networks`, has the name that a copy
/// would get. Asked before the target is opened for writing, which brings an older one forward.
MORATOOLS_EXPORT void requireFreeNames(const StoreSession &target,
                                       const QList<StoreReader::Network> &networks, const QString &name);

/// Copies networks, row by row and all or nothing, into `target`, which must be of generation 6.
/// Rows get new identifiers only where a network of the target has theirs already. `name`, when it is not
/// empty, is that of the copy. Throws `Failure`, and then the target is as it was.
MORATOOLS_EXPORT QList<CopiedNetwork> copyNetworks(StoreReader &source, const StoreSession &target,
                                                   const QList<StoreReader::Network> &networks,
                                                   const QString &name, const Progress &progress = {});

/// Copies a network, all or nothing, into a store that has none, under identifiers that are given; lane
/// connectors need some of their own. Throws `Failure`, and then the target is as it was.
MORATOOLS_EXPORT CopiedNetwork copyWithIds(StoreReader &source, const StoreSession &target,
                                           const StoreReader::Network &network, const Renumbering &ids);

} // namespace moratools
