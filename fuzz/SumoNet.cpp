#include "fuzz/Fuzzing.h"
#include "tools/reports/Failure.h"
#include "tools/sumo/reader/NetReader.h"

#include <cmath>

using namespace moratools;

/// SUMO networks, plain and compressed: a network or a sentence, and every number of a network is finite.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const fuzzing::ScratchFile file;
    file.write(fuzzing::bytesOf(data, size));
    try {
        const SumoNet net = readSumoNet(file.path());
        for (const SumoEdge &edge : net.edges) {
            fuzzing::require(!edge.lanes.empty(), "an edge has a lane");
            for (const SumoLane &lane : edge.lanes) {
                fuzzing::require(lane.shape.size() >= 2, "a lane has a shape");
                fuzzing::require(std::isfinite(lane.length) && std::isfinite(lane.speed) && lane.width > 0,
                                 "a lane has measures");
                for (const GeometryPoint &point : lane.shape)
                    fuzzing::require(std::isfinite(point.x + point.y + point.z) ||
                                         std::isfinite(point.x / 4 + point.y / 4 + point.z / 4),
                                     "a point is finite");
            }
        }
        for (const SumoConnection &connection : net.connections)
            fuzzing::require(net.edgeIndex.contains(connection.from) && net.edgeIndex.contains(connection.to),
                             "a connection joins edges of the network");
    } catch (const Failure &failure) {
        fuzzing::require(failure.message().startsWith(file.path()), "a failure names the file");
    }
    return 0;
}
