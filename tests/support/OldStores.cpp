#include "tests/support/OldStores.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

void copyTemplate(const char *templateName, const QString &path) {
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/") + QLatin1String(templateName), path));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
}

void makeFirstGenerationStore(const QString &path) {
    copyTemplate("EmptyNet_V2.00.00", path);
    const QString connection = QStringLiteral("first generation");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        for (
            const char *sql :
            {"drop table RoutingFLowRatio", "drop table SimulateConfiguration", "drop table GuideArrow",
             "drop table Logger", "drop table DetectorVehiType", "drop table VehicleDetector",
             "drop table DriveFollowedModelParam",
             ("create table DriveFollowedModelParam"
              "(modelParamID, maxAcce, safeTimeInterval, desireDece, spaceBetween, alfa, beit)"),
             "drop table IDGenerater", "create table IDGenerater(ID Bigint not null)",
             "insert into IDGenerater values (77)",
             "alter table Lane rename column SerialNumber to SerialNnumber",
             "alter table SignalColor rename column serialNumber to serialNnumber",
             "update DbVersion set versionId = 1",
             "insert into Routing(routingID, deciPointID, routingName, proportion) values(9, 1, 'r', 40.5)"}) {
            QSqlQuery query(db);
            EXPECT_TRUE(query.exec(QLatin1String(sql))) << sql << qPrintable(query.lastError().text());
        }
    }
    QSqlDatabase::removeDatabase(connection);
}
