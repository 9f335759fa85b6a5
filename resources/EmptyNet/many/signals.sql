create table SignalGroup (
    NetId Bigint not null,
    signalGroupID Bigint not null,
    name Varchar(32) not null,
    timeLength Integer not null,
    startTime Integer not null,
    endTime Integer not null,
    constraint PK_SIGNALGROUP primary key (NetId, signalGroupID),
    constraint FK_SIGNALGR_R_54_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table SignalPhase (
    NetId Bigint not null,
    signalPhaseID Bigint not null,
    signalGroupID Bigint not null,
    serialNumber Integer not null,
    name Varchar(32) not null,
    constraint PK_SIGNALPHASE primary key (NetId, signalPhaseID),
    constraint FK_SIGNALPH_R_15_SIGNALGR foreign key (NetId, signalGroupID) references SignalGroup (NetId, signalGroupID) on update restrict on delete restrict
);
-- A group's phases come in the order they were written: the index must end with the owner.
create index IX_SIGNALPHASE_GROUP on SignalPhase (NetId, signalGroupID);

create table SignalColor (
    NetId Bigint not null,
    signalPhaseID Bigint not null,
    serialNumber Integer not null,
    color Varchar(32) not null,
    timeLength Integer not null,
    constraint FK_SIGNALCO_R_16_SIGNALPH foreign key (NetId, signalPhaseID) references SignalPhase (NetId, signalPhaseID) on update restrict on delete restrict
);
create index IX_SIGNALCOLOR_PHASE on SignalColor (NetId, signalPhaseID, serialNumber);

create table SignalLamp (
    NetId Bigint not null,
    signalLampID Bigint not null,
    signalPhaseID Bigint not null,
    laneID Bigint not null,
    toLaneID Bigint null,
    name Varchar(32) not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    z Numeric(15,5) not null,
    constraint PK_SIGNALLAMP primary key (NetId, signalLampID),
    constraint FK_SIGNALLA_R_17_SIGNALPH foreign key (NetId, signalPhaseID) references SignalPhase (NetId, signalPhaseID) on update restrict on delete restrict,
    constraint FK_SIGNALLA_R_18_LANE foreign key (NetId, laneID) references Lane (NetId, laneID) on update restrict on delete restrict
);
