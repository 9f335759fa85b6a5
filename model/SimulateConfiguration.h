#pragma once

#include "MoraStoreExport.h"

#include <QReadWriteLock>

#include <memory>

/// How a simulation run is stepped and what it records: the row of table SimulateConfiguration, and beside it
/// the state of the run, which is not stored.
///
/// Every function holds the record's own lock. The public fields are for the time between runs and not
/// guarded. A copy takes all values and has a lock of its own.
class MORASTORE_EXPORT SimulateConfiguration {
public:
    /// State of a run. Times are milliseconds since the epoch, 0 when not set.
    struct Run {
        qint64 startTime = 0;
        qint64 stopTime = 0;
        qint64 currentPeriodTime = 0; ///< begin of the period that is being computed
        qint64 pauseLength = 0;       ///< milliseconds paused so far
        bool pauseAll = false;
        long batchNumber = 0;
        int threadCount = 1; ///< worker threads
    };

    SimulateConfiguration();
    SimulateConfiguration(const SimulateConfiguration &other);
    SimulateConfiguration &operator=(const SimulateConfiguration &other);

    /// Back to the state of a new record: the defaults below and no run. The worker threads are one fewer
    /// than the machine runs at once, and at least one.
    void inital();

    /// The multiple truncated to an integer.
    int acceMultiples() const;
    /// Stores max(multiples, 1); nothing is written when that is the value already.
    void setAcceMultiples(int multiples);

    Run run() const;
    void setRun(const Run &run);
    void setStartTime(qint64 msecs);
    void setStopTime(qint64 msecs);
    void setCurrentPeriodTime(qint64 msecs);

    /// Simulated milliseconds from the start of the run to its current period: the time passed without the
    /// pauses, times the acceleration multiple. 0 when no run is under way, that is without a start or after
    /// a stop.
    qint64 simuTimeIntervalWithAcceMutiples() const;
    /// A copy that the caller owns.
    std::unique_ptr<SimulateConfiguration> clone() const {
        return std::make_unique<SimulateConfiguration>(*this);
    }

    int simuTimeInterval = 0;        ///< span to simulate, seconds
    bool recordTrace = false;        ///< record trajectories
    int vehiCollectDataInterval = 0; ///< seconds, as the next two
    int vehiQueueDataInterval = 0;
    int vehiTravelDataInterval = 0;
    double mAcceMultiples = 1; ///< column acceMultiples, there an integer
    int simuAccuracy = 20;
    int randSeed = 0;

private:
    mutable QReadWriteLock mLock;
    Run mRun;
};
