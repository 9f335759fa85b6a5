create table VehicleDetector (
    vehicleDetectorId Bigint not null,
    signalGroupID Bigint not null,
    name Varchar(32) not null,
    phaseNumber Integer not null,
    roadId Bigint not null,
    roadType Varchar(32) not null,
    laneNumber Integer not null,
    toLaneNumber Integer with null,
    length Numeric(9,4) not null,
    distToTerminal Numeric(9,4) not null,
    [type] Varchar(32) not null,
    maxGreen Integer not null,
    constraint PK_VEHICLEDETECTOR primary key (vehicleDetectorId),
    constraint FK_VEHICLED_R_33_SIGNALGR foreign key (signalGroupID) references SignalGroup (signalGroupID) on update restrict on delete restrict
);

create table DetectorVehiType (
    vehicleDetectorId Bigint not null,
    vehicleTypeCode Bigint not null,
    constraint PK_DETECTORVEHITYPE primary key (vehicleDetectorId, vehicleTypeCode),
    constraint FK_DETECTOR_DETECTORV_VEHICLED foreign key (vehicleDetectorId) references VehicleDetector (vehicleDetectorId) on update restrict on delete restrict,
    constraint FK_DETECTOR_DETECTORV_VEHICLET foreign key (vehicleTypeCode) references VehicleType (vehicleTypeCode) on update restrict on delete restrict
);

create table VehicleQueueCounter (
    QueueCounterID Bigint not null,
    name Varchar(32) not null,
    roadID Bigint not null,
    laneNumber Integer not null,
    toLaneNumber Integer not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    z Numeric(9,2) null,
    speedLowLimit Numeric(6,2) not null,
    speedUpLimit Numeric(6,2) not null,
    maxDistInterval Numeric(9,2) not null,
    maxQueueLength Numeric(9,2) not null,
    startTime Integer not null,
    endTime Integer not null,
    distance Numeric(9,2) not null,
    dataInterval Integer not null,
    countInterval Integer not null,
    constraint PK_VEHICLEQUEUECOUNTER primary key (QueueCounterID)
);

create table VehicleTravelDetector (
    detectorId Bigint not null,
    name Varchar(32) not null,
    startRoadId Bigint not null,
    start_laneNumber Integer with null,
    start_toLaneNumber Integer with null,
    startDist Numeric(9,2) not null,
    startX Numeric(15,5) not null,
    startY Numeric(15,5) not null,
    teminalRoadId Bigint not null,
    teminal_laneNumber Integer with null,
    teminal_toLaneNumber Integer with null,
    teminalDist Numeric(9,2) not null,
    teminalX Numeric(15,5) not null,
    teminalY Numeric(15,5) not null,
    startTime Integer not null,
    endTime Integer not null,
    dataInterval Integer not null,
    shortestDistance Numeric(12,2) not null,
    constraint PK_VEHICLETRAVELDETECTOR primary key (detectorId)
);

create table VehicleDrivInfoCollecter (
    collecterID Bigint not null,
    name Varchar(32) not null,
    roadID Bigint not null,
    laneNumber Integer not null,
    toLaneNumber Integer not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    z Numeric(9,2) not null,
    distance Numeric(9,2) null,
    dataInterval Integer not null,
    startTime Integer not null,
    endTime Integer not null,
    constraint PK_VEHICLEDRIVINFOCOLLECTER primary key (collecterID)
);
