#pragma once

#include "MoraInterfacesExport.h"

/// A bus line's stop at a station, as the simulator reads and tunes it.
class MORAINTERFACES_EXPORT IBusStationLine {
public:
    virtual ~IBusStationLine();

    virtual long id() const = 0;
    virtual long stationId() const = 0;
    virtual long lineId() const = 0;
    virtual int busParkingTime() const = 0;         ///< seconds
    virtual double getOutPercent() const = 0;       ///< share of the passengers who leave here, percent
    virtual double getOnTimePerPerson() const = 0;  ///< seconds
    virtual double getOutTimePerPerson() const = 0; ///< seconds
    virtual void setBusParkingTime(int seconds) = 0;
    virtual void setGetOutPercent(double percent) = 0;
    virtual void setGetOnTimePerPerson(double seconds) = 0;
    virtual void setGetOutTimePerPerson(double seconds) = 0;
};
