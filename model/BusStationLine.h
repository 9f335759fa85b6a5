#pragma once

#include "MoraStoreExport.h"
#include "OwningList.h"
#include "Passenger.h"
#include "PassengerArriving.h"

#include <MoraInterfaces/IBusStationLine.h>

#include <memory>

/// The stop of a bus line at a station. It owns its arrivals and passengers. A copy has arrivals of its own
/// and no passengers: those wait at the stop that they came to.
class MORASTORE_EXPORT BusStationLine : public IBusStationLine {
public:
    BusStationLine() = default;
    BusStationLine(const BusStationLine &other);
    /// The passengers of this stop stay.
    BusStationLine &operator=(const BusStationLine &other);
    ~BusStationLine() override;

    long id() const override { return stationLineID; }
    long stationId() const override { return busStationID; }
    long lineId() const override { return busLineID; }
    int busParkingTime() const override { return parkingTime; }
    double getOutPercent() const override { return leavingPercent; }
    double getOnTimePerPerson() const override { return getOnTimePerson; }
    double getOutTimePerPerson() const override { return getOutTimePerson; }
    void setBusParkingTime(int seconds) override { parkingTime = seconds; }
    void setGetOutPercent(double percent) override { leavingPercent = percent; }
    void setGetOnTimePerPerson(double seconds) override { getOnTimePerson = seconds; }
    void setGetOutTimePerPerson(double seconds) override { getOutTimePerson = seconds; }

    /// Deletes the arrivals.
    void releasePassengerArriving() { mlPassengerArriving.deleteAll(); }
    /// Deletes the passengers of both lists.
    void releasePassengers();
    /// A copy that the caller owns, with copies of its arrivals and without passengers.
    std::unique_ptr<BusStationLine> clone() const { return std::make_unique<BusStationLine>(*this); }

    long stationLineID = 0;
    long busStationID = 0;
    long linkID = 0; ///< where on its line's route a read found the stop; not stored
    long busLineID = 0;
    int parkingTime = 5; ///< seconds
    double leavingPercent = 10.0;
    double getOnTimePerson = 2.0;  ///< seconds
    double getOutTimePerson = 1.0; ///< seconds
    OwningList<PassengerArriving> mlPassengerArriving;
    OwningList<Passenger> mlPassenger;        ///< waiting; of the running simulation
    OwningList<Passenger> mlLeavingPassenger; ///< alighting; of the running simulation
};
