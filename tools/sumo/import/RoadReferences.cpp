#include "tools/sumo/import/RoadReferences.h"

namespace moratools {

QString unknown(const char *kind, const QString &id) {
    return QStringLiteral("no %1 \"%2\"").arg(QLatin1String(kind), id);
}

RoadReferences::RoadReferences(const SumoNet &net) : mNet(net) {
    for (const SumoEdge &edge : net.edges) {
        for (const SumoLane &lane : edge.lanes)
            mLanes.insert(lane.id);
    }
    for (const SumoConnection &connection : net.connections)
        mTurns.insert(turn(net.edgeIndex.value(connection.from), net.edgeIndex.value(connection.to)));
}

QString RoadReferences::faultOfEdges(const QStringList &edges) const {
    for (const QString &edge : edges) {
        if (!mNet.edge(edge))
            return unknown("edge", edge);
    }
    return edges.isEmpty() ? QStringLiteral("it has no edge") : QString();
}

QString RoadReferences::faultOfPath(const QStringList &edges) const {
    int before = -1;
    for (const QString &edge : edges) {
        const int place = mNet.edgeIndex.value(edge, -1);
        if (place < 0)
            return unknown("edge", edge);
        if (before >= 0 && !mTurns.contains(turn(before, place)))
            return QStringLiteral("no connection from edge \"%1\" to edge \"%2\"")
                .arg(mNet.edges[std::size_t(before)].id, edge);
        before = place;
    }
    return edges.isEmpty() ? QStringLiteral("it has no edge") : QString();
}

QString RoadReferences::faultOfLanes(const QStringList &lanes) const {
    for (const QString &lane : lanes) {
        if (!mLanes.contains(lane))
            return unknown("lane", lane);
    }
    return lanes.isEmpty() ? QStringLiteral("it names no lane") : QString();
}

} // namespace moratools
