#include "host/store/Kinds.h"

#include "host/store/OpenStore.h"
#include "model/Net.h"
#include "store/DBTools.h"

#include <algorithm>

namespace {

template <class T>
using Ids = bool (*)(QSqlDatabase &, long, QList<long> &);
template <class T>
using Read = T *(*)(QSqlDatabase &, long, long);

/// How a kind is listed and read.
template <class T>
struct KindReader {
    const char *kind = nullptr; ///< as `morastore info` calls it
    const char *word = nullptr;
    Before before = Before::Nothing;
    std::function<QList<long>(long)> ids;
    std::function<std::unique_ptr<T>(long, long)> read;
};

template <class T>
KindReader<T> make(const char *kind, const char *word, Before before, Ids<T> ids, Read<T> read) {
    return {kind, word, before,
            [ids, word](long netId) {
                QList<long> list;
                if (!ids(gDB, netId, list))
                    refuseReading(QStringLiteral("the list of the %1s of network \"%2\"")
                                      .arg(QLatin1String(word), gNet.netName()));
                return list;
            },
            [read](long netId, long id) { return std::unique_ptr<T>(read(gDB, netId, id)); }};
}

/// A kind that the library reads as a whole.
template <class T, class ReadList>
KindReader<T> makeOfList(const char *kind, const char *word, const ReadList &readList) {
    return {kind, word, Before::Nothing,
            [readList](long netId) {
                QList<long> ids;
                for (const T &object : readList(netId))
                    ids.append(describe(object).id);
                std::sort(ids.begin(), ids.end());
                return ids;
            },
            [readList](long netId, long id) -> std::unique_ptr<T> {
                for (const T &object : readList(netId)) {
                    if (describe(object).id == id)
                        return std::make_unique<T>(object);
                }
                return nullptr;
            }};
}

/// Takes a value that the library returns with another id where there is no such object.
template <class T>
std::unique_ptr<T> ifOfId(T object, long id) {
    std::unique_ptr<T> found;
    if (describe(object).id == id)
        found = std::make_unique<T>(std::move(object));
    return found;
}

QHash<long, VehicleComposition> compositionsOf(long netId) {
    QHash<long, VehicleComposition> compositions;
    DBTools::selectVehicleConstitutent(gDB, netId, compositions);
    return compositions;
}

template <class T>
KindReader<T> access();

template <>
KindReader<VehicleType> access() {
    return makeOfList<VehicleType>("vehicleTypes", "vehicle type", [](long netId) {
        QHash<long, VehicleType> types;
        DBTools::selectVehicleType(gDB, netId, types);
        return types.values();
    });
}

template <>
KindReader<VehicleComposition> access() {
    // Only the single read tells which composition is the default.
    return {"vehicleCompositions", "vehicle composition", Before::Nothing,
            [](long netId) {
                QList<long> codes = compositionsOf(netId).keys();
                std::sort(codes.begin(), codes.end());
                return codes;
            },
            [](long netId, long code) {
                return ifOfId(DBTools::selectVehicleComposition(gDB, netId, code), code);
            }};
}

template <>
KindReader<DeparturePoint> access() {
    KindReader<DeparturePoint> departurePoints = make<DeparturePoint>(
        "departurePoints", "departure point", Before::Nothing, DBTools::selectDeparturePointIds, nullptr);
    departurePoints.read = [](long netId, long id) {
        QHash<long, VehicleComposition> compositions = compositionsOf(netId);
        return std::unique_ptr<DeparturePoint>(DBTools::selectDeparturePoint(gDB, netId, compositions, id));
    };
    return departurePoints;
}

template <>
KindReader<DecisionPoint> access() {
    return make<DecisionPoint>("decisionPoints", "decision point", Before::Links,
                               DBTools::selectDecisionPointIDs, DBTools::selectDecisionPointByID);
}

template <>
KindReader<Routing> access() {
    KindReader<Routing> routes =
        make<Routing>("routes", "route", Before::Links, nullptr, DBTools::selectRoutingByID);
    routes.ids = [](long netId) {
        QList<long> points;
        QList<long> ids;
        DBTools::selectDecisionPointIDs(gDB, netId, points);
        for (const long point : qAsConst(points))
            DBTools::selectRoutingIDs(gDB, netId, point, ids);
        std::sort(ids.begin(), ids.end());
        return ids;
    };
    return routes;
}

template <>
KindReader<SignalGroup> access() {
    return make<SignalGroup>("signalGroups", "signal group", Before::Nothing, DBTools::selectSignalGroupIDs,
                             DBTools::selectSignalGroupByID);
}

template <>
KindReader<SignalLamp> access() {
    return make<SignalLamp>("signalLamps", "signal lamp", Before::SignalGroups, DBTools::selectSignalLampIDs,
                            DBTools::selectSignalLampByID);
}

template <>
KindReader<VehicleDetector> access() {
    return make<VehicleDetector>("vehicleDetectors", "vehicle detector", Before::Nothing,
                                 DBTools::selectVehicleDetectorIds, DBTools::selectVehicleDetector);
}

template <>
KindReader<VehicleQueueCounter> access() {
    KindReader<VehicleQueueCounter> counters =
        make<VehicleQueueCounter>("queueCounters", "queue counter", Before::Nothing,
                                  DBTools::selectVehicleQueueCounterIds, DBTools::selectVehicleQueueCounter);
    const auto read = counters.read;
    counters.read = [read](long netId, long id) {
        auto counter = read(netId, id);
        return counter->queueCounterID == id ? std::move(counter) : nullptr;
    };
    return counters;
}

template <>
KindReader<VehicleTravelDetector> access() {
    return make<VehicleTravelDetector>("travelTimeDetectors", "travel-time detector", Before::Nothing,
                                       DBTools::selectVehicleTravelDetectorIds,
                                       DBTools::selectVehicleTravelDetector);
}

template <>
KindReader<VehicleDrivInfoCollector> access() {
    KindReader<VehicleDrivInfoCollector> collectors =
        make<VehicleDrivInfoCollector>("drivingDataCollectors", "driving-data collector", Before::Nothing,
                                       DBTools::selectVehicleDrivInfoCollectorIds, nullptr);
    collectors.read = [](long netId, long id) {
        return ifOfId(DBTools::selectVehicleDrivInfoCollector(gDB, netId, id), id);
    };
    return collectors;
}

template <>
KindReader<BusStation> access() {
    return make<BusStation>("busStations", "bus station", Before::Links, DBTools::selectBusStationIds,
                            DBTools::selectBusStation);
}

template <>
KindReader<BusLine> access() {
    return make<BusLine>("busLines", "bus line", Before::Links, DBTools::selectBusLineIds,
                         DBTools::selectBusLine);
}

template <>
KindReader<ReduceSpeedArea> access() {
    return make<ReduceSpeedArea>("speedReductionAreas", "speed reduction area", Before::Nothing,
                                 DBTools::selectReduceSpeedAreaIds, DBTools::selectReduceSpeedArea);
}

template <>
KindReader<AccidentZone> access() {
    return make<AccidentZone>("accidentZones", "accident zone", Before::Nothing,
                              DBTools::selectAccidentZoneIds, DBTools::selectAccidentZone);
}

template <>
KindReader<RoadWorkZone> access() {
    return make<RoadWorkZone>("roadWorkZones", "road-work zone", Before::Nothing,
                              DBTools::selectRoadWorkZoneIds, DBTools::selectRoadWorkZone);
}

template <>
KindReader<Link> access() {
    return make<Link>("links", "link", Before::Nothing, DBTools::selectLinkIDs, DBTools::selectLinkByID);
}

template <>
KindReader<Connector> access() {
    return make<Connector>("connectors", "connector", Before::Links, DBTools::selectConnectorIDs,
                           DBTools::selectConnectorByID);
}

template <>
KindReader<GuideArrow> access() {
    return make<GuideArrow>("guideArrows", "guide arrow", Before::Nothing, DBTools::selectGuideArrowIDs,
                            DBTools::selectGuideArrowByID);
}

template <>
KindReader<LinkType> access() {
    return makeOfList<LinkType>("linkTypes", "link type", [](long netId) {
        QList<LinkType> types;
        DBTools::selectLinkType(gDB, netId, types);
        return types;
    });
}

template <>
KindReader<DriveFollowedModelParam> access() {
    return makeOfList<DriveFollowedModelParam>("carFollowingSets", "car-following set", [](long netId) {
        DriveFollowedModelParam first;
        DriveFollowedModelParam second;
        second.modelParamID = 2;
        DBTools::selectDriveFollowedModelParam(gDB, netId, first, second);
        return QList<DriveFollowedModelParam>{first, second};
    });
}

template <>
KindReader<ChangeLaneModelParam> access() {
    return makeOfList<ChangeLaneModelParam>("laneChangingSets", "lane-changing set", [](long netId) {
        QList<ChangeLaneModelParam> sets;
        DBTools::selectChangeLaneParam(gDB, netId, sets);
        return sets;
    });
}

template <>
KindReader<SimulateConfiguration> access() {
    return makeOfList<SimulateConfiguration>("simulationConfiguration", "configuration", [](long netId) {
        SimulateConfiguration configuration;
        DBTools::selectSimuConfiguration(gDB, netId, configuration);
        return QList<SimulateConfiguration>{configuration};
    });
}

template <>
KindReader<Configuration> access() {
    return makeOfList<Configuration>("sceneConfiguration", "configuration", [](long netId) {
        Configuration configuration;
        DBTools::selectConfiguration(gDB, netId, configuration);
        return QList<Configuration>{configuration};
    });
}

template <class T>
NamedKind named() {
    const KindReader<T> kind = access<T>();
    return {QLatin1String(kind.kind), kind.before, kind.ids,
            [read = kind.read](long netId, long id) -> std::optional<Description> {
                const std::unique_ptr<T> object = read(netId, id);
                return object ? std::optional<Description>(describe(*object)) : std::nullopt;
            }};
}

} // namespace

