create table SignalGroup (
    signalGroupID Bigint not null,
    name Varchar(32) not null,
    timeLength Integer not null,
    startTime Integer not null,
    endTime Integer not null,
    constraint PK_SIGNALGROUP primary key (signalGroupID)
);

create table SignalPhase (
    signalPhaseID Bigint not null,
    signalGroupID Bigint not null,
    serialNumber Integer not null,
    name Varchar(32) not null,
    constraint PK_SIGNALPHASE primary key (signalPhaseID),
    constraint FK_SIGNALPH_R_15_SIGNALGR foreign key (signalGroupID) references SignalGroup (signalGroupID) on update restrict on delete restrict
);
-- A group's phases come in the order they were written: the index must end with the owner.
create index IX_SIGNALPHASE_GROUP on SignalPhase (signalGroupID);

create table SignalColor (
    signalPhaseID Bigint not null,
    serialNumber Integer not null,
    color Varchar(32) not null,
    timeLength Integer not null,
    constraint FK_SIGNALCO_R_16_SIGNALPH foreign key (signalPhaseID) references SignalPhase (signalPhaseID) on update restrict on delete restrict
);
create index IX_SIGNALCOLOR_PHASE on SignalColor (signalPhaseID, serialNumber);

create table SignalLamp (
    signalLampID Bigint not null,
    signalPhaseID Bigint not null,
    laneID Bigint not null,
    toLaneID Bigint null,
    name Varchar(32) not null,
    x Numeric(15,5) not null,
    y Numeric(15,5) not null,
    z Numeric(15,5) not null,
    constraint PK_SIGNALLAMP primary key (signalLampID),
    constraint FK_SIGNALLA_R_17_SIGNALPH foreign key (signalPhaseID) references SignalPhase (signalPhaseID) on update restrict on delete restrict,
    constraint FK_SIGNALLA_R_18_LANE foreign key (laneID) references Lane (laneID) on update restrict on delete restrict
);
