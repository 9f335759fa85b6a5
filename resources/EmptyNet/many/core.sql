create table Net (
    NetId Bigint not null,
    name Varchar(128) not null,
    sourceUrl Varchar(256) null,
    sourceType Varchar(64) not null,
    backgroundUrl Varchar(256) null,
    centerX Numeric(12,6) not null,
    centerY Numeric(12,6) not null,
    caption Varchar(10240) null,
    otherAttrsJson Varchar(102400) null,
    isDefault Varchar(1) not null,
    constraint PK_NET primary key (NetId)
);
create index IX_NET_NAME on Net (name);

create table IDGenerater (
    NetId Bigint not null,
    TableName Varchar(64) not null,
    ID Bigint not null,
    constraint PK_IDGENERATER primary key (NetId, TableName),
    constraint FK_IDGENERA_R_41_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

-- Usage log of the host and its plug-ins.
create table Logger (
    NetId Bigint not null,
    logID Bigint not null,
    appVersionName Varchar(32) not null,
    appVersionDate Varchar(32) not null,
    operation Varchar(1000) not null,
    operDate Char(14) not null,
    userName Varchar(64) null,
    hostName Varchar(64) null,
    pluginName Varchar(64) null,
    pluginVersion Varchar(32) null,
    pluginOperation Varchar(1000) null,
    remark Varchar(1000) null,
    constraint PK_LOGGER primary key (NetId, logID),
    constraint FK_LOGGER_R_49_NET foreign key (NetId) references Net (NetId) on update restrict on delete restrict
);

create table V2xConfig (
    netId Bigint not null,
    v2xConfigId Bigint not null,
    param Varchar(32) not null,
    description Varchar(128) not null,
    value Varchar(32) not null,
    constraint PK_V2XCONFIG primary key (netId, v2xConfigId)
);
