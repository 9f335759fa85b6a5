#pragma once

#include "tools/sumo/reader/SumoNet.h"

#include <QSet>

namespace moratools {

/// What is wrong with references into a network, as the reason of a report; empty for good ones. A list of nothing
/// is no good one.
class RoadReferences {
public:
    /// `net` must outlive this object.
    explicit RoadReferences(const SumoNet &net);

    QString faultOfEdges(const QStringList &edges) const;
    /// The same for edges that are driven one after the other.
    QString faultOfPath(const QStringList &edges) const;
    QString faultOfLanes(const QStringList &lanes) const;
    bool hasLane(const QString &lane) const { return mLanes.contains(lane); }

private:
    /// From one edge to another, by their places.
    static quint64 turn(int from, int to) { return quint64(from) << 32 | quint64(to); }

    const SumoNet &mNet;
    QSet<QString> mLanes;
    QSet<quint64> mTurns;
};

/// "no edge "a""
QString unknown(const char *kind, const QString &id);

} // namespace moratools
