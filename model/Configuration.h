#pragma once

#include "MoraStoreExport.h"

#include <QByteArray>
#include <QDateTime>

#include <memory>

/// How the scene of a network is shown: the row of table Configuration.
class MORASTORE_EXPORT Configuration {
public:
    double sceneWidth = 600;
    double sceneHeight = 400;
    double scale = 1; ///< metres per scene unit
    QByteArray backgroundMap;
    bool showBackgroundMap = true;
    bool showGrid = true;
    QDateTime saveDate;
    /// A copy that the caller owns.
    std::unique_ptr<Configuration> clone() const { return std::make_unique<Configuration>(*this); }

    /// A length in metres, or a speed in metres per second, in scene units: divided by the scale. A scale
    /// that is not positive counts as 1.
    double inSceneUnits(double metres) const;
};
