#include "store/editing/SaveChanges.h"

#include "model/Description.h"
#include "model/GeometryJson.h"
#include "model/NetContents.h"
#include "store/core/AllOrNothing.h"
#include "store/editing/Objects.h"
#include "store/families/DriverModels.h"
#include "store/families/LinkTypes.h"
#include "store/families/Networks.h"
#include "store/families/SceneConfigurations.h"
#include "store/families/SimulateConfigurations.h"
#include "store/ids/Identifiers.h"
#include "store/whole/SaveCheck.h"

namespace editing {

namespace {

const catalogue::Table &table(const char *name) {
    return *catalogue::find(QLatin1String(name));
}

/// Whether two settings are the same to a store.
template <class T>
bool isSame(const T &a, const T &b) {
    return areSameFields(describe(a).fields, describe(b).fields);
}
bool isSame(const LinkType &a, const LinkType &b) {
    return areSameFields(describe(a).fields, describe(b).fields) && a.storedTypeName == b.storedTypeName;
}
bool isSame(const RouteLanes &a, const RouteLanes &b) {
    return a.routingID == b.routingID && a.connID == b.connID && a.lanes.laneID1 == b.lanes.laneID1 &&
           a.lanes.laneID2 == b.lanes.laneID2;
}
bool isSame(const Configuration &a, const Configuration &b) {
    return areSameFields(describe(a).fields, describe(b).fields) && a.backgroundMap == b.backgroundMap;
}
template <class T>
bool isSame(const std::optional<T> &a, const std::optional<T> &b) {
    return a.has_value() == b.has_value() && (!a || isSame(*a, *b));
}
template <class T>
bool isSame(const QList<T> &a, const QList<T> &b) {
    return a.size() == b.size() &&
           std::equal(a.cbegin(), a.cend(), b.cbegin(), [](const T &x, const T &y) { return isSame(x, y); });
}

class ChangeSaver {
public:
    ChangeSaver(const Store &store, NetContents &net)
        : mStore(store), mNet(net), mReserved(store), mChanges(store), mRecording(store, mChanges) {}

    bool run(Cascade cascade);

private:
    bool record();
    template <class T>
    bool recordKind();
    bool recordSettings();
    bool saveRecordAndScene();
    void nameLanesOfArrows();
    void shareWithOthers();
    void tellTheOpenStore();

