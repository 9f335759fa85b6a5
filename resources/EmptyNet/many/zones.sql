create table AccidentZone (
    netId Bigint not null,
    accidentZoneId Bigint not null,
    name Varchar(32) not null,
    location Float not null,
    zoneLength Float not null,
    roadId Bigint not null,
    roadType Varchar(32) not null,
    constraint PK_ACCIDENTZONE primary key (netId, accidentZoneId)
);
-- An accident zone and its lanes are read without the network.
create index IX_ACCIDENTZONE_ID on AccidentZone (accidentZoneId);

create table AccidentZoneWithLane (
    netId Bigint not null,
    accidentZoneId Bigint not null,
    laneNumber Integer not null,
    toLaneNumber Integer not null,
    constraint PK_ACCIDENTZONEWITHLANE primary key (netId, accidentZoneId, laneNumber, toLaneNumber),
    constraint FK_ACCIDENT_R_32_ACCIDENT foreign key (netId, accidentZoneId) references AccidentZone (netId, accidentZoneId) on update restrict on delete restrict
);
create index IX_ACCIDENTZONEWITHLANE_ZONE on AccidentZoneWithLane (accidentZoneId, laneNumber);

-- The network of road-work zones has no type in the format, and their lanes' key drops the R of WORK.
create table RoadWorkZone (
    netId not null,
    roadWorkZoneId Bigint not null,
    name Varchar(32) not null,
    location Numeric(12,2) not null,
    zoneLength Numeric(12,2) not null,
    limitSpeed Numeric(12,2) not null,
    roadID Bigint not null,
    roadName Varchar(32) not null,
    roadType Varchar(32) not null,
    constraint PK_RoadWorkZone primary key (netId, roadWorkZoneId)
);

create table RoadWorkZoneWithLane (
    netId not null,
    roadWorkZoneId Bigint not null,
    laneNumber Integer not null,
    toLaneNumber Integer not null,
    constraint PK_ROADWOKZONEWITHLANE primary key (netId, roadWorkZoneId, laneNumber, toLaneNumber),
    constraint FK_ROADWOKZ_R_31_ROADWORK foreign key (netId, roadWorkZoneId) references RoadWorkZone (netId, roadWorkZoneId) on update restrict on delete restrict
);

create table ReduceSpeedArea (
    NetId Bigint not null,
    reduceSpeedAreaID Bigint not null,
    name Varchar(32) not null,
    location Numeric(9,2) not null,
    areaLength Numeric(9,2) not null,
    roadID Bigint not null,
    laneNumber Integer not null,
    toLaneNumber Integer not null,
    constraint PK_REDUCESPEEDAREA primary key (NetId, reduceSpeedAreaID),
    constraint FK_REDUCESP_R_60_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table ReduceSpeedInterval (
    NetId Bigint not null,
    intervalID Bigint not null,
    reduceSpeedAreaID Bigint not null,
    startTime Integer not null,
    endTime Integer not null,
    constraint PK_REDUCESPEEDINTERVAL primary key (NetId, intervalID),
    constraint FK_REDUCESP_R27_REDUCESP foreign key (NetId, reduceSpeedAreaID) references ReduceSpeedArea (NetId, reduceSpeedAreaID) on update restrict on delete restrict
);
create index IX_REDUCESPEEDINTERVAL_AREA on ReduceSpeedInterval (NetId, reduceSpeedAreaID);

-- The vehicle types are checked against the compositions: the format has it so, and with it the key cannot be enforced.
create table ReduceSpeedVehiType (
    NetId Bigint not null,
    vehicleTypeCode Bigint not null,
    reduceSpeedAreaID Bigint not null,
    avgSpeed Numeric(6,2) not null,
    speedSD Numeric(6,2) not null,
    primary key (NetId, reduceSpeedAreaID, vehicleTypeCode),
    constraint FK_REDUCESP_REDUCESPE_REDUCESP foreign key (NetId, reduceSpeedAreaID) references ReduceSpeedArea (NetId, reduceSpeedAreaID) on update restrict on delete restrict,
    -- Not on PostgreSQL: a vehicle type is no composition.
    constraint FK_REDUCESP_REDUCESPE_VEHICLET foreign key (NetId, vehicleTypeCode) references VehicleConstitutent (NetId, vehicleConsCode) on update restrict on delete restrict
);
