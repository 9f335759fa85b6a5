#include "tools/sumo/import/References.h"

#include "tools/sumo/import/Departures.h"
#include "tools/sumo/import/RoadReferences.h"
#include "tools/sumo/import/VehicleIds.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace moratools {

namespace {

/// The vehicle types that SUMO knows by itself ("Definition of Vehicles, Vehicle Types, and Routes" in its
/// documentation) and their classes.
const QHash<QString, QString> &ownTypes() {
    static const QHash<QString, QString> types{
        {QStringLiteral("DEFAULT_VEHTYPE"), QStringLiteral("passenger")},
        {QStringLiteral("DEFAULT_BIKETYPE"), QStringLiteral("bicycle")},
        {QStringLiteral("DEFAULT_TAXITYPE"), QStringLiteral("taxi")},
        {QStringLiteral("DEFAULT_RAILTYPE"), QStringLiteral("rail")},
    };
    return types;
}

/// Tells of a vehicle that does not depart. One that is `kept` leads nowhere astray: only the departures lack it.
void tell(const SumoVehicle &vehicle, const QString &why, bool isKept, const SumoCompanions &companions,
          LeftOut &leftOut) {
    const int count = departuresOf(vehicle);
    leftOut.vehicles += count;
    const QString kind = vehicle.isFlow ? QStringLiteral("flows") : QStringLiteral("vehicles");
    QString reason = why;
    if (vehicle.isFlow)
        reason += QStringLiteral("; %1 vehicles").arg(count);
    const QString what = named(companions, vehicle.id, vehicle.source, reason);
    if (isKept)
        leftOut.addKept(kind, what, vehicle.source);
    else
        leftOut.add(kind, what, vehicle.source, why);
}

class Resolver {
public:
    Resolver(SumoCompanions &companions, const SumoNet &net, LeftOut &leftOut)
        : mCompanions(companions), mRoads(net), mLeftOut(leftOut) {}

    void tellIncludes();
    void resolveTypes();
    void resolveBusStops();
    void resolveRoutes();
    void resolveVehicles();
    void resolveTurnRatios();
    void resolveDevices();

private:
    /// Removes the records for which `faultOf` gives a reason.
    template <class Record, class FaultOf>
    void filter(const char *kind, std::vector<Record> &records, const FaultOf &faultOf);
    template <class Record>
    QString faultOfId(const Record &record, QSet<QString> &seen);
    template <class Known>
    QString faultOfMembers(SumoDistribution &distribution, const char *kind, const Known &known);
    QString faultOfType(const QString &type);
    QString faultOfRoute(const SumoVehicle &vehicle) const;
    QString faultOf(const SumoVehicle &vehicle, VehicleIds &ids);
    void resolvePassengers();
    void removeUnknownStops(std::vector<SumoStop> &stops);

