#include "BusStationLine.h"

BusStationLine::BusStationLine(const BusStationLine &other) : IBusStationLine() {
    *this = other;
}

BusStationLine &BusStationLine::operator=(const BusStationLine &other) {
    stationLineID = other.stationLineID;
    busStationID = other.busStationID;
    linkID = other.linkID;
    busLineID = other.busLineID;
    parkingTime = other.parkingTime;
    leavingPercent = other.leavingPercent;
    getOnTimePerson = other.getOnTimePerson;
    getOutTimePerson = other.getOutTimePerson;
    mlPassengerArriving = other.mlPassengerArriving;
    return *this;
}

BusStationLine::~BusStationLine() = default;

void BusStationLine::releasePassengers() {
    mlPassenger.deleteAll();
    mlLeavingPassenger.deleteAll();
}
