#include "tools/sumo/reader/DepartureTimes.h"
#include "tools/sumo/reader/ElementReaders.h"

#include <cmath>

namespace moratools {

namespace {

// What SUMO assumes where an interval does not say when it ends: a day.
constexpr double kIntervalEnd = 86400;

/// The id of a distribution's member that has none of its own.
QString nestedId(const QString &outer, std::size_t place) {
    return QStringLiteral("%1#%2").arg(outer, QString::number(place));
}

QStringList edgesOf(const Attributes &attributes) {
    return words(attributes, "edges");
}

double probabilityOf(const Attributes &attributes) {
    const double probability = attributes.number("probability", 1);
    if (probability < 0)
        attributes.failOn("probability", QStringLiteral("which is negative"));
    return probability;
}

/// "1.2", or a distribution whose first parameter is the mean: "norm(1.2,0.1)", "normc(1.2,0.1,0.2,2)". Nothing
/// for another text.
std::optional<double> speedFactorOf(const Attributes &attributes) {
    const QString text = attributes.text("speedFactor", QString());
    bool ok = false;
    const QString mean = text.section(QLatin1Char('('), -1).section(QLatin1Char(','), 0, 0);
    const double factor = mean.toDouble(&ok);
    return ok && factor > 0 ? std::optional<double>(factor) : std::nullopt;
}

void addType(CompanionReading &reading, const Attributes &attributes, const QString &id) {
    SumoVehicleType type;
    type.source = reading.here();
    type.id = id;
    type.vClass = attributes.text("vClass", QStringLiteral("passenger"));
    type.length = optionalNumber(attributes, "length");
    type.width = optionalNumber(attributes, "width");
    type.maxSpeed = optionalNumber(attributes, "maxSpeed");
    type.desiredMaxSpeed = optionalNumber(attributes, "desiredMaxSpeed");
    type.speedFactor = speedFactorOf(attributes);
    type.speedDev = optionalNumber(attributes, "speedDev");
    type.accel = optionalNumber(attributes, "accel");
    type.decel = optionalNumber(attributes, "decel");
    type.emergencyDecel = optionalNumber(attributes, "emergencyDecel");
    type.probability = probabilityOf(attributes);
    reading.into.vehicleTypes.push_back(type);
    reading.input.skipElement();
}

void readType(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    addType(reading, attributes, attributes.text("id"));
}

/// The members that a distribution names in two lists, of ids and of probabilities.
std::vector<SumoChoice> listedMembers(const Attributes &attributes, const char *ids) {
    const QStringList names = words(attributes, ids);
    const QStringList probabilities = words(attributes, "probabilities");
    if (!probabilities.isEmpty() && probabilities.size() != names.size())
        attributes.failOn("probabilities", QStringLiteral("which is not one for each member"));
    std::vector<SumoChoice> members;
    for (int i = 0; i < names.size(); ++i) {
        bool ok = true;
        const bool isGiven = !probabilities.isEmpty();
        const double probability = isGiven ? probabilities[i].toDouble(&ok) : 1;
        if (!ok || !std::isfinite(probability) || probability < 0)
            attributes.failOn("probabilities",
                              QStringLiteral("where \"%1\" is no share").arg(probabilities[i]));
        members.push_back({names[i], probability, isGiven});
    }
    return members;
}

void readTypeDistribution(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoDistribution distribution{attributes.text("id"), listedMembers(attributes, "vTypes"), reading.here()};
    while (reading.input.nextElement()) {
        if (reading.input.name() != QLatin1String("vType")) {
            reading.input.skipElement();
            continue;
        }
        const Attributes type(reading.input);
        const QString id = type.text("id", nestedId(distribution.id, distribution.members.size()));
        distribution.members.push_back({id, probabilityOf(type), true});
        addType(reading, type, id);
    }
    reading.into.typeDistributions.push_back(std::move(distribution));
}

SumoStop readStop(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoStop stop;
    stop.source = reading.here();
    stop.busStop = attributes.text("busStop", attributes.text("trainStop", QString()));
    stop.lane = attributes.text("lane", QString());
    stop.endPos = attributes.number("endPos", -1);
    stop.startPos = attributes.number("startPos", stop.endPos);
    stop.duration = durationOf(attributes, "duration");
    reading.input.skipElement();
    return stop;
}

/// Reads the children of a route, a vehicle or a flow.
void readStops(CompanionReading &reading, std::vector<SumoStop> &stops) {
    while (reading.input.nextElement()) {
        if (reading.input.name() == QLatin1String("stop"))
            stops.push_back(readStop(reading));
        else
            reading.input.skipElement();
    }
}

void addRoute(CompanionReading &reading, const Attributes &attributes, const QString &id) {
    SumoRoute route{id, edgesOf(attributes), {}, reading.here()};
    readStops(reading, route.stops);
    reading.into.routes.push_back(std::move(route));
}

void readRoute(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    addRoute(reading, attributes, attributes.text("id"));
}

/// The route that is part of a vehicle. Many vehicles drive the same one: it is kept once.
int readInlineRoute(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    const QString edges = attributes.text("edges");
    const auto known = reading.inlineRoutes.constFind(edges);
    const int next = int(reading.into.routes.size());
    addRoute(reading, attributes, QString());
    if (!reading.into.routes.back().stops.empty())
        return next;
    if (known == reading.inlineRoutes.constEnd()) {
        reading.inlineRoutes.insert(edges, next);
        return next;
    }
    reading.into.routes.pop_back();
    return *known;
}

/// A distribution that is part of a vehicle belongs to it alone; its id is made up.
void addRouteDistribution(CompanionReading &reading, const Attributes &attributes, const QString &id) {
    SumoDistribution distribution{id, listedMembers(attributes, "routes"), reading.here()};
    while (reading.input.nextElement()) {
        if (reading.input.name() != QLatin1String("route")) {
            reading.input.skipElement();
            continue;
        }
        const Attributes route(reading.input);
        // A member without edges names a route that stands elsewhere.
        if (route.has("refId")) {
            distribution.members.push_back({route.text("refId"), probabilityOf(route), true});
            reading.input.skipElement();
            continue;
        }
        const QString routeId = route.text("id", nestedId(id, distribution.members.size()));
        distribution.members.push_back({routeId, probabilityOf(route), true});
        addRoute(reading, route, routeId);
    }
    reading.into.routeDistributions.push_back(std::move(distribution));
}

void readRouteDistribution(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    addRouteDistribution(reading, attributes, attributes.text("id"));
}

void readVehicleChildren(CompanionReading &reading, SumoVehicle &vehicle) {
    while (reading.input.nextElement()) {
        if (reading.input.name() == QLatin1String("stop")) {
            vehicle.stops.push_back(readStop(reading));
        } else if (reading.input.name() == QLatin1String("route")) {
            vehicle.route = readInlineRoute(reading);
        } else if (reading.input.name() == QLatin1String("routeDistribution")) {
            vehicle.routeId = QStringLiteral("vehicle ") + vehicle.id;
            addRouteDistribution(reading, Attributes(reading.input), vehicle.routeId);
        } else {
            reading.input.skipElement();
        }
    }
}

SumoVehicle readHead(const CompanionReading &reading, const Attributes &attributes) {
    SumoVehicle vehicle;
    vehicle.source = reading.here();
    vehicle.id = attributes.text("id");
    vehicle.type = attributes.text("type", QString());
    vehicle.line = attributes.text("line", QString());
    vehicle.routeId = attributes.text("route", QString());
    vehicle.from = attributes.text("from", QString());
    vehicle.to = attributes.text("to", QString());
    vehicle.via = words(attributes, "via");
    for (const char *area : {"fromTaz", "fromJunction", "fromTAZ"})
        vehicle.isAtArea = vehicle.isAtArea || attributes.has(area);
    return vehicle;
}

/// Vehicles and trips, which are vehicles without a route.
void readVehicle(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoVehicle vehicle = readHead(reading, attributes);
    vehicle.onEvent = departsOnEvent(attributes.text("depart"));
    if (!vehicle.onEvent)
        vehicle.depart = timeOf(attributes, "depart");
    readVehicleChildren(reading, vehicle);
    reading.into.vehicles.push_back(std::move(vehicle));
}

void readFlow(CompanionReading &reading) {
    const Attributes attributes(reading.input);
    SumoVehicle flow = readHead(reading, attributes);
    readFlowTimes(attributes, flow);
    readVehicleChildren(reading, flow);
    reading.into.vehicles.push_back(std::move(flow));
}

/// Turn ratios, in the form of relations between edges or in the older one of elements in each other. An
/// interval with other contents is none of this kind.
void readInterval(CompanionReading &reading) {
    const Attributes interval(reading.input);
    SumoTurnRatio ratio;
    ratio.begin = timeOf(interval, "begin");
    ratio.end = interval.has("end") ? timeOf(interval, "end") : std::max(ratio.begin, kIntervalEnd);
    if (ratio.end < ratio.begin)
        interval.failOn("end", QStringLiteral("which is before the begin"));
    const auto add = [&](const Attributes &attributes) {
        ratio.source = reading.here();
        for (const char *name : {"ratio", "probability", "count"}) {
            if (attributes.has(name)) {
                ratio.ratio = attributes.number(name);
                if (ratio.ratio < 0)
                    attributes.failOn(name, QStringLiteral("which is negative"));
                reading.into.turnRatios.push_back(ratio);
                return;
            }
        }
        attributes.failOn("to", QStringLiteral("without a ratio, a probability or a count"));
    };
    while (reading.input.nextElement()) {
        const Attributes outer(reading.input);
        if (reading.input.name() == QLatin1String("edgeRelation")) {
            ratio.from = outer.text("from");
            ratio.to = outer.text("to");
            add(outer);
            reading.input.skipElement();
        } else if (reading.input.name() == QLatin1String("fromEdge")) {
            ratio.from = outer.text("id");
            while (reading.input.nextElement()) {
                if (reading.input.name() == QLatin1String("toEdge")) {
                    const Attributes inner(reading.input);
                    ratio.to = inner.text("id");
                    add(inner);
                }
                reading.input.skipElement();
            }
        } else {
            reading.input.skipElement();
        }
    }
}

} // namespace

ElementReader demandReader(const QStringRef &element) {
    static const QHash<QString, ElementReader> readers{
        {QStringLiteral("vType"), readType},
        {QStringLiteral("vTypeDistribution"), readTypeDistribution},
        {QStringLiteral("route"), readRoute},
        {QStringLiteral("routeDistribution"), readRouteDistribution},
        {QStringLiteral("vehicle"), readVehicle},
        {QStringLiteral("trip"), readVehicle},
        {QStringLiteral("flow"), readFlow},
        {QStringLiteral("person"), readPersons},
        {QStringLiteral("personFlow"), readPersons},
        {QStringLiteral("interval"), readInterval},
    };
    return readers.value(element.toString(), nullptr);
}

} // namespace moratools
