#include "host/import/IdSource.h"

#include "host/Failure.h"
#include "host/store/OpenStore.h"
#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"

#include <QSqlQuery>
#include <QVariant>

namespace {

constexpr int kSeveralNetworks = 6;

} // namespace

long IdSource::next(const char *table) {
    // The name is a literal: its address serves as the key without a copy.
    const QByteArray key = QByteArray::fromRawData(table, int(qstrlen(table)));
    auto highest = mHighest.find(key);
    if (highest == mHighest.end())
        highest = mHighest.insert(key, highestInUse(table));
    const QString name = QLatin1String(table);
    long id = 0;
    do {
        // Asking the twin outright spares reading the store's version for each of many thousand ids.
        const bool drawn = DBTools::dbVer() >= kSeveralNetworks
                               ? DBTools_V6::getIDByTableName(mDb, gNet.id(), name, id)
                               : DBTools::getIDByTableName(mDb, name, id);
        if (!drawn) {
            requireServerAlive();
            throw Failure(
                QStringLiteral("the store gives no identifier for table %1; it may be damaged or full, "
                               "so check it and import into a copy")
                    .arg(name));
        }
    } while (id <= *highest);
    return id;
}

long IdSource::highestInUse(const char *table) const {
    const QString name = QLatin1String(table);
    // Tables that the library's own list of id columns lacks.
    static const QHash<QString, QString> unlisted{
        {QStringLiteral("LaneConnector"), QStringLiteral("laneConnId")},
        {QStringLiteral("BusStationPassengerArriving"), QStringLiteral("passengerArrivingID")},
        {QStringLiteral("AccidentZone"), QStringLiteral("accidentZoneId")},
        {QStringLiteral("RoadWorkZone"), QStringLiteral("roadWorkZoneId")},
    };
    const QString column = unlisted.value(name, DBTools::getIDName(name));
    // Stores of one network number lane connectors in memory: they have no such column, and nothing is in
    // use.
    QSqlQuery query(mDb);
    if (!query.exec(QStringLiteral("select max(%1) from %2").arg(column, name)) || !query.next())
        return 0;
    return long(query.value(0).toLongLong());
}