template <class T>
Objects<T> readAll(long netId, const std::function<void(double)> &progress) {
    const KindReader<T> kind = access<T>();
    Objects<T> objects;
    const QList<long> ids = kind.ids(netId);
    for (const long id : ids) {
        objects.push_back(kind.read(netId, id));
        if (!objects.back())
            refuseReading(QStringLiteral("%1 %2 of network \"%3\"")
                              .arg(QLatin1String(kind.word), QString::number(id), gNet.netName()));
        if (progress)
            progress(double(objects.size()) / ids.size());
    }
    return objects;
}

template <class T>
const char *kindWord() {
    return access<T>().word;
}

void readTraffic(long netId, TrafficObjects &into) {
    forEachKind([&](auto list) {
        using List = std::remove_reference_t<decltype(into.*list)>;
        into.*list = readAll<typename List::value_type::element_type>(netId);
    });
}

template Objects<Link> readAll(long netId, const std::function<void(double)> &progress);
template Objects<Connector> readAll(long netId, const std::function<void(double)> &progress);
template Objects<VehicleType> readAll(long netId, const std::function<void(double)> &progress);
template Objects<VehicleComposition> readAll(long netId, const std::function<void(double)> &progress);
template Objects<SignalGroup> readAll(long netId, const std::function<void(double)> &progress);

