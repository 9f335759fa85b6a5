#pragma once

#include "MoraStoreExport.h"

#include <QList>

#include <memory>

/// A lane that an accident or road-work zone blocks.
struct MORASTORE_EXPORT ZoneLane {
    long zoneId = 0;
    int laneNumber = 0;
    int toLaneNumber = 0; ///< negative on a link; on a connector the lane that the path leads to

    /// Whether every lane is one of a link; so it is for no lanes at all.
    static bool allOnLink(const QList<ZoneLane *> &lanes);

    /// A copy that the caller owns.
    std::unique_ptr<ZoneLane> clone() const { return std::make_unique<ZoneLane>(*this); }
};
