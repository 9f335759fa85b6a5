-- Questions to all networks at once: the keys begin with the network, and whatever begins with something else would be read
-- as a whole. Imports ask for the largest identifier, and whoever opens a store for that of lane connectors. Some tables have
-- an index for reads by identifier, which serves as well.
create index IX_VERTEX_LARGEST on Vertex (vertexID);
create index IX_LINK_LARGEST on Link (linkID);
create index IX_GUIDEARROW_LARGEST on GuideArrow (guideArrowID);
create index IX_LANECONNECTOR_LARGEST on LaneConnector (laneConnId);
create index IX_SIGNALGROUP_LARGEST on SignalGroup (signalGroupID);
create index IX_SIGNALPHASE_LARGEST on SignalPhase (signalPhaseID);
create index IX_SIGNALLAMP_LARGEST on SignalLamp (signalLampID);
create index IX_VEHICLECONSTITUTENT_LARGEST on VehicleConstitutent (vehicleConsCode);
create index IX_DEPARTUREPOINT_LARGEST on DeparturePoint (departurePointID);
create index IX_DEPARTUREINTERVAL_LARGEST on DepartureInterval (departureIntervalD);
create index IX_DECISIONPOINT_LARGEST on DecisionPoint (deciPointID);
create index IX_ROUTING_LARGEST on Routing (routingID);
create index IX_ROUTINGFLOWRATIO_LARGEST on RoutingFLowRatio (RoutingFLowRatioID);
create index IX_VEHICLEDETECTOR_LARGEST on VehicleDetector (vehicleDetectorId);
create index IX_VEHICLEQUEUECOUNTER_LARGEST on VehicleQueueCounter (QueueCounterID);
create index IX_VEHICLETRAVELDETECTOR_LARGEST on VehicleTravelDetector (detectorId);
create index IX_VEHICLEDRIVINFOCOLLECTER_LARGEST on VehicleDrivInfoCollecter (collecterID);
create index IX_BUSLINE_LARGEST on BusLine (busLineID);
create index IX_BUSSTATION_LARGEST on BusStation (busStationID);
create index IX_BUSSTATIONLINE_LARGEST on BusStationLine (stationLineID);
create index IX_BUSSTATIONPASSENGERARRIVING_LARGEST on BusStationPassengerArriving (passengerArrivingID);
create index IX_ROADWORKZONE_LARGEST on RoadWorkZone (roadWorkZoneId);
create index IX_REDUCESPEEDAREA_LARGEST on ReduceSpeedArea (reduceSpeedAreaID);
create index IX_REDUCESPEEDINTERVAL_LARGEST on ReduceSpeedInterval (intervalID);
-- Opening asks whether link types have their Chinese names.
create index IX_LINKTYPE_NAME on LinkType (typeName);
