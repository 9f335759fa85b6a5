#pragma once

#include "tools/sumo/reader/SumoCompanions.h"
#include "tools/sumo/reader/XmlInput.h"

namespace moratools {

/// A store keeps times and counts as 32-bit numbers.
constexpr double kLastSecond = 2147480000;

/// Whether a departure waits for something that happens (another vehicle, a passenger, the loading of the file)
/// instead of a time.
bool departsOnEvent(const QString &depart);

/// Throws `Failure` where `seconds`, which came of an attribute, is no time that a store can hold.
void checkTime(const Attributes &attributes, const char *name, double seconds);

/// The time of day of an attribute, seconds; 0 where it is not given. Throws `Failure` for one that a store
/// cannot hold.
double timeOf(const Attributes &attributes, const char *name);

/// How long something lasts, seconds; 0 where it is not given or negative, which stands for no time. Throws
/// `Failure` for longer than a store can hold.
double durationOf(const Attributes &attributes, const char *name);

/// When the vehicles or persons of a flow depart, and how many.
void readFlowTimes(const Attributes &attributes, SumoVehicle &flow);

} // namespace moratools
