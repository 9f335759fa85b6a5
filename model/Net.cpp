#include "Net.h"

#include "Connector.h"
#include "Lane.h"
#include "LaneConnector.h"
#include "Link.h"
#include "SignalPhase.h"

Net::Net() = default;

Net::Net(const Net &other) : IRoadNet(), NetRecord(other), mConfig(other.mConfig) {}

Net &Net::operator=(const Net &other) {
    if (this == &other)
        return *this;
    loadRecord(other);
    mConfig = other.mConfig;
    return *this;
}

Net::~Net() = default;

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
