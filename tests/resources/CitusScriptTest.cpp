#include "tests/host/Beside.h"
#include "tests/resources/Generation6Tables.h"
#include "tests/support/Places.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

// What a cluster that spreads tables by NetId asks of a schema and of statements, as far as it can be seen without one.

namespace {

const QStringList kReferenceTables{QStringLiteral("dbversion"), QStringLiteral("vehicle"),
                                   QStringLiteral("vehicledriving")};

QString textOf(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QString script() {
    return textOf(
        postgresqlText().replace(QLatin1String("pgsql_db6.sql"), QLatin1String("pgsql_db6_citus.sql")));
}

/// The tables whose rows are led by their network, by the format's list.
QSet<QString> ledTables() {
    QSet<QString> names;
    for (const char *table : kGeneration6Tables)
        names.insert(QString::fromLatin1(table).toLower().section(QLatin1Char('|'), 0, 0));
    for (const QString &name : kReferenceTables)
        EXPECT_TRUE(names.remove(name));
    return names;
}

TEST(CitusScript, NamesEachTableOnceAfterThoseThatItRefersTo) {
    static const QRegularExpression call(QStringLiteral(
        "^select create_(reference|distributed)_table\\('(\\w+)'(, 'netid'(, colocate_with => 'net')?)?\\);$"));
    QStringList order;
    QStringList reference;
    for (const QString &line : script().split(QLatin1Char('\n'))) {
        if (!line.startsWith(QLatin1String("select")))
            continue;
        const QRegularExpressionMatch match = call.match(line);
        ASSERT_TRUE(match.hasMatch()) << line.toStdString();
        const QString name = match.captured(2);
        if (match.captured(1) == QLatin1String("reference"))
            reference.append(name);
        else
            EXPECT_EQ(match.captured(4).isEmpty(), name == QLatin1String("net")) << line.toStdString();
        EXPECT_EQ(match.captured(3).isEmpty(), reference.contains(name)) << line.toStdString();
        order.append(name);
    }
    reference.sort();
    EXPECT_EQ(reference, kReferenceTables);
    EXPECT_EQ(order.size(), 57);
    const QSet<QString> all(order.cbegin(), order.cend());
    EXPECT_EQ(all, ledTables() + QSet<QString>(kReferenceTables.cbegin(), kReferenceTables.cend()));
    for (const auto &[first, second] :
         {std::pair("net", "vertex"), std::pair("vertex", "node"), std::pair("node", "link"),
          std::pair("link", "lane"), std::pair("connector", "laneconnector"),
          std::pair("vehicle", "vehicledriving")})
        EXPECT_LT(order.indexOf(QLatin1String(first)), order.indexOf(QLatin1String(second))) << second;
    if (!PostgresDatabase::hasServer())
        return;
    const PostgresDatabase database;
    const Beside beside(database.name());
    for (int i = 0; i < order.size(); ++i)
        EXPECT_EQ(beside.value(
                      QStringLiteral("select count(*) from pg_constraint where contype = 'f' and conrelid = "
                                     "'%1'::regclass and not confrelid = any ('{%2}'::regclass[])")
                          .arg(order[i], order.mid(0, i).join(QLatin1Char(',')))),
                  QStringLiteral("0"))
            << order[i].toStdString();
}

TEST(CitusScript, TheSchemaPairsTheNetworkInEveryKey) {
    if (!PostgresDatabase::hasServer())
        GTEST_SKIP() << "there is no PostgreSQL server (scripts/with-postgres)";
    const PostgresDatabase database;
    const Beside beside(database.name());
    const QString led = QStringLiteral("'{%1}'::regclass[]").arg(ledTables().values().join(QLatin1Char(',')));
    const auto count = [&](const char *sql) {
        return beside.value(QLatin1String(sql) + led + QLatin1Char(')')).toInt();
    };
    EXPECT_GT(count("select count(*) from pg_index where indisunique and indrelid = any ("), 45);
    EXPECT_EQ(
        count(
            "select count(*) from pg_index where indisunique and not exists (select 1 from pg_attribute where "
            "attrelid = indrelid and attname = 'netid' and attnum = any (indkey)) and indrelid = any ("),
        0);
    EXPECT_GT(count("select count(*) from pg_constraint where contype = 'f' and conrelid = any ("), 60);
    EXPECT_EQ(
        count("select count(*) from pg_constraint f where contype = 'f' and not exists (select 1 from "
              "unnest(conkey, confkey) pair(own, other) join pg_attribute a on a.attrelid = conrelid and "
              "a.attnum = own join pg_attribute b on b.attrelid = confrelid and b.attnum = other where "
              "a.attname = 'netid' and b.attname = 'netid') and conrelid = any ("),
        0);
    // Tables that are on every machine refer to none that is spread.
    EXPECT_EQ(
        count(
            "select count(*) from pg_constraint where contype = 'f' and conrelid in ('dbversion'::regclass, "
            "'vehicle'::regclass, 'vehicledriving'::regclass) and confrelid = any ("),
        0);
    EXPECT_EQ(count("select count(*) from pg_trigger where not tgisinternal and tgrelid = any ("), 0);
}

/// Statements on tables that are spread, of those that the operations execute.
QStringList spreadStatements() {
    static const QRegularExpression table(QStringLiteral("(?:from|join|into|update)\\s+(\\w+)"),
                                          QRegularExpression::CaseInsensitiveOption);
    QSet<QString> found;
    const QSet<QString> led = ledTables();
    for (const QString &line :
         textOf(sourceFolder() + QStringLiteral("/tests/golden/statements_several_nets.txt"))
             .split(QLatin1Char('\n'))) {
        if (!line.contains(QRegularExpression(QStringLiteral("^(select|insert|update|delete) "))))
            continue;
        auto names = table.globalMatch(line);
        while (names.hasNext()) {
            if (led.contains(names.next().captured(1).toLower()))
                found.insert(line);
        }
    }
    QStringList statements = found.values();
    statements.sort();
    return statements;
}

TEST(CitusScript, StatementsNameTheNetworkButForThese) {
    static const QRegularExpression change(QStringLiteral("^update \\w+ set (?:(?! where ).)*\\bNetId\\s*="),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression asks(QStringLiteral("\\bwhere .*\\bNetId\\s*="),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression gives(
        QStringLiteral(
            "^insert into (?:\\w+\\s*\\(\\s*NetId\\b|\\w+\\(routingID, NetId\\b|\\w+ values\\s*\\(\\d+,)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression join(QStringLiteral(" join (?!.*\\b\\w+\\.NetId = \\w+\\.NetId)"),
                                         QRegularExpression::CaseInsensitiveOption);
    QStringList everywhere;
    QStringList unpaired;
    QStringList nobodys;
    const QStringList statements = spreadStatements();
    EXPECT_GT(statements.size(), 200);
    for (const QString &statement : statements) {
        EXPECT_FALSE(change.match(statement).hasMatch()) << statement.toStdString();
        if (statement.startsWith(QLatin1String("insert")) && !gives.match(statement).hasMatch())
            nobodys.append(statement);
        else if (!statement.startsWith(QLatin1String("insert")) && !asks.match(statement).hasMatch())
            everywhere.append(statement.section(QLatin1String(" where "), 0, 0));
        if (join.match(statement).hasMatch())
            unpaired.append(statement.section(QLatin1String(" where "), 0, 0));
    }
    everywhere.removeDuplicates();
    EXPECT_EQ(everywhere.join(QLatin1Char('\n')).toStdString(),
              "select * from AccidentZone\n"
              "select * from AccidentZoneWithLane\n"
              "select * from LinkVertex\n"
              "select * from Logger\n" // where 1 = 0
              "select * from Net order by NetId\n"
              "select * from Net order by netId\n"
              "select * from Net\n"
              "select * from Node\n"
              "select count(*) from IDGenerater\n"
              "select max(NetId) from Net\n"
              "update Configuration set showBackgroundMap = :showBackgroundMap\n"
              "update Configuration set showGrid = :showGrid\n"
              "update Connector set leftBreakPointsJson=:leftBreakPointsJson,rightBreakPointsJson="
              ":rightBreakPointsJson\n"
              "update Connector set otherAttrsJson=:otherAttrsJson\n"
              "update IDGenerater set ID = 2");
    // A cluster has to be told that it may send rows from machine to machine for this one.
    EXPECT_EQ(unpaired, QStringList(QStringLiteral(
                            "select * from SignalLamp as a join Lane as b on a.laneID = b.laneID")));
    // Every engine refuses it, for want of the network.
    EXPECT_EQ(nobodys,
              QStringList(QStringLiteral("insert into DetectorVehiType(vehicleDetectorId,vehicleTypeCode) "
                                         "values(:vehicleDetectorId,:vehicleTypeCode)")));
}

} // namespace
