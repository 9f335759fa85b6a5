-- What opening a store without Net would add to it, in the same order: a store made from one of these templates
-- and an older store that was brought forward have the same layout.
create table Net (
    NetId Bigint not null,
    name Varchar(128) not null,
    sourceUrl Varchar(256) null,
    sourceType Varchar(64) not null,
    backgroundUrl Varchar(256) null,
    centerX NUMBER(12, 6) DEFAULT 0,
    centerY NUMBER(12, 6) DEFAULT 0,
    otherAttrsJson Varchar(102400) null,
    constraint PK_NET primary key (NetId)
);
create index IX_NET_NAME on Net (name);

alter table Link add NetId BIGINT NOT NULL ON CONFLICT IGNORE DEFAULT 0;
alter table Link add centerLinePointsJson BINARY(102400);
alter table Link add leftBreakPointsJson BINARY(102400);
alter table Link add rightBreakPointsJson BINARY(102400);
alter table Link add otherAttrsJson BINARY(102400);
alter table Connector add leftBreakPointsJson BINARY(102400);
alter table Connector add rightBreakPointsJson BINARY(102400);
alter table Connector add otherAttrsJson BINARY(102400);
alter table Lane add centerLinePointsJson BINARY(102400);
alter table Lane add leftBreakPointsJson BINARY(102400);
alter table Lane add rightBreakPointsJson BINARY(102400);
alter table Lane add otherAttrsJson BINARY(102400);
alter table LaneConnector add centerLinePointsJson BINARY(102400);
alter table LaneConnector add otherAttrsJson BINARY(102400);
