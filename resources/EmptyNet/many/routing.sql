create table DecisionPoint (
    NetId Bigint not null,
    deciPointID Bigint not null,
    linkID Bigint not null,
    deciPointName Varchar(32) null,
    X Numeric(15,5) not null,
    Y Numeric(15,5) not null,
    Z Numeric(15,5) not null,
    constraint PK_DECISIONPOINT primary key (NetId, deciPointID),
    constraint FK_DECISION_R11_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict
);

create table Routing (
    NetId Bigint not null,
    routingID Bigint not null,
    deciPointID Bigint not null,
    routingName Varchar(32) null,
    proportion Numeric(6,2) null,
    constraint PK_ROUTING primary key (NetId, routingID),
    constraint FK_ROUTING_R12_DECISION foreign key (NetId, deciPointID) references DecisionPoint (NetId, deciPointID) on update restrict on delete restrict
);
create index IX_ROUTING_POINT on Routing (NetId, deciPointID, routingID);

create table RoutingLink (
    NetId Bigint not null,
    routingID Bigint not null,
    linkID Bigint not null,
    num1 Integer not null,
    num2 Integer not null,
    constraint PK_ROUTINGLINK primary key (routingID, NetId, linkID, num1),
    constraint FK_ROUTINGL_R21_ROUTING foreign key (NetId, routingID) references Routing (NetId, routingID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_R20_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict
);

create table RoutingFLowRatio (
    NetId Bigint not null,
    RoutingFLowRatioID Bigint not null,
    routingID Bigint not null,
    startDateTime Integer not null,
    endDateTime Integer not null,
    ratio Numeric(9,2) not null,
    constraint PK_ROUTINGFLOWRATIO primary key (NetId, RoutingFLowRatioID),
    constraint FK_ROUTINGF_R32_ROUTING foreign key (NetId, routingID) references Routing (NetId, routingID) on update restrict on delete restrict
);
create index IX_ROUTINGFLOWRATIO_ROUTING on RoutingFLowRatio (NetId, routingID, endDateTime);

create table RoutingLaneConnector (
    NetId Bigint not null,
    routingID Bigint not null,
    connID Bigint not null,
    laneID1 Bigint not null,
    laneID2 Bigint not null,
    constraint PK_ROUTINGLANECONNECTOR primary key (NetId, routingID, connID, laneID1, laneID2),
    constraint FK_ROUTINGL_ROUTINGLA_CONNECTO foreign key (NetId, connID) references Connector (NetId, connID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_ROUTINGLA_ROUTING foreign key (NetId, routingID) references Routing (NetId, routingID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_ROUTINGLA_LANE1 foreign key (NetId, laneID1) references Lane (NetId, laneID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_ROUTINGLA_LANE2 foreign key (NetId, laneID2) references Lane (NetId, laneID) on update restrict on delete restrict
);
