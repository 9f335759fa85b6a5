-- One row each of the first three, and no key.
create table Configuration (
    sceneWidth Numeric(10,2) null,
    sceneHeight Numeric(10,2) null,
    scale Numeric(10,2) null,
    backgroundMap IMAGE null,
    showBackgroundMap Char(1) null,
    showGrid Char(1) null,
    saveDate DATETIME null
);

create table SimulateConfiguration (
    simuTimeInterval Integer not null,
    recordTrace Char(1) not null default 'F',
    vehiCollectDataInterval Integer not null default 0,
    vehiQueueDataInterval Integer not null default 0,
    vehiTravelDataInterval Integer not null default 0,
    acceMultiples Integer not null default 1,
    simuAccuracy Integer not null default 20,
    randSeed Integer not null default 0
);

create table VehicleTraceOption (
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
    vehiSpeedFront Char(1) not null
);

create table DriveFollowedModelParam (
    modelParamID Bigint not null,
    maxAcce Numeric(6,2) not null,
    safeTimeInterval Numeric(6,2) not null,
    desireDece Numeric(6,2) not null,
    spaceBetween Numeric(6,2) not null,
    alfa Numeric(6,2) not null,
    beit Numeric(6,2) not null,
    constraint PK_DRIVEFOLLOWEDMODELPARAM primary key (modelParamID)
);

create table ChangeLaneModelParam (
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
    constraint PK_CHANGELANEMODELPARAM primary key (modelParamID)
);
