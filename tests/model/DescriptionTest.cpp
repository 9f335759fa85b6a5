#include "model/Description.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/NetContents.h"
#include "model/Node.h"
#include "model/Vertex.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

#include <cmath>

// What programs and files see of each kind of object: every field under its name, each with a value of its own.

namespace {

void expectFields(const Description &description, long id, const char *name, const char *json) {
    EXPECT_EQ(description.id, id);
    EXPECT_EQ(description.name.toStdString(), name);
    QJsonParseError error{};
    const QJsonObject expected = QJsonDocument::fromJson(json, &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << json;
    EXPECT_EQ(QJsonDocument(description.toJson()).toJson().toStdString(),
              QJsonDocument(expected).toJson().toStdString());
}

/// Gives each of the members a number of its own, from `first` on.
template <class T>
void count(T first, std::initializer_list<T *> members) {
    for (T *member : members) {
        *member = first;
        first += 1;
    }
}

template <class T>
T *own(T object) {
    return new T(std::move(object));
}

/// Two links, of two vertices and a lane each.
struct Roads {
    Roads() {
        for (Link *link : {&first, &second}) {
            const long id = link == &first ? 1 : 2;
            link->linkID = id;
            for (int i = 0; i < 2; ++i)
                link->mlVertex.append(own(Vertex{10 * id + i, 1.0 + i, 3.0 + i, 5.0 + i}));
            link->mlLane.append(new Lane);
            link->mlLane.first()->laneID = 20 * id;
        }
    }
    Link first;
    Link second;
};

} // namespace

TEST(Description, Links) {
    Roads roads;
    Link &link = roads.first;
    link.roadId = 3;
    link.linkName = QStringLiteral("L");
    link.laneNumber = 4.5;
    link.laneWidth = 3.25;
    link.laneColor = QStringLiteral("C");
    link.linkType = QStringLiteral("T");
    count(5.0, {&link.length, &link.curvature, &link.nonLinearCoefficient, &link.linkSaturationFlow,
                &link.linkTrafficFlow, &link.desiredSpeed, &link.limitSpeed, &link.minSpeed, &link.addValue});
    link.centerLinePointsJson = {{QStringLiteral("data"), 1}};
    link.leftBreakPointsJson = {{QStringLiteral("data"), 2}};
    link.rightBreakPointsJson = {{QStringLiteral("data"), 3}};
    link.otherAttrsJson = {{QStringLiteral("a"), true}};
    link.mpStartNode = new Node{41, QStringLiteral("N"), link.mlVertex.first()};
    Lane &lane = *link.mlLane.first();
    lane.linkID = 1;
    lane.serialNumber = 2;
    lane.width = 3.5;
    lane.expectTravelDirection = QStringLiteral("E");
    lane.actionType = QStringLiteral("A");
    lane.centerLinePointsJson = {{QStringLiteral("data"), 4}};
    lane.leftBreakPointsJson = {{QStringLiteral("data"), 5}};
    lane.rightBreakPointsJson = {{QStringLiteral("data"), 6}};
    lane.otherAttrsJson = {{QStringLiteral("b"), 7}};
    expectFields(describe(link), 1, "L", R"({"linkID": 1, "roadId": 3, "linkName": "L", "laneNumber": 4.5,
        "laneWidth": 3.25, "laneColor": "C", "linkType": "T", "length": 5, "curvature": 6,
        "nonLinearCoefficient": 7, "linkSaturationFlow": 8, "linkTrafficFlow": 9, "desiredSpeed": 10,
        "limitSpeed": 11, "minSpeed": 12, "addValue": 13, "centerLinePoints": {"data": 1},
        "leftBreakPoints": {"data": 2}, "rightBreakPoints": {"data": 3}, "otherAttrs": {"a": true},
        "startNode": {"nodeID": 41, "nodeName": "N", "vertexID": 10}, "endNode": {},
        "vertices": [{"vertexID": 10, "x": 1, "y": 3, "z": 5}, {"vertexID": 11, "x": 2, "y": 4, "z": 6}],
        "lanes": [{"laneID": 20, "serialNumber": 2, "width": 3.5, "expectTravelDirection": "E",
            "actionType": "A", "centerLinePoints": {"data": 4}, "leftBreakPoints": {"data": 5},
            "rightBreakPoints": {"data": 6}, "otherAttrs": {"b": 7}}]})");
}

