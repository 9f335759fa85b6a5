#pragma once

#include "model/SpecialWords.h"
#include "tools/MoraToolsExport.h"
#include "tools/kinds/NetworkObjects.h"

#include <QStringList>

namespace moratools {

/// The outcome of comparing two networks.
struct MORATOOLS_EXPORT Comparison {
    qint64 fields = 0;      ///< values compared
    qint64 coordinates = 0; ///< of these, numbers of geometry, compared bit for bit
    qint64 differences = 0;
    QStringList first; ///< sentences about the first differences, with names and both values

    /// Counts a difference; the first are told in sentences.
    void differ(const QString &field, const QString &written, const QString &read);
    bool isEqual() const { return differences == 0; }
};

/// Compares every field of a network that was read with that of the one that was written. The two share no
/// object. Lane connectors are matched by their lanes: reading numbers them afresh. `laneConnectorGeometry`
/// says whether the store keeps it, `words` are its dictionary; those
/// of the process's store where none are given.
MORATOOLS_EXPORT Comparison compareNetworks(const NetworkObjects &written, const NetworkObjects &read,
                                            bool laneConnectorGeometry,
                                            const SpecialWords &words = gSpecialWords);

} // namespace moratools
