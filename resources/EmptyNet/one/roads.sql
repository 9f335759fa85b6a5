create table Vertex (
    VertexID Bigint not null,
    X Numeric(15,5) not null,
    Y Numeric(15,5) not null,
    Z Numeric(15,5) not null,
    constraint PK_VERTEX primary key (VertexID)
);

create table Node (
    nodeID Bigint not null,
    nodeName Varchar(64) not null,
    vertexID Bigint not null,
    constraint PK_NODE primary key (nodeID),
    constraint FK_NODE_R_1_VERTEX foreign key (vertexID) references Vertex (VertexID) on update restrict on delete restrict
);

create table Link (
    LinkID Bigint not null,
    roadid Bigint null,
    StartNodeID Bigint not null,
    EndNodeID Bigint not null,
    LinkName Varchar(64) null,
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
    primary key (LinkID),
    constraint FK_LINK_R_2_NODE foreign key (StartNodeID) references Node (nodeID) on update restrict on delete restrict,
    constraint FK_LINK_R_3_NODE foreign key (EndNodeID) references Node (nodeID) on update restrict on delete restrict
);

create table LinkVertex (
    LinkID Bigint not null,
    VertexID Bigint not null,
    Num Integer not null,
    constraint PK_LINKVERTEX primary key (LinkID, Num),
    constraint FK_LINKVERT_R_5_VERTEX foreign key (VertexID) references Vertex (VertexID) on update restrict on delete restrict,
    constraint FK_LINKVERT_R_4_LINK foreign key (LinkID) references Link (LinkID) on update restrict on delete restrict
);

create table Lane (
    LaneID Bigint not null,
    LinkID Bigint not null,
    SerialNumber Integer not null,
    Width Numeric(9,4) not null,
    ActionType Varchar(32) null,
    ExpectTravelDirection Varchar(32) null,
    constraint PK_LANE primary key (LaneID),
    constraint FK_LANE_R_6_LINK foreign key (LinkID) references Link (LinkID) on update restrict on delete restrict
);
create index IX_LANE_LINK on Lane (LinkID, SerialNumber);

create table LaneLimitVehicle (
    LaneID Bigint not null,
    VehicleTypeCode Bigint not null,
    constraint PK_LANELIMITVEHICLE primary key (LaneID, VehicleTypeCode),
    constraint FK_LANELIMI_LANELIMIT_LANE foreign key (LaneID) references Lane (LaneID) on update restrict on delete restrict,
    constraint FK_LANELIMI_LANELIMIT_VEHICLET foreign key (VehicleTypeCode) references VehicleType (vehicleTypeCode) on update restrict on delete restrict
);

create table LinkLimitVehicle (
    LinkID Bigint not null,
    VehicleTypeCode Bigint not null,
    constraint PK_LINKLIMITVEHICLE primary key (LinkID, VehicleTypeCode),
    constraint FK_LINKLIMI_LINKLIMIT_LINK foreign key (LinkID) references Link (LinkID) on update restrict on delete restrict,
    constraint FK_LINKLIMI_LINKLIMIT_VEHICLET foreign key (VehicleTypeCode) references VehicleType (vehicleTypeCode) on update restrict on delete restrict
);

create table LinkFenceMiddle (
    linkID1 Bigint not null,
    linkID2 Bigint not null,
    constraint PK_LINKFENCEMIDDLE primary key (linkID1, linkID2),
    constraint FK_LINKFENC_LINKFENCE_LINK1 foreign key (linkID1) references Link (LinkID) on update restrict on delete restrict,
    constraint FK_LINKFENC_LINKFENCE_LINK2 foreign key (linkID2) references Link (LinkID) on update restrict on delete restrict
);

create table LinkType (
    linkTypeID Bigint not null,
    typeName Varchar(32) not null,
    trafficCapacity Numeric(9,2) not null,
    trafficSpeed Numeric(6,2) not null,
    limitSpeed Numeric(6,2) not null,
    minSpeed Numeric(6,2) not null,
    desiredSpeed Numeric(6,2) null,
    constraint PK_LINKTYPE primary key (linkTypeID)
);

-- Kept empty: link types replaced it.
create table RoadType (
    roadTypeID Bigint not null,
    typeName Varchar(32) not null,
    constraint PK_ROADTYPE primary key (roadTypeID)
);

-- The key bears the name of the lanes' key: the format has it so.
create table GuideArrow (
    guideArrowID Bigint not null,
    laneID Bigint not null,
    length Numeric(6,2) not null,
    distToTerminal Numeric(6,2) not null,
    arrowType int not null,
    constraint PK_LANE primary key (guideArrowID),
    constraint FK_GuideArrow_R2_Lane foreign key (laneID) references Lane (LaneID) on update restrict on delete restrict
);
create index IX_GUIDEARROW_LANE on GuideArrow (laneID);

create table Connector (
    ConnID Bigint not null,
    roadId Bigint null,
    StartLinkID Bigint not null,
    EndLinkID Bigint not null,
    ConnName Varchar(64) null,
    Length Numeric(15,5) null,
    Curvature Numeric(15,5) null,
    NonLinearCoefficient Numeric(15,5) null,
    Color Varchar(32) null,
    DesiredSpeed Numeric(9,4) null,
    LimitSpeed Numeric(9,4) null,
    primary key (ConnID),
    constraint FK_CONNECTO_R_7_LINK foreign key (StartLinkID) references Link (LinkID) on update restrict on delete restrict,
    constraint FK_CONNECTO_R_8_LINK foreign key (EndLinkID) references Link (LinkID) on update restrict on delete restrict
);

create table ConnectorLimitVehicle (
    ConnID Bigint not null,
    VehicleTypeCode Bigint not null,
    constraint PK_CONNECTORLIMITVEHICLE primary key (VehicleTypeCode, ConnID),
    constraint FK_CONNECTO_CONNECTOR_VEHICLET foreign key (VehicleTypeCode) references VehicleType (vehicleTypeCode) on update restrict on delete restrict,
    constraint FK_CONNECTO_CONNECTOR_CONNECTO foreign key (ConnID) references Connector (ConnID) on update restrict on delete restrict
);

-- Found by its ends: the id of a lane connector lives in memory only.
create table LaneConnector (
    connID Bigint not null,
    StartLaneID Bigint not null,
    EndLaneID Bigint not null,
    weight Integer null,
    constraint PK_LANECONNECTOR primary key (connID, StartLaneID, EndLaneID),
    constraint FK_LANECONN_R_9_LANE foreign key (StartLaneID) references Lane (LaneID) on update restrict on delete restrict,
    constraint FK_LANECONN_R_10_LANE foreign key (EndLaneID) references Lane (LaneID) on update restrict on delete restrict,
    constraint FK_LANECONN_R_13_CONNECTO foreign key (connID) references Connector (ConnID) on update restrict on delete restrict
);
-- The key would answer this too, but sorted by lanes: a connector's lane connectors come in the order they were written.
create index IX_LANECONNECTOR_CONN on LaneConnector (connID);
