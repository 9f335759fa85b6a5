#include "store/catalogue/Catalogue.h"
#include "tests/resources/TemplateStore.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

// The catalogue beside what the schema of generation 6 declares.

namespace {

using Texts = std::set<std::string>;

std::string lower(const QString &text) {
    return text.toLower().toStdString();
}

/// References of the tables of networks, as the schema declares them: "busstation.linkid > link".
Texts declaredReferences(const TemplateStore &schema) {
    Texts found;
    for (const QString &line : schema.rows(QStringLiteral(
             "select m.name || '.' || f.\"from\" || ' > ' || f.\"table\" from sqlite_master m, "
             "pragma_foreign_key_list(m.name) f where m.type = 'table' and m.name not in "
             "('IDGenerater', 'Vehicle', 'VehicleDriving') and f.\"table\" not in "
             "('Net') and lower(f.\"from\") <> 'netid'")))
        found.insert(lower(line));
    return found;
}

/// The columns of a table's declared key but for the network's.
Texts declaredKey(const TemplateStore &schema, const char *table) {
    Texts found;
    for (const QString &column :
         schema.rows(QStringLiteral(
                         "select name from pragma_table_info('%1') where pk > 0 and lower(name) <> 'netid'")
                         .arg(QLatin1String(table))))
        found.insert(lower(column));
    return found;
}

} // namespace

TEST(Catalogue, ReferencesAreTheDeclaredOnesAndThoseThatNoKeyCanDeclare) {
    const TemplateStore schema(QStringLiteral("EmptyNet_V6.0.0"));
    Texts expected = declaredReferences(schema);
    ASSERT_GT(expected.size(), 30U);
    // The key of the format names compositions, and what the rows have is vehicle types.
    EXPECT_EQ(expected.erase("reducespeedvehitype.vehicletypecode > vehicleconstitutent"), 1U);
    expected.insert({"reducespeedvehitype.vehicletypecode > vehicletype",
                     "departureinterval.vehicons > vehicleconstitutent"});
    expected.insert({"link.roadid > link", "connector.roadid > connector", "signallamp.tolaneid > lane",
                     "buslineroad.roadid > link", "vehicledetector.roadid > road",
                     "vehiclequeuecounter.roadid > road", "vehicletraveldetector.startroadid > road",
                     "vehicletraveldetector.teminalroadid > road", "vehicledrivinfocollecter.roadid > road",
                     "accidentzone.roadid > road", "roadworkzone.roadid > road",
                     "reducespeedarea.roadid > road"});
    Texts known;
    std::set<QString> before;
    for (const catalogue::Table &table : catalogue::tables()) {
        before.insert(QLatin1String(table.name));
        for (const catalogue::Reference &reference : table.references) {
            known.insert(lower(QLatin1String(table.name) + QLatin1Char('.') +
                               QLatin1String(reference.column) + QStringLiteral(" > ") +
                               QLatin1String(reference.table ? reference.table : "road")));
            EXPECT_TRUE(!reference.table || before.count(QLatin1String(reference.table)))
                << table.name << " comes before " << reference.table;
        }
    }
    EXPECT_EQ(known, expected);
}

TEST(Catalogue, NumbersAndKeysAreTheDeclaredOnes) {
    const TemplateStore schema(QStringLiteral("EmptyNet_V6.0.0"));
    // Rows of these are known by a number that no counter gives.
    const std::set<std::string> unnumbered{"Net", "V2xConfig", "DriveFollowedModelParam",
                                           "ChangeLaneModelParam", "LinkType"};
    QStringList tables = schema.tables();
    for (const catalogue::Table &table : catalogue::tables()) {
        EXPECT_TRUE(tables.removeOne(QLatin1String(table.name))) << table.name;
        const Texts declared = declaredKey(schema, table.name);
        const bool isNumbered = declared.size() == 1 && !unnumbered.count(table.name);
        EXPECT_EQ(Texts{lower(QLatin1String(table.id))}, isNumbered ? declared : Texts{""}) << table.name;
        Texts key;
        for (const char *column : table.key)
            key.insert(lower(QLatin1String(column)));
        const bool isLaneConnector = qstrcmp(table.name, "LaneConnector") == 0;
        for (const std::string &column :
             isLaneConnector ? Texts{"connid", "startlaneid", "endlaneid"} : declared)
            EXPECT_TRUE(key.count(column) || column == "netid") << table.name << "." << column;
    }
    tables.removeAll(QStringLiteral("sqlite_sequence"));
    EXPECT_EQ(tables.join(QLatin1Char(' ')).toStdString(), "DbVersion IDGenerater Vehicle VehicleDriving");
}
