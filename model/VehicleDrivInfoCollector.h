#pragma once

#include <QString>

#include <memory>

/// Records the vehicles that pass a point. Lengths in metres, times in seconds. Its table is spelled
/// VehicleDrivInfoCollecter.
struct VehicleDrivInfoCollector {
    long collecterID = 0;
    QString name = QStringLiteral("0");
    long roadID = 0;
    int laneNumber = -1;
    int toLaneNumber = -1;
    double distance = 0;
    double x = 0;
    double y = 0;
    double z = 0;
    int startTime = 1;
    int endTime = 3600;
    int dataInterval = 300;

    /// A copy that the caller owns.
    std::unique_ptr<VehicleDrivInfoCollector> clone() const {
        return std::make_unique<VehicleDrivInfoCollector>(*this);
    }
};
