#pragma once

#include "MoraStoreExport.h"

#include <QPointF>
#include <QString>

#include <memory>

class Net;

/// Measures queues upstream of a point. Lengths in metres, times in seconds; the limits of a new counter are
/// in scene units, by the scale of gNet at this moment or that of `net`.
class MORASTORE_EXPORT VehicleQueueCounter {
public:
    VehicleQueueCounter();
    explicit VehicleQueueCounter(const Net &net);
    explicit VehicleQueueCounter(const QPointF &position);

    /// Whether toLaneNumber is below 1.
    bool isOnLink() const { return toLaneNumber < 1; }
    /// A copy that the caller owns.
    std::unique_ptr<VehicleQueueCounter> clone() const {
        return std::make_unique<VehicleQueueCounter>(*this);
    }

    long queueCounterID = 0;
    QString name;
    long roadID = 0;
    int laneNumber = 0;
    int toLaneNumber = 0;
    double x = 0;
    double y = 0;
    double z = 0;
    double speedLowLimit = 0; ///< a vehicle below it is in the queue: 5 km/h at first
    double speedUpLimit = 0;  ///< a vehicle above it has left the queue: 10 km/h at first
    double maxDistInterval = 0;
    double maxQueueLength = 0;
    double distance = 0;
    int startTime = 1;
    int endTime = 3600;
    int dataInterval = 300;
    int countInterval = 1;
};
