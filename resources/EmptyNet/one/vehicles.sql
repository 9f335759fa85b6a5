create table VehicleType (
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
    constraint PK_VEHICLETYPE primary key (vehicleTypeCode)
);

create table VehicleConstitutent (
    vehicleConsCode Bigint not null,
    name Varchar(32) not null,
    IsDefault Char(1) not null,
    constraint PK_VEHICLECONSTITUTENT primary key (vehicleConsCode)
);

create table VehicleConsDetail (
    vehicleConsCode Bigint not null,
    vehicleTypeCode Bigint not null,
    proportion Numeric(6,2) not null,
    constraint PK_VEHICLECONSDETAIL primary key (vehicleTypeCode, vehicleConsCode),
    constraint FK_VEHICLEC_VEHICLECO_VEHICLET foreign key (vehicleTypeCode) references VehicleType (vehicleTypeCode) on update restrict on delete restrict,
    constraint FK_VEHICLEC_VEHICLECO_VEHICLEC foreign key (vehicleConsCode) references VehicleConstitutent (vehicleConsCode) on update restrict on delete restrict
);
create index IX_VEHICLECONSDETAIL_CONS on VehicleConsDetail (vehicleConsCode, vehicleTypeCode);

create table DeparturePoint (
    departurePointID Bigint not null,
    linkID Bigint not null,
    name Varchar(32) not null,
    constraint PK_DEPARTUREPOINT primary key (departurePointID),
    constraint FK_DEPARTUR_RELATIONS_LINK foreign key (linkID) references Link (linkID) on update restrict on delete restrict
);

create table DepartureInterval (
    departureIntervalD Bigint not null,
    departurePointID Bigint not null,
    interval Integer not null,
    vehiCount Integer not null,
    vehiCons Integer not null,
    constraint PK_DEPARTUREINTERVAL primary key (departureIntervalD),
    constraint FK_DEPARTUR_R26_DEPARTUR foreign key (departurePointID) references DeparturePoint (departurePointID) on update restrict on delete restrict
);
create index IX_DEPARTUREINTERVAL_POINT on DepartureInterval (departurePointID, departureIntervalD);
