#include "SimulateConfiguration.h"

#include <QReadLocker>
#include <QThread>
#include <QWriteLocker>

#include <algorithm>

SimulateConfiguration::SimulateConfiguration() {
    inital();
}

SimulateConfiguration::SimulateConfiguration(const SimulateConfiguration &other) {
    *this = other;
}

SimulateConfiguration &SimulateConfiguration::operator=(const SimulateConfiguration &other) {
    // One lock after the other, so that two records assigned to each other cannot wait for each other.
    QReadLocker reading(&other.mLock);
    const Run run = other.mRun;
    const double multiples = other.mAcceMultiples;
    reading.unlock();

    const QWriteLocker writing(&mLock);
    mRun = run;
    mAcceMultiples = multiples;
    simuTimeInterval = other.simuTimeInterval;
    recordTrace = other.recordTrace;
    vehiCollectDataInterval = other.vehiCollectDataInterval;
    vehiQueueDataInterval = other.vehiQueueDataInterval;
    vehiTravelDataInterval = other.vehiTravelDataInterval;
    simuAccuracy = other.simuAccuracy;
    randSeed = other.randSeed;
    return *this;
}

void SimulateConfiguration::inital() {
    const QWriteLocker locker(&mLock);
    mRun = Run();
    mRun.threadCount = std::max(QThread::idealThreadCount() - 1, 1);
    mAcceMultiples = 1;
    simuTimeInterval = 0;
    recordTrace = false;
    vehiCollectDataInterval = 0;
    vehiQueueDataInterval = 0;
    vehiTravelDataInterval = 0;
    simuAccuracy = 20;
    randSeed = 0;
}

int SimulateConfiguration::acceMultiples() const {
    const QReadLocker locker(&mLock);
    return static_cast<int>(mAcceMultiples);
}

void SimulateConfiguration::setAcceMultiples(int multiples) {
    const double wanted = std::max(multiples, 1);
    const QWriteLocker locker(&mLock);
    if (mAcceMultiples != wanted)
        mAcceMultiples = wanted;
}

SimulateConfiguration::Run SimulateConfiguration::run() const {
    const QReadLocker locker(&mLock);
    return mRun;
}

void SimulateConfiguration::setRun(const Run &run) {
    const QWriteLocker locker(&mLock);
    mRun = run;
}

void SimulateConfiguration::setStartTime(qint64 msecs) {
    const QWriteLocker locker(&mLock);
    mRun.startTime = msecs;
}

void SimulateConfiguration::setStopTime(qint64 msecs) {
    const QWriteLocker locker(&mLock);
    mRun.stopTime = msecs;
}

void SimulateConfiguration::setCurrentPeriodTime(qint64 msecs) {
    const QWriteLocker locker(&mLock);
    mRun.currentPeriodTime = msecs;
}

qint64 SimulateConfiguration::simuTimeIntervalWithAcceMutiples() const {
    const QReadLocker locker(&mLock);
    const bool stopped = mRun.stopTime != 0 && mRun.stopTime >= mRun.startTime;
    if (mRun.startTime == 0 || stopped)
        return 0;
    const qint64 passed = mRun.currentPeriodTime - mRun.startTime - mRun.pauseLength;
    return static_cast<qint64>(static_cast<double>(std::max<qint64>(passed, 0)) * mAcceMultiples);
}
