create table Vertex (
    NetId Bigint not null,
    vertexID Bigint not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    z Numeric(15,5) not null,
    constraint PK_VERTEX primary key (NetId, vertexID),
    constraint FK_VERTEX_R_50_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table Node (
    NetId Bigint not null,
    nodeID Bigint not null,
    nodeName Varchar(64) not null,
    vertexID Bigint not null,
    constraint PK_NODE primary key (NetId, nodeID),
    constraint FK_NODE_R_1_VERTEX foreign key (NetId, vertexID) references Vertex (NetId, vertexID) on update restrict on delete restrict
);
-- The check that a node stands on a vertex asks without the network.
create index IX_NODE_ID on Node (nodeID, vertexID);

create table Link (
    NetId Bigint not null,
    linkID Bigint not null,
    roadid Bigint null,
    StartNodeID Bigint not null,
    EndNodeID Bigint not null,
    linkName Varchar(64) null,
    laneNumber Numeric(6,2) null,
    laneWidth Numeric(9,4) null,
    laneColor Varchar(32) null,
    linkType Varchar(32) null,
    length Numeric(15,5) null,
    curvature Numeric(15,5) null,
    nonLinearCoefficient Numeric(15,5) null,
    linkSaturationFlow Numeric(15,5) null,
    linkTrafficFlow Numeric(15,5) null,
    desiredSpeed Numeric(9,4) null,
    limitSpeed Numeric(9,4) null,
    minSpeed Numeric(9,4) null,
    addValue Numeric(15,5) null,
    centerLinePointsJson BINARY(102400) null,
    leftBreakPointsJson BINARY(102400) null,
    rightBreakPointsJson BINARY(102400) null,
    otherAttrsJson BINARY(102400) null,
    primary key (NetId, linkID),
    constraint FK_LINK_R_51_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict,
    constraint FK_LINK_R_2_NODE foreign key (NetId, StartNodeID) references Node (NetId, nodeID) on update restrict on delete restrict,
    constraint FK_LINK_R_3_NODE foreign key (NetId, EndNodeID) references Node (NetId, nodeID) on update restrict on delete restrict
);

create table LinkVertex (
    NetId Bigint not null,
    linkID Bigint not null,
    vertexID Bigint not null,
    num Integer not null,
    constraint PK_LINKVERTEX primary key (NetId, linkID, vertexID, num),
    constraint FK_LINKVERT_R_5_VERTEX foreign key (NetId, vertexID) references Vertex (NetId, vertexID) on update restrict on delete restrict,
    constraint FK_LINKVERT_R_4_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict
);
-- The check that a vertex belongs to a link asks without the network.
create index IX_LINKVERTEX_LINK on LinkVertex (linkID, vertexID);

create table Lane (
    NetId Bigint not null,
    laneID Bigint not null,
    linkID Bigint not null,
    serialNumber Integer not null,
    width Numeric(9,4) not null,
    actionType Varchar(32) null,
    expectTravelDirection Varchar(32) null,
    centerLinePointsJson BINARY(102400) null,
    leftBreakPointsJson BINARY(102400) null,
    rightBreakPointsJson BINARY(102400) null,
    otherAttrsJson BINARY(102400) null,
    constraint PK_LANE primary key (NetId, laneID),
    constraint FK_LANE_R_6_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict
);
create index IX_LANE_LINK on Lane (NetId, linkID, serialNumber);
-- The read of a signal lamp joins its lane without the network.
create index IX_LANE_ID on Lane (laneID);

create table LaneLimitVehicle (
    NetId Bigint not null,
    laneID Bigint not null,
    vehicleTypeCode Bigint not null,
    constraint PK_LANELIMITVEHICLE primary key (NetId, laneID, vehicleTypeCode),
    -- Not on PostgreSQL: removing a network empties Lane, and leaves this table alone.
    constraint FK_LANELIMI_LANELIMIT_LANE foreign key (NetId, laneID) references Lane (NetId, laneID) on update restrict on delete restrict,
    -- Not on PostgreSQL: removing a network empties VehicleType, and leaves this table alone.
    constraint FK_LANELIMI_LANELIMIT_VEHICLET foreign key (NetId, vehicleTypeCode) references VehicleType (NetId, vehicleTypeCode) on update restrict on delete restrict
);

create table LinkLimitVehicle (
    NetId Bigint not null,
    linkID Bigint not null,
    vehicleTypeCode Bigint not null,
    constraint PK_LINKLIMITVEHICLE primary key (NetId, linkID, vehicleTypeCode),
    -- Not on PostgreSQL: removing a network empties Link, and leaves this table alone.
    constraint FK_LINKLIMI_LINKLIMIT_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict,
    -- Not on PostgreSQL: removing a network empties VehicleType, and leaves this table alone.
    constraint FK_LINKLIMI_LINKLIMIT_VEHICLET foreign key (NetId, vehicleTypeCode) references VehicleType (NetId, vehicleTypeCode) on update restrict on delete restrict
);

create table LinkFenceMiddle (
    NetId Bigint not null,
    linkID1 Bigint not null,
    linkID2 Bigint not null,
    constraint PK_LINKFENCEMIDDLE primary key (NetId, linkID1, linkID2),
    -- Not on PostgreSQL: removing a network empties Link, and leaves this table alone.
    constraint FK_LINKFENC_LINKFENCE_LINK1 foreign key (NetId, linkID1) references Link (NetId, linkID) on update restrict on delete restrict,
    -- Not on PostgreSQL: removing a network empties Link, and leaves this table alone.
    constraint FK_LINKFENC_LINKFENCE_LINK2 foreign key (NetId, linkID2) references Link (NetId, linkID) on update restrict on delete restrict
);

create table LinkType (
    NetId Bigint not null,
    linkTypeID Bigint not null,
    typeName Varchar(32) not null,
    trafficCapacity Numeric(9,2) not null,
    trafficSpeed Numeric(6,2) not null,
    limitSpeed Numeric(6,2) not null,
    minSpeed Numeric(6,2) not null,
    desiredSpeed Numeric(6,2) null,
    constraint PK_LINKTYPE primary key (NetId, linkTypeID),
    constraint FK_LINKTYPE_R_47_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table GuideArrow (
    NetId Bigint not null,
    guideArrowId Bigint not null,
    laneID Bigint not null,
    length Numeric(6,2) not null,
    distToTerminal Numeric(6,2) not null,
    arrowType int not null,
    constraint PK_GUIDEARROW primary key (NetId, guideArrowId),
    constraint FK_GuideArrow_R2_Lane foreign key (NetId, laneID) references Lane (NetId, laneID) on update restrict on delete restrict
);
create index IX_GUIDEARROW_LANE on GuideArrow (NetId, laneID);

create table Connector (
    NetId Bigint not null,
    connID Bigint not null,
    roadId Bigint null,
    StartlinkID Bigint not null,
    EndlinkID Bigint not null,
    connName Varchar(64) null,
    length Numeric(15,5) null,
    curvature Numeric(15,5) null,
    nonLinearCoefficient Numeric(15,5) null,
    color Varchar(32) null,
    desiredSpeed Numeric(9,4) null,
    limitSpeed Numeric(9,4) null,
    leftBreakPointsJson BINARY(102400) null,
    rightBreakPointsJson BINARY(102400) null,
    otherAttrsJson BINARY(102400) null,
    primary key (NetId, connID),
    constraint FK_CONNECTO_R_53_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict,
    constraint FK_CONNECTO_R_7_LINK foreign key (NetId, StartlinkID) references Link (NetId, linkID) on update restrict on delete restrict,
    constraint FK_CONNECTO_R_8_LINK foreign key (NetId, EndlinkID) references Link (NetId, linkID) on update restrict on delete restrict
);
-- A connector's geometry is updated by its id without the network.
create index IX_CONNECTOR_ID on Connector (connID);

create table ConnectorLimitVehicle (
    NetId Bigint not null,
    connID Bigint not null,
    vehicleTypeCode Bigint not null,
    constraint PK_CONNECTORLIMITVEHICLE primary key (NetId, vehicleTypeCode, connID),
    -- Not on PostgreSQL: removing a network empties VehicleType, and leaves this table alone.
    constraint FK_CONNECTO_CONNECTOR_VEHICLET foreign key (NetId, vehicleTypeCode) references VehicleType (NetId, vehicleTypeCode) on update restrict on delete restrict,
    -- Not on PostgreSQL: removing a network empties Connector, and leaves this table alone.
    constraint FK_CONNECTO_CONNECTOR_CONNECTO foreign key (NetId, connID) references Connector (NetId, connID) on update restrict on delete restrict
);

-- The curve columns are there, but the lane connectors of this generation are written without them.
create table LaneConnector (
    NetId Bigint not null,
    laneConnId Bigint not null,
    connID Bigint not null,
    startLaneID Bigint not null,
    endLaneID Bigint not null,
    weight Integer null,
    centerLinePointsJson BINARY(102400) null,
    leftBreakPointsJson BINARY(102400) null,
    rightBreakPointsJson BINARY(102400) null,
    otherAttrsJson BINARY(102400) null,
    constraint PK_LANECONNECTOR primary key (NetId, laneConnId),
    constraint FK_LANECONN_R_9_LANE foreign key (NetId, startLaneID) references Lane (NetId, laneID) on update restrict on delete restrict,
    constraint FK_LANECONN_R_10_LANE foreign key (NetId, endLaneID) references Lane (NetId, laneID) on update restrict on delete restrict,
    constraint FK_LANECONN_R_13_CONNECTO foreign key (NetId, connID) references Connector (NetId, connID) on update restrict on delete restrict
);
create index IX_LANECONNECTOR_CONN on LaneConnector (NetId, connID);