TEST(Description, Connectors) {
    Roads roads;
    Connector connector(5, &roads.first, &roads.second);
    connector.roadId = 6;
    connector.connName = QStringLiteral("C");
    connector.length = 7;
    connector.curvature = 8;
    connector.nonLinearCoefficient = 9;
    connector.color = QStringLiteral("R");
    connector.desiredSpeed = 10;
    connector.limitSpeed = 11;
    connector.leftBreakPointsJson = {{QStringLiteral("data"), 1}};
    connector.rightBreakPointsJson = {{QStringLiteral("data"), 2}};
    connector.otherAttrsJson = {{QStringLiteral("a"), 3}};
    auto *lanes = new LaneConnector(&connector, roads.first.mlLane.first(), roads.second.mlLane.first());
    connector.mlLaneConnector.append(lanes);
    lanes->weight = 4;
    lanes->centerLinePointsJson = {{QStringLiteral("data"), 4}};
    lanes->leftBreakPointsJson = {{QStringLiteral("data"), 5}};
    lanes->rightBreakPointsJson = {{QStringLiteral("data"), 6}};
    lanes->otherAttrsJson = {{QStringLiteral("b"), 7}};
    expectFields(describe(connector), 5, "C", R"({"connID": 5, "roadId": 6, "connName": "C", "length": 7,
        "curvature": 8, "nonLinearCoefficient": 9, "color": "R", "desiredSpeed": 10, "limitSpeed": 11,
        "startLink": 1, "endLink": 2, "leftBreakPoints": {"data": 1}, "rightBreakPoints": {"data": 2},
        "otherAttrs": {"a": 3}, "laneConnectors": [{"startLane": 20, "endLane": 40, "weight": 4,
            "centerLinePoints": {"data": 4}, "leftBreakPoints": {"data": 5}, "rightBreakPoints": {"data": 6},
            "otherAttrs": {"b": 7}}]})");
    expectFields(describe(GuideArrow{1, 2, 3.5, 4.5, 5}), 1, "",
                 R"({"guideArrowID": 1, "laneID": 2, "length": 3.5, "distToTerminal": 4.5, "arrowType": 5})");
    expectFields(
        describe(LinkType{1, QStringLiteral("T"), 2, 3, 4, 5, {}}), 1, "T",
        R"({"linkTypeID": 1, "typeName": "T", "trafficCapacity": 2, "trafficSpeed": 3, "limitSpeed": 4,
                     "minSpeed": 5})");
}

TEST(Description, VehicleTypesAndCompositions) {
    VehicleType type;
    type.vehicleTypeCode = 2;
    type.vehicleTypeName = QStringLiteral("N");
    count(3.0, {&type.length, &type.lengthSD, &type.width, &type.widthSD, &type.avgSpeed, &type.speedSD,
                &type.maxSpeed, &type.avgAcce, &type.acceSD, &type.maxAcce, &type.avgDece, &type.deceSD,
                &type.maxDece});
    expectFields(describe(type), 2, "N", R"({"vehicleTypeCode": 2, "vehicleTypeName": "N", "length": 3,
        "lengthSD": 4, "width": 5, "widthSD": 6, "avgSpeed": 7, "speedSD": 8, "maxSpeed": 9, "avgAcce": 10,
        "acceSD": 11, "maxAcce": 12, "avgDece": 13, "deceSD": 14, "maxDece": 15})");
    VehicleComposition composition;
    composition.vehicleConsCode = 4;
    composition.name = QStringLiteral("M");
    composition.isDefault = true;
    composition.mlDetail = {{4, 2, 0.75}};
    expectFields(describe(composition), 4, "M", R"({"vehicleConsCode": 4, "name": "M", "isDefault": true,
        "details": [{"vehicleTypeCode": 2, "proportion": 0.75}]})");
    DeparturePoint point;
    point.departurePointID = 5;
    point.name = QStringLiteral("D");
    point.linkID = 6;
    point.mlInterval = {{7, 8, 9, composition}};
    expectFields(describe(point), 5, "D", R"({"departurePointID": 5, "name": "D", "linkID": 6,
        "intervals": [{"departureIntervalD": 7, "interval": 8, "vehiCount": 9, "vehiCons": 4}]})");
}

