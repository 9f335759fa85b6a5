#pragma once

/// Passengers who arrive at a stop in an interval; times in seconds.
struct PassengerArriving {
    PassengerArriving(long id, long start, long end, int count)
        : passengerArrivingID(id), startTime(start), endTime(end), passengerCount(count) {}

    long passengerArrivingID;
    long startTime;
    long endTime;
    int passengerCount;
};
