-- Dropping the only self-numbering table leaves sqlite_sequence behind. No table of the format numbers itself,
-- but every store of every generation has carried sqlite_sequence.
create table SequenceSeed (
    id integer primary key autoincrement
);
drop table SequenceSeed;
