#include "NetContents.h"

#include "model/removal/NetRemoval.h"

#include "Lane.h"

QList<NetObject> NetContents::whatRefersTo(const Lane &lane) const {
    return reachedFrom({&lane});
}

QList<NetObject> NetContents::whatRefersTo(const SignalPhase &phase) const {
    return reachedFrom({&phase});
}

QList<NetObject> NetContents::whatRefersTo(const Routing &route) const {
    return reachedFrom({&route});
}

QList<NetObject> NetContents::whatRefersTo(const BusStationLine &stop) const {
    return reachedFrom({&stop});
}

QList<NetObject> NetContents::reachedFrom(const QSet<const void *> &seeds) const {
    return NetRemoval(*this, seeds).reached();
}

bool NetContents::removeFrom(const QSet<const void *> &seeds, Cascade cascade) {
    const NetRemoval removal(*this, seeds);
    if (cascade == Cascade::Refuse && removal.isReferredTo())
        return false;
    removal.apply(*this);
    return true;
}

template <class Owner, class Part>
bool NetContents::removePart(Owner &owner, QList<Part *> &parts, Part &part, Cascade cascade) {
    if (!isHere<Owner>({&owner}) || !parts.contains(&part) || !removeFrom({&part}, cascade))
        return false;
    edit(owner);
    parts.removeOne(&part);
    delete &part;
    return true;
}

bool NetContents::removeLane(Link &owner, Lane &lane, Cascade cascade) {
    const bool isCounted = owner.laneNumber == owner.mlLane.size();
    const int serialNumber = lane.serialNumber;
    if (!removePart<Link, Lane>(owner, owner.mlLane, lane, cascade))
        return false;
    for (Lane *other : qAsConst(owner.mlLane)) {
        if (other && other->serialNumber > serialNumber)
            --other->serialNumber;
    }
    if (isCounted)
        owner.laneNumber = owner.mlLane.size();
    return true;
}

bool NetContents::removePhase(SignalGroup &owner, SignalPhase &phase, Cascade cascade) {
    return removePart<SignalGroup, SignalPhase>(owner, owner.mlPhase, phase, cascade);
}

bool NetContents::removeRoute(DecisionPoint &owner, Routing &route, Cascade cascade) {
    return removePart<DecisionPoint, Routing>(owner, owner.mlRouting, route, cascade);
}

bool NetContents::removeStop(BusLine &owner, BusStationLine &stop, Cascade cascade) {
    return removePart<BusLine, BusStationLine>(owner, owner.mlStationLine, stop, cascade);
}

void NetContents::setStored() {
    changes.clear();
    stored.record = record;
    stored.settings = settings;
    stored.linkTypes = linkTypes;
    stored.routeLanes = traffic.routeLanes;
}
