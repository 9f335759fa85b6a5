#include "host/store/ZoneWriter.h"

#include "host/Failure.h"
#include "store/DBTools.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace zonewriter {

namespace {

/// Inserts a row of values into the columns named. Stores of several networks lead every row by its network.
void insertRow(QSqlDatabase &db, long netId, const char *table, QStringList columns, QVariantList values) {
    if (DBTools::dbVer() >= 6) {
        columns.prepend(QStringLiteral("netId"));
        values.prepend(qint64(netId));
    }
    QStringList places;
    for (int i = 0; i < columns.size(); ++i)
        places.append(QStringLiteral("?"));
    QSqlQuery query(db);
    query.prepare(QStringLiteral("insert into %1(%2) values(%3)")
                      .arg(QLatin1String(table), columns.join(QStringLiteral(", ")),
                           places.join(QStringLiteral(", "))));
    for (const QVariant &value : qAsConst(values))
        query.addBindValue(value);
    if (!query.exec())
        throw Failure(QStringLiteral("the store refused a row of %1 (%2); nothing was imported")
                          .arg(QLatin1String(table), query.lastError().databaseText()));
}

void insertLanes(QSqlDatabase &db, long netId, const char *table, const char *idColumn,
                 const QList<ZoneLane *> &lanes) {
    for (const ZoneLane *lane : lanes) {
        insertRow(db, netId, table,
                  {QLatin1String(idColumn), QStringLiteral("laneNumber"), QStringLiteral("toLaneNumber")},
                  {qint64(lane->zoneId), lane->laneNumber, lane->toLaneNumber});
    }
}

} // namespace

void insert(QSqlDatabase &db, long netId, const AccidentZone &zone) {
    insertRow(db, netId, "AccidentZone",
              {QStringLiteral("accidentZoneId"), QStringLiteral("name"), QStringLiteral("location"),
               QStringLiteral("zoneLength"), QStringLiteral("roadId"), QStringLiteral("roadType")},
              {qint64(zone.accidentZoneId), zone.name, double(zone.location), double(zone.zoneLength),
               qint64(zone.roadId), zone.roadType});
    insertLanes(db, netId, "AccidentZoneWithLane", "accidentZoneId", zone.mlLane);
}

void insert(QSqlDatabase &db, long netId, const RoadWorkZone &zone) {
    insertRow(db, netId, "RoadWorkZone",
              {QStringLiteral("roadWorkZoneId"), QStringLiteral("name"), QStringLiteral("location"),
               QStringLiteral("zoneLength"), QStringLiteral("limitSpeed"), QStringLiteral("roadID"),
               QStringLiteral("roadName"), QStringLiteral("roadType")},
              {qint64(zone.roadWorkZoneId), zone.name, zone.location, zone.zoneLength, zone.limitSpeed,
               qint64(zone.roadID), zone.roadName, zone.roadType});
    insertLanes(db, netId, "RoadWorkZoneWithLane", "roadWorkZoneId", zone.mlLane);
}

} // namespace zonewriter
