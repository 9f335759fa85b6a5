#pragma once

#include <QString>

// Plain records in which the host hands objects over without knowing the entity classes that take them.

/// The figures of a vehicle type; the entity class VehicleType tells their units.
struct _VehicleType {
    long vehicleTypeCode = 0;
    QString vehicleTypeName;
    double length = 0;
    double lengthSD = 0;
    double width = 0;
    double widthSD = 0;
    double avgSpeed = 0;
    double speedSD = 0;
    double maxSpeed = 0;
    double avgAcce = 0;
    double acceSD = 0;
    double maxAcce = 0;
    double avgDece = 0;
    double deceSD = 0;
    double maxDece = 0;
};

/// A decision point without its routes; it names its link by id.
struct _DecisionPoint {
    long deciPointID = 0;
    QString deciPointName;
    long linkID = 0;
    double x = 0;
    double y = 0;
    double z = 0;
};

/// The share of a route's traffic in one time slice.
struct _RoutingFLowRatio {
    long routingFLowRatioID = 0;
    long routingID = 0;
    long startDateTime = 0;
    long endDateTime = 0;
    double ratio = 0;
};
