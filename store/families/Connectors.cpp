#include "store/families/Connectors.h"

#include "model/Connector.h"
#include "model/Description.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/Link.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/SortedById.h"
#include "store/core/Columns.h"
#include "store/core/OperationTransaction.h"
#include "store/core/Query.h"
#include "store/families/CurrentNet.h"
#include "store/families/Wholeness.h"

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

constexpr Column kId{":ConnID", &Connector::connID, "connID"};
/// Older stores lack it.
constexpr Column kRoad{":roadId", &Connector::roadId};
constexpr Reference kStartLink{":StartLinkID", &Connector::mpStartLink, &Link::linkID, "startLink"};
constexpr Reference kEndLink{":EndLinkID", &Connector::mpEndLink, &Link::linkID, "endLink"};
constexpr std::tuple kColumns = {
    kStartLink,
    kEndLink,
    Column{":ConnName", &Connector::connName, "connName"},
    Column{":Length", &Connector::length, "length"},
    Column{":Curvature", &Connector::curvature, "curvature"},
    Column{":NonLinearCoefficient", &Connector::nonLinearCoefficient, "nonLinearCoefficient"},
    Column{":Color", &Connector::color, "color"},
    Column{":DesiredSpeed", &Connector::desiredSpeed, "desiredSpeed"},
    Column{":LimitSpeed", &Connector::limitSpeed, "limitSpeed"},
};
constexpr std::tuple kGeometryColumns = {
    Column{":leftBreakPointsJson", &Connector::leftBreakPointsJson, "leftBreakPoints"},
    Column{":rightBreakPointsJson", &Connector::rightBreakPointsJson, "rightBreakPoints"},
};
constexpr Column kAttributes{":otherAttrsJson", &Connector::otherAttrsJson, "otherAttrs"};

constexpr Reference kStartLane{":StartLaneID", &LaneConnector::mpStartLane, &Lane::laneID, "startLane"};
constexpr Reference kEndLane{":EndLaneID", &LaneConnector::mpEndLane, &Lane::laneID, "endLane"};
/// But for the number, which reading gives anew.
constexpr std::tuple kLaneColumns = {
    Column{":connID", &Connector::connID},
    kStartLane,
    kEndLane,
    Column{":weight", &LaneConnector::weight},
};
constexpr Column kLaneCenterLine{":centerLinePointsJson", &LaneConnector::centerLinePointsJson,
                                 "centerLinePoints"};
constexpr Column kLaneLeftBreakPoints{":leftBreakPointsJson", &LaneConnector::leftBreakPointsJson,
                                      "leftBreakPoints"};
constexpr Column kLaneRightBreakPoints{":rightBreakPointsJson", &LaneConnector::rightBreakPointsJson,
                                       "rightBreakPoints"};
constexpr Column kLaneAttributes{":otherAttrsJson", &LaneConnector::otherAttrsJson, "otherAttrs"};
constexpr std::tuple kLaneGeometryColumns = {kLaneCenterLine, kLaneLeftBreakPoints, kLaneRightBreakPoints,
                                             kLaneAttributes};

/// A connector without a road id takes its own.
template <class Row>
void bindRow(Row &row, bool withRoad, Connector &connector) {
    if (withRoad && connector.roadId == 0)
        connector.roadId = connector.connID;
    kId.bind(row, connector);
    if (withRoad)
        kRoad.bind(row, connector);
    bindAll(row, kColumns, connector);
}

bool insertRow(const Store &store, Connector &connector) {
    const bool withRoad = store.hasRoadIds();
    Query insert(store, withRoad ? store.text(kInsert) : QString::fromLatin1(kInsertWithoutRoad));
    bindRow(insert.bindNet(), withRoad, connector);
    return insert.exec();
}

bool updateGeometry(const Store &store, const Connector &connector) {
    if (!store.hasColumn("Connector", "leftBreakPointsJson"))
        return true;
    Query geometry(store, kUpdateGeometry, {connector.connID});
    bool written = bindAll(geometry, kGeometryColumns, connector).exec();
    if (!connector.otherAttrsJson.holdsNothing()) {
        Query attributes(store, kUpdateAttributes, {connector.connID});
        written = attributes.bind(kAttributes.placeholder, connector.otherAttrsJson).exec() && written;
    }
    return written;
}

template <class Row>
Row &bindRestriction(Row &row, const Connector &connector, long vehicleType) {
    return row.bind(":ConnID", connector.connID).bind(":VehicleTypeCode", vehicleType);
}

