#pragma once

#include "model/GeometryLine.h"

#include <QHash>

#include <vector>

class Lane;
class LaneConnector;
class SignalGroup;
class SignalLamp;
class SignalPhase;

namespace moratools {

class Checked;

/// What rules on signals look at: which lamp is of which group, and which movements the lanes have.
class SignalMovements {
public:
    /// The lane connectors of a lane, by the lane that they lead to.
    using Ways = QHash<long, const LaneConnector *>;
    using Lamps = std::vector<const SignalLamp *>;

    explicit SignalMovements(const Checked &checked);

    /// The group of a lamp's phase; null for a lamp without a phase.
    const SignalGroup *groupOf(const SignalLamp &lamp) const;
    /// Null for none.
    const Lane *lane(long id) const { return mLanes.value(id); }
    Ways waysFrom(long laneId) const { return mWays.value(laneId); }
    /// The lamps that stand on a lane, in the order of the network.
    Lamps lampsOn(long laneId) const { return mLamps.value(laneId); }
    /// The lamps of a group that name a way, in the order of the network.
    Lamps lampsOf(const SignalGroup &group) const { return mLampsOfGroup.value(&group); }
    /// The lane connector of a lamp that names one; null where there is none.
    const LaneConnector *wayOf(const SignalLamp &lamp) const;

private:
    QHash<const SignalPhase *, const SignalGroup *> mGroups;
    QHash<long, const Lane *> mLanes;
    QHash<long, Ways> mWays;
    QHash<long, Lamps> mLamps;
    QHash<const SignalGroup *, Lamps> mLampsOfGroup;
};

/// The line that vehicles take: as it is drawn, else a curve from lane to lane.
GeometryLine lineOf(const LaneConnector &way);

/// Whether two lines cross in the plane, inside of both.
bool cross(const GeometryLine &a, const GeometryLine &b);

/// Whether both phases are green at a moment of their cycle.
bool areGreenTogether(const SignalPhase &a, const SignalPhase &b);

/// Whether `next` turns green at the moment in which the green of `phase` ends. The cycle is in seconds.
bool isGreenAtOnceAfter(const SignalPhase &next, const SignalPhase &phase, long cycle);

} // namespace moratools