TEST(Description, DecisionPointsAndRoutes) {
    Roads roads;
    DecisionPoint point;
    point.deciPointID = 3;
    point.deciPointName = QStringLiteral("P");
    point.mpLink = &roads.second;
    point.x = 4;
    point.y = 5;
    point.z = 6;
    auto *route = new Routing;
    point.mlRouting.append(route);
    route->routingID = 7;
    route->routingName = QStringLiteral("R");
    route->proportion = 8.5;
    route->mpDecisionPoint = &point;
    route->mlLinkChain = {{&roads.first, &roads.second}, {&roads.second}};
    const char *const fields =
        R"({"routingID": 7, "routingName": "R", "proportion": 8.5, "linkChains": [[1, 2], [2]]})";
    expectFields(describe(*route), 7, "R", fields);
    auto *interval = new RoutingFlowByInterval;
    interval->endDateTime = 900;
    auto *ratio = new RoutingFLowRatio;
    ratio->routingFLowRatioID = 9;
    ratio->routingID = 7;
    ratio->startDateTime = 10;
    ratio->endDateTime = 11;
    ratio->ratio = 12.5;
    interval->mlFlowRatio.append(ratio);
    point.mlFlowByInterval = {interval, new RoutingFlowByInterval};
    expectFields(
        describe(point), 3, "P",
        QByteArray(
            R"({"deciPointID": 3, "deciPointName": "P", "linkID": 2, "x": 4, "y": 5, "z": 6, "routes": [)")
            .append(fields)
            .append(R"(], "flowIntervals": [{"endDateTime": 900, "flowRatios": [{"RoutingFLowRatioID": 9,
                         "routingID": 7, "startDateTime": 10, "endDateTime": 11, "ratio": 12.5}]}]})")
            .constData());
    point.mpLink = nullptr;
    EXPECT_EQ(describe(point).fields.value(QStringLiteral("linkID")), QVariant(0));
}

TEST(Description, Signals) {
    SignalGroup group;
    group.signalGroupID = 1;
    group.name = QStringLiteral("G");
    group.timeLength = 2;
    group.startTime = 3;
    group.endTime = 4;
    auto *phase = new SignalPhase;
    group.mlPhase.append(phase);
    phase->signalPhaseID = 5;
    phase->serialNumber = 6;
    phase->name = QStringLiteral("P");
    phase->mlColor = {{QStringLiteral("Red"), 7}, {QStringLiteral("Green"), 8}};
    expectFields(describe(group), 1, "G",
                 R"({"signalGroupID": 1, "name": "G", "timeLength": 2, "startTime": 3,
        "endTime": 4, "phases": [{"signalPhaseID": 5, "serialNumber": 6, "name": "P",
            "colors": [{"color": "Red", "timeLength": 7}, {"color": "Green", "timeLength": 8}]}]})");
    SignalLamp lamp;
    lamp.signalLampID = 9;
    lamp.name = QStringLiteral("L");
    lamp.laneID = 10;
    lamp.toLaneID = 11;
    lamp.x = 12;
    lamp.y = 13;
    lamp.z = 14;
    expectFields(describe(lamp), 9, "L", R"({"signalLampID": 9, "name": "L", "signalPhaseID": 0, "laneID": 10,
        "toLaneID": 11, "x": 12, "y": 13, "z": 14})");
    lamp.setPhase(phase);
    EXPECT_EQ(describe(lamp).fields.value(QStringLiteral("signalPhaseID")), QVariant(5));
}

