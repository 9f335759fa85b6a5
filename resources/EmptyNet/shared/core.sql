-- Dropping the only self-numbering table leaves sqlite_sequence behind. No table of the format numbers itself,
-- but every store of every generation has carried sqlite_sequence.
create table SequenceSeed (
    id integer primary key autoincrement
);
drop table SequenceSeed;

create table DbVersion (
    versionId Bigint not null,
    appVersion Varchar(32) not null,
    updateContent Varchar(1024) not null,
    updateSql Text not null,
    updateDate Varchar(8) not null,
    constraint PK_DBVERSION primary key (versionId)
);
