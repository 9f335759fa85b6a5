#include "tools/sumo/import/TransitPlan.h"

#include "tools/sumo/import/Departures.h"
#include "tools/sumo/import/References.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

class LinePlanner {
public:
    LinePlanner(SumoCompanions &companions, LeftOut &leftOut) : mCompanions(companions), mLeftOut(leftOut) {
        for (std::size_t i = 0; i < companions.routes.size(); ++i) {
            const QString &id = companions.routes[i].id;
            if (!id.isEmpty() && !mRouteOf.contains(id))
                mRouteOf.insert(id, int(i));
        }
        for (const SumoBusStop &stop : companions.busStops)
            mEdgeOfStop.insert(stop.id, stop.lane.left(stop.lane.lastIndexOf(QLatin1Char('_'))));
    }

    std::vector<PlannedLine> plan();

private:
    /// The route of a vehicle that drives a single one, else -1.
    int routeOf(const SumoVehicle &vehicle) const {
        return vehicle.route >= 0 ? vehicle.route : mRouteOf.value(vehicle.routeId, -1);
    }
    /// The vehicle's stops at bus stops, those of its route first.
    std::vector<SumoStop> busStopsOf(const SumoVehicle &vehicle, int route) const;
    void add(const SumoVehicle &vehicle, int route, std::vector<SumoStop> stops);
    void removeStopsOffRoute(PlannedLine &line);
    bool takes(const SumoPassengers &waiting, int line) const;
    void addPassengers();
    static void nameApart(std::vector<PlannedLine> &lines);

    SumoCompanions &mCompanions;
    LeftOut &mLeftOut;
    QHash<QString, int> mRouteOf;
    QHash<QString, QString> mEdgeOfStop;
    std::vector<PlannedLine> mLines;
    QHash<QString, int> mLineOf;        ///< by name, edges and stops
    QHash<QString, int> mLineOfVehicle; ///< by id, a flow with a dot behind it
};

QString lineNameOf(const SumoVehicle &vehicle) {
    if (!vehicle.line.isEmpty())
        return vehicle.line;
    if (vehicle.isFlow)
        return vehicle.id;
    static const QRegularExpression runningNumber(QStringLiteral("[_.]\\d+\\z"));
    const int end = vehicle.id.indexOf(runningNumber);
    return end > 0 ? vehicle.id.left(end) : vehicle.id;
}

std::vector<SumoStop> LinePlanner::busStopsOf(const SumoVehicle &vehicle, int route) const {
    std::vector<SumoStop> stops;
    for (const auto *list : {&std::as_const(mCompanions).routes[std::size_t(route)].stops, &vehicle.stops}) {
        std::copy_if(list->begin(), list->end(), std::back_inserter(stops),
                     [](const SumoStop &stop) { return !stop.busStop.isEmpty(); });
    }
    return stops;
}

void LinePlanner::add(const SumoVehicle &vehicle, int route, std::vector<SumoStop> stops) {
    const QString name = lineNameOf(vehicle);
    QString key =
        name + QLatin1Char('\n') + mCompanions.routes[std::size_t(route)].edges.join(QLatin1Char(' '));
    for (const SumoStop &stop : stops)
        key += QLatin1Char('\n') + stop.busStop;
    const auto span = spanOfDepartures(vehicle);
    const auto known = mLineOf.constFind(key);
    mLineOfVehicle.insert(vehicle.isFlow ? vehicle.id + QLatin1Char('.') : vehicle.id,
                          known == mLineOf.constEnd() ? int(mLines.size()) : *known);
    if (known == mLineOf.constEnd()) {
        mLineOf.insert(key, int(mLines.size()));
        mLines.push_back({name, route, {}, departuresOf(vehicle), span.first, span.second});
        for (SumoStop &stop : stops)
            mLines.back().stops.push_back({std::move(stop), {}});
        removeStopsOffRoute(mLines.back());
        return;
    }
    PlannedLine &line = mLines[std::size_t(*known)];
    line.runs += departuresOf(vehicle);
    line.firstDeparture = std::min(line.firstDeparture, span.first);
    line.lastDeparture = std::max(line.lastDeparture, span.second);
}

