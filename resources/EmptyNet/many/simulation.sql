-- One row a network, and no key: these three are found by an index.
create table Configuration (
    NetId Bigint not null,
    sceneWidth Numeric(10,2) null,
    sceneHeight Numeric(10,2) null,
    scale Numeric(10,2) not null,
    backgroundMap Byte Varying null,
    showBackgroundMap Char(1) null,
    showGrid Char(1) null,
    saveDate Date null,
    constraint FK_CONFIGUR_R_40_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);
create index IX_CONFIGURATION_NET on Configuration (NetId);

create table SimulateConfiguration (
    NetId Bigint not null,
    simuTimeInterval Integer not null,
    recordTrace Char(1) not null default 'F',
    vehiCollectDataInterval Integer not null default 0,
    vehiQueueDataInterval Integer not null default 0,
    vehiTravelDataInterval Integer not null default 0,
    acceMultiples Integer not null default 1,
    simuAccuracy Integer not null default 20,
    randSeed Integer not null default 0,
    constraint FK_SIMULATE_R_42_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);
create index IX_SIMULATECONFIGURATION_NET on SimulateConfiguration (NetId);

create table VehicleTraceOption (
    NetId Bigint not null,
    recordTrace Char(1) not null,
    startTime Char(1) not null,
    endTime Char(1) not null,
    acce Char(1) not null,
    timeIntervalToFront Char(1) not null,
    distToFront Char(1) not null,
    timeInterval Char(1) not null,
    distance Char(1) not null,
    delay Char(1) not null,
    roadId Char(1) not null,
    laneIdOrNumber Char(1) not null,
    linkOrConnector Char(1) not null,
    vehiIdFront Char(1) not null,
    vehiSpeedFront Char(1) not null,
    constraint FK_VEHICLET_R_45_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);
create index IX_VEHICLETRACEOPTION_NET on VehicleTraceOption (NetId);

create table DriveFollowedModelParam (
    NetId Bigint not null,
    modelParamID Bigint not null,
    maxAcce Numeric(6,2) not null,
    safeTimeInterval Numeric(6,2) not null,
    desireDece Numeric(6,2) not null,
    spaceBetween Numeric(6,2) not null,
    alfa Numeric(6,2) not null,
    beit Numeric(6,2) not null,
    constraint PK_DRIVEFOLLOWEDMODELPARAM primary key (NetId, modelParamID),
    constraint FK_DRIVEFOL_R_43_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table ChangeLaneModelParam (
    NetId Bigint not null,
    modelParamID Bigint not null,
    headBeit0 Numeric(12,6) not null,
    headBeit1Coef Numeric(12,6) not null,
    headBeit2Coef Numeric(12,6) not null,
    headBeit3Coef Numeric(12,6) not null,
    headBeit4Coef Numeric(12,6) not null,
    headRandParam Numeric(12,6) not null,
    headDistParam Numeric(12,6) not null,
    lagBeit0 Numeric(12,6) not null,
    lagBeit1Coef Numeric(12,6) not null,
    lagBeit2Coef Numeric(12,6) not null,
    lagBeit3Coef Numeric(12,6) not null,
    lagBeit4Coef Numeric(12,6) not null,
    lagRandParam Numeric(12,6) not null,
    lagDistParam Numeric(12,6) not null,
    constraint PK_CHANGELANEMODELPARAM primary key (NetId, modelParamID),
    constraint FK_CHANGELA_R_44_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);
