#pragma once

#include "MoraStoreExport.h"

class BusStationLine;

/// A passenger waiting at a stop while a simulation runs; not stored.
class MORASTORE_EXPORT Passenger {
public:
    Passenger(long id, long arriving, BusStationLine *stationLine)
        : passengerID(id), arrivingTime(arriving), mpStationLine(stationLine) {}

    long passengerID;
    long arrivingTime;             ///< seconds
    BusStationLine *mpStationLine; ///< not owned

    /// For the host, which numbers passengers with it.
    static long generId;
};