/// Generation 6 keeps no restrictions of connectors.
bool insertRestrictions(const Store &store, const Connector &connector) {
    if (store.hasSeveralNets())
        return true;
    bool written = true;
    Query insert(store, kInsertRestriction);
    for (const long vehicleType : connector.mlLimitVehicle) {
        written = bindRestriction(insert, connector, vehicleType).exec() && written;
    }
    return written;
}

template <class Row>
void bindRow(Row &row, bool withId, const Connector &connector, const LaneConnector &lanes) {
    if (withId)
        row.bind(":laneConnId", lanes.laneConnId);
    bindAll(row, kLaneColumns, lanes, connector);
}

bool insertLaneConnectorAttributes(const Store &store, const Connector &connector,
                                   const LaneConnector &lanes) {
    Query update(store, kUpdateLaneConnectorAttributes,
                 {store.netId(), connector.connID, lanes.mpStartLane->laneID, lanes.mpEndLane->laneID});
    return update.bind(kLaneAttributes.placeholder, lanes.otherAttrsJson).exec();
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
        bindRow(insert.bindNet(), severalNets, connector, *lanes);
        if (withCenterLine)
            kLaneCenterLine.bind(insert, *lanes);
        if (withBreakPoints) {
            kLaneLeftBreakPoints.bind(insert, *lanes);
            kLaneRightBreakPoints.bind(insert, *lanes);
        }
        bool laneWritten = insert.exec();
        if (laneWritten && severalNets && !lanes->otherAttrsJson.holdsNothing())
            laneWritten = insertLaneConnectorAttributes(store, connector, *lanes);
        written = laneWritten && written;
    }
    return written;
}

/// Every column that the store has, also those that single inserts leave out.
void saveLaneConnectors(NetSave &net) {
    const Store &store = net.store;
    const bool withId = store.hasSeveralNets();
    const bool withCenterLine = store.hasColumn("LaneConnector", "centerLinePointsJson");
    const bool withBreakPoints = withCenterLine && store.hasColumn("LaneConnector", "leftBreakPointsJson");
    const bool withAttributes = store.hasColumn("LaneConnector", "otherAttrsJson");
    // Single inserts write the shape also when it is empty, those of generation 6 never.
    const auto bindShape = [withId](const auto &column, RowWriter &row, const LaneConnector &lanes) {
        if (withId)
            row.bindFilled(column.placeholder, lanes.*column.member);
        else
            column.bind(row, lanes);
    };
    if (withId)
        net.giveIds("LaneConnector", net.contents.connectors, &Connector::mlLaneConnector,
                    &LaneConnector::laneConnId);
    net.writeOwned("LaneConnector", net.contents.connectors, &Connector::mlLaneConnector,
                   [&](RowWriter &row, const Connector &connector, const LaneConnector *lanes) {
                       bindRow(row, withId, connector, *lanes);
                       if (withCenterLine)
                           bindShape(kLaneCenterLine, row, *lanes);
                       if (withBreakPoints) {
                           bindShape(kLaneLeftBreakPoints, row, *lanes);
                           bindShape(kLaneRightBreakPoints, row, *lanes);
                       }
                       if (withAttributes)
                           row.bindFilled(kLaneAttributes.placeholder, lanes->otherAttrsJson);
                   });
}

/// Reads the row of a connector; null when the current network does not know its links.
template <class Row>
std::unique_ptr<Connector> readRow(Row &row, bool withRoad) {
    Link *from = row.store().net().getLinkById(row.id(kStartLink.name()));
    Link *to = row.store().net().getLinkById(row.id(kEndLink.name()));
    if (!from || !to)
        return nullptr;
    auto connector = std::make_unique<Connector>(0, from, to);
    kId.read(row, *connector);
    if (withRoad)
        kRoad.read(row, *connector);
    readAll(row, kColumns, *connector);
    readAll(row, kGeometryColumns, *connector);
    kAttributes.read(row, *connector);
    return connector;
}

/// Appends the lane connector of a row; false when the current network does not know its lanes.
template <class Row>
bool readLaneConnector(Row &row, Connector &connector) {
    Lane *from = row.store().net().getLaneById(row.id(kStartLane.name()));
    Lane *to = row.store().net().getLaneById(row.id(kEndLane.name()));
    if (!from || !to)
        return false;
    auto lanes = std::make_unique<LaneConnector>(&connector, from, to);
    readAll(row, kLaneColumns, *lanes);
    readAll(row, kLaneGeometryColumns, *lanes);
    connector.mlLaneConnector.append(lanes.release());
    return true;
}

