-- The server enforces its foreign keys: whatever is deleted is looked for in the tables that refer to it. An index for
-- each key whose columns lead none, so that removing a network does not read those tables once for every object.
create index IX_NODE_VERTEXID on Node (NetId, vertexID);
create index IX_LINK_STARTNODEID on Link (NetId, StartNodeID);
create index IX_LINK_ENDNODEID on Link (NetId, EndNodeID);
create index IX_LINKVERTEX_VERTEXID on LinkVertex (NetId, vertexID);
create index IX_CONNECTOR_STARTLINKID on Connector (NetId, StartlinkID);
create index IX_CONNECTOR_ENDLINKID on Connector (NetId, EndlinkID);
create index IX_LANECONNECTOR_STARTLANEID on LaneConnector (NetId, startLaneID);
create index IX_LANECONNECTOR_ENDLANEID on LaneConnector (NetId, endLaneID);
create index IX_SIGNALLAMP_SIGNALPHASEID on SignalLamp (NetId, signalPhaseID);
create index IX_SIGNALLAMP_LANEID on SignalLamp (NetId, laneID);
create index IX_DECISIONPOINT_LINKID on DecisionPoint (NetId, linkID);
create index IX_ROUTINGLINK_LINKID on RoutingLink (NetId, linkID);
create index IX_ROUTINGLANECONNECTOR_CONNID on RoutingLaneConnector (NetId, connID);
create index IX_ROUTINGLANECONNECTOR_LANEID1 on RoutingLaneConnector (NetId, laneID1);
create index IX_ROUTINGLANECONNECTOR_LANEID2 on RoutingLaneConnector (NetId, laneID2);
create index IX_DEPARTUREPOINT_LINKID on DeparturePoint (NetId, linkID);
create index IX_VEHICLEDETECTOR_SIGNALGROUPID on VehicleDetector (NetId, signalGroupID);
create index IX_DETECTORVEHITYPE_VEHICLETYPECODE on DetectorVehiType (NetId, vehicleTypeCode);
create index IX_BUSSTATIONLINE_BUSSTATIONID on BusStationLine (NetId, busStationID);
create index IX_VEHICLEDRIVING_VEHIID on VehicleDriving (VehiID);
