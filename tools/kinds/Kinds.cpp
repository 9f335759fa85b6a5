#include "tools/kinds/Kinds.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/core/StorableValue.h"
#include "tools/kinds/StoreInfo.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace moratools {

namespace {

template <class T>
using Ids = bool (*)(QSqlDatabase &, long, QList<long> &);
template <class T>
using Read = T *(*)(QSqlDatabase &, long, long);

/// Where the ids and names of a kind's objects stand.
struct NameColumns {
    const char *table;
    const char *id;
    const char *name; ///< an expression where there is no such column
};

/// How a kind is listed and read.
template <class T>
struct KindReader {
    const char *kind = nullptr; ///< as `morastore info` calls it
    const char *word = nullptr;
    Before before = Before::Nothing;
    std::function<QList<NamedObject>(long)> list;
    std::function<QList<long>(long)> ids;
    std::function<std::unique_ptr<T>(long, long)> read;
};

std::function<QList<NamedObject>(long)> listOf(const NameColumns &columns) {
    return [columns](long netId) {
        QSqlQuery rows = rowsOfNetwork(
            QStringLiteral("%1, %2").arg(QLatin1String(columns.id), QLatin1String(columns.name)),
            columns.table, netId, QStringLiteral(" order by ") + QLatin1String(columns.id));
        QList<NamedObject> list;
        while (rows.next()) {
            list.append({long(qint32(rows.value(0).toLongLong())), rows.value(1).toString()});
            if (list.last().name.size() > storablevalue::kLongestText)
                refuseReading(
                    QLatin1String(columns.table),
                    QStringLiteral("the name in row %1 is longer than %2 characters")
                        .arg(QString::number(list.last().id), QString::number(storablevalue::kLongestText)));
        }
        if (rows.lastError().isValid())
            refuseReading(QLatin1String(columns.table), rows.lastError().databaseText());
        return list;
    };
}

template <class T>
KindReader<T> make(const char *kind, const char *word, Before before, const NameColumns &columns, Ids<T> ids,
                   Read<T> read) {
    return {kind,
            word,
            before,
            listOf(columns),
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
    const auto list = [readList](long netId) {
        QList<NamedObject> objects;
        for (const T &object : readList(netId)) {
            const Description description = describe(object);
            objects.append({description.id, description.name});
        }
        std::sort(objects.begin(), objects.end(),
                  [](const NamedObject &a, const NamedObject &b) { return a.id < b.id; });
        return objects;
    };
    return {kind,
            word,
            Before::Nothing,
            list,
            [list](long netId) {
                QList<long> ids;
                for (const NamedObject &object : list(netId))
                    ids.append(object.id);
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

std::unique_ptr<AccidentZone> ofWholeNetwork(long netId, long zoneId) {
    NetContents contents;
    if (!DBTools::loadNet(gDB, netId, contents))
        refuseReading(QStringLiteral("network \"%1\"").arg(gNet.netName()));
    for (std::unique_ptr<AccidentZone> &zone : contents.traffic.accidentZones) {
        if (zone->accidentZoneId == zoneId)
            return std::move(zone);
    }
    return nullptr;
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
    return {"vehicleCompositions",
            "vehicle composition",
            Before::Nothing,
            listOf({"VehicleConstitutent", "vehicleConsCode", "name"}),
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
        "departurePoints", "departure point", Before::Nothing, {"DeparturePoint", "departurePointID", "name"},
        DBTools::selectDeparturePointIds, nullptr);
    departurePoints.read = [](long netId, long id) {
        QHash<long, VehicleComposition> compositions = compositionsOf(netId);
        return std::unique_ptr<DeparturePoint>(DBTools::selectDeparturePoint(gDB, netId, compositions, id));
    };
    return departurePoints;
}

template <>
KindReader<DecisionPoint> access() {
    return make<DecisionPoint>("decisionPoints", "decision point", Before::Links,
                               {"DecisionPoint", "deciPointID", "deciPointName"},
                               DBTools::selectDecisionPointIDs, DBTools::selectDecisionPointByID);
}

template <>
KindReader<Routing> access() {
    KindReader<Routing> routes =
        make<Routing>("routes", "route", Before::Links, {"Routing", "routingID", "routingName"}, nullptr,
                      DBTools::selectRoutingByID);
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
    return make<SignalGroup>("signalGroups", "signal group", Before::Nothing,
                             {"SignalGroup", "signalGroupID", "name"}, DBTools::selectSignalGroupIDs,
                             DBTools::selectSignalGroupByID);
}

template <>
KindReader<SignalLamp> access() {
    return make<SignalLamp>("signalLamps", "signal lamp", Before::SignalGroups,
                            {"SignalLamp", "signalLampID", "name"}, DBTools::selectSignalLampIDs,
                            DBTools::selectSignalLampByID);
}

template <>
KindReader<VehicleDetector> access() {
    return make<VehicleDetector>("vehicleDetectors", "vehicle detector", Before::Nothing,
                                 {"VehicleDetector", "vehicleDetectorId", "name"},
                                 DBTools::selectVehicleDetectorIds, DBTools::selectVehicleDetector);
}

template <>
KindReader<VehicleQueueCounter> access() {
    KindReader<VehicleQueueCounter> counters = make<VehicleQueueCounter>(
        "queueCounters", "queue counter", Before::Nothing, {"VehicleQueueCounter", "QueueCounterID", "name"},
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
                                       {"VehicleTravelDetector", "detectorId", "name"},
                                       DBTools::selectVehicleTravelDetectorIds,
                                       DBTools::selectVehicleTravelDetector);
}

template <>
KindReader<VehicleDrivInfoCollector> access() {
    KindReader<VehicleDrivInfoCollector> collectors =
        make<VehicleDrivInfoCollector>("drivingDataCollectors", "driving-data collector", Before::Nothing,
                                       {"VehicleDrivInfoCollecter", "collecterID", "name"},
                                       DBTools::selectVehicleDrivInfoCollectorIds, nullptr);
    collectors.read = [](long netId, long id) {
        return ifOfId(DBTools::selectVehicleDrivInfoCollector(gDB, netId, id), id);
    };
    return collectors;
}

template <>
KindReader<BusStation> access() {
    return make<BusStation>("busStations", "bus station", Before::Links,
                            {"BusStation", "busStationID", "name"}, DBTools::selectBusStationIds,
                            DBTools::selectBusStation);
}

template <>
KindReader<BusLine> access() {
    return make<BusLine>("busLines", "bus line", Before::Links, {"BusLine", "busLineID", "name"},
                         DBTools::selectBusLineIds, DBTools::selectBusLine);
}

template <>
KindReader<ReduceSpeedArea> access() {
    return make<ReduceSpeedArea>("speedReductionAreas", "speed reduction area", Before::Nothing,
                                 {"ReduceSpeedArea", "reduceSpeedAreaID", "name"},
                                 DBTools::selectReduceSpeedAreaIds, DBTools::selectReduceSpeedArea);
}

template <>
KindReader<AccidentZone> access() {
    KindReader<AccidentZone> zones = make<AccidentZone>(
        "accidentZones", "accident zone", Before::Nothing, {"AccidentZone", "accidentZoneId", "name"},
        DBTools::selectAccidentZoneIds, DBTools::selectAccidentZone);
    // The library finds a zone by its id in whichever network has one. Only a whole load keeps them apart.
    zones.read = [single = zones.read](long netId, long id) {
        return DBTools::dbVer() >= 6 ? ofWholeNetwork(netId, id) : single(netId, id);
    };
    return zones;
}

template <>
KindReader<RoadWorkZone> access() {
    return make<RoadWorkZone>("roadWorkZones", "road-work zone", Before::Nothing,
                              {"RoadWorkZone", "roadWorkZoneId", "name"}, DBTools::selectRoadWorkZoneIds,
                              DBTools::selectRoadWorkZone);
}

template <>
KindReader<Link> access() {
    return make<Link>("links", "link", Before::Nothing, {"Link", "linkID", "linkName"},
                      DBTools::selectLinkIDs, DBTools::selectLinkByID);
}

template <>
KindReader<Connector> access() {
    return make<Connector>("connectors", "connector", Before::Links, {"Connector", "connID", "connName"},
                           DBTools::selectConnectorIDs, DBTools::selectConnectorByID);
}

template <>
KindReader<GuideArrow> access() {
    return make<GuideArrow>("guideArrows", "guide arrow", Before::Nothing,
                            {"GuideArrow", "guideArrowID", "''"}, DBTools::selectGuideArrowIDs,
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
    return {QLatin1String(kind.kind), kind.before, kind.list,
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
    // Where a store lost its keys it may list an id twice; the library hands out one object for it.
    QList<long> ids = kind.ids(netId);
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    for (const long id : qAsConst(ids)) {
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

template MORATOOLS_EXPORT Objects<Link> readAll(long netId, const std::function<void(double)> &progress);
template MORATOOLS_EXPORT Objects<Connector> readAll(long netId, const std::function<void(double)> &progress);
template MORATOOLS_EXPORT Objects<VehicleType> readAll(long netId, const std::function<void(double)> &progress);
template MORATOOLS_EXPORT Objects<VehicleComposition> readAll(long netId, const std::function<void(double)> &progress);
template MORATOOLS_EXPORT Objects<SignalGroup> readAll(long netId, const std::function<void(double)> &progress);

template MORATOOLS_EXPORT const char *kindWord<VehicleType>();
template MORATOOLS_EXPORT const char *kindWord<VehicleComposition>();
template MORATOOLS_EXPORT const char *kindWord<DeparturePoint>();
template MORATOOLS_EXPORT const char *kindWord<DecisionPoint>();
template MORATOOLS_EXPORT const char *kindWord<SignalGroup>();
template MORATOOLS_EXPORT const char *kindWord<SignalLamp>();
template MORATOOLS_EXPORT const char *kindWord<VehicleDetector>();
template MORATOOLS_EXPORT const char *kindWord<VehicleQueueCounter>();
template MORATOOLS_EXPORT const char *kindWord<VehicleTravelDetector>();
template MORATOOLS_EXPORT const char *kindWord<VehicleDrivInfoCollector>();
template MORATOOLS_EXPORT const char *kindWord<BusStation>();
template MORATOOLS_EXPORT const char *kindWord<BusLine>();
template MORATOOLS_EXPORT const char *kindWord<ReduceSpeedArea>();
template MORATOOLS_EXPORT const char *kindWord<AccidentZone>();
template MORATOOLS_EXPORT const char *kindWord<RoadWorkZone>();

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

} // namespace moratools
