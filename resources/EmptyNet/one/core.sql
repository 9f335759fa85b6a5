create table IDGenerater (
    TableName Varchar(64) not null,
    ID Bigint not null,
    constraint PK_IDGENERATER primary key (TableName)
);

-- Usage log of the host and its plug-ins.
create table Logger (
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
    constraint PK_LOGGER primary key (logID)
);