void LinePlanner::removeStopsOffRoute(PlannedLine &line) {
    const QStringList &edges = mCompanions.routes[std::size_t(line.route)].edges;
    const auto isOff = [&](const PlannedStop &planned) {
        const SumoStop &stop = planned.stop;
        const QString edge = mEdgeOfStop.value(stop.busStop);
        if (edges.contains(edge))
            return false;
        const QString fault =
            QStringLiteral("line \"%1\" does not drive its edge \"%2\"").arg(line.name, edge);
        mLeftOut.add(QStringLiteral("stops"), named(mCompanions, stop.busStop, stop.source, fault),
                     stop.source, fault);
        return true;
    };
    line.stops.erase(std::remove_if(line.stops.begin(), line.stops.end(), isOff), line.stops.end());
}

/// Whether passengers take a line: it may be called by its name, by one of its vehicles, or not at all.
bool LinePlanner::takes(const SumoPassengers &waiting, int line) const {
    const auto isThis = [&](const QString &ride) {
        // What departs of flow "f" is called "f.0", "f.1" and so on.
        const int flow = mLineOfVehicle.value(ride.left(ride.lastIndexOf(QLatin1Char('.')) + 1), -1);
        return ride == mLines[std::size_t(line)].name || mLineOfVehicle.value(ride, flow) == line;
    };
    return (waiting.lines.isEmpty() && waiting.intended.isEmpty()) ||
           waiting.lines.contains(QStringLiteral("ANY")) || isThis(waiting.intended) ||
           std::any_of(waiting.lines.begin(), waiting.lines.end(), isThis);
}

void LinePlanner::addPassengers() {
    QHash<QString, std::vector<std::pair<int, std::size_t>>> stopsAt; // line and place in it, by bus stop
    for (std::size_t line = 0; line < mLines.size(); ++line) {
        for (std::size_t stop = 0; stop < mLines[line].stops.size(); ++stop)
            stopsAt[mLines[line].stops[stop].stop.busStop].emplace_back(int(line), stop);
    }
    for (const SumoPassengers &waiting : mCompanions.passengers) {
        const auto stops = stopsAt.value(waiting.busStop);
        const auto boarding = std::find_if(stops.begin(), stops.end(),
                                           [&](const auto &stop) { return takes(waiting, stop.first); });
        if (boarding != stops.end()) {
            mLines[std::size_t(boarding->first)].stops[boarding->second].arrivals.push_back(&waiting);
            continue;
        }
        // They may wait for a taxi, or for a vehicle that departs on an event: what they wait for need not be gone.
        mLeftOut.add(QStringLiteral("waiting passengers"),
                     named(mCompanions, waiting.id, waiting.source,
                           QStringLiteral("none of their lines stops at \"%1\"").arg(waiting.busStop)));
    }
}

void LinePlanner::nameApart(std::vector<PlannedLine> &lines) {
    QHash<QString, int> count;
    for (PlannedLine &line : lines) {
        const int number = ++count[line.name];
        if (number > 1)
            line.name += QStringLiteral(" (%1)").arg(number);
    }
}

std::vector<PlannedLine> LinePlanner::plan() {
    auto &vehicles = mCompanions.vehicles;
    const auto runsOnLine = [this](const SumoVehicle &vehicle) {
        const int route = routeOf(vehicle);
        if (route < 0 || departuresOf(vehicle) == 0)
            return false;
        std::vector<SumoStop> stops = busStopsOf(vehicle, route);
        if (vehicle.line.isEmpty() && stops.empty())
            return false;
        add(vehicle, route, std::move(stops));
        return true;
    };
    vehicles.erase(std::remove_if(vehicles.begin(), vehicles.end(), runsOnLine), vehicles.end());
    addPassengers();
    nameApart(mLines);
    return std::move(mLines);
}

} // namespace

std::vector<PlannedLine> planLines(SumoCompanions &companions, LeftOut &leftOut) {
    return LinePlanner(companions, leftOut).plan();
}

} // namespace moratools
