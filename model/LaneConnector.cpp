#include "LaneConnector.h"

#include <algorithm>
#include <mutex>

namespace {

// Stores that are open in different threads share the numbers.
std::mutex generIdLock;

} // namespace

long LaneConnector::generId = 0;

LaneConnector::LaneConnector(Connector *connector, Lane *from, Lane *to)
    : laneConnId(nextId()), mpConnector(connector), mpStartLane(from), mpEndLane(to) {}

long LaneConnector::lastId() {
    const std::lock_guard<std::mutex> lock(generIdLock);
    return generId;
}

long LaneConnector::nextId() {
    const std::lock_guard<std::mutex> lock(generIdLock);
    return ++generId;
}

void LaneConnector::passId(long id) {
    const std::lock_guard<std::mutex> lock(generIdLock);
    generId = std::max(generId, id);
}

std::unique_ptr<LaneConnector> LaneConnector::clone() const {
    return std::unique_ptr<LaneConnector>(new LaneConnector(*this));
}