TEST(Description, Devices) {
    VehicleDetector detector;
    detector.vehicleDetectorId = 1;
    detector.name = QStringLiteral("D");
    detector.signalGroupID = 2;
    detector.phaseNumber = 3;
    detector.roadId = 4;
    detector.roadType = QStringLiteral("C");
    detector.laneNumber = 5;
    detector.toLaneNumber = 6;
    detector.distToTerminal = 7;
    detector.length = 8;
    detector.type = QStringLiteral("T");
    detector.maxGreen = 9;
    detector.mlVehiTypeCode = {10, 11};
    expectFields(describe(detector), 1, "D", R"({"vehicleDetectorId": 1, "name": "D", "signalGroupID": 2,
        "phaseNumber": 3, "roadId": 4, "roadType": "C", "laneNumber": 5, "toLaneNumber": 6, "distToTerminal": 7,
        "length": 8, "type": "T", "maxGreen": 9, "vehicleTypeCodes": [10, 11]})");
    VehicleQueueCounter counter;
    counter.queueCounterID = 1;
    counter.name = QStringLiteral("Q");
    counter.roadID = 2;
    count(3, {&counter.laneNumber, &counter.toLaneNumber});
    count(5.0, {&counter.x, &counter.y, &counter.z, &counter.distance, &counter.speedLowLimit,
                &counter.speedUpLimit, &counter.maxDistInterval, &counter.maxQueueLength});
    count(13, {&counter.startTime, &counter.endTime, &counter.dataInterval, &counter.countInterval});
    expectFields(describe(counter), 1, "Q",
                 R"({"queueCounterID": 1, "name": "Q", "roadID": 2, "laneNumber": 3,
        "toLaneNumber": 4, "x": 5, "y": 6, "z": 7, "distance": 8, "speedLowLimit": 9, "speedUpLimit": 10,
        "maxDistInterval": 11, "maxQueueLength": 12, "startTime": 13, "endTime": 14, "dataInterval": 15,
        "countInterval": 16})");
    VehicleTravelDetector travel;
    travel.detectorId = 1;
    travel.name = QStringLiteral("T");
    travel.startRoadId = 2;
    count(3, {&travel.start_laneNumber, &travel.start_toLaneNumber});
    count(5.0, {&travel.startDist, &travel.startX, &travel.startY});
    travel.teminalRoadId = 8;
    count(9, {&travel.teminal_laneNumber, &travel.teminal_toLaneNumber});
    count(11.0, {&travel.teminalDist, &travel.teminalX, &travel.teminalY});
    count(14, {&travel.startTime, &travel.endTime, &travel.dataInterval});
    travel.shortestDistance = 17;
    expectFields(describe(travel), 1, "T", R"({"detectorId": 1, "name": "T", "startRoadId": 2,
        "start_laneNumber": 3, "start_toLaneNumber": 4, "startDist": 5, "startX": 6, "startY": 7,
        "teminalRoadId": 8, "teminal_laneNumber": 9, "teminal_toLaneNumber": 10, "teminalDist": 11,
        "teminalX": 12, "teminalY": 13, "startTime": 14, "endTime": 15, "dataInterval": 16,
        "shortestDistance": 17})");
    expectFields(
        describe(VehicleDrivInfoCollector{1, QStringLiteral("C"), 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), 1, "C",
        R"({"collecterID": 1, "name": "C", "roadID": 2, "laneNumber": 3, "toLaneNumber": 4, "distance": 5,
                     "x": 6, "y": 7, "z": 8, "startTime": 9, "endTime": 10, "dataInterval": 11})");
}

