#pragma once

#include "MoraStoreExport.h"

#include <QString>

class Link;

/// A place where buses stop.
class MORASTORE_EXPORT BusStation {
public:
    /// Length and kind follow the scale of gNet and the dictionary at this moment. The link keeps its owner.
    explicit BusStation(Link *link = nullptr, int lane = 0);

    long busStationID = 0;
    QString name = QStringLiteral("0");
    int laneNumber = 0;
    double x = 0;
    double y = 0;
    double length;          ///< at first 30 metres in scene units
    QString type;           ///< display word; at first the stop at the roadside
    Link *mpLink = nullptr; ///< not owned; must be set when the station is stored
};
