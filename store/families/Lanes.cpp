#include "store/families/Lanes.h"

#include "model/Lane.h"
#include "model/Link.h"
#include "store/bulk/NetLoad.h"
#include "store/bulk/NetSave.h"
#include "store/bulk/SortedById.h"
#include "store/core/Columns.h"
#include "store/core/Query.h"

#include <algorithm>
#include <memory>

namespace lanes {

namespace {

constexpr Sql kInsert = {
    "insert into Lane(LaneID, LinkID, SerialNumber, Width, ActionType, ExpectTravelDirection, centerLinePointsJson, leftBreakPointsJson, rightBreakPointsJson) values(:LaneID, :LinkID, :SerialNumber, :Width, :ActionType, :ExpectTravelDirection, :centerLinePointsJson, :leftBreakPointsJson, :rightBreakPointsJson)",
    "insert into Lane(NetId, LaneID, LinkID, SerialNumber, Width, ActionType, ExpectTravelDirection, centerLinePointsJson, leftBreakPointsJson, rightBreakPointsJson) values(:NetId, :LaneID, :LinkID, :SerialNumber, :Width, :ActionType, :ExpectTravelDirection, :centerLinePointsJson, :leftBreakPointsJson, :rightBreakPointsJson)"};
constexpr const char *kInsertWithoutGeometry =
    "insert into Lane(LaneID, LinkID, SerialNumber, Width, ActionType, ExpectTravelDirection) values(:LaneID, :LinkID, :SerialNumber, :Width, :ActionType, :ExpectTravelDirection)";

// Stores of version 1 misspell the column; the placeholder is spelled as ever.
constexpr const char *kInsertMisspelt =
    "insert into Lane(LaneID, LinkID, SerialNnumber, Width, ActionType, ExpectTravelDirection, centerLinePointsJson, leftBreakPointsJson, rightBreakPointsJson) values(:LaneID, :LinkID, :SerialNumber, :Width, :ActionType, :ExpectTravelDirection, :centerLinePointsJson, :leftBreakPointsJson, :rightBreakPointsJson)";
constexpr const char *kInsertMisspeltWithoutGeometry =
    "insert into Lane(LaneID, LinkID, SerialNnumber, Width, ActionType, ExpectTravelDirection) values(:LaneID, :LinkID, :SerialNumber, :Width, :ActionType, :ExpectTravelDirection)";

// The first condition of generation 6 is no placeholder: the network id lands where the link id belongs, the
// database refuses the statement, and generation-6 stores keep no lane attributes. Hosts count on that
// verdict.
constexpr Sql kUpdateAttributes = {
    "update Lane set otherAttrsJson=:otherAttrsJson where linkID=%0 and laneID=%1",
    "update Lane set otherAttrsJson=:otherAttrsJson where NetId = 0% and linkID=%1 and laneID=%2"};

constexpr const char *kInsertRestriction =
    "insert into LaneLimitVehicle(LaneID, VehicleTypeCode) values(:LaneID, :VehicleTypeCode)";

constexpr Sql kSelect = {"select * from Lane where LinkID = %0 order by SerialNumber",
                         "select * from Lane where NetId = %0 and LinkID = %1 order by SerialNumber"};
constexpr const char *kSelectMisspelt = "select * from Lane where LinkID = %0 order by SerialNnumber";
constexpr const char *kSelectRestrictions =
    "select a.*, b.VehicleTypeName from LaneLimitVehicle as a join VehicleType as b on a.VehicleTypeCode = b.VehicleTypeCode where LaneID = %0";

QString insertText(const Store &store, bool withGeometry) {
    if (store.hasMisspeltSerialNumber())
        return QString::fromLatin1(withGeometry ? kInsertMisspelt : kInsertMisspeltWithoutGeometry);
    return withGeometry ? store.text(kInsert) : QString::fromLatin1(kInsertWithoutGeometry);
}

constexpr std::tuple kIdColumns = {
    Column{":LaneID", &Lane::laneID, "laneID"},
    Column{":LinkID", &Link::linkID},
};
constexpr Column kSerialNumber{":SerialNumber", &Lane::serialNumber, "serialNumber"};
constexpr Column kMisspeltSerialNumber{":SerialNnumber", &Lane::serialNumber};
constexpr std::tuple kColumns = {
    Column{":Width", &Lane::width, "width"},
    Column{":ActionType", &Lane::actionType, "actionType"},
    Column{":ExpectTravelDirection", &Lane::expectTravelDirection, "expectTravelDirection"},
};
constexpr std::tuple kGeometryColumns = {
    Column{":centerLinePointsJson", &Lane::centerLinePointsJson, "centerLinePoints"},
    Column{":leftBreakPointsJson", &Lane::leftBreakPointsJson, "leftBreakPoints"},
    Column{":rightBreakPointsJson", &Lane::rightBreakPointsJson, "rightBreakPoints"},
};
constexpr Column kAttributes{":otherAttrsJson", &Lane::otherAttrsJson, "otherAttrs"};

template <class Row, class SerialNumber>
void bindRow(Row &row, const SerialNumber &serialNumber, bool withGeometry, const Link &link,
             const Lane &lane) {
    bindAll(row, kIdColumns, lane, link);
    serialNumber.bind(row, lane);
    bindAll(row, kColumns, lane);
    if (withGeometry)
        bindAll(row, kGeometryColumns, lane);
}

template <class Row>
Row &bindRestriction(Row &row, const Lane &lane, long vehicleType) {
    return row.bind(":LaneID", lane.laneID).bind(":VehicleTypeCode", vehicleType);
}

bool hasGeometry(const Store &store) {
    return store.hasSeveralNets() || store.hasColumn("Lane", "centerLinePointsJson");
}

bool insertAttributes(const Store &store, const Lane &lane, long linkId) {
    Query update(store, kUpdateAttributes, {linkId, lane.laneID});
    return update.bind(kAttributes.placeholder, lane.otherAttrsJson).exec();
}

const auto &serialNumberOf(const Store &store) {
    return store.hasMisspeltSerialNumber() ? kMisspeltSerialNumber : kSerialNumber;
}

/// Reads a row of a lane, but for the link that it belongs to.
template <class Row, class SerialNumber>
void readRow(Row &row, const SerialNumber &serialNumber, Lane &lane) {
    readAll(row, kIdColumns, lane);
    serialNumber.read(row, lane);
    readAll(row, kColumns, lane);
    if (lane.expectTravelDirection.isEmpty())
        lane.expectTravelDirection = QStringLiteral("FreeRunning");
    readAll(row, kGeometryColumns, lane);
    kAttributes.read(row, lane);
}

void readRestrictions(const Store &store, Lane &lane) {
    Query rows(store, kSelectRestrictions, {lane.laneID});
    if (!rows.execPart())
        return;
    while (rows.next())
        lane.mlLimitVehicle.append({rows.id("VehicleTypeCode"), rows.text("VehicleTypeName")});
}

/// The names come as they are stored, as with single links. Generation 6 has the table, too: whole networks
/// are written with it.
void loadRestrictions(NetLoad &net) {
    QHash<long, QString> typeNames;
    net.forEachRow("VehicleType", "vehicleTypeCode", [&](Rows &row) {
        typeNames.insert(row.id("vehicleTypeCode"), row.text("vehicleTypeName"));
    });
    net.forEachRow("LaneLimitVehicle", "laneID, vehicleTypeCode", [&](Rows &row) {
        const long laneId = row.id("laneID");
        const auto type = typeNames.constFind(row.id("vehicleTypeCode"));
        Lane *lane = net.store.net().getLaneById(laneId);
        if (!lane)
            net.skip("LaneLimitVehicle", laneId, "belongs to no lane");
        else if (type == typeNames.constEnd())
            net.skip("LaneLimitVehicle", laneId, "names a vehicle type that is missing");
        else
            lane->mlLimitVehicle.append({type.key(), type.value()});
    });
}

} // namespace

const Lane *firstLane(const Link &link) {
    const auto found = std::find_if(link.mlLane.cbegin(), link.mlLane.cend(),
                                    [](const Lane *lane) { return lane->serialNumber == 1; });
    return found != link.mlLane.cend() ? *found : nullptr;
}

const Lane *lastLane(const Link &link) {
    const auto highest =
        std::max_element(link.mlLane.cbegin(), link.mlLane.cend(),
                         [](const Lane *a, const Lane *b) { return a->serialNumber < b->serialNumber; });
    return highest != link.mlLane.cend() ? *highest : nullptr;
}

bool insertLanes(const Store &store, const Link &link, bool soFar) {
    const bool withGeometry = hasGeometry(store);
    Query insert(store, insertText(store, withGeometry));
    for (const Lane *lane : link.mlLane) {
        bindRow(insert.bindNet(), kSerialNumber, withGeometry, link, *lane);
        soFar = insert.exec() && soFar;
        if (soFar && withGeometry && !lane->otherAttrsJson.holdsNothing())
            soFar = insertAttributes(store, *lane, link.linkID);
    }
    return soFar;
}

bool insertLaneRestrictions(const Store &store, const Link &link) {
    if (store.hasSeveralNets())
        return true;
    bool written = true;
    Query insert(store, kInsertRestriction);
    for (const Lane *lane : link.mlLane) {
        for (const auto &vehicleType : lane->mlLimitVehicle) {
            written = bindRestriction(insert, *lane, vehicleType.first).exec() && written;
        }
    }
    return written;
}

void readLanesOf(const Store &store, Link &link) {
    Query rows(store, store.hasMisspeltSerialNumber()
                          ? fillNumber(QString::fromLatin1(kSelectMisspelt), link.linkID)
                          : store.text(kSelect, {link.linkID}));
    if (!rows.execPart())
        return;
    while (rows.next()) {
        auto lane = std::make_unique<Lane>();
        lane->linkID = link.linkID;
        readRow(rows, serialNumberOf(store), *lane);
        link.mlLane.append(lane.release());
    }
    rows.finish();
    if (store.hasSeveralNets())
        return;
    for (Lane *lane : qAsConst(link.mlLane))
        readRestrictions(store, *lane);
}

QVariantList describeLanes(const Link &link) {
    constexpr auto columns =
        std::tuple_cat(kIdColumns, std::tuple{kSerialNumber, kAttributes}, kColumns, kGeometryColumns);
    return describeEach(link.mlLane, columns);
}

void loadAllLanes(NetLoad &net) {
    Objects<Link> &links = net.contents.links;
    SortedById linkOf(links, [](const auto &link) { return link->linkID; });
    const auto &serialNumber = serialNumberOf(net.store);
    const QByteArray order = QByteArray("LinkID, ") + serialNumber.name();
    net.forEachRowAsWritten("Lane", order.constData(), [&](Rows &row) {
        const std::size_t owner = linkOf.find(row.id("LinkID"));
        if (owner == links.size())
            return net.skip("Lane", row.id("LaneID"), "belongs to no link");
        auto lane = std::make_unique<Lane>();
        lane->linkID = links[owner]->linkID;
        readRow(row, serialNumber, *lane);
        net.store.net().enter(lane.get());
        links[owner]->mlLane.append(lane.release());
    });
    loadRestrictions(net);
}

void saveAllLanes(NetSave &net) {
    const Objects<Link> &links = net.contents.links;
    net.giveIds("Lane", links, &Link::mlLane, &Lane::laneID);
    const bool withGeometry = hasGeometry(net.store);
    const auto &serialNumber = serialNumberOf(net.store);
    qint64 restrictions = 0;
    net.writeOwned("Lane", links, &Link::mlLane, [&](RowWriter &row, const Link &link, Lane *lane) {
        if (lane->linkID != link.linkID)
            net.set(lane->linkID, link.linkID);
        bindRow(row, serialNumber, withGeometry, link, *lane);
        if (withGeometry)
            row.bindFilled(kAttributes.placeholder, lane->otherAttrsJson);
        restrictions += lane->mlLimitVehicle.size();
    });
    net.write("LaneLimitVehicle", restrictions, [&](RowWriter &row) {
        for (const auto &link : links) {
            for (const Lane *lane : qAsConst(link->mlLane)) {
                for (const auto &vehicleType : lane->mlLimitVehicle)
                    bindRestriction(row.bindNet(), *lane, vehicleType.first).exec();
            }
        }
    });
}

} // namespace lanes