    SumoCompanions &mCompanions;
    const RoadReferences mRoads;
    LeftOut &mLeftOut;
    QSet<QString> mTypes; ///< with the distributions
    QSet<QString> mBusStops;
    QHash<QString, QString> mRouteFaults; ///< by id, distributions included; empty for a good one
    std::vector<QString> mFaultOfRoute;   ///< by place
};

template <class Record, class FaultOf>
void Resolver::filter(const char *kind, std::vector<Record> &records, const FaultOf &faultOf) {
    const auto isFaulty = [&](Record &record) {
        const QString fault = faultOf(record);
        if (!fault.isEmpty())
            mLeftOut.add(QLatin1String(kind), named(mCompanions, record.id, record.source, fault),
                         record.source, fault);
        return !fault.isEmpty();
    };
    records.erase(std::remove_if(records.begin(), records.end(), isFaulty), records.end());
}

template <class Record>
QString Resolver::faultOfId(const Record &record, QSet<QString> &seen) {
    if (seen.contains(record.id))
        return QStringLiteral("it occurs a second time");
    seen.insert(record.id);
    return {};
}

template <class Known>
QString Resolver::faultOfMembers(SumoDistribution &distribution, const char *kind, const Known &known) {
    auto &members = distribution.members;
    QString fault = QStringLiteral("it has no member");
    const auto isUnknown = [&](const SumoChoice &member) {
        if (known(member.id))
            return false;
        fault = unknown(kind, member.id);
        mLeftOut.add(QStringLiteral("members of distributions"),
                     named(mCompanions, distribution.id, distribution.source, fault));
        return true;
    };
    members.erase(std::remove_if(members.begin(), members.end(), isUnknown), members.end());
    double sum = 0;
    for (const SumoChoice &member : members)
        sum += member.probability;
    if (!members.empty() && sum > 0)
        return {};
    return members.empty() ? fault : QStringLiteral("all its probabilities are zero");
}

/// No file has others read: who gives files to an import says which.
void Resolver::tellIncludes() {
    filter("included files", mCompanions.includes, [](const SumoInclude &) {
        return QStringLiteral("give it by itself, as --routes or --additional");
    });
}

void Resolver::resolveTypes() {
    filter("vehicle types", mCompanions.vehicleTypes,
           [this](const SumoVehicleType &type) { return faultOfId(type, mTypes); });
    const QSet<QString> single = mTypes;
    QHash<QString, double> shareOf;
    for (const SumoVehicleType &type : mCompanions.vehicleTypes)
        shareOf.insert(type.id, type.probability);
    for (SumoDistribution &distribution : mCompanions.typeDistributions) {
        for (SumoChoice &member : distribution.members) {
            if (!member.hasOwnShare)
                member.probability = shareOf.value(member.id, member.probability);
        }
    }
    filter("vehicle type distributions", mCompanions.typeDistributions,
           [this, &single](SumoDistribution &distribution) {
               const QString fault = faultOfId(distribution, mTypes);
               return !fault.isEmpty() ? fault
                                       : faultOfMembers(distribution, "vehicle type", [&](const QString &id) {
                                             return single.contains(id);
                                         });
           });
}

void Resolver::resolveBusStops() {
    filter("bus stops", mCompanions.busStops, [this](const SumoBusStop &stop) {
        const QString fault = mRoads.faultOfLanes({stop.lane});
        return fault.isEmpty() ? faultOfId(stop, mBusStops) : fault;
    });
    resolvePassengers();
}

void Resolver::resolvePassengers() {
    auto &all = mCompanions.passengers;
    const auto setOutOnEvent = [this](const SumoPassengers &passengers) {
        if (passengers.onEvent)
            mLeftOut.addKept(QStringLiteral("waiting passengers"),
                             named(mCompanions, passengers.id, passengers.source,
                                   QStringLiteral("they set out on an event, not at a time")),
                             passengers.source);
        return passengers.onEvent;
    };
    all.erase(std::remove_if(all.begin(), all.end(), setOutOnEvent), all.end());
    QSet<QString> ids;
    filter("waiting passengers", all, [&](const SumoPassengers &passengers) {
        return mBusStops.contains(passengers.busStop) ? faultOfId(passengers, ids)
                                                      : unknown("bus stop", passengers.busStop);
    });
}

void Resolver::removeUnknownStops(std::vector<SumoStop> &stops) {
    const auto isUnknown = [this](const SumoStop &stop) {
        const bool isOnLane = stop.busStop.isEmpty();
        const QString place = isOnLane ? stop.lane : stop.busStop;
        if (place.isEmpty() || (isOnLane ? mRoads.hasLane(place) : mBusStops.contains(place)))
            return false;
        const QString fault = unknown(isOnLane ? "lane" : "bus stop", place);
        mLeftOut.add(QStringLiteral("stops"), named(mCompanions, place, stop.source, fault), stop.source,
                     fault);
        return true;
    };
    stops.erase(std::remove_if(stops.begin(), stops.end(), isUnknown), stops.end());
}

void Resolver::resolveRoutes() {
    QSet<QString> seen;
    for (SumoRoute &route : mCompanions.routes) {
        QString fault = mRoads.faultOfPath(route.edges);
        if (!route.id.isEmpty()) {
            if (seen.contains(route.id))
                fault = QStringLiteral("it occurs a second time");
            else
                mRouteFaults.insert(route.id, fault);
            seen.insert(route.id);
            if (!fault.isEmpty())
                mLeftOut.add(QStringLiteral("routes"), named(mCompanions, route.id, route.source, fault),
                             route.source, fault);
        }
        mFaultOfRoute.push_back(fault);
        removeUnknownStops(route.stops);
        if (!fault.isEmpty())
            route.edges.clear();
    }
    filter("route distributions", mCompanions.routeDistributions, [&](SumoDistribution &distribution) {
        QString fault = faultOfId(distribution, seen);
        if (!fault.isEmpty())
            return fault;
        fault = faultOfMembers(distribution, "route", [this](const QString &id) {
            const auto known = mRouteFaults.constFind(id);
            return known != mRouteFaults.constEnd() && known->isEmpty();
        });
        mRouteFaults.insert(distribution.id, fault);
        return fault;
    });
}

QString Resolver::faultOfType(const QString &type) {
    const QString id = type.isEmpty() ? QStringLiteral("DEFAULT_VEHTYPE") : type;
    if (mTypes.contains(id))
        return {};
    const auto own = ownTypes().constFind(id);
    if (own == ownTypes().constEnd())
        return unknown("vehicle type", id);
    SumoVehicleType added;
    added.id = id;
    added.vClass = *own;
    mCompanions.vehicleTypes.push_back(added);
    mTypes.insert(id);
    return {};
}

QString Resolver::faultOfRoute(const SumoVehicle &vehicle) const {
    if (vehicle.route >= 0)
        return mFaultOfRoute[std::size_t(vehicle.route)];
    if (!vehicle.routeId.isEmpty()) {
        const auto known = mRouteFaults.constFind(vehicle.routeId);
        if (known == mRouteFaults.constEnd())
            return unknown("route", vehicle.routeId);
        return known->isEmpty() ? QString() : QStringLiteral("route \"%1\": %2").arg(vehicle.routeId, *known);
    }
    if (vehicle.from.isEmpty())
        return QStringLiteral("it has neither a route nor a first edge");
    QStringList edges = QStringList{vehicle.from} + vehicle.via;
    if (!vehicle.to.isEmpty())
        edges.append(vehicle.to);
    return mRoads.faultOfEdges(edges);
}

QString Resolver::faultOf(const SumoVehicle &vehicle, VehicleIds &ids) {
    QString fault = faultOfRoute(vehicle);
    if (fault.isEmpty())
        fault = faultOfType(vehicle.type);
    return fault.isEmpty() ? ids.faultOf(vehicle) : fault;
}

void Resolver::resolveVehicles() {
    auto &vehicles = mCompanions.vehicles;
    VehicleIds ids(vehicles);
    const auto doesNotDepart = [&](SumoVehicle &vehicle) {
        const bool isAtArea = vehicle.isAtArea && !vehicle.hasRoute() && vehicle.from.isEmpty();
        const QString fault = isAtArea ? QString() : faultOf(vehicle, ids);
        if (!fault.isEmpty())
            tell(vehicle, fault, false, mCompanions, mLeftOut);
        else if (vehicle.onEvent)
            tell(vehicle, QStringLiteral("it departs on an event, not at a time"), true, mCompanions,
                 mLeftOut);
        else if (isAtArea)
            tell(vehicle, QStringLiteral("it starts at a junction or in a zone, not on an edge"), true,
                 mCompanions, mLeftOut);
        else
            removeUnknownStops(vehicle.stops);
        return !fault.isEmpty() || vehicle.onEvent || isAtArea;
    };
    vehicles.erase(std::remove_if(vehicles.begin(), vehicles.end(), doesNotDepart), vehicles.end());
}

void Resolver::resolveTurnRatios() {
    auto &ratios = mCompanions.turnRatios;
    const auto isFaulty = [&](const SumoTurnRatio &ratio) {
        const QString fault = mRoads.faultOfPath({ratio.from, ratio.to});
        if (!fault.isEmpty())
            mLeftOut.add(
                QStringLiteral("turn ratios"),
                named(mCompanions, QStringLiteral("%1->%2").arg(ratio.from, ratio.to), ratio.source, fault),
                ratio.source, fault);
        return !fault.isEmpty();
    };
    ratios.erase(std::remove_if(ratios.begin(), ratios.end(), isFaulty), ratios.end());
}

void Resolver::resolveDevices() {
    // Each kind of detector has ids of its own.
    QSet<QString> loops;
    QSet<QString> instantLoops;
    filter("loops", mCompanions.loops, [&](const SumoLoop &loop) {
        const QString fault = mRoads.faultOfLanes({loop.lane});
        return fault.isEmpty() ? faultOfId(loop, loop.isInstant ? instantLoops : loops) : fault;
    });
    QSet<QString> areaDetectors;
    filter("area detectors", mCompanions.areaDetectors, [&](const SumoAreaDetector &detector) {
        const QString fault = mRoads.faultOfLanes(detector.lanes);
        return fault.isEmpty() ? faultOfId(detector, areaDetectors) : fault;
    });
    QSet<QString> passageDetectors;
    filter("entry-exit detectors", mCompanions.passageDetectors, [&](const SumoPassageDetector &detector) {
        if (detector.entries.empty() || detector.exits.empty())
            return QStringLiteral("it has no entry or no exit");
        QStringList lanes;
        for (const auto *sections : {&detector.entries, &detector.exits}) {
            for (const SumoCrossSection &section : *sections)
                lanes.append(section.lane);
        }
        const QString fault = mRoads.faultOfLanes(lanes);
        return fault.isEmpty() ? faultOfId(detector, passageDetectors) : fault;
    });
    filter("speed signs", mCompanions.speedSigns, [this](const SumoSpeedSign &sign) {
        if (sign.steps.empty())
            return QStringLiteral("it shows no speed");
        for (const QString &type : sign.vehicleTypes) {
            if (!mTypes.contains(type))
                return unknown("vehicle type", type);
        }
        return mRoads.faultOfLanes(sign.lanes);
    });
    filter("closures", mCompanions.closures, [this](const SumoClosure &closure) {
        return closure.lane.isEmpty() ? mRoads.faultOfEdges({closure.edge})
                                      : mRoads.faultOfLanes({closure.lane});
    });
}

} // namespace

