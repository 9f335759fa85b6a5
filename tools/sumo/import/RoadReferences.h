#pragma once

#include "tools/sumo/reader/SumoNet.h"

#include <QSet>

namespace moratools {

/// What is wrong with references into a network, as the reason of a report; empty for good ones. A list of nothing
/// is no good one.
class RoadReferences {
public:
    /// `net` must outlive this object.
    explicit RoadReferences(const SumoNet &net) : mNet(net) {}

    QString faultOfEdges(const QStringList &edges) const;
    /// The same for edges that are driven one after the other.
    QString faultOfPath(const QStringList &edges) const;
    QString faultOfLanes(const QStringList &lanes) const;
    bool hasLane(const QString &lane) const { return lanes().contains(lane); }

private:
    /// From one edge to another, by their places.
    static quint64 turn(int from, int to) { return quint64(from) << 32 | quint64(to); }

    /// @{ Gathered when first asked for: most imports of a large network bring nothing that refers into it.
    const QSet<QString> &lanes() const;
    const QSet<quint64> &turns() const;
    /// @}

    const SumoNet &mNet;
    mutable QSet<QString> mLanes;
    mutable QSet<quint64> mTurns;
};

/// "no edge "a""
QString unknown(const char *kind, const QString &id);

} // namespace moratools
