create table BusLine (
    NetId Bigint not null,
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
    constraint PK_BUSLINE primary key (NetId, busLineID),
    constraint FK_BUSLINE_R_52_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table BusLineRoad (
    NetId Bigint not null,
    busLineID Bigint not null,
    roadID Bigint not null,
    serialNumber Integer not null,
    constraint PK_BUSLINEROAD primary key (NetId, busLineID, roadID, serialNumber),
    constraint FK_BUSLINER_R22_BUSLINE foreign key (NetId, busLineID) references BusLine (NetId, busLineID) on update restrict on delete restrict
);

create table BusStation (
    NetId Bigint not null,
    busStationID Bigint not null,
    linkID Bigint not null,
    name Varchar(32) not null,
    laneNumber Integer not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    length Numeric(9,2) not null,
    type Varchar(32) not null,
    constraint PK_BUSSTATION primary key (NetId, busStationID),
    constraint FK_BUSSTATI_R23_LINK foreign key (NetId, linkID) references Link (NetId, linkID) on update restrict on delete restrict
);
create index IX_BUSSTATION_LINK on BusStation (NetId, linkID);

create table BusStationLine (
    NetId Bigint not null,
    stationLineID Bigint not null,
    busStationID Bigint not null,
    busLineID Bigint not null,
    parkingTime Integer not null,
    getOnTimePerson Numeric(6,2) not null,
    getOutTimePerson Numeric(6,2) not null,
    leavingPercent Numeric(6,2) not null,
    constraint PK_BUSSTATIONLINE primary key (NetId, stationLineID),
    constraint FK_BUSSTATI_R24_BUSSTATI foreign key (NetId, busStationID) references BusStation (NetId, busStationID) on update restrict on delete restrict,
    constraint FK_BUSSTATI_R25_BUSLINE foreign key (NetId, busLineID) references BusLine (NetId, busLineID) on update restrict on delete restrict
);
create index IX_BUSSTATIONLINE_LINE on BusStationLine (NetId, busLineID);

create table BusStationPassengerArriving (
    NetId Bigint not null,
    passengerArrivingID Bigint not null,
    stationLineID Bigint not null,
    startTime Bigint not null,
    endTime Bigint not null,
    passengerCount Integer not null,
    constraint PK_BUSSTATIONPASSENGERARRIVING primary key (NetId, passengerArrivingID),
    constraint FK_BUSSTATI_R28_BUSSTATI foreign key (NetId, stationLineID) references BusStationLine (NetId, stationLineID) on update restrict on delete restrict
);
create index IX_BUSSTATIONPASSENGERARRIVING_STOP on BusStationPassengerArriving (NetId, stationLineID);

-- Room for single passengers; the library writes none.
create table Passenger (
    NetId Bigint not null,
    PassengerID Bigint not null,
    stationLineID Bigint not null,
    arrivingTime Bigint not null,
    constraint PK_PASSENGER primary key (NetId, PassengerID),
    -- Not on PostgreSQL: removing a network empties BusStationLine, and leaves this table alone.
    constraint FK_PASSENGE_R29_BUSSTATI foreign key (NetId, stationLineID) references BusStationLine (NetId, stationLineID) on update restrict on delete restrict
);
