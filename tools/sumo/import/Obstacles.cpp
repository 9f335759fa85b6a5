#include "tools/sumo/import/Obstacles.h"

#include <algorithm>

namespace moratools {

namespace {

bool hasLane(const SumoEdge &edge, const QString &lane) {
    return std::any_of(edge.lanes.begin(), edge.lanes.end(),
                       [&lane](const SumoLane &candidate) { return candidate.id == lane; });
}

} // namespace

std::vector<Obstacle> takeObstacles(SumoCompanions &companions, const SumoNet &net) {
    std::vector<Obstacle> obstacles;
    const auto isObstacle = [&](const SumoVehicle &vehicle) {
        if (vehicle.isFlow || vehicle.route < 0 || vehicle.stops.size() != 1)
            return false;
        const QStringList &edges = companions.routes[std::size_t(vehicle.route)].edges;
        const SumoStop &stop = vehicle.stops.front();
        if (edges.size() != 1 || !hasLane(*net.edge(edges.first()), stop.lane))
            return false;
        obstacles.push_back({vehicle.id, stop.lane, stop.startPos, stop.endPos});
        return true;
    };
    auto &vehicles = companions.vehicles;
    vehicles.erase(std::remove_if(vehicles.begin(), vehicles.end(), isObstacle), vehicles.end());
    return obstacles;
}

} // namespace moratools
