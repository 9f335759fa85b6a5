#include "tests/host/Beside.h"
#include "tests/resources/Generation6Tables.h"

#include <QStringList>

// The tables of a store whose networks are spread over partitions, against the format's list and a plain store.

namespace {

class PartitionsSchema : public testing::Test {
protected:
    void SetUp() override {
        if (!PostgresDatabase::hasServer())
            GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    }

    /// All of a statement with one column, in order.
    static QStringList list(const PostgresDatabase &database, const QString &sql) {
        const Beside beside(database.name());
        return beside
            .value(
                QStringLiteral("select string_agg(line, E'\\n' order by line) from (%1) as t(line)").arg(sql))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    /// The format's keys, "table.columns" for primary ones and "table.columns>table" for the others.
    static QStringList keysOfLeaves() {
        // What no server's store could keep.
        static const QStringList without{
            QStringLiteral("lanelimitvehicle"), QStringLiteral("linklimitvehicle"),
            QStringLiteral("linkfencemiddle"),  QStringLiteral("connectorlimitvehicle"),
            QStringLiteral("passenger"),        QStringLiteral("net"),
            QStringLiteral("idgenerater"),      QStringLiteral("dbversion"),
            QStringLiteral("vehicle"),          QStringLiteral("vehicledriving"),
            QStringLiteral("linktype")};
        QStringList keys;
        for (const char *table : kGeneration6Tables) {
            const QStringList parts = QString::fromLatin1(table).toLower().split(QLatin1Char('|'));
            if (without.indexOf(parts[0]) < 5 && !parts[2].isEmpty())
                keys.append(parts[0] + QLatin1Char('.') + parts[2]);
            if (without.contains(parts[0]))
                continue;
            for (const QString &key : parts[4].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
                if (key != QLatin1String("netid,vehicletypecode>vehicleconstitutent"))
                    keys.append(parts[0] + QLatin1Char('.') + key);
            }
        }
        keys.sort();
        return keys;
    }
};

TEST_F(PartitionsSchema, LeavesHaveAllKeysAndParentsNone) {
    const PostgresDatabase spread(PostgresDatabase::Content::Partitions);
    const QString leafKeys = QStringLiteral(
        "select relname || '.' || (select string_agg(attname, ',' order by n) from unnest(conkey) with "
        "ordinality k(c, n) join pg_attribute on attrelid = conrelid and attnum = c) || case when contype = 'p' "
        "then '' else '>' || (select relname from pg_class t where t.oid = confrelid) end from pg_constraint "
        "join pg_class on pg_class.oid = conrelid where connamespace = '%1'::regnamespace and (contype = 'p' or "
        "confupdtype = 'r' and confdeltype = 'r')");
    const QStringList expected = keysOfLeaves();
    EXPECT_GT(expected.size(), 100);
    for (const char *schema : {"part_0", "part_1", "part_2"})
        EXPECT_EQ(list(spread, leafKeys.arg(QLatin1String(schema))), expected) << schema;
    // Each within its own partition, or to the record of the network.
    EXPECT_EQ(list(spread,
                   QStringLiteral("select c.oid::regclass || '>' || t.oid::regclass from pg_constraint join "
                                  "pg_class c on c.oid = conrelid join pg_class t on t.oid = confrelid "
                                  "where contype = 'f' and c.relnamespace <> t.relnamespace and "
                                  "confrelid <> 'net'::regclass")),
              QStringList());
    EXPECT_EQ(list(spread, QStringLiteral("select conname from pg_constraint join pg_class c on c.oid = "
                                          "conrelid where c.relkind = 'p'")),
              QStringList());
    EXPECT_EQ(list(spread, QStringLiteral("select count(*)::text from pg_class where relkind = 'p'")),
              QStringList(QStringLiteral("51")));
}

TEST_F(PartitionsSchema, HasTheColumnsIndexesAndSequencesOfAPlainStore) {
    const PostgresDatabase spread(PostgresDatabase::Content::Partitions);
    const PostgresDatabase plain;
    for (
        const char *question :
        {"select concat_ws(' ', table_name, ordinal_position, column_name, data_type, is_nullable, column_default) "
         "from information_schema.columns where table_schema = 'public'",
         "select sequencename from pg_sequences where schemaname = 'public'",
         "select updateDate from DbVersion"})
        EXPECT_EQ(list(spread, QLatin1String(question)), list(plain, QLatin1String(question))) << question;
    // Of a table that is in the store once, and of one leaf of each other.
    const QString indexes =
        QStringLiteral("select distinct replace(replace(indexdef, 'part_1.', ''), 'public.', '') from "
                       "pg_indexes where schemaname in ('public', 'part_1')");
    EXPECT_GT(list(plain, indexes).size(), 80);
    EXPECT_EQ(list(spread, indexes), list(plain, indexes));
}

} // namespace
