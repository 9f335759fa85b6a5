#include "LaneConnector.h"

#include "Net.h"

long LaneConnector::generId = 0;

LaneConnector::LaneConnector(Connector *connector, Lane *from, Lane *to)
    : laneConnId(++generId), mpConnector(connector), mpStartLane(from), mpEndLane(to) {}

LaneConnector::~LaneConnector() {
    Net::forget(this);
}
