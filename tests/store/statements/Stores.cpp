#include "tests/support/StatementList.h"

#include <QFile>
#include <QSqlQuery>
#include <gtest/gtest.h>

#include <type_traits>

namespace {

constexpr long kNet = StatementList::kNet;

void execute(const char *sql) {
    QSqlQuery query(gDB);
    ASSERT_TRUE(query.exec(QLatin1String(sql))) << sql;
}

void recordIdentifiers(StatementList &list) {
    long id = 0;
    const auto drawLink = [&] { DBTools::getIDByTableName(gDB, "Link", id); };
    list.add("getIDByTableName", drawLink);
    list.add("getIDByTableName again", drawLink);
    list.add("updateIds", [] { DBTools::updateIds(gDB, true); });
    DBTools::mhId.clear();
    DBTools::mhNetMaxId.clear();
    list.add("getIDByTableName with nothing reserved", drawLink);
    execute("update IDGenerater set ID = 0 where TableName = 'Link'");
    execute("delete from IDGenerater where TableName = 'Node'");
    DBTools::mhId.clear();
    list.add("getIDByTableName with a counter behind", drawLink);
    list.add("getIDByTableName without a counter", [&] { DBTools::getIDByTableName(gDB, "Node", id); });
    list.add("getID", [&] { DBTools::getID(gDB, id); });
    list.add("getMaxID", [] { DBTools::getMaxID(gDB, kNet, "Link"); });
    list.add("getMaxIdByAllTables", [&] { DBTools::getMaxIdByAllTables(gDB, id, "public"); });
    list.add("initSequence", [] { DBTools::initSequence(gDB, "public"); });
}

/// In place of the open store, one that no opening has upgraded yet.
void recordUpgrade(StatementList &list) {
    const QString path = gDB.databaseName() + QStringLiteral(".old");
    QFile::remove(path);
    ASSERT_TRUE(QFile::copy(QStringLiteral(":/Resources/EmptyNet/EmptyNet_V2.00.00"), path));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    gDB.close();
    gDB.setDatabaseName(path);
    ASSERT_TRUE(gDB.open());
    for (const char *table : {"RoadWorkZoneWithLane", "RoadWorkZone", "AccidentZoneWithLane", "AccidentZone",
                              "Rsu", "DetectorVehiType", "VehicleDetector"})
        execute((QByteArray("drop table if exists ") + table).constData());
    list.add("updateDatabase of an older store", [] { DBTools::updateDatabase(gDB); });
}

template <class Tools>
void record(StatementList &list) {
    list.add("validateDatabase", [] { Tools::validateDatabase(gDB); });
    list.addWrite("initDictionary", [](bool flag) { Tools::initDictionary(gDB, 3, flag); });
    list.addWrite("initDictionary again", [](bool flag) { Tools::initDictionary(gDB, 3, flag); });
    if constexpr (std::is_same_v<Tools, DBTools>) {
        list.add("selectDbVersion", [] { DBTools::selectDbVersion(gDB); });
        list.add("hasTable", [] { DBTools::hasTable(gDB, "Link"); });
        list.add("tableHasField", [] { DBTools::tableHasField(gDB, "Link", "roadid"); });
        list.add("checkConstraint", [] { DBTools::checkConstraint(gDB, "select 1 where 0"); });
        list.add("hasErrorFieldName", [] { DBTools::hasErrorFieldName(gDB); });
        list.add("metadata", [] {
            DBTools::mlTableName.clear(); // it is filled once in a process
            DBTools::metadata(gDB);
        });
        list.add("updateDatabase", [] { DBTools::updateDatabase(gDB); });

        recordIdentifiers(list);
        if (DBTools::dbVer() < 6)
            recordUpgrade(list);
    } else {
        long id = 0;
        list.add("DBTools_V6::getIDByTableName", [&] { Tools::getIDByTableName(gDB, kNet, "Node", id); });
    }
}

const StatementFamily kStores("Stores", record<DBTools>, record<DBTools_V6>);

} // namespace