TEST(Description, BusLinesGiveEachStopOnce) {
    Roads roads;
    BusStation station(&roads.second, 3);
    station.busStationID = 2;
    station.name = QStringLiteral("S");
    station.x = 4;
    station.y = 5;
    station.length = 6;
    station.type = QStringLiteral("T");
    expectFields(describe(station), 2, "S", R"({"busStationID": 2, "name": "S", "linkID": 2, "laneNumber": 3,
        "x": 4, "y": 5, "length": 6, "type": "T"})");
    BusLine line;
    line.busLineID = 1;
    line.name = QStringLiteral("B");
    line.length = 2;
    count(3, {&line.dischargeFreq, &line.dischargeStartTime, &line.dischargeEndTime});
    count(6.0, {&line.startX, &line.startY, &line.endX, &line.endY, &line.desirSpeed, &line.speedSD});
    line.passCountAtStartTime = 12;
    line.mlLink = {&roads.second, &roads.first};
    line.mlRoadId = {13, 14};
    BusStationLine stop;
    count(31L, {&stop.stationLineID, &stop.busStationID, &stop.linkID});
    stop.busLineID = 1;
    stop.parkingTime = 34;
    count(35.0, {&stop.leavingPercent, &stop.getOnTimePerson, &stop.getOutTimePerson});
    stop.mlPassengerArriving.append(new PassengerArriving(38, 39, 40, 41));
    BusStationLine before;
    before.stationLineID = 30;
    line.mlStationLine = {own(stop), own(before), own(stop)};
    const QJsonObject described = describe(line).toJson();
    EXPECT_EQ(described.value(QStringLiteral("stops"))
                  .toArray()
                  .first()
                  .toObject()
                  .value(QStringLiteral("stationLineID")),
              QJsonValue(30));
    line.mlStationLine = {own(stop), own(stop)};
    expectFields(describe(line), 1, "B", R"({"busLineID": 1, "name": "B", "length": 2, "dischargeFreq": 3,
        "dischargeStartTime": 4, "dischargeEndTime": 5, "startX": 6, "startY": 7, "endX": 8, "endY": 9,
        "desirSpeed": 10, "speedSD": 11, "passCountAtStartTime": 12, "roads": [13, 14], "links": [2, 1],
        "stops": [{"stationLineID": 31, "busStationID": 32, "linkID": 33, "parkingTime": 34,
            "leavingPercent": 35, "getOnTimePerson": 36, "getOutTimePerson": 37,
            "arrivals": [{"passengerArrivingID": 38, "startTime": 39, "endTime": 40, "passengerCount": 41}]}]})");
}

TEST(Description, ZonesAndAreas) {
    AccidentZone accident;
    accident.accidentZoneId = 1;
    accident.name = QStringLiteral("A");
    accident.location = 2.5F;
    accident.zoneLength = 3.5F;
    accident.roadId = 4;
    accident.roadType = QStringLiteral("R");
    accident.mlLane = {own(ZoneLane{1, 5, 6})};
    expectFields(describe(accident), 1, "A", R"({"accidentZoneId": 1, "name": "A", "location": 2.5,
        "zoneLength": 3.5, "roadId": 4, "roadType": "R", "lanes": [{"laneNumber": 5, "toLaneNumber": 6}]})");
    RoadWorkZone work;
    work.roadWorkZoneId = 1;
    work.name = QStringLiteral("W");
    work.location = 2;
    work.zoneLength = 3;
    work.limitSpeed = 4;
    work.roadID = 5;
    work.roadName = QStringLiteral("N");
    work.roadType = QStringLiteral("R");
    work.mlLane = {own(ZoneLane{1, 6, 7})};
    expectFields(describe(work), 1, "W", R"({"roadWorkZoneId": 1, "name": "W", "location": 2, "zoneLength": 3,
        "limitSpeed": 4, "roadID": 5, "roadName": "N", "roadType": "R",
        "lanes": [{"laneNumber": 6, "toLaneNumber": 7}]})");
    ReduceSpeedArea area;
    area.reduceSpeedAreaID = 1;
    area.name = QStringLiteral("S");
    area.location = 2;
    area.areaLength = 3;
    area.roadID = 4;
    area.laneNumber = 5;
    area.toLaneNumber = 6;
    area.mlSpeedInterval = {own(ReduceSpeedInterval{7, 1, 8, 9})};
    area.mlSpeedVehiType = {own(ReduceSpeedVehiType{1, 10, 11, 12})};
    expectFields(describe(area), 1, "S",
                 R"({"reduceSpeedAreaID": 1, "name": "S", "location": 2, "areaLength": 3,
        "roadID": 4, "laneNumber": 5, "toLaneNumber": 6,
        "intervals": [{"intervalID": 7, "startTime": 8, "endTime": 9}],
        "vehicleTypes": [{"vehicleTypeCode": 10, "avgSpeed": 11, "speedSD": 12}]})");
}

