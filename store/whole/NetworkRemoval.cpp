#include "store/whole/NetworkRemoval.h"

#include "store/core/Query.h"
#include "store/core/Savepoint.h"
#include "store/core/Transaction.h"
#include "store/families/CurrentNet.h"

#include <QSqlError>

#include <vector>

namespace networkremoval {

namespace {

using Groups = std::vector<std::vector<const char *>>;

const std::vector<const char *> kBusLines = {"BusStationLine", "BusLineRoad", "BusLine", "BusStation"};
const std::vector<const char *> kDevicesAndDemand = {
    "ReduceSpeedVehiType", "ReduceSpeedInterval",   "ReduceSpeedArea",  "VehicleDrivInfoCollecter",
    "VehicleQueueCounter", "VehicleTravelDetector", "DetectorVehiType", "VehicleDetector",
    "SignalLamp",          "SignalColor",           "SignalPhase",      "SignalGroup",
    "VehicleConsDetail",   "VehicleConstitutent",   "VehicleType",      "DepartureInterval",
    "DeparturePoint"};

const Groups kOneNet = {
    {"BusStationPassengerArriving"},
    kBusLines,
    kDevicesAndDemand,
    {"RoutingFlowRatio", "RoutingLaneConnector"},
    {"RoutingLink", "Routing", "DecisionPoint", "GuideArrow", "RoadWorkZoneWithLane", "RoadWorkZone",
     "AccidentZoneWithLane", "AccidentZone", "LaneConnector", "ConnectorLimitVehicle", "Connector",
     "LinkVertex", "LaneLimitVehicle", "Lane", "Link", "Node"},
    {"Vertex"},
};

// ConnectorLimitVehicle and LaneLimitVehicle are not touched: no operation of this generation writes them,
// and rows of other writers stay theirs.
const Groups kSeveralNets = {
    {"BusStationPassengerArriving"},
    kBusLines,
    kDevicesAndDemand,
    {"RoutingFlowRatio", "RoutingLaneConnector"},
    {"RoutingLink", "Routing", "DecisionPoint"},
    {"GuideArrow"},
    {"RoadWorkZoneWithLane"},
    {"RoadWorkZone"},
    {"AccidentZoneWithLane", "AccidentZone"},
    {"LaneConnector"},
    {"Connector", "LinkVertex", "Lane", "Link", "Node"},
    {"Vertex"},
};

/// Runs the statements of a group back to back; the last one's verdict is the group's. None follows one after
/// which the store is given up.
bool removeGroup(const Store &store, const std::vector<const char *> &tables) {
    const QString condition = store.text({"", " where NetId = %1"}, {});
    QSqlQuery query(store.db());
    for (const char *table : tables) {
        Savepoint savepoint(store.db());
        if (savepoint.end(query.exec(QStringLiteral("delete from ") + QLatin1String(table) + condition)))
            continue;
        store.heed(query.lastError());
        if (store.isGivenUp())
            break;
    }
    return store.check(query);
}

} // namespace

bool removeNetworkData(const Store &store, bool useTransaction) {
    Transaction transaction(store, useTransaction);
    if (!store.isUsable() || (useTransaction && !store.checkConnection()))
        return transaction.rollBack();
    const bool isCurrent = isCurrentNet(store);
    bool removed = true;
    bool begun = false;
    for (const auto &group : store.hasSeveralNets() ? kSeveralNets : kOneNet) {
        removed = removed && removeGroup(store, group);
        begun = begun || removed;
    }
    // What is gone answers no read, nor does what may be gone.
    if (begun && isCurrent)
        gNet.releaseNet();
    return transaction.commit(removed);
}

} // namespace networkremoval
