#include "tools/sumo/reader/DepartureTimes.h"

#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

// What SUMO assumes where a flow does not say how long it lasts: a day.
constexpr double kFlowEnd = 86400;

/// Seconds between two departures of a flow; 0 where the file gives no rate. A random rate counts with its
/// mean.
double periodOf(const Attributes &attributes) {
    for (const char *rate : {"vehsPerHour", "perHour", "probability"}) {
        if (!attributes.has(rate))
            continue;
        const double value = attributes.number(rate);
        if (value <= 0)
            attributes.failOn(rate, QStringLiteral("which is not positive"));
        return (qstrcmp(rate, "probability") == 0 ? 1 : 3600) / value;
    }
    const QString period = attributes.text("period", QString());
    if (period.startsWith(QLatin1String("exp(")) && period.endsWith(QLatin1Char(')'))) {
        bool ok = false;
        const double rate = period.mid(4, period.size() - 5).toDouble(&ok);
        if (!ok || !(rate > 0))
            attributes.failOn("period", QStringLiteral("which has no positive rate"));
        return 1 / rate;
    }
    const double seconds = attributes.seconds("period", 0);
    if (attributes.has("period") && seconds <= 0)
        attributes.failOn("period", QStringLiteral("which is not positive"));
    return seconds;
}

} // namespace

bool departsOnEvent(const QString &depart) {
    static const QSet<QString> events{QStringLiteral("triggered"), QStringLiteral("containerTriggered"),
                                      QStringLiteral("split"), QStringLiteral("now")};
    return events.contains(depart);
}

void checkTime(const Attributes &attributes, const char *name, double seconds) {
    if (seconds < 0 || seconds > kLastSecond)
        attributes.failOn(name, QStringLiteral("which is no time that a store can hold"));
}

double timeOf(const Attributes &attributes, const char *name) {
    const double seconds = attributes.seconds(name, 0);
    checkTime(attributes, name, seconds);
    return seconds;
}

double durationOf(const Attributes &attributes, const char *name) {
    const double seconds = std::max(0.0, attributes.seconds(name, 0));
    checkTime(attributes, name, seconds);
    return seconds;
}

void readFlowTimes(const Attributes &attributes, SumoVehicle &flow) {
    flow.isFlow = true;
    flow.onEvent = departsOnEvent(attributes.text("begin", QString()));
    flow.begin = flow.onEvent ? 0 : timeOf(attributes, "begin");
    flow.period = periodOf(attributes);
    flow.number = attributes.integer("number", -1);
    const bool endFollows = flow.number >= 0 && flow.period > 0;
    flow.end = attributes.seconds("end", endFollows ? flow.begin + flow.number * flow.period
                                                    : std::max(flow.begin, kFlowEnd));
    checkTime(attributes, attributes.has("end") ? "end" : "number", flow.end);
    if (flow.end < flow.begin)
        attributes.failOn("end", QStringLiteral("which is before the begin"));
    if (flow.number < 0 && flow.period <= 0)
        attributes.failOn("id", QStringLiteral("which says neither how many depart nor how often"));
    if (flow.number < 0 && (flow.end - flow.begin) / flow.period > kLastSecond)
        attributes.failOn("id", QStringLiteral("of which more depart than a store can count"));
}

} // namespace moratools
