#include "tools/sumo/reader/DepartureTimes.h"
#include "tools/sumo/reader/ElementReaders.h"
#include "tools/sumo/reader/Programme.h"

namespace moratools {

namespace {

/// Seconds over which a detector adds up; "freq" is the older name. 0 where the file gives none.
double periodOf(const Attributes &attributes) {
    return attributes.has("period") ? attributes.seconds("period", 0) : attributes.seconds("freq", 0);
}

void readSignalProgramme(CompanionReading &reading) {
    reading.into.programmes.push_back(readProgramme(reading.input, reading.here().file));
}

void readLoop(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    reading.into.loops.push_back(
        {attributes.text("id"), attributes.text("lane"), attributes.number("pos", 0), periodOf(attributes),
         reading.input.name() == QLatin1String("instantInductionLoop"), reading.here()});
    reading.input.skipElement();
}

void readAreaDetector(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoAreaDetector detector;
    detector.source = reading.here();
    detector.id = attributes.text("id");
    detector.lanes = words(attributes, attributes.has("lanes") ? "lanes" : "lane");
    if (detector.lanes.isEmpty())
        attributes.failOn("id", QStringLiteral("which names no lane"));
    detector.pos = optionalNumber(attributes, "pos");
    detector.endPos = optionalNumber(attributes, "endPos");
    detector.length = optionalNumber(attributes, "length");
    detector.period = periodOf(attributes);
    detector.jamDistance = optionalNumber(attributes, "jamThreshold");
    detector.speedThreshold = optionalNumber(attributes, "speedThreshold");
    reading.into.areaDetectors.push_back(detector);
    reading.input.skipElement();
}

void readPassageDetector(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoPassageDetector detector;
    detector.source = reading.here();
    detector.id = attributes.text("id");
    detector.period = periodOf(attributes);
    while (reading.input.nextElement()) {
        const Attributes section(reading.input);
        const bool isEntry = reading.input.name() == QLatin1String("detEntry");
        if (isEntry || reading.input.name() == QLatin1String("detExit"))
            (isEntry ? detector.entries : detector.exits)
                .push_back({section.text("lane"), section.number("pos", 0)});
        reading.input.skipElement();
    }
    reading.into.passageDetectors.push_back(std::move(detector));
}

void readBusStop(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    reading.into.busStops.push_back({attributes.text("id"), attributes.text("lane"),
                                     optionalNumber(attributes, "startPos"),
                                     optionalNumber(attributes, "endPos"), reading.here()});
    reading.input.skipElement();
}

void readSpeedSign(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoSpeedSign sign;
    sign.source = reading.here();
    sign.id = attributes.text("id");
    sign.lanes = words(attributes, "lanes");
    sign.vehicleTypes = words(attributes, "vTypes");
    while (reading.input.nextElement()) {
        if (reading.input.name() == QLatin1String("step")) {
            const Attributes step(reading.input);
            sign.steps.push_back({timeOf(step, "time"), step.number("speed", -1)});
        }
        reading.input.skipElement();
    }
    reading.into.speedSigns.push_back(std::move(sign));
}

/// Of a rerouter only what it closes has a place in a store.
void readRerouter(CompanionReading &reading) {
    const QString id = Attributes(reading.input).text("id");
    while (reading.input.nextElement()) {
        if (reading.input.name() != QLatin1String("interval")) {
            reading.input.skipElement();
            continue;
        }
        while (reading.input.nextElement()) {
            const bool edge = reading.input.name() == QLatin1String("closingReroute");
            if (edge || reading.input.name() == QLatin1String("closingLaneReroute")) {
                const QString closed = Attributes(reading.input).text("id");
                reading.into.closures.push_back(
                    {id, edge ? closed : QString(), edge ? QString() : closed, reading.here()});
                reading.input.skipElement();
            } else {
                reading.input.skipElement();
            }
        }
    }
}

} // namespace

ElementReader deviceReader(const QStringRef &element) {
    static const QHash<QString, ElementReader> readers{
        {QStringLiteral("tlLogic"), readSignalProgramme},
        {QStringLiteral("e1Detector"), readLoop},
        {QStringLiteral("inductionLoop"), readLoop},
        {QStringLiteral("instantInductionLoop"), readLoop},
        {QStringLiteral("e2Detector"), readAreaDetector},
        {QStringLiteral("laneAreaDetector"), readAreaDetector},
        {QStringLiteral("e3Detector"), readPassageDetector},
        {QStringLiteral("entryExitDetector"), readPassageDetector},
        {QStringLiteral("busStop"), readBusStop},
        {QStringLiteral("trainStop"), readBusStop},
        {QStringLiteral("variableSpeedSign"), readSpeedSign},
        {QStringLiteral("rerouter"), readRerouter},
    };
    return readers.value(element.toString(), nullptr);
}

} // namespace moratools
