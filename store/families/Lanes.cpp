#include "store/families/Lanes.h"

#include "model/Lane.h"
#include "model/Link.h"
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

bool insertAttributes(const Store &store, const Lane &lane, long linkId) {
    Query update(store, kUpdateAttributes, {linkId, lane.laneID});
    return update.bind(":otherAttrsJson", lane.otherAttrsJson).exec();
}

void readRestrictions(const Store &store, Lane &lane) {
    Query rows(store, kSelectRestrictions, {lane.laneID});
    if (!rows.exec())
        return;
    while (rows.next())
        lane.mlLimitVehicle.append({rows.id("VehicleTypeCode"), rows.text("VehicleTypeName")});
}

} // namespace

const Lane *first(const Link &link) {
    const auto found = std::find_if(link.mlLane.cbegin(), link.mlLane.cend(),
                                    [](const Lane *lane) { return lane->serialNumber == 1; });
    return found != link.mlLane.cend() ? *found : nullptr;
}

const Lane *last(const Link &link) {
    const auto highest =
        std::max_element(link.mlLane.cbegin(), link.mlLane.cend(),
                         [](const Lane *a, const Lane *b) { return a->serialNumber < b->serialNumber; });
    return highest != link.mlLane.cend() ? *highest : nullptr;
}

bool insertAll(const Store &store, const Link &link, bool soFar) {
    const bool withGeometry = store.hasSeveralNets() || store.hasColumn("Lane", "centerLinePointsJson");
    Query insert(store, insertText(store, withGeometry));
    for (const Lane *lane : link.mlLane) {
        insert.bindNet()
            .bind(":LaneID", lane->laneID)
            .bind(":LinkID", link.linkID)
            .bind(":SerialNumber", lane->serialNumber)
            .bind(":Width", lane->width)
            .bind(":ActionType", lane->actionType)
            .bind(":ExpectTravelDirection", lane->expectTravelDirection);
        if (withGeometry) {
            insert.bind(":centerLinePointsJson", lane->centerLinePointsJson)
                .bind(":leftBreakPointsJson", lane->leftBreakPointsJson)
                .bind(":rightBreakPointsJson", lane->rightBreakPointsJson);
        }
        soFar = insert.exec() && soFar;
        if (soFar && withGeometry && !lane->otherAttrsJson.holdsNothing())
            soFar = insertAttributes(store, *lane, link.linkID);
    }
    return soFar;
}

bool insertRestrictions(const Store &store, const Link &link) {
    if (store.hasSeveralNets())
        return true;
    bool written = true;
    Query insert(store, kInsertRestriction);
    for (const Lane *lane : link.mlLane) {
        for (const auto &vehicleType : lane->mlLimitVehicle) {
            insert.bind(":LaneID", lane->laneID).bind(":VehicleTypeCode", vehicleType.first);
            written = insert.exec() && written;
        }
    }
    return written;
}

void readAll(const Store &store, Link &link) {
    Query rows(store, store.hasMisspeltSerialNumber()
                          ? fillNumber(QString::fromLatin1(kSelectMisspelt), link.linkID)
                          : store.text(kSelect, {link.linkID}));
    if (!rows.exec())
        return;
    const char *serialNumber = store.hasMisspeltSerialNumber() ? "SerialNnumber" : "SerialNumber";
    while (rows.next()) {
        auto lane = std::make_unique<Lane>();
        lane->laneID = rows.id("LaneID");
        lane->linkID = link.linkID;
        lane->serialNumber = rows.integer(serialNumber);
        lane->width = rows.number("width");
        lane->actionType = rows.text("actionType");
        lane->expectTravelDirection = rows.text("expectTravelDirection");
        if (lane->expectTravelDirection.isEmpty())
            lane->expectTravelDirection = QStringLiteral("FreeRunning");
        lane->centerLinePointsJson = rows.json("centerLinePointsJson");
        lane->leftBreakPointsJson = rows.json("leftBreakPointsJson");
        lane->rightBreakPointsJson = rows.json("rightBreakPointsJson");
        lane->otherAttrsJson = rows.json("otherAttrsJson");
        link.mlLane.append(lane.release());
    }
    rows.finish();
    if (store.hasSeveralNets())
        return;
    for (Lane *lane : qAsConst(link.mlLane))
        readRestrictions(store, *lane);
}

} // namespace lanes
