#include "tools/sumo/import/NetworkImport.h"

#include "store/DBTools.h"
#include "store/DBTools_V6.h"
#include "tools/reports/Failure.h"
#include "tools/reports/ShareOfSteps.h"
#include "tools/session/GuardedTransaction.h"
#include "tools/session/StoreSession.h"
#include "tools/sumo/import/NetworkBuilder.h"
#include "tools/sumo/import/RefusedInsert.h"
#include "tools/sumo/import/TrafficImport.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace moratools {

namespace {

bool storeHasSeveralNetworks() {
    return DBTools::dbVer() >= 6;
}

/// A network of a store keeps its place while one is imported; on a failure it is the current one again.
class NewCurrentNetwork {
public:
    explicit NewCurrentNetwork(const NetRecord &record) : mBefore(gNet.record()) { gNet.loadRecord(record); }
    ~NewCurrentNetwork() {
        if (mKept)
            return;
        // The transaction took the counters back, so the reserved identifiers are no longer ours.
        DBTools::mhId.remove(gNet.id());
        DBTools::mhNetMaxId.remove(gNet.id());
        gNet.loadRecord(mBefore);
    }
    void keep() { mKept = true; }

private:
    Q_DISABLE_COPY(NewCurrentNetwork)

    NetRecord mBefore;
    bool mKept = false;
};

QJsonObject sourceOf(const SumoNet &net) {
    const auto point = [](const Point3 &p) { return QJsonArray{p.x, p.y}; };
    QJsonObject source{{QStringLiteral("netOffset"), point(net.location.netOffset)},
                       {QStringLiteral("origBoundary"), net.location.origBoundary},
                       {QStringLiteral("projParameter"), net.location.projParameter}};
    if (net.leftHand)
        source.insert(QStringLiteral("lefthand"), true);
    return {{QStringLiteral("sumo"), source}};
}

QPointF centreOf(const SumoNet &net) {
    Point3 low = net.edges.front().lanes.front().shape.front();
    Point3 high = low;
    for (const SumoEdge &edge : net.edges) {
        for (const SumoLane &lane : edge.lanes) {
            for (const Point3 &point : lane.shape) {
                low = {std::min(low.x, point.x), std::min(low.y, point.y), 0};
                high = {std::max(high.x, point.x), std::max(high.y, point.y), 0};
            }
        }
    }
    return {(low.x + high.x) / 2, (low.y + high.y) / 2};
}

/// The record that the new network gets in a store of one network: the one that is there already (the upgrade
/// of the oldest stores makes it), or a new one without what such a store has no place for.
NetRecord recordOfOneNetwork(const QList<Net> &present, NetRecord record) {
    if (!present.isEmpty() && DBTools::selectNetById(gDB, present.first().id()))
        return gNet.record();
    record.sourceUrl.clear();
    record.isDefault = false;
    return record;
}

NetRecord recordFor(const SumoNet &net, const QString &name) {
    requirePlaceFor(name);
    const QList<Net> present = DBTools::selectNets(gDB);
    NetRecord record;
    record.netId = DBTools::selectMaxNetId(gDB) + 1;
    record.name = name;
    record.sourceType = QStringLiteral("SUMO");
    record.sourceUrl = net.path;
    record.otherAttrsJson = sourceOf(net);
    record.centerX = centreOf(net).x();
    record.centerY = centreOf(net).y();
    record.isDefault = present.isEmpty();
    return storeHasSeveralNetworks() ? record : recordOfOneNetwork(present, record);
}

void insertRecord(const NetRecord &record) {
    const QPointF centre(record.centerX, record.centerY);
    bool written = true;
    if (storeHasSeveralNetworks()) {
        const QString attributes =
            QString::fromUtf8(QJsonDocument(record.otherAttrsJson).toJson(QJsonDocument::Compact));
        written = DBTools_V6::insertNet(gDB, record.netId, record.name, centre, record.sourceType,
                                        record.backgroundUrl, attributes, record.isDefault, false) &&
                  DBTools::updateNet(gDB, record.netId, false);
    } else if (!DBTools::selectNetId(gDB, record.netId)) {
        written = DBTools::insertNet(gDB, record.netId, record.name, centre, record.sourceType,
                                     record.backgroundUrl, record.otherAttrsJson, false);
    }
    requireWritten(written, "network's record");
    requireWritten(DBTools::initDictionary(gDB, record.netId, false), "network's dictionaries");
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

void requirePlaceFor(const QString &name) {
    const int failures = unexpectedFailures();
    const QList<Net> present = DBTools::selectNets(gDB);
    // One that is not read may have the name, or be the default.
    if (unexpectedFailures() > failures)
        refuseReading(QStringLiteral("the list of networks"));
    for (const Net &other : present) {
        if (other.netName() == name)
            throw Failure(
                QStringLiteral("the store has a network \"%1\" already; give another name").arg(name));
    }
    if (storeHasSeveralNetworks())
        return;
    QList<long> links;
    if (!DBTools::selectLinkIDs(gDB, 0, links) || !links.isEmpty())
        throw Failure(
            QStringLiteral("the store is of generation %1, which holds one network, and has one; import "
                           "into a new store")
                .arg(DBTools::dbVer()));
}

NetworkObjects importNetwork(const SumoNet &net, const CompanionPlan &plan, const QString &name,
                             const Progress &progress) {
    GuardedTransaction transaction(gDB);
    NetworkObjects network;
    network.record = recordFor(net, name);
    NewCurrentNetwork current(network.record);
    const long netId = network.record.netId;
    insertRecord(network.record);

    IdSource ids(gDB);
    NetworkBuilder builder(net, ids, !storeHasSeveralNetworks());
    network.links = builder.buildLinks();
    reportShare(progress, 0.2);
    network.connectors = builder.buildConnectors(network.links);
    reportShare(progress, 0.4);
    buildTraffic(net, plan, ids, network);
    requireWritten(DBTools::saveNet(gDB, netId, network, false, ShareOfSteps(progress, 0.5, 1)), "network");
    requireWritten(DBTools::updateIds(gDB, false), "identifiers");
    transaction.commit();
    current.keep();
    return network;
}

} // namespace moratools