    const Store &mStore;
    NetContents &mNet;
    identifiers::Reservations mReserved;
    Changes mChanges;
    objects::Recording mRecording;
};

bool ChangeSaver::run(Cascade cascade) {
    if (!changesReferToNet(mStore, mNet))
        return false;
    AllOrNothing all(mStore);
    const bool good = saveRecordAndScene() && record();
    // Another program may have removed it as well.
    for (const RemovedObject &object : mNet.changes.removed())
        mChanges.letGo(table(object.table.toLatin1().constData()), {object.id});
    if (!all.end(good && mChanges.apply(cascade)))
        return false;
    mRecording.keep();
    mReserved.keep();
    shareWithOthers();
    tellTheOpenStore();
    mNet.setStored();
    return true;
}

/// Later kinds name earlier ones by the identifiers that those get here.
bool ChangeSaver::record() {
    if (!recordKind<VehicleType>() || !recordKind<VehicleComposition>() || !recordKind<Link>())
        return false;
    nameLanesOfArrows();
    return recordKind<GuideArrow>() && recordKind<Connector>() && recordKind<SignalGroup>() &&
           recordKind<SignalLamp>() && recordKind<DeparturePoint>() && recordKind<DecisionPoint>() &&
           recordKind<VehicleDetector>() && recordKind<VehicleQueueCounter>() &&
           recordKind<VehicleTravelDetector>() && recordKind<VehicleDrivInfoCollector>() &&
           recordKind<BusStation>() && recordKind<BusLine>() && recordKind<AccidentZone>() &&
           recordKind<RoadWorkZone>() && recordKind<ReduceSpeedArea>() && recordSettings();
}

template <class T>
bool ChangeSaver::recordKind() {
    const catalogue::Table &own = table(NetKind<T>::table);
    Ids changed;
    Ids added;
    for (T *object : mNet.changes.changed<T>()) {
        const bool isNew = mNet.changes.isAdded(*object) || NetKind<T>::idOf(*object) == 0;
        if (!mRecording.record(*object))
            return false;
        (isNew ? added : changed).push_back(NetKind<T>::idOf(*object));
    }
    mChanges.add(own, added);
    if (mNet.changes.isAll())
        mChanges.put(own, changed);
    else
        mChanges.change(own, changed);
    return true;
}

bool ChangeSaver::recordSettings() {
    const NetSettings &now = mNet.settings;
    const NetContents::Stored &before = mNet.stored;
    bool good = true;
    const auto replace = [&](const char *name, bool isSame, void (*save)(NetSave &),
                             const std::function<void(NetContents &)> &fill) {
        if (isSame || !good)
            return;
        mChanges.replaceAll(table(name));
        good = mRecording.record(fill, save);
    };
    replace("LinkType", isSame(mNet.linkTypes, before.linkTypes), linktypes::saveAllLinkTypes,
            [this](NetContents &part) { part.linkTypes = mNet.linkTypes; });
    replace("RoutingLaneConnector", isSame(mNet.traffic.routeLanes, before.routeLanes),
            decisionpoints::saveAllDecisionPoints,
            [this](NetContents &part) { part.traffic.routeLanes = mNet.traffic.routeLanes; });
    replace("DriveFollowedModelParam", isSame(now.carFollowing, before.settings.carFollowing),
            drivermodels::saveAllDriverModels,
            [&now](NetContents &part) { part.settings.carFollowing = now.carFollowing; });
    replace("ChangeLaneModelParam", isSame(now.laneChanging, before.settings.laneChanging),
            drivermodels::saveAllDriverModels,
            [&now](NetContents &part) { part.settings.laneChanging = now.laneChanging; });
    replace("SimulateConfiguration", isSame(now.simulation, before.settings.simulation),
            simulateconfigurations::saveAllSimulateConfigurations,
            [&now](NetContents &part) { part.settings.simulation = now.simulation; });
    return good;
}

bool ChangeSaver::saveRecordAndScene() {
    if (!networks::changeNetwork(mStore, mNet.record, mNet.stored.record))
        return false;
    const std::optional<Configuration> &scene = mNet.settings.scene;
    return !scene || isSame(scene, mNet.stored.settings.scene) ||
           sceneconfigurations::saveSceneConfiguration(mStore, *scene, false);
}

/// An arrow in the list of a lane that has got its id only now takes it over.
void ChangeSaver::nameLanesOfArrows() {
    const auto laneOf = guidearrows::lanesOfUnnamed(mNet);
    for (const auto &arrow : mNet.guideArrows) {
        if (const Lane *lane = laneOf.value(arrow.get()))
            mRecording.set(arrow->laneID, lane->laneID);
    }
}

/// Links that share a vertex or a node which was written have copies of it: these follow. A height stays where
/// it comes from the link's own line.
void ChangeSaver::shareWithOthers() {
    const catalogue::Table &vertexTable = table("Vertex");
    const catalogue::Table &nodeTable = table("Node");
    const auto &vertices = mChanges.written(vertexTable);
    const auto &nodes = mChanges.written(nodeTable);
    if (vertices.empty() && nodes.empty())
        return;
    const auto cell = [this](const catalogue::Table &of, std::size_t row,
                             const char *column) -> const Cell & {
        const RecordedTable &rows = *mChanges.recorded().find(of);
        return rows.rows[row][std::size_t(rows.indexOf(column))];
    };
    for (const auto &link : mNet.links) {
        for (Vertex *vertex : qAsConst(link->mlVertex)) {
            const auto written = vertices.find(vertex->vertexID);
            if (written == vertices.end())
                continue;
            vertex->x = std::get<double>(cell(vertexTable, written->second, "X"));
            vertex->y = std::get<double>(cell(vertexTable, written->second, "Y"));
            if (geometryjson::points(link->centerLinePointsJson).size() != link->mlVertex.size())
                vertex->z = std::get<double>(cell(vertexTable, written->second, "Z"));
        }
        for (Node *node : {link->mpStartNode, link->mpEndNode}) {
            const auto written = node ? nodes.find(node->nodeID) : nodes.end();
            if (written != nodes.end())
                node->nodeName = std::get<QString>(cell(nodeTable, written->second, "nodeName"));
        }
    }
}

/// What a load of the network would set beside the network.
void ChangeSaver::tellTheOpenStore() {
    if (mStore.hasSeveralNets() && !mStore.net().isCurrent(mStore.netId()))
        return;
    if (mStore.net().netId == mNet.record.netId)
        mStore.net().loadRecord(mNet.record);
    mStore.net().config() = mNet.settings.scene.value_or(Configuration());
    mStore.linkTypes() = mNet.linkTypes;
    mStore.vehicleTypes().clear();
    for (const auto &type : mNet.traffic.vehicleTypes)
        mStore.vehicleTypes().insert(type->vehicleTypeCode, *type);
    mStore.compositions().clear();
    for (const auto &composition : mNet.traffic.compositions)
        mStore.compositions().insert(composition->vehicleConsCode, *composition)->isDefault = false;
}

} // namespace

bool saveChanges(const Store &store, NetContents &net, Cascade cascade) {
    return store.isUsable() && ChangeSaver(store, net).run(cascade);
}

} // namespace editing
