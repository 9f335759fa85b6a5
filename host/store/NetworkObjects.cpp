#include "host/store/NetworkObjects.h"

#include "host/Failure.h"
#include "host/ShareOfSteps.h"
#include "store/DBTools.h"

#include <QHash>

namespace {

/// Objects that the store lists and that refer to nothing. What belongs to nothing is not listed.
void requireComplete(const NetworkObjects &network) {
    static const QHash<QString, QString> listed{{QStringLiteral("Connector"), QStringLiteral("connector")},
                                                {QStringLiteral("SignalLamp"), QStringLiteral("signal lamp")},
                                                {QStringLiteral("BusLine"), QStringLiteral("bus line")}};
    for (const SkippedRows &rows : network.skipped) {
        if (listed.contains(rows.table))
            throw Failure(
                QStringLiteral("%1 %2 of network \"%3\" %4; the store is damaged, restore it from a copy")
                    .arg(listed.value(rows.table))
                    .arg(rows.ids.first())
                    .arg(network.record.name, rows.reason));
    }
}

} // namespace

NetworkObjects openNetwork(long netId) {
    const Net *net =
        netId == 0 ? DBTools::selectNetIdByName(gDB, QString()) : DBTools::selectNetById(gDB, netId);
    if (!net)
        throw Failure(
            netId == 0
                ? QStringLiteral("the store holds no network; import one first")
                : QStringLiteral("the store holds no network %1; \"morastore info\" lists them").arg(netId));
    NetworkObjects network;
    network.record = gNet.record();
    return network;
}

NetworkObjects readNetwork(long netId, Progress &progress) {
    NetworkObjects network = openNetwork(netId);
    const ShareOfSteps share(progress, 0, 1);
    if (!DBTools::loadNet(gDB, gNet.id(), network, share))
        throw Failure(
            QStringLiteral("network \"%1\" cannot be read; the store is damaged, restore it from a copy")
                .arg(network.record.name));
    requireComplete(network);
    return network;
}
