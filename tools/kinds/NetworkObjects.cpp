#include "tools/kinds/NetworkObjects.h"

#include "store/DBTools.h"
#include "store/core/Engine.h"
#include "tools/reports/Failure.h"
#include "tools/reports/ShareOfSteps.h"
#include "tools/session/StoreSession.h"

#include <QHash>
#include <QSqlQuery>

namespace moratools {

namespace {

/// While it lives all tables are read as they are at one moment, whatever other programs write meanwhile.
class Snapshot {
public:
    explicit Snapshot(QSqlDatabase &db) : mDb(db) {
        const bool isServer = engine::isPostgreSql(mDb);
        const QSqlQuery begin(
            isServer ? QStringLiteral("begin transaction isolation level repeatable read read only")
                     : QStringLiteral("begin"),
            mDb);
    }
    ~Snapshot() { const QSqlQuery end(QStringLiteral("rollback"), mDb); }

private:
    Q_DISABLE_COPY(Snapshot)

    QSqlDatabase &mDb;
};

/// Objects that the store lists and that refer to nothing. What belongs to nothing is not listed.
void requireComplete(const NetworkObjects &network) {
    static const QHash<QString, QString> listed{
        {QStringLiteral("Connector"), QStringLiteral("connector")},
        {QStringLiteral("SignalLamp"), QStringLiteral("signal lamp")},
        {QStringLiteral("DecisionPoint"), QStringLiteral("decision point")},
        {QStringLiteral("BusLine"), QStringLiteral("bus line")}};
    for (const SkippedRows &rows : network.skipped) {
        if (listed.contains(rows.table))
            throw Failure(
                QStringLiteral("%1 %2 of network \"%3\" %4; the store is damaged, restore it from a copy")
                    .arg(listed.value(rows.table), QString::number(rows.ids.first()), network.record.name,
                         rows.reason));
    }
}

} // namespace

NetworkObjects openNetwork(const StoreSession &store, long netId) {
    const int failuresBefore = store.unexpectedFailures();
    const Net *net = netId == 0 ? DBTools::selectNetIdByName(store.db(), QString())
                                : DBTools::selectNetById(store.db(), netId);
    if (!net && store.unexpectedFailures() > failuresBefore)
        store.refuseReading(QStringLiteral("the list of networks"));
    if (!net)
        throw Failure(
            netId == 0
                ? QStringLiteral("the store holds no network; import one first")
                : QStringLiteral("the store holds no network %1; \"morastore info\" lists them").arg(netId));
    NetworkObjects network;
    network.record = store.net().record();
    return network;
}

NetworkObjects readWhatIsSound(const StoreSession &store, long netId, const Progress &progress) {
    NetworkObjects network = openNetwork(store, netId);
    // A load that fails leaves nothing, not even the record.
    const QString name = network.record.name;
    const ShareOfSteps share(progress, 0, 1);
    const Snapshot snapshot(store.db());
    if (!DBTools::loadNet(store.db(), store.net().id(), network, share))
        store.refuseReading(QStringLiteral("network \"%1\"").arg(name));
    return network;
}

NetworkObjects readNetwork(const StoreSession &store, long netId, const Progress &progress) {
    NetworkObjects network = readWhatIsSound(store, netId, progress);
    requireComplete(network);
    return network;
}

QStringList damageOf(const NetworkObjects &network) {
    QStringList lines;
    for (const SkippedRows &rows : network.skipped) {
        QStringList ids;
        for (const long id : rows.ids)
            ids.append(QString::number(id));
        lines.append(QStringLiteral("%1 rows of table %2: each %3 (%4%5)")
                         .arg(QString::number(rows.count), rows.table, rows.reason,
                              ids.join(QStringLiteral(", ")),
                              rows.count > rows.ids.size() ? QStringLiteral(", ...") : QString()));
    }
    return lines;
}

} // namespace moratools
