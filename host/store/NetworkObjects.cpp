#include "host/store/NetworkObjects.h"

#include "host/Failure.h"
#include "store/DBTools.h"

namespace {

Failure unreadable(const char *kind, long id) {
    return Failure(
        QStringLiteral("%1 %2 of network \"%3\" cannot be read; the store is damaged, restore it from a copy")
            .arg(QLatin1String(kind))
            .arg(id)
            .arg(gNet.netName()));
}

} // namespace

NetworkObjects readNetwork(long netId, Progress &progress) {
    const Net *net =
        netId == 0 ? DBTools::selectNetIdByName(gDB, QString()) : DBTools::selectNetById(gDB, netId);
    if (!net)
        throw Failure(
            netId == 0
                ? QStringLiteral("the store holds no network; import one first")
                : QStringLiteral("the store holds no network %1; \"morastore info\" lists them").arg(netId));
    NetworkObjects network;
    network.record = gNet;
    QList<long> linkIds;
    QList<long> connectorIds;
    if (!DBTools::selectLinkIDs(gDB, gNet.id(), linkIds) ||
        !DBTools::selectConnectorIDs(gDB, gNet.id(), connectorIds))
        throw Failure(
            QStringLiteral(
                "the lists of network \"%1\" cannot be read; the store is damaged, restore it from a copy")
                .arg(gNet.netName()));
    const double all = linkIds.size() + connectorIds.size();
    for (const long id : qAsConst(linkIds)) {
        network.links.emplace_back(DBTools::selectLinkByID(gDB, gNet.id(), id));
        if (!network.links.back())
            throw unreadable("link", id);
        progress.at(double(network.links.size()) / all);
    }
    for (const long id : qAsConst(connectorIds)) {
        network.connectors.emplace_back(DBTools::selectConnectorByID(gDB, gNet.id(), id));
        if (!network.connectors.back())
            throw unreadable("connector", id);
        progress.at(double(network.links.size() + network.connectors.size()) / all);
    }
    return network;
}
