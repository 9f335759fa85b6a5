create table BusLine (
    busLineID Bigint not null,
    name Varchar(32) not null,
    length Numeric(9,2) null,
    dischargeFreq Integer not null,
    dischargeStartTime Integer not null,
    dischargeEndTime Integer not null,
    startX Numeric(15,5) not null,
    startY Numeric(15,5) not null,
    endX Numeric(15,5) not null,
    endY Numeric(15,5) not null,
    desirSpeed Numeric(6,2) not null,
    speedSD Numeric(6,2) not null,
    passCountAtStartTime Integer not null,
    constraint PK_BUSLINE primary key (busLineID)
);

create table BusLineRoad (
    busLineID Bigint not null,
    serialNumber Integer not null,
    roadID Bigint not null,
    constraint PK_BUSLINEROAD primary key (busLineID, serialNumber),
    constraint FK_BUSLINER_R22_BUSLINE foreign key (busLineID) references BusLine (busLineID) on update restrict on delete restrict
);

create table BusStation (
    busStationID Bigint not null,
    linkID Bigint not null,
    name Varchar(32) not null,
    laneNumber Integer not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    length Numeric(9,2) not null,
    type Varchar(32) not null,
    constraint PK_BUSSTATION primary key (busStationID),
    constraint FK_BUSSTATI_R23_LINK foreign key (linkID) references Link (linkID) on update restrict on delete restrict
);
create index IX_BUSSTATION_LINK on BusStation (linkID);

create table BusStationLine (
    stationLineID Bigint not null,
    busStationID Bigint not null,
    busLineID Bigint not null,
    parkingTime Integer not null,
    getOnTimePerson Numeric(6,2) not null,
    getOutTimePerson Numeric(6,2) not null,
    leavingPercent Numeric(6,2) not null,
    constraint PK_BUSSTATIONLINE primary key (stationLineID),
    constraint FK_BUSSTATI_R24_BUSSTATI foreign key (busStationID) references BusStation (busStationID) on update restrict on delete restrict,
    constraint FK_BUSSTATI_R25_BUSLINE foreign key (busLineID) references BusLine (busLineID) on update restrict on delete restrict
);
create index IX_BUSSTATIONLINE_LINE on BusStationLine (busLineID);

create table BusStationPassengerArriving (
    passengerArrivingID Bigint not null,
    stationLineID Bigint not null,
    startTime Bigint not null,
    endTime Bigint not null,
    passengerCount Integer not null,
    constraint PK_BUSSTATIONPASSENGERARRIVING primary key (passengerArrivingID),
    constraint FK_BUSSTATI_R28_BUSSTATI foreign key (stationLineID) references BusStationLine (stationLineID) on update restrict on delete restrict
);
create index IX_BUSSTATIONPASSENGERARRIVING_STOP on BusStationPassengerArriving (stationLineID);

-- The arrivals of older releases; the library neither reads nor writes it.
create table PassengerArriving (
    passengerID Bigint not null,
    stationLineID Bigint not null,
    startTime Bigint not null,
    endTime Bigint not null,
    passengerCount Integer not null,
    constraint PK_PASSENGERARRIVING primary key (passengerID),
    constraint FK_PASSENGE_R28_BUSSTATI foreign key (stationLineID) references BusStationLine (stationLineID) on update restrict on delete restrict
);