void removeUnresolved(SumoCompanions &companions, const SumoNet &net, LeftOut &leftOut) {
    Resolver resolver(companions, net, leftOut);
    resolver.tellIncludes();
    resolver.resolveTypes();
    resolver.resolveBusStops();
    resolver.resolveRoutes();
    resolver.resolveVehicles();
    resolver.resolveTurnRatios();
    resolver.resolveDevices();
}

void removeUnserved(SumoCompanions &companions, const std::vector<UnservedTrip> &trips, LeftOut &leftOut) {
    std::vector<SumoVehicle> served;
    served.reserve(companions.vehicles.size());
    auto next = trips.begin();
    for (std::size_t i = 0; i < companions.vehicles.size(); ++i) {
        if (next != trips.end() && next->vehicle == i)
            tell(companions.vehicles[i], next++->reason, false, companions, leftOut);
        else
            served.push_back(std::move(companions.vehicles[i]));
    }
    companions.vehicles = std::move(served);
}

QString named(const SumoCompanions &companions, const QString &name, const SumoSource &source,
              const QString &reason) {
    return QStringLiteral("\"%1\" (%2, line %3: %4)")
        .arg(name, QFileInfo(companions.files.value(source.file)).fileName(), QString::number(source.line),
             reason);
}

} // namespace moratools
