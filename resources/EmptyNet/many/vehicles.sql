create table VehicleType (
    NetId Bigint not null,
    vehicleTypeCode Bigint not null,
    vehicleTypeName Varchar(32) not null,
    Length Numeric(6,2) null,
    lengthSD Numeric(6,2) null,
    width Numeric(6,2) null,
    widthSD Numeric(6,2) null,
    avgSpeed Numeric(6,2) null,
    speedSD Numeric(6,2) null,
    maxSpeed Numeric(6,2) null,
    avgAcce Numeric(6,2) null,
    acceSD Numeric(6,2) null,
    maxAcce Numeric(6,2) null,
    avgDece Numeric(6,2) null,
    deceSD Numeric(6,2) null,
    maxDece Numeric(6,2) null,
    constraint PK_VEHICLETYPE primary key (NetId, vehicleTypeCode),
    constraint FK_VEHICLET_R_46_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table VehicleConstitutent (
    NetId Bigint not null,
    vehicleConsCode Bigint not null,
    name Varchar(32) not null,
    IsDefault Char(1) not null,
    constraint PK_VEHICLECONSTITUTENT primary key (NetId, vehicleConsCode),
    constraint FK_VEHICLEC_R_48_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table VehicleConsDetail (
    NetId Bigint not null,
    vehicleConsCode Bigint not null,
    vehicleTypeCode Bigint not null,
    proportion Numeric(6,2) not null,
    constraint PK_VEHICLECONSDETAIL primary key (NetId, vehicleTypeCode, vehicleConsCode),
    constraint FK_VEHICLEC_VEHICLECO_VEHICLET foreign key (NetId, vehicleTypeCode) references VehicleType (NetId, vehicleTypeCode) on update restrict on delete restrict,
    constraint FK_VEHICLEC_VEHICLECO_VEHICLEC foreign key (NetId, vehicleConsCode) references VehicleConstitutent (NetId, vehicleConsCode) on update restrict on delete restrict
);
create index IX_VEHICLECONSDETAIL_CONS on VehicleConsDetail (NetId, vehicleConsCode, vehicleTypeCode);

create table DeparturePoint (
    NetId Bigint not null,
    departurePointID Bigint not null,
    linkID Bigint not null,
    name Varchar(32) not null,
    constraint PK_DEPARTUREPOINT primary key (NetId, departurePointID),
    constraint FK_DEPARTUR_R_14_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict,
    constraint FK_DEPARTUR_R_61_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table DepartureInterval (
    NetId Bigint not null,
    departureIntervalD Bigint not null,
    departurePointID Bigint not null,
    interval Integer not null,
    vehiCount Integer not null,
    vehiCons Integer not null,
    constraint PK_DEPARTUREINTERVAL primary key (NetId, departureIntervalD),
    constraint FK_DEPARTUR_R26_DEPARTUR foreign key (NetId, departurePointID) references DeparturePoint (NetId, departurePointID) on update restrict on delete restrict
);
create index IX_DEPARTUREINTERVAL_POINT on DepartureInterval (NetId, departurePointID, departureIntervalD);