template const char *kindWord<VehicleType>();
template const char *kindWord<VehicleComposition>();
template const char *kindWord<DeparturePoint>();
template const char *kindWord<DecisionPoint>();
template const char *kindWord<SignalGroup>();
template const char *kindWord<SignalLamp>();
template const char *kindWord<VehicleDetector>();
template const char *kindWord<VehicleQueueCounter>();
template const char *kindWord<VehicleTravelDetector>();
template const char *kindWord<VehicleDrivInfoCollector>();
template const char *kindWord<BusStation>();
template const char *kindWord<BusLine>();
template const char *kindWord<ReduceSpeedArea>();
template const char *kindWord<AccidentZone>();
template const char *kindWord<RoadWorkZone>();

const std::vector<NamedKind> &namedKinds() {
    static const std::vector<NamedKind> kinds{
        named<VehicleType>(),
        named<VehicleComposition>(),
        named<LinkType>(),
        named<Link>(),
        named<Connector>(),
        named<GuideArrow>(),
        named<SignalGroup>(),
        named<SignalLamp>(),
        named<DeparturePoint>(),
        named<DecisionPoint>(),
        named<Routing>(),
        named<VehicleDetector>(),
        named<VehicleQueueCounter>(),
        named<VehicleTravelDetector>(),
        named<VehicleDrivInfoCollector>(),
        named<BusLine>(),
        named<BusStation>(),
        named<AccidentZone>(),
        named<RoadWorkZone>(),
        named<ReduceSpeedArea>(),
        named<DriveFollowedModelParam>(),
        named<ChangeLaneModelParam>(),
        named<SimulateConfiguration>(),
        named<Configuration>(),
    };
    return kinds;
}
