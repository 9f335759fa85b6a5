#include "tests/host/Beside.h"
#include "tests/host/OnServer.h"

// Stores in a schema of their own: found by the search path, whatever else the database has.

namespace {

class OwnSchema : public OnServer {
protected:
    static QString in(const PostgresDatabase &database, const char *path) {
        return database.connectionString() +
               QStringLiteral(" options='-c search_path=%1'").arg(QLatin1String(path));
    }
    static void expectDone(const QStringList &command) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exitCode, 0) << command.join(QLatin1Char(' ')).toStdString() << '\n'
                                       << outcome.err.toStdString();
    }

    /// Everything that works on a store, on one without networks; a file is the measure.
    void expectAllWorks(const QString &store) {
        const QString measure = newStore(QStringLiteral("measure.mora"));
        for (const QString &each : {measure, store}) {
            expectDone({QStringLiteral("import"), each, kExample});
            expectDone({QStringLiteral("import"), each, kExample, QStringLiteral("--name"),
                        QStringLiteral("other")});
        }
        const auto said = [&](const QString &of, const QStringList &command) {
            return run(QStringList{command.first(), of} + command.mid(1)).out;
        };
        for (const QStringList &command :
             {QStringList{QStringLiteral("digest")}, QStringList{QStringLiteral("check")},
              QStringList{QStringLiteral("show"), QStringLiteral("links"), QStringLiteral("--net"),
                          QStringLiteral("other")}}) {
            SCOPED_TRACE(command.first().toStdString());
            EXPECT_FALSE(said(measure, command).isEmpty());
            EXPECT_EQ(said(store, command), said(measure, command));
        }
        expectDone({QStringLiteral("info"), store});
        expectDone({QStringLiteral("draw"), store, QStringLiteral("--net"), QStringLiteral("other"),
                    file(QStringLiteral("a.svg"))});
        expectDone({QStringLiteral("copy"), store, store, QStringLiteral("--net"), QStringLiteral("other"),
                    QStringLiteral("--name"), QStringLiteral("third")});
        EXPECT_EQ(said(store, {QStringLiteral("digest")}).count(QLatin1Char('\n')), 3);
        alter(measure, {QStringLiteral("update Link set limitSpeed = 33 where NetId = 1")});
        const QString patch = file(QStringLiteral("patch"));
        expectDone({QStringLiteral("diff"), store, measure, QStringLiteral("-o"), patch});
        expectDone({QStringLiteral("apply"), store, patch});
        expectDone({QStringLiteral("remove"), store, QStringLiteral("third"), QStringLiteral("--yes")});
        expectDone({QStringLiteral("remove"), store, QStringLiteral("other"), QStringLiteral("--yes")});
        expectDone({QStringLiteral("remove"), measure, QStringLiteral("other"), QStringLiteral("--yes")});
        EXPECT_EQ(said(store, {QStringLiteral("digest")}), said(measure, {QStringLiteral("digest")}));
    }
};

} // namespace

TEST_F(OwnSchema, AStoreInASchemaOfItsOwnWorksThroughout) {
    const PostgresDatabase database;
    {
        const Beside beside(database.name());
        beside.value(QStringLiteral("alter schema public rename to \"My city\""));
        beside.value(QStringLiteral("create schema public"));
        // The user has a schema, too, and it is the first of the path.
        beside.value(QStringLiteral("create schema authorization current_user"));
    }
    expectAllWorks(in(database, "\"$user\",\"My\\\\ city\""));
}

TEST_F(OwnSchema, SoDoesOneOfPartitions) {
    const PostgresDatabase database(PostgresDatabase::Content::Nothing);
    Beside(database.name()).value(QStringLiteral("create schema city"));
    const QString store = in(database, "city,public");
    expectDone({QStringLiteral("new"), QStringLiteral("--postgres"), store, QStringLiteral("--partitions"),
                QStringLiteral("2")});
    expectAllWorks(store);
    EXPECT_EQ(Beside(database.name())
                  .value(QStringLiteral("select count(*) from pg_tables where schemaname = 'public'")),
              QStringLiteral("0"));
}

TEST_F(OwnSchema, ANewStoreThatNobodyWouldFindIsNotMade) {
    const PostgresDatabase database(PostgresDatabase::Content::Nothing);
    const Beside beside(database.name());
    beside.value(QStringLiteral("create schema city"));
    const QStringList make{QStringLiteral("new"), QStringLiteral("--postgres")};
    const QStringList partitions{QStringLiteral("--partitions"), QStringLiteral("2")};
    expectSentence(run(make + QStringList{in(database, "city")}),
                   QStringLiteral("which the search path of this user does not have"));
    expectSentence(run(make + QStringList{in(database, "none")} + partitions),
                   QStringLiteral("no schema of the search path exists"));
    EXPECT_EQ(beside.value(QStringLiteral(
                  "select count(*) from pg_class where relnamespace in ('public'::regnamespace, "
                  "'city'::regnamespace)")),
              QStringLiteral("0"));
    expectDone(make + QStringList{in(database, "city,public")});
}
