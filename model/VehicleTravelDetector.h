#pragma once

#include "MoraStoreExport.h"

#include <QString>

#include <memory>

/// Measures travel times between two cross-sections. Lengths in metres, times in seconds. The format spells
/// the terminal end without its r.
class MORASTORE_EXPORT VehicleTravelDetector {
public:
    /// Whether both lane numbers of that end are below 1.
    bool isOnLinkStart() const { return start_laneNumber < 1 && start_toLaneNumber < 1; }
    bool isOnLinkTeminal() const { return teminal_laneNumber < 1 && teminal_toLaneNumber < 1; }

    /// Back to the state of a new detector, except for the four coordinates, which stay.
    void empty();
    /// A copy that the caller owns.
    std::unique_ptr<VehicleTravelDetector> clone() const {
        return std::make_unique<VehicleTravelDetector>(*this);
    }

    long detectorId = 0;
    QString name;
    long startRoadId = 0;
    int start_laneNumber = 0;
    int start_toLaneNumber = 0;
    double startDist = 0;
    double startX = 0;
    double startY = 0;
    long teminalRoadId = 0;
    int teminal_laneNumber = 0;
    int teminal_toLaneNumber = 0;
    double teminalDist = 0;
    double teminalX = 0;
    double teminalY = 0;
    int startTime = 1;
    int endTime = 3600;
    int dataInterval = 300;
    double shortestDistance = 0;
};
