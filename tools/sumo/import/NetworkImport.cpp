#include "tools/sumo/import/NetworkImport.h"

#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "store/StoredNet.h"
#include "tools/reports/Failure.h"
#include "tools/reports/ShareOfSteps.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/NetworkChoice.h"
#include "tools/session/StoreSession.h"
#include "tools/session/UnusedNumber.h"
#include "tools/sumo/import/KeptCompanions.h"
#include "tools/sumo/import/NetworkBuilder.h"
#include "tools/sumo/import/RefusedInsert.h"
#include "tools/sumo/import/TrafficImport.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace moratools {

namespace {

/// A network of a store keeps its place while one is imported; on a failure it is the current one again.
class NewCurrentNetwork {
public:
    NewCurrentNetwork(const StoreSession &store, const NetRecord &record)
        : mStore(store), mBefore(store.net().record()) {
        mStore.net().loadRecord(record);
    }
    ~NewCurrentNetwork() {
        if (mKept)
            return;
        // The transaction took the counters back, so the reserved identifiers are no longer ours.
        mStore.forgetIdentifiers(mStore.net().id());
        mStore.net().loadRecord(mBefore);
    }
    void keep() { mKept = true; }

private:
    Q_DISABLE_COPY(NewCurrentNetwork)

    const StoreSession &mStore;
    NetRecord mBefore;
    bool mKept = false;
};

/// What the record of the network keeps of its file, beside what `junctions` holds.
QJsonObject keptOf(const SumoNet &net, const QJsonArray &junctions) {
    QJsonArray elements;
    for (const KeptElement &element : net.elements)
        elements.append(element.toJson());
    QJsonArray homeless;
    Packer packer;
    for (const JunctionInside &inside : net.homeless)
        homeless.append(inside.toText(packer));
    QJsonObject kept{{QStringLiteral("net"), net.kept},
                     {QStringLiteral("location"), net.location},
                     {QStringLiteral("elements"), elements},
                     {QStringLiteral("junctions"), junctions},
                     {QStringLiteral("homeless"), homeless}};
    for (const QString &part : kept.keys()) {
        if (kept[part].isArray() && kept[part].toArray().isEmpty())
            kept.remove(part);
    }
    return kept;
}

QPointF centreOf(const SumoNet &net) {
    GeometryPoint low = net.edges.front().lanes.front().shape.front();
    GeometryPoint high = low;
    for (const SumoEdge &edge : net.edges) {
        for (const SumoLane &lane : edge.lanes) {
            for (const GeometryPoint &point : lane.shape) {
                low = {std::min(low.x, point.x), std::min(low.y, point.y), 0};
                high = {std::max(high.x, point.x), std::max(high.y, point.y), 0};
            }
        }
    }
    return {(low.x + high.x) / 2, (low.y + high.y) / 2};
}

/// The record that the new network gets in a store of one network: the one that is there already (the upgrade
/// of the oldest stores makes it), or a new one without what such a store has no place for.
NetRecord recordOfOneNetwork(const StoreSession &store, NetRecord record) {
    if (DBTools::selectNetIdByName(store.db(), {}))
        return store.net().record();
    record.sourceUrl.clear();
    record.isDefault = false;
    return record;
}

NetRecord recordFor(const StoreSession &store, const SumoNet &net, const QString &name) {
    requirePlaceFor(store, name);
    const int failures = store.unexpectedFailures();
    const long last = DBTools::selectMaxNetId(store.db());
    // A network that is not read may be the default.
    if (store.unexpectedFailures() > failures)
        store.refuseReading(QStringLiteral("the list of networks"));
    NetRecord record;
    record.netId = unusedNumber(store, last + 1);
    record.name = name;
    record.sourceType = QStringLiteral("SUMO");
    record.sourceUrl = net.path;
    record.centerX = centreOf(net).x();
    record.centerY = centreOf(net).y();
    record.isDefault = last == 0;
    return store.hasSeveralNetworks() ? record : recordOfOneNetwork(store, record);
}

void insertRecord(const StoreSession &store, const NetRecord &record) {
    const QPointF centre(record.centerX, record.centerY);
    bool written = true;
    if (store.hasSeveralNetworks()) {
        const QString attributes =
            QString::fromUtf8(QJsonDocument(record.otherAttrsJson).toJson(QJsonDocument::Compact));
        written = DBTools_V6::insertNet(store.db(), record.netId, record.name, centre, record.sourceType,
                                        record.backgroundUrl, attributes, record.isDefault, false) &&
                  DBTools::updateNet(store.db(), record.netId, false);
    } else if (!DBTools::selectNetId(store.db(), record.netId)) {
        written = DBTools::insertNet(store.db(), record.netId, record.name, centre, record.sourceType,
                                     record.backgroundUrl, record.otherAttrsJson, false);
    }
    requireWritten(store, written, "network's record");
    requireWritten(store, DBTools::initDictionary(store.db(), record.netId, false), "network's dictionaries");
}

/// Makes the objects in memory. @return what the record keeps of the junctions.
QJsonArray build(const SumoNet &net, const CompanionPlan &plan, IdSource &ids, NetworkObjects &network,
                 const Progress &progress) {
    const NetRecord record = network.record;
    network = NetworkObjects();
    network.record = record;
    NetworkBuilder builder(net, ids, !ids.store().hasSeveralNetworks());
    network.links = builder.buildLinks();
    reportShare(progress, 0.2);
    network.connectors = builder.buildConnectors(network.links);
    QJsonArray junctions = builder.keepJunctions(network);
    reportShare(progress, 0.4);
    buildTraffic(ids.store(), net, plan, ids, network);
    return junctions;
}

} // namespace

QString networkNameOf(const QString &path) {
    QString name = QFileInfo(path).fileName();
    for (const char *ending : {".gz", ".xml", ".net"}) {
        if (name.endsWith(QLatin1String(ending), Qt::CaseInsensitive) && name.size() > int(qstrlen(ending)))
            name.chop(int(qstrlen(ending)));
    }
    return name;
}

void requirePlaceFor(const StoreSession &store, const QString &name) {
    requireFreeName(store, name);
    QList<long> links;
    if (!store.hasSeveralNetworks() && (!DBTools::selectLinkIDs(store.db(), 0, links) || !links.isEmpty()))
        throw Failure(
            QStringLiteral("the store is of generation %1, which holds one network, and has one; import "
                           "into a new store")
                .arg(store.generation()));
}

NetworkObjects importNetwork(const StoreSession &store, const SumoNet &net, const CompanionPlan &plan,
                             const QString &name, const Progress &progress) {
    GuardedTransaction transaction(store);
    NetworkObjects network;
    network.record = recordFor(store, net, name);
    NewCurrentNetwork current(store, network.record);
    const long netId = network.record.netId;
    insertRecord(store, network.record);

    IdSource ids(store);
    QJsonArray junctions;
    do {
        junctions = build(net, plan, ids, network, progress);
    } while (!ids.draw());
    requireWritten(store, DBTools::saveNet(store.db(), netId, network, false, ShareOfSteps(progress, 0.5, 1)),
                   "network");
    QJsonObject kept = keptOf(net, junctions);
    const QJsonObject ofCompanions = keepCompanions(plan, network);
    for (auto part = ofCompanions.begin(); part != ofCompanions.end(); ++part)
        kept.insert(part.key(), part.value());
    network.record.otherAttrsJson.insert(QStringLiteral("sumo"), kept);
    requireWritten(store, StoredNet(store.db(), netId).saveChanges(network), "network's attributes");
    transaction.commit();
    current.keep();
    return network;
}

} // namespace moratools
