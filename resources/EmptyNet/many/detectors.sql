create table VehicleDetector (
    NetId Bigint not null,
    vehicleDetectorId Bigint not null,
    signalGroupID Bigint not null,
    name Varchar(32) not null,
    phaseNumber Integer not null,
    roadId Bigint not null,
    roadType Varchar(32) not null,
    laneNumber Integer not null,
    toLaneNumber Integer null,
    length Numeric(9,4) not null,
    distToTerminal Numeric(9,4) not null,
    [type] Varchar(32) not null,
    maxGreen Integer not null,
    constraint PK_VEHICLEDETECTOR primary key (NetId, vehicleDetectorId),
    constraint FK_VEHICLED_R_33_SIGNALGR foreign key (NetId, signalGroupID) references SignalGroup (NetId, signalGroupID) on update restrict on delete restrict,
    constraint FK_VEHICLED_R_59_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table DetectorVehiType (
    NetId Bigint not null,
    vehicleDetectorId Bigint not null,
    vehicleTypeCode Bigint not null,
    constraint PK_DETECTORVEHITYPE primary key (NetId, vehicleDetectorId, vehicleTypeCode),
    constraint FK_DETECTOR_DETECTORV_VEHICLED foreign key (NetId, vehicleDetectorId) references VehicleDetector (NetId, vehicleDetectorId) on update restrict on delete restrict,
    constraint FK_DETECTOR_DETECTORV_VEHICLET foreign key (NetId, vehicleTypeCode) references VehicleType (NetId, vehicleTypeCode) on update restrict on delete restrict
);

create table VehicleQueueCounter (
    NetId Bigint not null,
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
    constraint PK_VEHICLEQUEUECOUNTER primary key (NetId, QueueCounterID),
    constraint FK_VEHICLEQ_R_56_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table VehicleTravelDetector (
    NetId Bigint not null,
    detectorId Bigint not null,
    name Varchar(32) not null,
    startRoadId Bigint not null,
    start_laneNumber Integer null,
    start_toLaneNumber Integer null,
    startDist Numeric(9,2) not null,
    startX Numeric(15,5) not null,
    startY Numeric(15,5) not null,
    teminalRoadId Bigint not null,
    teminal_laneNumber Integer null,
    teminal_toLaneNumber Integer null,
    teminalDist Numeric(9,2) not null,
    teminalX Numeric(15,5) not null,
    teminalY Numeric(15,5) not null,
    startTime Integer not null,
    endTime Integer not null,
    dataInterval Integer not null,
    shortestDistance Numeric(12,2) not null,
    constraint PK_VEHICLETRAVELDETECTOR primary key (NetId, detectorId),
    constraint FK_VEHICLET_R_57_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table VehicleDrivInfoCollecter (
    NetId Bigint not null,
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
    constraint PK_VEHICLEDRIVINFOCOLLECTER primary key (NetId, collecterID),
    constraint FK_VEHICLED_R_58_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);
