#include "model/Net.h"
#include "model/SpecialWords.h"
#include "tests/support/Host.h"
#include "tests/support/StoreFixture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlQuery>

namespace {

class OpeningTest : public StoreFixture {
protected:
    QString write(const QString &name, const QByteArray &content) {
        QFile file(folder() + QLatin1Char('/') + name);
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
        return file.fileName();
    }
};

TEST_F(OpeningTest, RefusesWhatIsNoStoreAndLeavesNoTraces) {
    EXPECT_FALSE(DBTools::openDatabase(gDB, QString(), true));
    EXPECT_FALSE(QSqlDatabase::contains());
    EXPECT_EQ(failureCount(), 0);

    const QString missing = folder() + QStringLiteral("/missing.net");
    EXPECT_FALSE(DBTools::openDatabase(gDB, missing, true));
    EXPECT_EQ(failureCount(), 1);
    EXPECT_FALSE(QFile::exists(missing));
    EXPECT_FALSE(DBTools_V6::openDatabaseForBackup(gDBForBackup, missing, true));
    EXPECT_FALSE(QFile::exists(missing));

    for (const QString &path :
         {folder(), write(QStringLiteral("text"), "not a store, only some text in a file"),
          write(QStringLiteral("empty"), "")}) {
        EXPECT_FALSE(DBTools::openDatabase(gDB, path, true)) << qPrintable(path);
        EXPECT_EQ(failureCount(), 1) << qPrintable(path);
    }
}

TEST_F(OpeningTest, LearnsAboutTheStore) {
    struct Case {
        const char *templateName;
        int version;
        bool isInternational;
    };
    for (const Case &expected : {Case{"EmptyNet_V6.0.0", 6, true}, Case{"EmptyNet_V3.0.0", 3, true},
                                 Case{"EmptyNet_V2.1.1", 5, false}, Case{"EmptyNet_V2.01.00", 5, false},
                                 Case{"EmptyNet_V2.00.00", 5, false}}) {
        openTemplate(expected.templateName);
        EXPECT_EQ(DBTools::dbVer(), expected.version);
        EXPECT_EQ(DBTools::isInternational(), expected.isInternational);
        // The flags show in what the dictionary does: Chinese stores keep the words as they are.
        gSpecialWords.setLangIsNotZh(true);
        EXPECT_EQ(gSpecialWords.trZhToEn(QStringLiteral("红")),
                  expected.isInternational ? QStringLiteral("Red") : QStringLiteral("红"));
        gSpecialWords.setLangIsNotZh(false);
        EXPECT_TRUE(DBTools::mbLinkHasRouadId);
        EXPECT_EQ(gsDbPath, path());
        EXPECT_TRUE(DBTools::hasTable(gDB, QStringLiteral("Net"))) << expected.templateName;
        EXPECT_TRUE(DBTools::hasTable(gDB, QStringLiteral("Rsu")));
    }
    EXPECT_FALSE(DBTools::openDatabase(gDB, folder(), true));
    EXPECT_EQ(gsDbPath, QString()) << "no store is open";
    EXPECT_EQ(DBTools::dbVer(), 5) << "belongs to success only";
}

TEST_F(OpeningTest, TheFirstRowOfVersionsCounts) {
    openTemplate("EmptyNet_V3.0.0");
    const QString add =
        QStringLiteral("insert into DbVersion select %1, appVersion, updateContent, updateSql, "
                       "updateDate from DbVersion limit 1");
    execute(add.arg(5));
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_EQ(DBTools::dbVer(), 3);
    EXPECT_EQ(DBTools::selectDbVersion(gDB), 3);
    EXPECT_EQ(failureCount(), 0);
    // One of them speaks of several networks: none is believed.
    execute(add.arg(6));
    EXPECT_FALSE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_EQ(failureCount(), 1);
}

TEST_F(OpeningTest, UpgradesAStoreWithoutNetworks) {
    gNet = Net();
    openTemplate("EmptyNet_V2.00.00");
    EXPECT_EQ(rows(QStringLiteral("select NetId, name from Net order by NetId")).first(),
              QStringLiteral("0|MoraSim"));
    for (const char *table : {"Link", "Lane", "Connector"})
        EXPECT_TRUE(DBTools::tableHasField(gDB, QLatin1String(table), QStringLiteral("rightBreakPointsJson")))
            << table;
    EXPECT_TRUE(
        DBTools::tableHasField(gDB, QStringLiteral("LaneConnector"), QStringLiteral("centerLinePointsJson")));
    EXPECT_FALSE(
        DBTools::tableHasField(gDB, QStringLiteral("LaneConnector"), QStringLiteral("leftBreakPointsJson")));
    // The probe is a substring test that tells upper and lower case apart.
    EXPECT_TRUE(DBTools::tableHasField(gDB, QStringLiteral("Link"), QStringLiteral("BreakPoints")));
    EXPECT_FALSE(DBTools::tableHasField(gDB, QStringLiteral("Link"), QStringLiteral("centerlinepointsjson")));
    const int tables = count(QStringLiteral("sqlite_master"));
    reopen();
    EXPECT_EQ(count(QStringLiteral("sqlite_master")), tables);
}

TEST_F(OpeningTest, FirstOpeningOfGenerationSixRecordsTheCounterRowOfRsu) {
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V6.0.0"), path()));
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    ASSERT_EQ(failureCount(), 1);
    EXPECT_EQ(DBTools::mlCallDbResult.first().sql,
              QStringLiteral("insert into IDGenerater([TableName], [ID]) values('Rsu', 0)"));
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_EQ(failureCount(), 0) << "opening empties the lists";
}

TEST_F(OpeningTest, TheHostsSettingsAndTablesCount) {
    Host host;
    host.pluginTables = {
        {QStringLiteral("Kiosk's"), QStringLiteral("create table \"Kiosk's\"(kioskID Bigint)")},
        {QStringLiteral("Broken"), QStringLiteral("create table Broken(")},
        {QStringLiteral("Last"), QStringLiteral("create table Last(lastID Bigint)")}};
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V3.0.0"), path()));
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    ASSERT_EQ(failureCount(), 1) << "the broken statement is recorded, the tables after it are made";
    EXPECT_EQ(
        rows(QStringLiteral("select TableName, ID from IDGenerater where TableName in ('Kiosk''s', 'Last')")),
        QStringList({"Kiosk's|0", "Last|0"}));
    // A table that was dropped goes on with its counter.
    execute(QStringLiteral("drop table Last"));
    execute(QStringLiteral("update IDGenerater set ID = 7 where TableName = 'Last'"));
    ASSERT_TRUE(DBTools::openDatabase(gDB, path(), true));
    EXPECT_EQ(count(QStringLiteral("Last")), 0);
    EXPECT_EQ(rows(QStringLiteral("select ID from IDGenerater where TableName = 'Last'")),
              QStringList({"7"}));
    EXPECT_EQ(failureCount(), 1);

    host.settings = {{QStringLiteral("__dbdriver"), QStringLiteral("NODRIVER")},
                     {QStringLiteral("__dbname"), QStringLiteral("elsewhere")},
                     {QStringLiteral("__dbuser"), QJsonValue()}};
    EXPECT_FALSE(DBTools::openDatabase(gDB, path(), true)) << "the driver of the settings does not exist";
    EXPECT_EQ(DBTools::mDbName, QStringLiteral("elsewhere"));
    EXPECT_EQ(DBTools_V6::mDbDriver, QStringLiteral("QSQLITE"));
}

TEST_F(OpeningTest, MetadataKnowsTheKeyOfEveryTable) {
    openTemplate("EmptyNet_V6.0.0");
    EXPECT_TRUE(DBTools::mlTableName.contains(QStringLiteral("VehicleConstitutent")));
    EXPECT_EQ(DBTools::tablePK().value(QStringLiteral("Link")).toLower(), QStringLiteral("linkid"));
    EXPECT_EQ(DBTools::tablePK().value(QStringLiteral("Net")), QStringLiteral("NetId"));
    EXPECT_EQ(DBTools::tablePK().value(QStringLiteral("AccidentZone")), QStringLiteral("accidentZoneId"));
    EXPECT_TRUE(DBTools::checkConstraint(gDB, QStringLiteral("select 1")));
    EXPECT_FALSE(DBTools::checkConstraint(gDB, QStringLiteral("select 1 where 0")));
    EXPECT_FALSE(DBTools::checkConstraint(gDB, QStringLiteral("nonsense")));
}

TEST_F(OpeningTest, ABackupIsOpenedAsItIs) {
    openTemplate("EmptyNet_V3.0.0");
    const QString copy = folder() + QStringLiteral("/副本.net");
    ASSERT_TRUE(QFile::copy(path(), copy));
    EXPECT_TRUE(DBTools_V6::openDatabaseForBackup(gDBForBackup, copy, false));
    EXPECT_EQ(gDBForBackup.databaseName(), copy);
    EXPECT_EQ(gDBForBackup.connectionName(), QLatin1String(QSqlDatabase::defaultConnection));
}

QString gLogged;

void keepMessage(QtMsgType, const QMessageLogContext &, const QString &text) {
    gLogged += text;
}

TEST_F(OpeningTest, TheLogGetsEveryFailure) {
    const CallDbResult first = {QStringLiteral("select 1 from X"), 0, QStringLiteral("no such table")};
    const CallDbResult second = {QStringLiteral("insert"), 17, QStringLiteral("refused")};
    openTemplate("EmptyNet_V6.0.0");
    DBTools_V6::mlCallDbResult = {second};
    DBTools::mlCallDbResult = {first};
    gLogged.clear();
    const auto previous = qInstallMessageHandler(keepMessage);
    DBTools::logError(gDB);
    gDB.close();
    DBTools::logError(gDB);
    qInstallMessageHandler(previous);
    const QRegularExpression expected(
        QStringLiteral("^路网 store  \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\n1\n"
                       "\"select 1 from X\"\nno such table\n2\n"
                       "\"insert\"\nid:17\nrefused$"));
    EXPECT_TRUE(expected.match(gLogged).hasMatch()) << qPrintable(gLogged);
    EXPECT_EQ(gLogged.count(QStringLiteral("no such table")), 1) << "a closed store writes nothing";
}

} // namespace
