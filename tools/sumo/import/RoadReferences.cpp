#include "tools/sumo/import/RoadReferences.h"

namespace moratools {

QString unknown(const char *kind, const QString &id) {
    return QStringLiteral("no %1 \"%2\"").arg(QLatin1String(kind), id);
}

const QSet<QString> &RoadReferences::lanes() const {
    if (mLanes.isEmpty()) {
        for (const SumoEdge &edge : mNet.edges) {
            for (const SumoLane &lane : edge.lanes)
                mLanes.insert(lane.id);
        }
    }
    return mLanes;
}

const QSet<quint64> &RoadReferences::turns() const {
    if (mTurns.isEmpty()) {
        for (const SumoConnection &connection : mNet.connections)
            mTurns.insert(turn(mNet.edgeIndex.value(connection.from), mNet.edgeIndex.value(connection.to)));
    }
    return mTurns;
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
        if (before >= 0 && !turns().contains(turn(before, place)))
            return QStringLiteral("no connection from edge \"%1\" to edge \"%2\"")
                .arg(mNet.edges[std::size_t(before)].id, edge);
        before = place;
    }
    return edges.isEmpty() ? QStringLiteral("it has no edge") : QString();
}

QString RoadReferences::faultOfLanes(const QStringList &lanes) const {
    for (const QString &lane : lanes) {
        if (!hasLane(lane))
            return unknown("lane", lane);
    }
    return lanes.isEmpty() ? QStringLiteral("it names no lane") : QString();
}

} // namespace moratools
