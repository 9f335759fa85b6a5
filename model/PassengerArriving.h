#pragma once

#include <memory>

/// Passengers who arrive at a stop in an interval; times in seconds.
struct PassengerArriving {
    PassengerArriving(long id, long start, long end, int count)
        : passengerArrivingID(id), startTime(start), endTime(end), passengerCount(count) {}

    long passengerArrivingID;
    long startTime;
    long endTime;
    int passengerCount;

    /// A copy that the caller owns.
    std::unique_ptr<PassengerArriving> clone() const { return std::make_unique<PassengerArriving>(*this); }
};
