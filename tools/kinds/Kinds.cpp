#include "tools/kinds/Kinds.h"

#include "model/Net.h"
#include "model/NetContents.h"
#include "store/DBTools.h"
#include "store/catalogue/Catalogue.h"
#include "store/core/StorableValue.h"
#include "tools/kinds/StoreInfo.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <memory>

namespace moratools {

namespace {

enum class Needs { Nothing, Network };

QList<NamedObject> listOf(const StoreSession &store, const char *table, const char *id, const char *name,
                          long netId) {
    QSqlQuery rows =
        rowsOfNetwork(store, QStringLiteral("%1, %2").arg(QLatin1String(id), QLatin1String(name)), table,
                      netId, QStringLiteral(" order by ") + QLatin1String(id));
    QList<NamedObject> list;
    while (rows.next()) {
        list.append({long(qint32(rows.value(0).toLongLong())), rows.value(1).toString()});
        if (list.last().name.size() > storablevalue::kLongestText)
            store.refuseReading(
                QLatin1String(table),
                QStringLiteral("the name in row %1 is longer than %2 characters")
                    .arg(QString::number(list.last().id), QString::number(storablevalue::kLongestText)));
    }
    if (rows.lastError().isValid())
        store.refuseReading(QLatin1String(table), rows);
    return list;
}

/// What a read gave. Some give a new object, or one of another id, where there is none.
template <class T>
std::optional<Description> described(const T *object, long id) {
    Description description = object ? describe(*object) : Description();
    return object && description.id == id ? std::optional<Description>(std::move(description)) : std::nullopt;
}

/// A kind that is listed by the rows of its table and read by id, with a function of a network and an id.
template <class Read>
NamedKind byId(const char *table, const Read &read, Needs needs = Needs::Nothing) {
    const catalogue::Kind &kind = *catalogue::kindIn(QLatin1String(table));
    const char *id = catalogue::find(QLatin1String(table))->id;
    return {QLatin1String(kind.plural), needs == Needs::Network,
            [table, id, name = kind.name](const StoreSession &store, long netId) {
                return listOf(store, table, id, name, netId);
            },
            [read](const StoreSession &store, long netId, long objectId) {
                return described(read(store, netId, objectId).get(), objectId);
            }};
}
/// @{ By an operation of the library.
template <class T>
NamedKind byId(const char *table, T *(*read)(QSqlDatabase &, long, long), Needs needs = Needs::Nothing) {
    return byId(
        table,
        [read](const StoreSession &store, long netId, long id) {
            return std::unique_ptr<T>(read(store.db(), netId, id));
        },
        needs);
}
template <class T>
NamedKind byId(const char *table, T (*read)(QSqlDatabase &, long, long)) {
    return byId(table, [read](const StoreSession &store, long netId, long id) {
        return std::make_unique<T>(read(store.db(), netId, id));
    });
}
/// @}

/// A kind that is read as a whole.
template <class ReadList>
NamedKind asList(const char *plural, const ReadList &readList) {
    return {QLatin1String(plural), false,
            [readList](const StoreSession &store, long netId) {
                QList<NamedObject> list;
                for (const auto &object : readList(store, netId)) {
                    const Description description = describe(object);
                    list.append({description.id, description.name});
                }
                std::sort(list.begin(), list.end(),
                          [](const NamedObject &a, const NamedObject &b) { return a.id < b.id; });
                return list;
            },
            [readList](const StoreSession &store, long netId, long id) {
                std::optional<Description> found;
                for (const auto &object : readList(store, netId)) {
                    if (!found)
                        found = described(&object, id);
                }
                return found;
            }};
}

QList<VehicleType> vehicleTypes(const StoreSession &store, long netId) {
    QHash<long, VehicleType> types;
    DBTools::selectVehicleType(store.db(), netId, types);
    return types.values();
}

QList<LinkType> linkTypes(const StoreSession &store, long netId) {
    QList<LinkType> types;
    DBTools::selectLinkType(store.db(), netId, types);
    return types;
}

std::unique_ptr<DeparturePoint> departurePoint(const StoreSession &store, long netId, long id) {
    QHash<long, VehicleComposition> compositions;
    DBTools::selectVehicleConstitutent(store.db(), netId, compositions);
    return std::unique_ptr<DeparturePoint>(
        DBTools::selectDeparturePoint(store.db(), netId, compositions, id));
}

/// The library finds a zone by its id in whichever network has one. Only a whole load keeps them apart.
std::unique_ptr<AccidentZone> accidentZone(const StoreSession &store, long netId, long id) {
    if (!store.hasSeveralNetworks())
        return std::unique_ptr<AccidentZone>(DBTools::selectAccidentZone(store.db(), netId, id));
    NetContents contents;
    if (!DBTools::loadNet(store.db(), netId, contents))
        store.refuseReading(QStringLiteral("network \"%1\"").arg(store.net().netName()));
    for (std::unique_ptr<AccidentZone> &zone : contents.traffic.accidentZones) {
        if (zone->accidentZoneId == id)
            return std::move(zone);
    }
    return nullptr;
}

QList<DriveFollowedModelParam> carFollowingSets(const StoreSession &store, long netId) {
    QList<DriveFollowedModelParam> sets{{}, {}};
    sets[1].modelParamID = 2;
    DBTools::selectDriveFollowedModelParam(store.db(), netId, sets[0], sets[1]);
    return sets;
}

QList<ChangeLaneModelParam> laneChangingSets(const StoreSession &store, long netId) {
    QList<ChangeLaneModelParam> sets;
    DBTools::selectChangeLaneParam(store.db(), netId, sets);
    return sets;
}

QList<SimulateConfiguration> simulationConfigurations(const StoreSession &store, long netId) {
    SimulateConfiguration configuration;
    DBTools::selectSimuConfiguration(store.db(), netId, configuration);
    return {configuration};
}

QList<Configuration> sceneConfigurations(const StoreSession &store, long netId) {
    Configuration configuration;
    DBTools::selectConfiguration(store.db(), netId, configuration);
    return {configuration};
}

} // namespace

const std::vector<NamedKind> &namedKinds() {
    static const std::vector<NamedKind> kinds{
        asList("vehicleTypes", vehicleTypes),
        byId("VehicleConstitutent", DBTools::selectVehicleComposition),
        asList("linkTypes", linkTypes),
        byId("Link", DBTools::selectLinkByID),
        byId("Connector", DBTools::selectConnectorByID, Needs::Network),
        byId("GuideArrow", DBTools::selectGuideArrowByID),
        byId("SignalGroup", DBTools::selectSignalGroupByID),
        byId("SignalLamp", DBTools::selectSignalLampByID, Needs::Network),
        byId("DeparturePoint", departurePoint),
        byId("DecisionPoint", DBTools::selectDecisionPointByID, Needs::Network),
        byId("Routing", DBTools::selectRoutingByID, Needs::Network),
        byId("VehicleDetector", DBTools::selectVehicleDetector, Needs::Network),
        byId("VehicleQueueCounter", DBTools::selectVehicleQueueCounter),
        byId("VehicleTravelDetector", DBTools::selectVehicleTravelDetector),
        byId("VehicleDrivInfoCollecter", DBTools::selectVehicleDrivInfoCollector),
        byId("BusLine", DBTools::selectBusLine, Needs::Network),
        byId("BusStation", DBTools::selectBusStation, Needs::Network),
        byId("AccidentZone", accidentZone),
        byId("RoadWorkZone", DBTools::selectRoadWorkZone),
        byId("ReduceSpeedArea", DBTools::selectReduceSpeedArea),
        asList("carFollowingSets", carFollowingSets),
        asList("laneChangingSets", laneChangingSets),
        asList("simulationConfiguration", simulationConfigurations),
        asList("sceneConfiguration", sceneConfigurations),
    };
    return kinds;
}

} // namespace moratools
