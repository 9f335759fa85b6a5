#pragma once

/// The reads (and updates) of objects by id or by owner in the spelling of each generation, with 1 for every
/// id; null where a generation has no such statement.
struct ReadStatement {
    const char *one;
    const char *many;
};

constexpr ReadStatement kReadStatements[] = {
    // Networks and configuration
    {"select * from Net where NetId = 1", "select * from Net where NetId = 1"},
    {"select * from Net where name = 'x'", "select * from Net where name = 'x'"},
    {"select ID from IDGenerater where TableName = 'x'",
     "select ID from IDGenerater where NetId = 1 and TableName = 'x'"},
    {nullptr, "select backgroundMap from Configuration where NetId = 1"},
    {nullptr, "select * from SimulateConfiguration where NetId = 1"},
    {nullptr, "select * from VehicleTraceOption where NetId = 1"},
    {"select * from DriveFollowedModelParam where modelParamID = 1",
     "select * from DriveFollowedModelParam where NetId = 1 and modelParamID = 1"},
    {nullptr, "select * from ChangeLaneModelParam where NetId = 1 order by modelParamID"},

    // Links, lanes, nodes
    {"select * from Link where LinkID = 1", "select * from Link where NetId = 1 and LinkID = 1"},
    {nullptr, "select LinkID from Link where netId= 1 order by LinkID"},
    {"update Link set linkType='' where linkID=1",
     "update Link set linkType='' where NetId = 1 and linkID=1"},
    {"select v.* from vertex v join (select * from LinkVertex where LinkId = 1) LV on v.VertexID = LV.VertexID order by lV.Num",
     "select v.* from vertex v join LinkVertex LV on v.NetId = LV.NetId and v.VertexID = LV.VertexID where LV.NetId = 1 and LV.linkID = 1 order by LV.Num"},
    {"select * from LinkVertex where LinkID = 1 and vertexID = 1",
     "select * from LinkVertex where LinkID = 1 and vertexID = 1"},
    {"select * from Node where nodeID = 1", "select * from Node where NetId = 1 and nodeID = 1"},
    {"select * from Node where nodeID = 1 and vertexID = 1",
     "select * from Node where nodeID = 1 and vertexID = 1"},
    {"select * from Lane where LinkID = 1 order by SerialNumber",
     "select * from Lane where NetId = 1 and LinkID = 1 order by SerialNumber"},
    {"update Lane set width = 1 where linkID=1 and laneID=1", nullptr},
    {"select a.*, b.VehicleTypeName from LaneLimitVehicle as a join VehicleType as b on a.VehicleTypeCode = b.VehicleTypeCode where LaneID = 1",
     nullptr},
    {nullptr, "select * from LinkType where NetId = 1 order by linkTypeID"},
    {"select * from GuideArrow where guideArrowID = 1",
     "select * from GuideArrow where NetId = 1 and guideArrowID = 1"},
    {"select * from GuideArrow where laneID = 1", "select * from GuideArrow where NetId = 1 and laneID = 1"},
    {nullptr,
     "select a.guideArrowID from GuideArrow a join lane b on a.NetId = b.NetId and a.laneID = b.laneID where a.NetId = 1 order by a.guideArrowID"},

    // Connectors
    {"select * from Connector where ConnID = 1", "select * from Connector where NetId = 1 and ConnID = 1"},
    {nullptr, "select connID from Connector where NetId = 1 order by connID"},
    {"update Connector set color = '' where connID=1", "update Connector set color = '' where connID=1"},
    {"select * from LaneConnector where connID = 1",
     "select * from LaneConnector where NetId = 1 and connID = 1"},
    {nullptr,
     "update LaneConnector set otherAttrsJson=null where NetId= 1 and connID=1 and StartLaneID=1 and EndLaneID=1"},

    // Signals
    {"select * from SignalGroup where signalGroupID = 1",
     "select * from SignalGroup where NetId = 1 and signalGroupID = 1"},
    {"select * from SignalPhase where signalGroupID = 1",
     "select * from SignalPhase where NetId = 1 and signalGroupID = 1"},
    {"select * from SignalColor where signalPhaseID = 1 order by serialNumber",
     "select * from SignalColor where NetId = 1 and signalPhaseID = 1 order by serialNumber"},
    {"select * from SignalLamp where laneID in (select LaneID from Lane) and signalLampID = 1",
     "select * from SignalLamp as a join Lane as b on a.laneID = b.laneID where a.NetId = 1 and a.signalLampID = 1"},
    {nullptr, "select signalGroupID from SignalGroup where NetId = 1 order by signalGroupID"},
    {nullptr, "select signalLampID from SignalLamp where NetId = 1 order by signalLampID"},

    // Vehicles and demand
    {nullptr, "select * from VehicleType where NetId = 1 order by vehicleTypeCode"},
    {nullptr, "select * from VehicleConstitutent where NetId = 1 order by vehicleConsCode"},
    {"select * from VehicleConstitutent where VehicleConsCode = 1 order by vehicleConsCode",
     "select * from VehicleConstitutent where NetId = 1 and VehicleConsCode = 1 order by vehicleConsCode"},
    {"select * from VehicleConsDetail where vehicleConsCode = 1 order by vehicleTypeCode",
     "select * from VehicleConsDetail where NetId = 1 and vehicleConsCode = 1 order by vehicleTypeCode"},
    {"select * from DeparturePoint where departurePointID = 1",
     "select * from DeparturePoint where NetId = 1 and departurePointID = 1"},
    {"select * from DepartureInterval where departurePointID = 1 order by departureIntervalD",
     "select * from DepartureInterval where NetId = 1 and departurePointID = 1 order by departureIntervalD"},
    {nullptr, "select departurePointID from DeparturePoint where NetId = 1 order by departurePointID"},

    // Routing
    {nullptr, "select deciPointID from DecisionPoint where NetId = 1 order by deciPointID"},
    {"select * from DecisionPoint where deciPointID = 1",
     "select * from DecisionPoint where NetId = 1 and deciPointID = 1"},
    {"select routingID from Routing where deciPointID = 1 order by routingID",
     "select routingID from Routing where NetId = 1 and deciPointID = 1 order by routingID"},
    {"select * from Routing where routingID = 1", "select * from Routing where NetId = 1 and routingID = 1"},
    {"select * from RoutingLink where routingID = 1 order by num1, num2",
     "select * from RoutingLink where NetId = 1 and routingID = 1 order by num1, num2"},
    {"select * from RoutingFlowRatio where routingID = 1 order by endDateTime",
     "select * from RoutingFlowRatio where NetId = 1 and routingID = 1 order by endDateTime"},
    {"select laneID1, laneID2 from RoutingLaneConnector where routingID = 1 and connID = 1 order by laneID1, laneID2",
     "select laneID1, laneID2 from RoutingLaneConnector where NetId = 1 and routingID = 1 and connID = 1 order by laneID1, laneID2"},

    // Detectors
    {"select * from VehicleDetector where vehicleDetectorId = 1",
     "select * from VehicleDetector where netId = 1 and vehicleDetectorId = 1"},
    {"select * from DetectorVehiType where vehicleDetectorId = 1",
     "select * from DetectorVehiType where NetId = 1 and vehicleDetectorId = 1"},
    {"select * from VehicleQueueCounter where queueCounterID = 1",
     "select * from VehicleQueueCounter where NetId = 1 and queueCounterID = 1"},
    {"select * from VehicleTravelDetector where detectorId = 1",
     "select * from VehicleTravelDetector where NetId = 1 and detectorId = 1"},
    {"select * from VehicleDrivInfoCollecter where collecterID = 1",
     "select * from VehicleDrivInfoCollecter where NetId = 1 and collecterID = 1"},
    {nullptr, "select vehicleDetectorId from VehicleDetector where NetId = 1 order by vehicleDetectorId"},
    {nullptr, "select QueueCounterID from VehicleQueueCounter where NetId = 1 order by queueCounterID"},
    {nullptr, "select detectorId from VehicleTravelDetector where NetId = 1 order by detectorId"},
    {nullptr, "select collecterID from VehicleDrivInfoCollecter where NetId = 1 order by collecterID"},

    // Public transport
    {"select * from BusLine where busLineID = 1", "select * from BusLine where NetId = 1 and busLineID = 1"},
    {"select roadID from BusLineRoad where busLineID = 1 order by serialNumber",
     "select roadID from BusLineRoad where NetId = 1 and busLineID = 1 order by serialNumber"},
    {"select * from BusStationLine where busLineID = 1 and busStationID in (select busStationId from BusStation where linkId = 1)",
     "select * from BusStationLine where NetId = 1 and busLineID = 1 and busStationID in (select busStationId from BusStation where NetId = 1 and linkId = 1)"},
    {"select * from BusStationPassengerArriving where stationLineID = 1",
     "select * from BusStationPassengerArriving where NetId = 1 and stationLineID = 1"},
    {"select * from BusStation where busStationID = 1",
     "select * from BusStation where NetId = 1 and busStationID = 1"},
    {nullptr, "select busLineID from BusLine where NetId = 1 order by busLineID"},
    {nullptr,
     "select busStationID from BusStation a join Link b on a.NetId = b.NetId and a.linkID = b.linkID where a.NetId = 1 order by busStationID"},

    // Zones and areas. An accident zone is read without the network; older stores get the tables when they
    // are opened.
    {nullptr, "select * from AccidentZone where accidentZoneId = 1"},
    {nullptr, "select * from AccidentZoneWithLane where accidentZoneId = 1 order by laneNumber"},
    {nullptr, "select accidentZoneId from AccidentZone where NetId = 1 order by accidentZoneId"},
    {nullptr, "select * from RoadWorkZone where NetId = 1 and roadWorkZoneId = 1"},
    {nullptr,
     "select * from RoadWorkZoneWithLane where NetId = 1 and roadWorkZoneId = 1  order by laneNumber"},
    {nullptr, "select roadWorkZoneId from RoadWorkZone where NetId = 1 order by roadWorkZoneId"},
    {"select * from ReduceSpeedArea where reduceSpeedAreaID = 1",
     "select * from ReduceSpeedArea where NetId = 1 and reduceSpeedAreaID = 1"},
    {"select * from ReduceSpeedInterval where reduceSpeedAreaID = 1",
     "select * from ReduceSpeedInterval where NetId = 1 and reduceSpeedAreaID = 1"},
    {"select * from ReduceSpeedVehiType where reduceSpeedAreaID = 1",
     "select * from ReduceSpeedVehiType where NetId = 1 and reduceSpeedAreaID = 1"},
    {nullptr, "select reduceSpeedAreaID from ReduceSpeedArea where NetId = 1 order by reduceSpeedAreaID"},
};
