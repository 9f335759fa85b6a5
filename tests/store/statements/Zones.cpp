#include "model/AccidentZone.h"
#include "model/ReduceSpeedArea.h"
#include "model/RoadWorkZone.h"
#include "tests/support/StatementList.h"

#include <QSqlQuery>
#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace {

constexpr long kNet = StatementList::kNet;

/// The library does not write zones.
void writeZones(bool severalNets) {
    for (
        const char *row :
        {"AccidentZone(%1accidentZoneId, name, location, zoneLength, roadId, roadType) values(%23, 'a', 1, 2, 7, 'link')",
         "RoadWorkZone(%1roadWorkZoneId, name, location, zoneLength, limitSpeed, roadID, roadName, roadType) values(%23, 'a', 1, 2, 3, 7, 'b', 'link')"}) {
        QString sql = QStringLiteral("insert into ") + QLatin1String(row);
        sql.replace(QLatin1String("%1"), QLatin1String(severalNets ? "NetId, " : ""));
        sql.replace(QLatin1String("%2"), QLatin1String(severalNets ? "1, " : ""));
        ASSERT_TRUE(QSqlQuery(gDB).exec(sql)) << qPrintable(sql);
    }
}

template <class Tools>
void record(StatementList &list) {
    writeZones(DBTools::dbVer() >= 6);
    const char *accidentZone =
        std::is_same_v<Tools, DBTools> ? "selectAccidentZone" : "DBTools_V6::selectAccidentZone";
    list.add(accidentZone, [] { std::unique_ptr<AccidentZone>(Tools::selectAccidentZone(gDB, kNet, 3)); });
    list.add("selectAccidentZoneIds", [] {
        QList<long> ids;
        Tools::selectAccidentZoneIds(gDB, kNet, ids);
    });
    list.add("selectRoadWorkZone",
             [] { std::unique_ptr<RoadWorkZone>(Tools::selectRoadWorkZone(gDB, kNet, 3)); });
    list.add("selectRoadWorkZoneIds", [] {
        QList<long> ids;
        Tools::selectRoadWorkZoneIds(gDB, kNet, ids);
    });

    ReduceSpeedArea area;
    area.reduceSpeedAreaID = 5;
    area.mlSpeedInterval.append(new ReduceSpeedInterval{51, 5, 1, 300});
    area.mlSpeedVehiType.append(new ReduceSpeedVehiType{5, 2, 30, 3});
    const auto insert = [&](bool flag) { Tools::insertReduceSpeedArea(gDB, kNet, &area, flag); };
    list.addWrite("insertReduceSpeedArea", insert);
    insert(false);
    list.add("selectReduceSpeedArea",
             [] { std::unique_ptr<ReduceSpeedArea>(Tools::selectReduceSpeedArea(gDB, kNet, 5)); });
    list.add("selectReduceSpeedAreaIds", [] {
        QList<long> ids;
        Tools::selectReduceSpeedAreaIds(gDB, kNet, ids);
    });
}

const StatementFamily kZones("Zones", record<DBTools>, record<DBTools_V6>);

} // namespace
