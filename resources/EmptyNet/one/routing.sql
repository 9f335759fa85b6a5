create table DecisionPoint (
    deciPointID Bigint not null,
    deciPointName Varchar(32) null,
    linkID Bigint not null,
    X Numeric(15,5) not null,
    Y Numeric(15,5) not null,
    Z Numeric(15,5) not null,
    constraint PK_DECISIONPOINT primary key (deciPointID),
    constraint FK_DECISION_RELATIONS_LINK foreign key (linkID) references Link (linkID) on update restrict on delete restrict
);

create table Routing (
    routingID Bigint not null,
    deciPointID Bigint not null,
    routingName Varchar(32) null,
    proportion Numeric(6,2) null,
    constraint PK_ROUTING primary key (routingID),
    constraint FK_ROUTING_RELATIONS_DECISION foreign key (deciPointID) references DecisionPoint (deciPointID) on update restrict on delete restrict
);
create index IX_ROUTING_POINT on Routing (deciPointID, routingID);

create table RoutingLink (
    routingID Bigint not null,
    linkID Bigint not null,
    num1 Integer not null,
    num2 Integer not null,
    constraint PK_ROUTINGLINK primary key (routingID, linkID, num1),
    constraint FK_ROUTINGL_RELATIONS_ROUTING foreign key (routingID) references Routing (routingID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_RELATIONS_LINK foreign key (linkID) references Link (linkID) on update restrict on delete restrict
);

create table RoutingFLowRatio (
    RoutingFLowRatioID Bigint not null,
    routingID Bigint not null,
    startDateTime Integer not null,
    endDateTime Integer not null,
    ratio Numeric(9,2) not null,
    constraint PK_ROUTINGFLOWRATIO primary key (RoutingFLowRatioID),
    constraint FK_ROUTINGF_R32_ROUTING foreign key (routingID) references Routing (routingID) on update restrict on delete restrict
);
create index IX_ROUTINGFLOWRATIO_ROUTING on RoutingFLowRatio (routingID, endDateTime);

create table RoutingLaneConnector (
    routingID Bigint not null,
    connID Bigint not null,
    laneID1 Bigint not null,
    laneID2 Bigint not null,
    constraint PK_ROUTINGLANECONNECTOR primary key (connID, routingID, laneID1, laneID2),
    constraint FK_ROUTINGL_ROUTINGLA_CONNECTO foreign key (connID) references Connector (connID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_ROUTINGLA_ROUTING foreign key (routingID) references Routing (routingID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_ROUTINGLA_LANE1 foreign key (laneID1) references Lane (laneID) on update restrict on delete restrict,
    constraint FK_ROUTINGL_ROUTINGLA_LANE2 foreign key (laneID2) references Lane (laneID) on update restrict on delete restrict
);
