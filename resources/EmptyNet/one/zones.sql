-- Accident and road-work zones are not here: opening a store creates their tables.
create table ReduceSpeedArea (
    reduceSpeedAreaID Bigint not null,
    name Varchar(32) not null,
    location Numeric(9,2) not null,
    areaLength Numeric(9,2) not null,
    roadID Bigint not null,
    laneNumber Integer not null,
    toLaneNumber Integer not null,
    constraint PK_REDUCESPEEDAREA primary key (reduceSpeedAreaID)
);

create table ReduceSpeedInterval (
    intervalID Bigint not null,
    reduceSpeedAreaID Bigint not null,
    startTime Integer not null,
    endTime Integer not null,
    constraint PK_REDUCESPEEDINTERVAL primary key (intervalID),
    constraint FK_REDUCESP_R27_REDUCESP foreign key (reduceSpeedAreaID) references ReduceSpeedArea (reduceSpeedAreaID) on update restrict on delete restrict
);
create index IX_REDUCESPEEDINTERVAL_AREA on ReduceSpeedInterval (reduceSpeedAreaID);

create table ReduceSpeedVehiType (
    vehicleTypeCode Bigint not null,
    reduceSpeedAreaID Bigint not null,
    avgSpeed Numeric(6,2) not null,
    speedSD Numeric(6,2) not null,
    constraint PK_REDUCESPEEDVEHITYPE primary key (vehicleTypeCode, reduceSpeedAreaID),
    constraint FK_REDUCESP_REDUCESPE_REDUCESP foreign key (reduceSpeedAreaID) references ReduceSpeedArea (reduceSpeedAreaID) on update restrict on delete restrict,
    constraint FK_REDUCESP_REDUCESPE_VEHICLET foreign key (vehicleTypeCode) references VehicleType (vehicleTypeCode) on update restrict on delete restrict
);
create index IX_REDUCESPEEDVEHITYPE_AREA on ReduceSpeedVehiType (reduceSpeedAreaID);