void readLaneConnectors(const Store &store, Connector &connector) {
    Query rows(store, kSelectLaneConnectors, {connector.connID});
    if (!rows.execPart())
        return;
    while (rows.next())
        readLaneConnector(rows, connector);
}

} // namespace

bool insertConnector(const Store &store, Connector *connector, bool inTransaction) {
    if (!connector)
        return true;
    if (!wholeness::isWhole(store, *connector))
        return false;
    OperationTransaction transaction(store, inTransaction);
    bool written = insertRow(store, *connector);
    written = updateGeometry(store, *connector) && written;
    written = insertRestrictions(store, *connector) && written;
    written = insertLaneConnectors(store, *connector) && written;
    return transaction.commit(written);
}

bool insertConnectors(Store &store, const QList<Connector *> &connectors) {
    if (!wholeness::hasNoNull(store, connectors))
        return false;
    store.keepStatements();
    bool written = true;
    for (Connector *connector : connectors)
        written = insertConnector(store, connector, false) && written;
    return written;
}

Connector *readConnector(const Store &store, long connectorId) {
    // The ends are resolved through the current network alone.
    if (!isCurrentNet(store))
        return nullptr;
    Query row(store, kSelect, {connectorId});
    if (!row.execAndNext())
        return nullptr;
    std::unique_ptr<Connector> connector = readRow(row, store.hasRoadIds());
    if (!connector)
        return nullptr;
    row.finish();
    readLaneConnectors(store, *connector);
    store.net().enter(connector.get());
    return store.whole(std::move(connector));
}

void loadAllConnectors(NetLoad &net) {
    Objects<Connector> &connectors = net.contents.connectors;
    const bool withRoad = net.store.hasRoadIds();
    net.forEachObject("Connector", "connID", [&](Rows &row) {
        if (auto connector = readRow(row, withRoad))
            connectors.push_back(std::move(connector));
        else
            net.skip("Connector", row.id("connID"), "names a link that is missing");
    });
    const auto idOf = [](const auto &connector) { return connector->connID; };
    sortById(connectors, idOf);
    SortedById connectorOf(connectors, idOf);
    net.forEachRowAsWritten("LaneConnector", "connID", [&](Rows &row) {
        const long id = row.id("connID");
        const std::size_t owner = connectorOf.find(id);
        if (owner == connectors.size())
            net.skip("LaneConnector", id, "belongs to no connector");
        else if (!readLaneConnector(row, *connectors[owner]))
            net.skip("LaneConnector", id, "names a lane that is missing");
    });
    net.forEachRow("ConnectorLimitVehicle", "connID, vehicleTypeCode", [&](Rows &row) {
        const long id = row.id("connID");
        const std::size_t owner = connectorOf.find(id);
        if (owner == connectors.size())
            net.skip("ConnectorLimitVehicle", id, "belongs to no connector");
        else
            connectors[owner]->mlLimitVehicle.append(row.id("vehicleTypeCode"));
    });
    for (const auto &connector : connectors)
        net.store.net().enter(connector.get());
}

void saveAllConnectors(NetSave &net) {
    const Objects<Connector> &connectors = net.contents.connectors;
    net.giveIds("Connector", connectors, &Connector::connID);
    const bool withRoad = net.store.hasRoadIds();
    const bool withGeometry = net.store.hasColumn("Connector", "leftBreakPointsJson");
    net.writeEach("Connector", connectors, [&](RowWriter &row, Connector &connector) {
        if (withRoad)
            net.setIfUnset(connector.roadId, connector.connID);
        bindRow(row, withRoad, connector);
        if (withGeometry)
            bindAll(row, kGeometryColumns, connector)
                .bindFilled(kAttributes.placeholder, connector.otherAttrsJson);
    });
    net.writeOwned("ConnectorLimitVehicle", connectors, &Connector::mlLimitVehicle,
                   [](RowWriter &row, const Connector &connector, long vehicleType) {
                       bindRestriction(row, connector, vehicleType);
                   });
    saveLaneConnectors(net);
}

bool listConnectorIds(const Store &store, QList<long> &ids) {
    return appendIds(store, kSelectIds, ids);
}

} // namespace connectors

Description describe(const Connector &connector) {
    using namespace connectors;
    constexpr auto columns = std::tuple_cat(std::tuple{kId, kRoad, kAttributes}, kColumns, kGeometryColumns);
    constexpr auto laneColumns = std::tuple_cat(kLaneColumns, kLaneGeometryColumns);
    QVariantMap fields = describeAll(columns, connector);
    fields.insert(QStringLiteral("laneConnectors"), describeEach(connector.mlLaneConnector, laneColumns));
    return {connector.connID, connector.connName, fields};
}
