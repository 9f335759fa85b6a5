#include "tools/sumo/import/IdSource.h"

#include "model/Net.h"
#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/catalogue/Catalogue.h"
#include "tools/reports/Failure.h"
#include "tools/rows/CopyTarget.h"
#include "tools/session/StoreSession.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <limits>

namespace moratools {

long IdSource::next(const char *table) {
    // The name is a literal: its address serves as the key without a copy.
    const QByteArray key = QByteArray::fromRawData(table, int(qstrlen(table)));
    if (!mPassed.contains(key)) {
        pass(table);
        mPassed.insert(key);
    }
    const QString name = QLatin1String(table);
    long id = 0;
    // Asking the twin outright spares reading the store's version for each of many thousand ids.
    const bool drawn = mStore.hasSeveralNetworks()
                           ? DBTools_V6::getIDByTableName(mStore.db(), mStore.net().id(), name, id)
                           : DBTools::getIDByTableName(mStore.db(), name, id);
    if (!drawn) {
        mStore.requireServerAlive();
        throw Failure(QStringLiteral("the store gives no identifier for table %1; it may be damaged or full, "
                                     "so check it and import into a copy")
                          .arg(name));
    }
    return id;
}

void IdSource::pass(const char *table) const {
    const QString name = QLatin1String(table);
    const catalogue::Table &entry = *catalogue::find(name);
    // Stores of one network number lane connectors in memory: they have no such column, and nothing is in
    // use.
    if (!mStore.hasSeveralNetworks() && name == QLatin1String("LaneConnector"))
        return;
    QSqlQuery query(mStore.db());
    if (!query.exec(QStringLiteral("select max(%1) from %2").arg(QLatin1String(entry.id), name)) ||
        !query.next())
        mStore.refuseReading(name, query.lastError().databaseText());
    const qint64 highest = query.value(0).toLongLong();
    if (highest >= std::numeric_limits<qint32>::max())
        throw Failure(
            QStringLiteral("table %1 of the store has the identifier %2, and none can follow it: %3 "
                           "is the largest; import into a new store")
                .arg(name, QString::number(highest), QString::number(std::numeric_limits<qint32>::max())));
    query.finish();
    if (highest > 0 && mStore.hasSeveralNetworks())
        CopyTarget(mStore).raiseCounters(mStore.net().id(), entry, highest);
}

} // namespace moratools
