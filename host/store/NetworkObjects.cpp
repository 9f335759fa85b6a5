#include "host/store/NetworkObjects.h"

#include "host/Failure.h"
#include "host/store/Kinds.h"
#include "store/DBTools.h"

NetworkObjects openNetwork(long netId) {
    const Net *net =
        netId == 0 ? DBTools::selectNetIdByName(gDB, QString()) : DBTools::selectNetById(gDB, netId);
    if (!net)
        throw Failure(
            netId == 0
                ? QStringLiteral("the store holds no network; import one first")
                : QStringLiteral("the store holds no network %1; \"morastore info\" lists them").arg(netId));
    NetworkObjects network;
    network.record = gNet;
    return network;
}

NetworkObjects readNetwork(long netId, Progress &progress) {
    NetworkObjects network = openNetwork(netId);
    const auto part = [&progress](double from, double share) {
        return [&progress, from, share](double done) { progress.at(from + share * done); };
    };
    network.links = readAll<Link>(gNet.id(), part(0, 0.5));
    network.connectors = readAll<Connector>(gNet.id(), part(0.5, 0.4));
    readTraffic(gNet.id(), network.traffic);
    progress.at(1);
    return network;
}
