#include "Net.h"

#include "Connector.h"
#include "Lane.h"
#include "LaneConnector.h"
#include "Link.h"
#include "SignalPhase.h"

namespace {

// Objects may outlive gNet when a process ends. A plain bool has no destructor, so it can still be asked
// then.
bool gNetIsGone = false;

} // namespace

Net gNet;

Net::Net(const Net &other) : IRoadNet(), NetRecord(other), mConfig(other.mConfig) {}

Net &Net::operator=(const Net &other) {
    loadRecord(other);
    mConfig = other.mConfig;
    return *this;
}

Net::~Net() {
    if (this == &gNet)
        gNetIsGone = true;
}

void Net::loadRecord(const NetRecord &record) {
    if (record.netId != netId)
        releaseNet();
    NetRecord::operator=(record);
}

void Net::enter(Link *link) {
    mLinks.enter(link->linkID, link);
}

void Net::enter(Lane *lane) {
    mLanes.enter(lane->laneID, lane);
}

void Net::enter(Connector *connector) {
    mConnectors.enter(connector->connID, connector);
    for (LaneConnector *laneConnector : qAsConst(connector->mlLaneConnector))
        mLaneConnectors.enter(laneConnector->laneConnId, laneConnector);
}

void Net::enter(SignalPhase *phase) {
    mSignalPhases.enter(phase->signalPhaseID, phase);
}

void Net::releaseNet() {
    mLinks.clear();
    mLanes.clear();
    mConnectors.clear();
    mLaneConnectors.clear();
    mSignalPhases.clear();
}

void Net::forget(const Link *link) {
    if (!gNetIsGone)
        gNet.mLinks.leave(link);
}

void Net::forget(const Lane *lane) {
    if (!gNetIsGone)
        gNet.mLanes.leave(lane);
}

void Net::forget(const Connector *connector) {
    if (!gNetIsGone)
        gNet.mConnectors.leave(connector);
}

void Net::forget(const LaneConnector *laneConnector) {
    if (!gNetIsGone)
        gNet.mLaneConnectors.leave(laneConnector);
}

void Net::forget(const SignalPhase *phase) {
    if (!gNetIsGone)
        gNet.mSignalPhases.leave(phase);
}