TEST(Description, SettingsAndRecords) {
    expectFields(describe(DriveFollowedModelParam{2, 3, 4, 5, 6, 7, 8}), 2, "", R"({"modelParamID": 2,
        "maxAcce": 3, "safeTimeInterval": 4, "desireDece": 5, "spaceBetween": 6, "alfa": 7, "beit": 8})");
    ChangeLaneModelParam change(1);
    count(2.0, {&change.headBeit0, &change.headBeit1Coef, &change.headBeit2Coef, &change.headBeit3Coef,
                &change.headBeit4Coef, &change.headRandParam, &change.headDistParam, &change.lagBeit0,
                &change.lagBeit1Coef, &change.lagBeit2Coef, &change.lagBeit3Coef, &change.lagBeit4Coef,
                &change.lagRandParam, &change.lagDistParam});
    expectFields(describe(change), 1, "", R"({"modelParamID": 1, "headBeit0": 2, "headBeit1Coef": 3,
        "headBeit2Coef": 4, "headBeit3Coef": 5, "headBeit4Coef": 6, "headRandParam": 7, "headDistParam": 8,
        "lagBeit0": 9, "lagBeit1Coef": 10, "lagBeit2Coef": 11, "lagBeit3Coef": 12, "lagBeit4Coef": 13,
        "lagRandParam": 14, "lagDistParam": 15})");
    SimulateConfiguration simulation;
    simulation.simuTimeInterval = 1;
    simulation.recordTrace = true;
    simulation.vehiCollectDataInterval = 2;
    simulation.vehiQueueDataInterval = 3;
    simulation.vehiTravelDataInterval = 4;
    simulation.mAcceMultiples = 5.75;
    simulation.simuAccuracy = 6;
    simulation.randSeed = 7;
    expectFields(describe(simulation), 1, "", R"({"simuTimeInterval": 1, "recordTrace": true,
        "vehiCollectDataInterval": 2, "vehiQueueDataInterval": 3, "vehiTravelDataInterval": 4,
        "acceMultiples": 5, "simuAccuracy": 6, "randSeed": 7})");
    Configuration scene;
    scene.sceneWidth = 1;
    scene.sceneHeight = 2;
    scene.scale = 3;
    scene.backgroundMap = QByteArray("1234");
    scene.showBackgroundMap = false;
    scene.showGrid = true;
    scene.saveDate = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5));
    expectFields(describe(scene), 1, "", R"({"sceneWidth": 1, "sceneHeight": 2, "scale": 3,
        "backgroundMapBytes": 4, "showBackgroundMap": false, "showGrid": true,
        "saveDate": "2026-01-02T03:04:05"})");
    NetRecord record;
    record.netId = 1;
    record.name = QStringLiteral("N");
    record.sourceType = QStringLiteral("S");
    record.sourceUrl = QStringLiteral("U");
    record.backgroundUrl = QStringLiteral("B");
    record.caption = QStringLiteral("C");
    record.otherAttrsJson = {{QStringLiteral("a"), 2}};
    record.centerX = 3;
    record.centerY = 4;
    record.isDefault = true;
    expectFields(describe(record), 1, "N", R"({"netId": 1, "name": "N", "sourceType": "S", "sourceUrl": "U",
        "backgroundUrl": "B", "caption": "C", "otherAttrs": {"a": 2}, "centerX": 3, "centerY": 4,
        "isDefault": true})");
}

// Numbers that JSON would change: values are compared by their bits, and ids have 64 of them.
TEST(Description, KeepsValuesAsTheyAre) {
    GuideArrow arrow;
    arrow.length = -0.0;
    EXPECT_TRUE(std::signbit(describe(arrow).fields.value(QStringLiteral("length")).toDouble()));
    EXPECT_EQ(describe(arrow).fields.value(QStringLiteral("guideArrowID")).userType(),
              int(QMetaType::LongLong));
}

TEST(Description, FieldsAreTheSameToTheBit) {
    const auto oneOf = [](const QVariant &value) { return QVariantMap{{QStringLiteral("a"), value}}; };
    EXPECT_TRUE(isSameField(1e15, 1e15));
    EXPECT_FALSE(isSameField(1e15 + 1, 1e15 + 2));
    EXPECT_FALSE(isSameField(0.0, -0.0));
    EXPECT_FALSE(areSameFields(oneOf(QVariantList{1e15 + 1}), oneOf(QVariantList{1e15 + 2})));
    EXPECT_TRUE(areSameFields(oneOf(QVariantList{1, QStringLiteral("x")}),
                              oneOf(QVariantList{1, QStringLiteral("x")})));
    EXPECT_FALSE(areSameFields(oneOf(QVariantList{1}), oneOf(QVariantList{1, 1})));
}
