#include "tools/sumo/reader/DepartureTimes.h"
#include "tools/sumo/reader/ElementReaders.h"

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

/// How a person comes to the first ride of its plan.
class WayToRide {
public:
    explicit WayToRide(SumoPassengers &waiting) : mWaiting(waiting) {}

    void follow(const QStringRef &stage, const Attributes &attributes);
    bool leadsToStop() const { return mRides && !mWaiting.busStop.isEmpty(); }
    /// Seconds from the departure to the arrival at the stop, as far as the plan says.
    double seconds() const { return mReached; }

private:
    void reach(const Attributes &attributes) {
        mWaiting.busStop = attributes.text("busStop", attributes.text("trainStop", QString()));
        mReached = mElapsed;
    }

    SumoPassengers &mWaiting;
    bool mRides = false;
    double mElapsed = 0;
    double mReached = 0;
};

void WayToRide::follow(const QStringRef &stage, const Attributes &attributes) {
    if (mRides)
        return;
    if (stage == QLatin1String("stop")) {
        // Who waits where the walk has led to is there already.
        if (mWaiting.busStop.isEmpty() || attributes.text("busStop", QString()) != mWaiting.busStop)
            reach(attributes);
        mElapsed += durationOf(attributes, "duration");
        if (attributes.has("until"))
            mElapsed = std::max(mElapsed, timeOf(attributes, "until") - mWaiting.begin);
    } else if (stage == QLatin1String("walk") || stage == QLatin1String("personTrip")) {
        mElapsed += durationOf(attributes, "duration");
        reach(attributes);
    } else if (stage == QLatin1String("ride")) {
        mRides = true;
        mWaiting.lines = words(attributes, "lines");
        mWaiting.intended = attributes.text("intended", QString());
    }
}

/// When the persons depart; false when that is not a time.
bool readTimes(const Attributes &attributes, bool isFlow, SumoPassengers &waiting) {
    if (isFlow) {
        SumoVehicle flow;
        readFlowTimes(attributes, flow);
        waiting.begin = flow.begin;
        waiting.end = flow.end;
        waiting.count =
            flow.number >= 0 ? flow.number : int(std::ceil((flow.end - flow.begin) / flow.period));
        return !flow.onEvent;
    }
    if (departsOnEvent(attributes.text("depart")))
        return false;
    waiting.begin = waiting.end = timeOf(attributes, "depart");
    return true;
}

} // namespace

/// Of the plans of persons only the waiting for a first ride at a stop has a place in a store.
void readPersons(CompanionReading &reading) {
    const bool isFlow = reading.input.name() == QLatin1String("personFlow");
    const Attributes attributes(reading.input);
    SumoPassengers waiting;
    waiting.source = reading.here();
    waiting.id = attributes.text("id");
    waiting.onEvent = !readTimes(attributes, isFlow, waiting);
    WayToRide way(waiting);
    while (reading.input.nextElement()) {
        way.follow(reading.input.name(), Attributes(reading.input));
        reading.input.skipElement();
    }
    waiting.begin += way.seconds();
    waiting.end += way.seconds();
    checkTime(attributes, isFlow ? "begin" : "depart", waiting.end);
    if (way.leadsToStop() || waiting.onEvent)
        reading.into.passengers.push_back(waiting);
    else
        reading.into.withoutRecord.push_back(waiting.source);
}

} // namespace moratools
