#include "store/families/Connectors.h"

#include "model/Connector.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/Link.h"
#include "store/DBTools.h"
#include "store/core/Query.h"
#include "store/core/Transaction.h"
#include "store/families/CurrentNet.h"

#include <memory>

namespace connectors {

namespace {

constexpr const char *kInsertWithoutRoad =
    "insert into Connector(ConnID, StartLinkID, EndLinkID, ConnName, Length, Curvature, NonLinearCoefficient, Color, DesiredSpeed, LimitSpeed) values(:ConnID, :StartLinkID, :EndLinkID, :ConnName, :Length, :Curvature, :NonLinearCoefficient, :Color, :DesiredSpeed, :LimitSpeed)";
constexpr Sql kInsert = {
    "insert into Connector(ConnID, roadId, StartLinkID, EndLinkID, ConnName, Length, Curvature, NonLinearCoefficient, Color, DesiredSpeed, LimitSpeed) values(:ConnID, :roadId, :StartLinkID, :EndLinkID, :ConnName, :Length, :Curvature, :NonLinearCoefficient, :Color, :DesiredSpeed, :LimitSpeed)",
    "insert into Connector(NetId, ConnID, roadId, StartLinkID, EndLinkID, ConnName, Length, Curvature, NonLinearCoefficient, Color, DesiredSpeed, LimitSpeed) values(:NetId, :ConnID, :roadId, :StartLinkID, :EndLinkID, :ConnName, :Length, :Curvature, :NonLinearCoefficient, :Color, :DesiredSpeed, :LimitSpeed)"};

// Both generations filter by the connector's id alone, so in generation 6 the connectors of that id in other
// networks of the store get the same geometry. Identifiers that are unique in the whole store avoid it.
constexpr const char *kUpdateGeometry =
    "update Connector set leftBreakPointsJson=:leftBreakPointsJson,rightBreakPointsJson=:rightBreakPointsJson where connID=%1";
constexpr const char *kUpdateAttributes =
    "update Connector set otherAttrsJson=:otherAttrsJson where connID=%1";

constexpr const char *kInsertRestriction =
    "insert into ConnectorLimitVehicle(ConnID, VehicleTypeCode) values(:ConnID, :VehicleTypeCode)";

constexpr const char *kInsertLaneConnectorWithBreakPoints =
    "insert into LaneConnector(connID, StartLaneID, EndLaneID, weight, centerLinePointsJson, leftBreakPointsJson, rightBreakPointsJson) values(:connID, :StartLaneID, :EndLaneID, :weight, :centerLinePointsJson, :leftBreakPointsJson, :rightBreakPointsJson)";
constexpr const char *kInsertLaneConnectorWithCenterLine =
    "insert into LaneConnector(connID, StartLaneID, EndLaneID, weight, centerLinePointsJson) values(:connID, :StartLaneID, :EndLaneID, :weight, :centerLinePointsJson)";
constexpr Sql kInsertLaneConnector = {
    "insert into LaneConnector(connID, StartLaneID, EndLaneID, weight) values(:connID, :StartLaneID, :EndLaneID, :weight)",
    "insert into LaneConnector(NetId, laneConnId, connID, StartLaneID, EndLaneID, weight) values(:NetId, :laneConnId, :connID, :StartLaneID, :EndLaneID, :weight)"};
constexpr const char *kUpdateLaneConnectorAttributes =
    "update LaneConnector set otherAttrsJson=:otherAttrsJson where NetId= %0 and connID=%1 and StartLaneID=%2 and EndLaneID=%3";

constexpr Sql kSelect = {"select * from Connector where ConnID = %0",
                         "select * from Connector where NetId = %0 and ConnID = %1"};
constexpr Sql kSelectLaneConnectors = {"select * from LaneConnector where connID = %0",
                                       "select * from LaneConnector where NetId = %0 and connID = %1"};
constexpr Sql kSelectIds = {"select connID from Connector order by connID",
                            "select connID from Connector where NetId = %0 order by connID"};

bool hasRoadIds(const Store &store) {
    return store.hasSeveralNets() || DBTools::mbLinkHasRouadId;
}

bool insertRow(const Store &store, Connector &connector) {
    const bool withRoad = hasRoadIds(store);
    if (withRoad && connector.roadId == 0)
        connector.roadId = connector.connID;
    Query insert(store, withRoad ? store.text(kInsert) : QString::fromLatin1(kInsertWithoutRoad));
    insert.bindNet().bind(":ConnID", connector.connID);
    if (withRoad)
        insert.bind(":roadId", connector.roadId);
    insert.bind(":StartLinkID", connector.mpStartLink ? connector.mpStartLink->linkID : 0L)
        .bind(":EndLinkID", connector.mpEndLink ? connector.mpEndLink->linkID : 0L)
        .bind(":ConnName", connector.connName)
        .bind(":Length", connector.length)
        .bind(":Curvature", connector.curvature)
        .bind(":NonLinearCoefficient", connector.nonLinearCoefficient)
        .bind(":Color", connector.color)
        .bind(":DesiredSpeed", connector.desiredSpeed)
        .bind(":LimitSpeed", connector.limitSpeed);
    return insert.exec();
}

bool updateGeometry(const Store &store, const Connector &connector) {
    if (!store.hasColumn("Connector", "leftBreakPointsJson"))
        return true;
    Query geometry(store, kUpdateGeometry, {connector.connID});
    geometry.bind(":leftBreakPointsJson", connector.leftBreakPointsJson)
        .bind(":rightBreakPointsJson", connector.rightBreakPointsJson);
    bool written = geometry.exec();
    if (!connector.otherAttrsJson.holdsNothing()) {
        Query attributes(store, kUpdateAttributes, {connector.connID});
        written = attributes.bind(":otherAttrsJson", connector.otherAttrsJson).exec() && written;
    }
    return written;
}

/// Generation 6 keeps no restrictions of connectors.
bool insertRestrictions(const Store &store, const Connector &connector) {
    if (store.hasSeveralNets())
        return true;
    bool written = true;
    Query insert(store, kInsertRestriction);
    for (const long vehicleType : connector.mlLimitVehicle) {
        insert.bind(":ConnID", connector.connID).bind(":VehicleTypeCode", vehicleType);
        written = insert.exec() && written;
    }
    return written;
}

long laneId(const Lane *lane) {
    return lane ? lane->laneID : 0;
}

bool insertLaneConnectorAttributes(const Store &store, const Connector &connector,
                                   const LaneConnector &lanes) {
    Query update(store, kUpdateLaneConnectorAttributes,
                 {store.netId(), connector.connID, laneId(lanes.mpStartLane), laneId(lanes.mpEndLane)});
    return update.bind(":otherAttrsJson", lanes.otherAttrsJson).exec();
}

/// Generation 6 stores the id and the attributes of a lane connector, older stores its geometry as far as
/// they have columns for it.
bool insertLaneConnectors(const Store &store, const Connector &connector) {
    const bool severalNets = store.hasSeveralNets();
    const bool withCenterLine = !severalNets && store.hasColumn("LaneConnector", "centerLinePointsJson");
    const bool withBreakPoints = withCenterLine && store.hasColumn("LaneConnector", "leftBreakPointsJson");
    Query insert(store, withBreakPoints  ? QString::fromLatin1(kInsertLaneConnectorWithBreakPoints)
                        : withCenterLine ? QString::fromLatin1(kInsertLaneConnectorWithCenterLine)
                                         : store.text(kInsertLaneConnector));
    bool written = true;
    for (const LaneConnector *lanes : connector.mlLaneConnector) {
        insert.bindNet();
        if (severalNets)
            insert.bind(":laneConnId", lanes->laneConnId);
        insert.bind(":connID", connector.connID)
            .bind(":StartLaneID", laneId(lanes->mpStartLane))
            .bind(":EndLaneID", laneId(lanes->mpEndLane))
            .bind(":weight", lanes->weight);
        if (withCenterLine)
            insert.bind(":centerLinePointsJson", lanes->centerLinePointsJson);
        if (withBreakPoints) {
            insert.bind(":leftBreakPointsJson", lanes->leftBreakPointsJson)
                .bind(":rightBreakPointsJson", lanes->rightBreakPointsJson);
        }
        bool laneWritten = insert.exec();
        if (laneWritten && severalNets && !lanes->otherAttrsJson.holdsNothing())
            laneWritten = insertLaneConnectorAttributes(store, connector, *lanes);
        written = laneWritten && written;
    }
    return written;
}

/// Reads the row of a connector; null without one or when gNet does not know its links.
std::unique_ptr<Connector> readRow(const Store &store, long connectorId) {
    Query row(store, kSelect, {connectorId});
    if (!row.execAndNext())
        return nullptr;
    Link *from = gNet.getLinkById(row.id("StartLinkID"));
    Link *to = gNet.getLinkById(row.id("EndLinkID"));
    if (!from || !to)
        return nullptr;
    auto connector = std::make_unique<Connector>(row.id("ConnID"), from, to);
    if (hasRoadIds(store))
        connector->roadId = row.id("roadId");
    connector->connName = row.text("ConnName");
    connector->length = row.number("Length");
    connector->curvature = row.number("Curvature");
    connector->nonLinearCoefficient = row.number("NonLinearCoefficient");
    connector->color = row.text("Color");
    connector->desiredSpeed = row.number("DesiredSpeed");
    connector->limitSpeed = row.number("LimitSpeed");
    connector->leftBreakPointsJson = row.json("leftBreakPointsJson");
    connector->rightBreakPointsJson = row.json("rightBreakPointsJson");
    connector->otherAttrsJson = row.json("otherAttrsJson");
    return connector;
}

void readLaneConnectors(const Store &store, Connector &connector) {
    Query rows(store, kSelectLaneConnectors, {connector.connID});
    if (!rows.exec())
        return;
    while (rows.next()) {
        Lane *from = gNet.getLaneById(rows.id("StartLaneID"));
        Lane *to = gNet.getLaneById(rows.id("EndLaneID"));
        if (!from || !to)
            continue;
        auto lanes = std::make_unique<LaneConnector>(&connector, from, to);
        lanes->weight = rows.integer("weight");
        lanes->centerLinePointsJson = rows.json("centerLinePointsJson");
        lanes->leftBreakPointsJson = rows.json("leftBreakPointsJson");
        lanes->rightBreakPointsJson = rows.json("rightBreakPointsJson");
        lanes->otherAttrsJson = rows.json("otherAttrsJson");
        connector.mlLaneConnector.append(lanes.release());
    }
}

} // namespace

bool insert(const Store &store, Connector *connector, bool inTransaction) {
    if (!connector)
        return true;
    Transaction transaction(store, inTransaction);
    bool written = insertRow(store, *connector);
    written = updateGeometry(store, *connector) && written;
    written = insertRestrictions(store, *connector) && written;
    written = insertLaneConnectors(store, *connector) && written;
    return transaction.commit(written);
}

bool insertAll(Store &store, const QList<Connector *> &connectors) {
    store.keepStatements();
    bool written = true;
    for (Connector *connector : connectors)
        written = insert(store, connector, false) && written;
    return written;
}

Connector *read(const Store &store, long connectorId) {
    // The ends are resolved through gNet, which knows the current network alone.
    if (!isCurrentNet(store))
        return nullptr;
    std::unique_ptr<Connector> connector = readRow(store, connectorId);
    if (!connector)
        return nullptr;
    readLaneConnectors(store, *connector);
    gNet.enter(connector.get());
    return connector.release();
}

bool listIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

} // namespace connectors
