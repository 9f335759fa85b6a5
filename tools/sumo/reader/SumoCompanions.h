#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/sumo/kept/KeptList.h"
#include "tools/sumo/reader/SumoNet.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <limits>
#include <optional>
#include <vector>

namespace moratools {

/// What belongs to a SUMO network and comes in files of its own: demand (.rou.xml) and additional objects
/// (.add.xml) as plain records in the files' order. Either kind of file may hold either kind of object, and a
/// reference may lead to another file. Lengths are metres, speeds metres per second, times seconds.

struct SumoVehicleType {
    QString id;
    QString vClass;
    std::optional<double> length;
    std::optional<double> width;
    std::optional<double> maxSpeed;
    std::optional<double> desiredMaxSpeed;
    std::optional<double> speedFactor; ///< of the limit; of a random one its mean
    std::optional<double> speedDev;    ///< relative to the speed limit
    std::optional<double> accel;
    std::optional<double> decel;
    std::optional<double> emergencyDecel;
    double probability = 1; ///< its share where a distribution names it without one
    SumoSource source;
};

/// One of several things to choose from.
struct SumoChoice {
    QString id;
    double probability = 1;
    bool hasOwnShare = true; ///< false: the probability is the one that the vehicle type says of itself
};

/// A choice of vehicle types or of routes.
struct SumoDistribution {
    QString id;
    std::vector<SumoChoice> members;
    SumoSource source;
};

/// A stop at a bus stop or train stop, or on a lane.
struct SumoStop {
    QString busStop; ///< empty for a stop on a lane
    QString lane;
    double startPos = 0;
    double endPos = 0;
    double duration = 0;
    SumoSource source;
};

struct SumoRoute {
    QString id; ///< empty when it is part of a vehicle
    QStringList edges;
    std::vector<SumoStop> stops;
    SumoSource source;
};

/// A vehicle or a trip (one departure) or a flow (several).
struct MORATOOLS_EXPORT SumoVehicle {
    QString id;
    QString type; ///< vehicle type or distribution
    QString line; ///< of public transport; empty for other traffic
    QString routeId;
    int route = -1; ///< place in `SumoCompanions::routes` when the route is part of the vehicle
    QString from;   ///< first and last edge where there is no route
    QString to;
    QStringList via; ///< edges on the way
    std::vector<SumoStop> stops;
    SumoSource source;

    bool isFlow = false;
    bool onEvent = false; ///< departs when something happens, not at a time
    /// Starts or ends at a junction or in a zone: SUMO looks for the edge.
    bool isAtArea = false;
    double depart = 0; ///< of a vehicle
    double begin = 0;  ///< of a flow, as the rest
    double end = 0;
    double period = 0; ///< seconds between two departures; 0 for an even spread
    int number = -1;   ///< vehicles; -1 when period and end limit them

    bool hasRoute() const { return route >= 0 || !routeId.isEmpty(); }
};

/// The share of the traffic from one edge that goes on to another.
struct SumoTurnRatio {
    double begin = 0;
    double end = 0;
    QString from;
    QString to;
    double ratio = 0;
    SumoSource source;
};

/// A loop on a lane (E1).
struct SumoLoop {
    QString id;
    QString lane;
    double pos = 0;
    double period = 0;
    bool isInstant = false; ///< tells each vehicle by itself
    SumoSource source;
};

/// A detector that covers a stretch of one lane or of several in a row (E2).
struct SumoAreaDetector {
    QString id;
    QStringList lanes;
    std::optional<double> pos;
    std::optional<double> endPos;
    std::optional<double> length;
    double period = 0;
    std::optional<double> jamDistance;
    std::optional<double> speedThreshold;
    SumoSource source;
};

struct SumoCrossSection {
    QString lane;
    double pos = 0;
};

/// A detector between cross-sections where vehicles enter and leave (E3).
struct SumoPassageDetector {
    QString id;
    std::vector<SumoCrossSection> entries;
    std::vector<SumoCrossSection> exits;
    double period = 0;
    SumoSource source;
};

struct SumoBusStop {
    QString id;
    QString lane;
    std::optional<double> startPos;
    std::optional<double> endPos;
    SumoSource source;
};

struct SumoSpeedStep {
    double time = 0;
    double speed = -1; ///< negative: the road's own limit
};

struct SumoSpeedSign {
    QString id;
    QStringList lanes;
    QStringList vehicleTypes; ///< empty: all
    std::vector<SumoSpeedStep> steps;
    SumoSource source;
};

/// An edge or a lane that a rerouter closes.
struct SumoClosure {
    QString id; ///< of the rerouter
    QString edge;
    QString lane; ///< either of the two is set
    SumoSource source;
};

/// Persons who wait at a bus stop for a ride.
struct SumoPassengers {
    QString id;
    QString busStop;
    QStringList lines;    ///< any of which they take
    QString intended;     ///< the vehicle that they mean to take
    bool onEvent = false; ///< they set out when something happens, not at a time
    double begin = 0;
    double end = 0;
    int count = 1;
    SumoSource source;
};

/// A companion file as it stood.
struct SumoFile {
    QString name;                ///< without its folder and ".gz", and like that of no file before it
    bool hasRoutes = false;      ///< it was given as a file of routes, not of additional objects
    KeptList elements;           ///< those below the root
    std::vector<qint64> numbers; ///< of each of them (XmlInput::elementNumber())
    QSet<QString> kinds;         ///< their names
};

/// A further file that one names as a part of it.
struct SumoInclude {
    QString id; ///< its path, as written
    SumoSource source;
};

struct SumoCompanions {
    QStringList files;
    std::vector<SumoInclude> includes;
    std::vector<SumoFile> kept; ///< in the order of `files`
    std::vector<SumoSource>
        withoutRecord; ///< elements of kinds that have one, of which nothing but the text is kept

    std::vector<SumoVehicleType> vehicleTypes;
    std::vector<SumoDistribution> typeDistributions;
    std::vector<SumoRoute> routes;
    std::vector<SumoDistribution> routeDistributions;
    std::vector<SumoVehicle> vehicles;
    std::vector<SumoTurnRatio> turnRatios;
    std::vector<SumoPassengers> passengers;

    std::vector<SumoProgramme> programmes;
    std::vector<SumoLoop> loops;
    std::vector<SumoAreaDetector> areaDetectors;
    std::vector<SumoPassageDetector> passageDetectors;
    std::vector<SumoBusStop> busStops;
    std::vector<SumoSpeedSign> speedSigns;
    std::vector<SumoClosure> closures;
};

} // namespace moratools
