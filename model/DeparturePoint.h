#pragma once

#include "VehicleComposition.h"

#include <QList>
#include <QString>

#include <memory>

/// A slice of a departure point's timetable.
struct DepartureInterval {
    long departureIntervalD = 0; ///< id; the column is spelled so
    int interval = 0;            ///< the slice, in the host's time unit
    int vehiCount = 0;           ///< vehicles released in the slice
    VehicleComposition vehiCons; ///< what they are drawn from; the store keeps its code

    /// A copy that the caller owns.
    std::unique_ptr<DepartureInterval> clone() const { return std::make_unique<DepartureInterval>(*this); }
};

/// Where vehicles enter the network.
struct DeparturePoint {
    long departurePointID = 0;
    QString name;
    long linkID = 0;
    QList<DepartureInterval> mlInterval;

    /// A copy that the caller owns.
    std::unique_ptr<DeparturePoint> clone() const { return std::make_unique<DeparturePoint>(*this); }
};
