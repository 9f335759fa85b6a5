#pragma once

#include "model/BusStationLine.h"
#include "model/Lane.h"
#include "model/LaneConnector.h"
#include "model/NetContents.h"
#include "model/Node.h"
#include "model/PassengerArriving.h"
#include "model/Vertex.h"
#include "model/ZoneLane.h"

/// The fields of every kind of object, once: the generator fills them, the comparer writes them down. Kept by
/// hand and apart from the library's own lists of columns, which are what is tested. A visitor offers
///  - id: an identifier, or a number that must fit other objects; the generator leaves it alone;
///  - value: anything that may take any value;
///  - word: a text that may be one of the dictionary's words;
///  - reference: an object that belongs to another owner, known by its id;
///  - part, list: an owned object, owned objects in order.
/// What a store does not keep is not here: ids of lane connectors (made afresh at every read), run-time
/// state.
namespace differential {

template <class Visitor>
void fields(Visitor &visit, Vertex &vertex) {
    visit.id("vertexID", vertex.vertexID);
    visit.value("x", vertex.x);
    visit.value("y", vertex.y);
    visit.value("z", vertex.z);
}

template <class Visitor>
void fields(Visitor &visit, Node &node) {
    visit.id("nodeID", node.nodeID);
    visit.id("nodeName", node.nodeName);
    visit.reference("mpVertex", node.mpVertex, &Vertex::vertexID);
}

template <class Visitor>
void fields(Visitor &visit, QPair<long, QString> &restriction) {
    visit.id("code", restriction.first);
    visit.id("name", restriction.second);
}

template <class Visitor>
void fields(Visitor &visit, Lane &lane) {
    visit.id("laneID", lane.laneID);
    visit.id("linkID", lane.linkID);
    visit.id("serialNumber", lane.serialNumber);
    visit.value("width", lane.width);
    visit.word("actionType", lane.actionType);
    visit.word("expectTravelDirection", lane.expectTravelDirection);
    visit.value("centerLinePointsJson", lane.centerLinePointsJson);
    visit.value("leftBreakPointsJson", lane.leftBreakPointsJson);
    visit.value("rightBreakPointsJson", lane.rightBreakPointsJson);
    visit.value("otherAttrsJson", lane.otherAttrsJson);
    visit.list("mlLimitVehicle", lane.mlLimitVehicle);
}

template <class Visitor>
void fields(Visitor &visit, Link &link) {
    visit.id("linkID", link.linkID);
    visit.id("roadId", link.roadId);
    visit.value("linkName", link.linkName);
    visit.value("laneNumber", link.laneNumber);
    visit.value("laneWidth", link.laneWidth);
    visit.value("laneColor", link.laneColor);
    visit.word("linkType", link.linkType);
    visit.value("length", link.length);
    visit.value("curvature", link.curvature);
    visit.value("nonLinearCoefficient", link.nonLinearCoefficient);
    visit.value("linkSaturationFlow", link.linkSaturationFlow);
    visit.value("linkTrafficFlow", link.linkTrafficFlow);
    visit.value("desiredSpeed", link.desiredSpeed);
    visit.value("limitSpeed", link.limitSpeed);
    visit.value("minSpeed", link.minSpeed);
    visit.value("addValue", link.addValue);
    visit.value("centerLinePointsJson", link.centerLinePointsJson);
    visit.value("leftBreakPointsJson", link.leftBreakPointsJson);
    visit.value("rightBreakPointsJson", link.rightBreakPointsJson);
    visit.value("otherAttrsJson", link.otherAttrsJson);
    visit.list("mlVertex", link.mlVertex);
    visit.part("mpStartNode", link.mpStartNode);
    visit.part("mpEndNode", link.mpEndNode);
    visit.list("mlLane", link.mlLane);
}

template <class Visitor>
void fields(Visitor &visit, LinkType &type) {
    visit.id("linkTypeID", type.linkTypeID);
    visit.word("typeName", type.typeName);
    visit.value("trafficCapacity", type.trafficCapacity);
    visit.value("trafficSpeed", type.trafficSpeed);
    visit.value("limitSpeed", type.limitSpeed);
    visit.value("minSpeed", type.minSpeed);
}

template <class Visitor>
void fields(Visitor &visit, GuideArrow &arrow) {
    visit.id("guideArrowID", arrow.guideArrowID);
    visit.id("laneID", arrow.laneID);
    visit.value("length", arrow.length);
    visit.value("distToTerminal", arrow.distToTerminal);
    visit.value("arrowType", arrow.arrowType);
}

template <class Visitor>
void fields(Visitor &visit, LaneConnector &lanes) {
    visit.reference("mpStartLane", lanes.mpStartLane, &Lane::laneID);
    visit.reference("mpEndLane", lanes.mpEndLane, &Lane::laneID);
    visit.value("weight", lanes.weight);
    visit.value("centerLinePointsJson", lanes.centerLinePointsJson);
    visit.value("leftBreakPointsJson", lanes.leftBreakPointsJson);
    visit.value("rightBreakPointsJson", lanes.rightBreakPointsJson);
    visit.value("otherAttrsJson", lanes.otherAttrsJson);
}

template <class Visitor>
void fields(Visitor &visit, Connector &connector) {
    visit.id("connID", connector.connID);
    visit.id("roadId", connector.roadId);
    visit.reference("mpStartLink", connector.mpStartLink, &Link::linkID);
    visit.reference("mpEndLink", connector.mpEndLink, &Link::linkID);
    visit.value("connName", connector.connName);
    visit.value("length", connector.length);
    visit.value("curvature", connector.curvature);
    visit.value("nonLinearCoefficient", connector.nonLinearCoefficient);
    visit.value("color", connector.color);
    visit.value("desiredSpeed", connector.desiredSpeed);
    visit.value("limitSpeed", connector.limitSpeed);
    visit.value("leftBreakPointsJson", connector.leftBreakPointsJson);
    visit.value("rightBreakPointsJson", connector.rightBreakPointsJson);
    visit.value("otherAttrsJson", connector.otherAttrsJson);
    visit.list("mlLaneConnector", connector.mlLaneConnector);
    visit.list("mlLimitVehicle", connector.mlLimitVehicle);
}

template <class Visitor>
void fields(Visitor &visit, Online::ColorInterval &step) {
    visit.word("color", step.color);
    visit.value("interval", step.interval);
}

template <class Visitor>
void fields(Visitor &visit, SignalPhase &phase) {
    visit.id("signalPhaseID", phase.signalPhaseID);
    visit.value("serialNumber", phase.serialNumber);
    visit.value("name", phase.name);
    visit.list("mlColor", phase.mlColor);
}

template <class Visitor>
void fields(Visitor &visit, SignalGroup &group) {
    visit.id("signalGroupID", group.signalGroupID);
    visit.value("name", group.name);
    visit.value("timeLength", group.timeLength);
    visit.value("startTime", group.startTime);
    visit.value("endTime", group.endTime);
    visit.list("mlPhase", group.mlPhase);
}

template <class Visitor>
void fields(Visitor &visit, SignalLamp &lamp) {
    visit.id("signalLampID", lamp.signalLampID);
    visit.reference("mpPhase", lamp.mpPhase.data(), &SignalPhase::signalPhaseID);
    visit.id("laneID", lamp.laneID);
    visit.id("toLaneID", lamp.toLaneID);
    visit.value("name", lamp.name);
    visit.value("x", lamp.x);
    visit.value("y", lamp.y);
    visit.value("z", lamp.z);
}

template <class Visitor>
void fields(Visitor &visit, VehicleType &type) {
    visit.id("vehicleTypeCode", type.vehicleTypeCode);
    visit.word("vehicleTypeName", type.vehicleTypeName);
    visit.value("length", type.length);
    visit.value("lengthSD", type.lengthSD);
    visit.value("width", type.width);
    visit.value("widthSD", type.widthSD);
    visit.value("avgSpeed", type.avgSpeed);
    visit.value("speedSD", type.speedSD);
    visit.value("maxSpeed", type.maxSpeed);
    visit.value("avgAcce", type.avgAcce);
    visit.value("acceSD", type.acceSD);
    visit.value("maxAcce", type.maxAcce);
    visit.value("avgDece", type.avgDece);
    visit.value("deceSD", type.deceSD);
    visit.value("maxDece", type.maxDece);
}

template <class Visitor>
void fields(Visitor &visit, VehicleConsDetail &detail) {
    visit.id("vehicleConsCode", detail.vehicleConsCode);
    visit.id("vehicleTypeCode", detail.vehicleTypeCode);
    visit.value("proportion", detail.proportion);
}

template <class Visitor>
void fields(Visitor &visit, VehicleComposition &composition) {
    visit.id("vehicleConsCode", composition.vehicleConsCode);
    visit.value("name", composition.name);
    visit.value("isDefault", composition.isDefault);
    visit.list("mlDetail", composition.mlDetail);
}

template <class Visitor>
void fields(Visitor &visit, DepartureInterval &interval) {
    visit.id("departureIntervalD", interval.departureIntervalD);
    visit.value("interval", interval.interval);
    visit.value("vehiCount", interval.vehiCount);
    visit.id("vehiCons", interval.vehiCons.vehicleConsCode);
}

template <class Visitor>
void fields(Visitor &visit, DeparturePoint &point) {
    visit.id("departurePointID", point.departurePointID);
    visit.value("name", point.name);
    visit.id("linkID", point.linkID);
    visit.list("mlInterval", point.mlInterval);
}

template <class Visitor>
void fields(Visitor &visit, Routing &route) {
    visit.id("routingID", route.routingID);
    visit.value("routingName", route.routingName);
    visit.value("proportion", route.proportion);
    visit.reference("mpDecisionPoint", route.mpDecisionPoint, &DecisionPoint::deciPointID);
    for (QList<Link *> &chain : route.mlLinkChain)
        visit.references("mlLinkChain", chain, &Link::linkID);
}

template <class Visitor>
void fields(Visitor &visit, RoutingFLowRatio &ratio) {
    visit.id("routingFLowRatioID", ratio.routingFLowRatioID);
    visit.id("routingID", ratio.routingID);
    visit.id("startDateTime", ratio.startDateTime);
    visit.id("endDateTime", ratio.endDateTime);
    visit.value("ratio", ratio.ratio);
}

template <class Visitor>
void fields(Visitor &visit, RoutingFlowByInterval &interval) {
    visit.id("endDateTime", interval.endDateTime);
    visit.list("mlFlowRatio", interval.mlFlowRatio);
}

template <class Visitor>
void fields(Visitor &visit, DecisionPoint &point) {
    visit.id("deciPointID", point.deciPointID);
    visit.value("deciPointName", point.deciPointName);
    visit.reference("mpLink", point.mpLink, &Link::linkID);
    visit.value("x", point.x);
    visit.value("y", point.y);
    visit.value("z", point.z);
    visit.list("mlRouting", point.mlRouting);
    visit.list("mlFlowByInterval", point.mlFlowByInterval);
}

template <class Visitor>
void fields(Visitor &visit, RouteLanes &pair) {
    visit.id("routingID", pair.routingID);
    visit.id("connID", pair.connID);
    visit.id("laneID1", pair.lanes.laneID1);
    visit.id("laneID2", pair.lanes.laneID2);
}

template <class Visitor>
void fields(Visitor &visit, VehicleDetector &detector) {
    visit.id("vehicleDetectorId", detector.vehicleDetectorId);
    visit.value("name", detector.name);
    visit.id("signalGroupID", detector.signalGroupID);
    visit.value("phaseNumber", detector.phaseNumber);
    visit.id("roadId", detector.roadId);
    visit.value("roadType", detector.roadType);
    visit.value("laneNumber", detector.laneNumber);
    visit.value("toLaneNumber", detector.toLaneNumber);
    visit.value("distToTerminal", detector.distToTerminal);
    visit.value("length", detector.length);
    visit.word("type", detector.type);
    visit.value("maxGreen", detector.maxGreen);
    visit.list("mlVehiTypeCode", detector.mlVehiTypeCode);
}

template <class Visitor>
void fields(Visitor &visit, VehicleQueueCounter &counter) {
    visit.id("queueCounterID", counter.queueCounterID);
    visit.value("name", counter.name);
    visit.id("roadID", counter.roadID);
    visit.value("laneNumber", counter.laneNumber);
    visit.value("toLaneNumber", counter.toLaneNumber);
    visit.value("x", counter.x);
    visit.value("y", counter.y);
    visit.value("z", counter.z);
    visit.value("speedLowLimit", counter.speedLowLimit);
    visit.value("speedUpLimit", counter.speedUpLimit);
    visit.value("maxDistInterval", counter.maxDistInterval);
    visit.value("maxQueueLength", counter.maxQueueLength);
    visit.value("distance", counter.distance);
    visit.value("startTime", counter.startTime);
    visit.value("endTime", counter.endTime);
    visit.value("dataInterval", counter.dataInterval);
    visit.value("countInterval", counter.countInterval);
}

template <class Visitor>
void fields(Visitor &visit, VehicleTravelDetector &detector) {
    visit.id("detectorId", detector.detectorId);
    visit.value("name", detector.name);
    visit.id("startRoadId", detector.startRoadId);
    visit.value("start_laneNumber", detector.start_laneNumber);
    visit.value("start_toLaneNumber", detector.start_toLaneNumber);
    visit.value("startDist", detector.startDist);
    visit.value("startX", detector.startX);
    visit.value("startY", detector.startY);
    visit.id("teminalRoadId", detector.teminalRoadId);
    visit.value("teminal_laneNumber", detector.teminal_laneNumber);
    visit.value("teminal_toLaneNumber", detector.teminal_toLaneNumber);
    visit.value("teminalDist", detector.teminalDist);
    visit.value("teminalX", detector.teminalX);
    visit.value("teminalY", detector.teminalY);
    visit.value("startTime", detector.startTime);
    visit.value("endTime", detector.endTime);
    visit.value("dataInterval", detector.dataInterval);
    visit.value("shortestDistance", detector.shortestDistance);
}

template <class Visitor>
void fields(Visitor &visit, VehicleDrivInfoCollector &collector) {
    visit.id("collecterID", collector.collecterID);
    visit.value("name", collector.name);
    visit.id("roadID", collector.roadID);
    visit.value("laneNumber", collector.laneNumber);
    visit.value("toLaneNumber", collector.toLaneNumber);
    visit.value("distance", collector.distance);
    visit.value("x", collector.x);
    visit.value("y", collector.y);
    visit.value("z", collector.z);
    visit.value("startTime", collector.startTime);
    visit.value("endTime", collector.endTime);
    visit.value("dataInterval", collector.dataInterval);
}

template <class Visitor>
void fields(Visitor &visit, BusStation &station) {
    visit.id("busStationID", station.busStationID);
    visit.value("name", station.name);
    visit.value("laneNumber", station.laneNumber);
    visit.value("x", station.x);
    visit.value("y", station.y);
    visit.value("length", station.length);
    visit.word("type", station.type);
    visit.reference("mpLink", station.mpLink, &Link::linkID);
}

template <class Visitor>
void fields(Visitor &visit, PassengerArriving &arrival) {
    visit.id("passengerArrivingID", arrival.passengerArrivingID);
    visit.value("startTime", arrival.startTime);
    visit.value("endTime", arrival.endTime);
    visit.value("passengerCount", arrival.passengerCount);
}

template <class Visitor>
void fields(Visitor &visit, BusStationLine &stop) {
    visit.id("stationLineID", stop.stationLineID);
    visit.id("busStationID", stop.busStationID);
    visit.id("linkID", stop.linkID);
    visit.id("busLineID", stop.busLineID);
    visit.value("parkingTime", stop.parkingTime);
    visit.value("leavingPercent", stop.leavingPercent);
    visit.value("getOnTimePerson", stop.getOnTimePerson);
    visit.value("getOutTimePerson", stop.getOutTimePerson);
    visit.list("mlPassengerArriving", stop.mlPassengerArriving);
}

template <class Visitor>
void fields(Visitor &visit, BusLine &line) {
    visit.id("busLineID", line.busLineID);
    visit.value("name", line.name);
    visit.value("length", line.length);
    visit.value("dischargeFreq", line.dischargeFreq);
    visit.value("dischargeStartTime", line.dischargeStartTime);
    visit.value("dischargeEndTime", line.dischargeEndTime);
    visit.value("startX", line.startX);
    visit.value("startY", line.startY);
    visit.value("endX", line.endX);
    visit.value("endY", line.endY);
    visit.value("desirSpeed", line.desirSpeed);
    visit.value("speedSD", line.speedSD);
    visit.value("passCountAtStartTime", line.passCountAtStartTime);
    visit.references("mlLink", line.mlLink, &Link::linkID);
    visit.list("mlRoadId", line.mlRoadId);
    visit.list("mlStationLine", line.mlStationLine);
}

template <class Visitor>
void fields(Visitor &visit, ZoneLane &lane) {
    visit.id("zoneId", lane.zoneId);
    visit.id("laneNumber", lane.laneNumber);
    visit.id("toLaneNumber", lane.toLaneNumber);
}

template <class Visitor>
void fields(Visitor &visit, AccidentZone &zone) {
    visit.id("accidentZoneId", zone.accidentZoneId);
    visit.value("name", zone.name);
    visit.value("location", zone.location);
    visit.value("zoneLength", zone.zoneLength);
    visit.id("roadId", zone.roadId);
    visit.value("roadType", zone.roadType);
    visit.list("mlLane", zone.mlLane);
}

template <class Visitor>
void fields(Visitor &visit, RoadWorkZone &zone) {
    visit.id("roadWorkZoneId", zone.roadWorkZoneId);
    visit.value("name", zone.name);
    visit.value("location", zone.location);
    visit.value("zoneLength", zone.zoneLength);
    visit.value("limitSpeed", zone.limitSpeed);
    visit.id("roadID", zone.roadID);
    visit.value("roadName", zone.roadName);
    visit.value("roadType", zone.roadType);
    visit.list("mlLane", zone.mlLane);
}

template <class Visitor>
void fields(Visitor &visit, ReduceSpeedInterval &interval) {
    visit.id("intervalID", interval.intervalID);
    visit.id("reduceSpeedAreaID", interval.reduceSpeedAreaID);
    visit.value("startTime", interval.startTime);
    visit.value("endTime", interval.endTime);
}

template <class Visitor>
void fields(Visitor &visit, ReduceSpeedVehiType &type) {
    visit.id("reduceSpeedAreaID", type.reduceSpeedAreaID);
    visit.id("vehicleTypeCode", type.vehicleTypeCode);
    visit.value("avgSpeed", type.avgSpeed);
    visit.value("speedSD", type.speedSD);
}

template <class Visitor>
void fields(Visitor &visit, ReduceSpeedArea &area) {
    visit.id("reduceSpeedAreaID", area.reduceSpeedAreaID);
    visit.value("name", area.name);
    visit.value("location", area.location);
    visit.value("areaLength", area.areaLength);
    visit.id("roadID", area.roadID);
    visit.value("laneNumber", area.laneNumber);
    visit.value("toLaneNumber", area.toLaneNumber);
    visit.list("mlSpeedInterval", area.mlSpeedInterval);
    visit.list("mlSpeedVehiType", area.mlSpeedVehiType);
}

template <class Visitor>
void fields(Visitor &visit, DriveFollowedModelParam &param) {
    visit.id("modelParamID", param.modelParamID);
    visit.value("maxAcce", param.maxAcce);
    visit.value("safeTimeInterval", param.safeTimeInterval);
    visit.value("desireDece", param.desireDece);
    visit.value("spaceBetween", param.spaceBetween);
    visit.value("alfa", param.alfa);
    visit.value("beit", param.beit);
}

template <class Visitor>
void fields(Visitor &visit, ChangeLaneModelParam &param) {
    visit.id("modelParamID", param.modelParamID);
    visit.value("headBeit0", param.headBeit0);
    visit.value("headBeit1Coef", param.headBeit1Coef);
    visit.value("headBeit2Coef", param.headBeit2Coef);
    visit.value("headBeit3Coef", param.headBeit3Coef);
    visit.value("headBeit4Coef", param.headBeit4Coef);
    visit.value("headRandParam", param.headRandParam);
    visit.value("headDistParam", param.headDistParam);
    visit.value("lagBeit0", param.lagBeit0);
    visit.value("lagBeit1Coef", param.lagBeit1Coef);
    visit.value("lagBeit2Coef", param.lagBeit2Coef);
    visit.value("lagBeit3Coef", param.lagBeit3Coef);
    visit.value("lagBeit4Coef", param.lagBeit4Coef);
    visit.value("lagRandParam", param.lagRandParam);
    visit.value("lagDistParam", param.lagDistParam);
}

template <class Visitor>
void fields(Visitor &visit, SimulateConfiguration &simulation) {
    visit.value("simuTimeInterval", simulation.simuTimeInterval);
    visit.value("recordTrace", simulation.recordTrace);
    visit.value("vehiCollectDataInterval", simulation.vehiCollectDataInterval);
    visit.value("vehiQueueDataInterval", simulation.vehiQueueDataInterval);
    visit.value("vehiTravelDataInterval", simulation.vehiTravelDataInterval);
    visit.id("acceMultiples", simulation.mAcceMultiples);
    visit.value("simuAccuracy", simulation.simuAccuracy);
    visit.value("randSeed", simulation.randSeed);
}

template <class Visitor>
void fields(Visitor &visit, Configuration &scene) {
    visit.value("sceneWidth", scene.sceneWidth);
    visit.value("sceneHeight", scene.sceneHeight);
    visit.value("scale", scene.scale);
    visit.value("backgroundMap", scene.backgroundMap);
    visit.value("showBackgroundMap", scene.showBackgroundMap);
    visit.value("showGrid", scene.showGrid);
    visit.id("saveDate", scene.saveDate);
}

/// The objects of a network. Its record is not among them: networks that are compared have records of their
/// own.
template <class Visitor>
void fields(Visitor &visit, NetContents &net) {
    TrafficObjects &traffic = net.traffic;
    visit.list("vehicleTypes", traffic.vehicleTypes);
    visit.list("compositions", traffic.compositions);
    visit.list("linkTypes", net.linkTypes);
    visit.list("links", net.links);
    visit.list("guideArrows", net.guideArrows);
    visit.list("connectors", net.connectors);
    visit.list("signalGroups", traffic.signalGroups);
    visit.list("signalLamps", traffic.signalLamps);
    visit.list("departurePoints", traffic.departurePoints);
    visit.list("decisionPoints", traffic.decisionPoints);
    visit.list("routeLanes", traffic.routeLanes);
    visit.list("vehicleDetectors", traffic.vehicleDetectors);
    visit.list("queueCounters", traffic.queueCounters);
    visit.list("travelDetectors", traffic.travelDetectors);
    visit.list("collectors", traffic.collectors);
    visit.list("busStations", traffic.busStations);
    visit.list("busLines", traffic.busLines);
    visit.list("speedAreas", traffic.speedAreas);
    visit.list("accidentZones", traffic.accidentZones);
    visit.list("roadWorkZones", traffic.roadWorkZones);
    visit.list("carFollowing", net.settings.carFollowing);
    visit.list("laneChanging", net.settings.laneChanging);
    visit.optional("simulation", net.settings.simulation);
    visit.optional("scene", net.settings.scene);
}

} // namespace differential
