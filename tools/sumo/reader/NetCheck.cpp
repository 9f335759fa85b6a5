#include "tools/sumo/reader/NetCheck.h"

#include "tools/reports/Failure.h"

namespace moratools {

namespace {

[[noreturn]] void fail(const SumoNet &net, const SumoConnection &connection, const QString &missing) {
    throw Failure(
        QStringLiteral("%1, line %2: the connection from \"%3\" to \"%4\" names %5, which the file does "
                       "not have; correct the file or write it again")
            .arg(net.path, QString::number(connection.line), connection.from, connection.to, missing));
}

void checkEnd(const SumoNet &net, const SumoConnection &connection, const QString &edgeId, int lane) {
    const SumoEdge *edge = net.edge(edgeId);
    if (!edge)
        fail(net, connection, QStringLiteral("the edge \"%1\"").arg(edgeId));
    if (lane < 0 || std::size_t(lane) >= edge->lanes.size())
        fail(net, connection, QStringLiteral("lane %1 of edge \"%2\"").arg(QString::number(lane), edgeId));
}

} // namespace

void checkReferences(const SumoNet &net) {
    if (net.edges.empty())
        throw Failure(
            QStringLiteral("%1: the network has no road; give a file with at least one edge that is not "
                           "inside a junction")
                .arg(net.path));
    for (const SumoConnection &connection : net.connections) {
        checkEnd(net, connection, connection.from, connection.fromLane);
        checkEnd(net, connection, connection.to, connection.toLane);
        if (!connection.via.isEmpty() && !net.internalLanes.contains(connection.via))
            fail(net, connection, QStringLiteral("the internal lane \"%1\"").arg(connection.via));
    }
}

} // namespace moratools
