create table DbVersion (
    versionId Bigint not null,
    appVersion Varchar(32) not null,
    updateContent Varchar(1024) not null,
    updateSql Text not null,
    updateDate Varchar(8) not null,
    constraint PK_DBVERSION primary key (versionId)
);
