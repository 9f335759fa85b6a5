#include "fuzz/Fuzzing.h"
#include "tools/reports/Failure.h"
#include "tools/sumo/reader/CompanionReader.h"

#include <algorithm>

using namespace moratools;

/// SUMO's files of demand and of additional objects: records or a sentence.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const fuzzing::ScratchFile file;
    file.write(fuzzing::bytesOf(data, size));
    try {
        SumoCompanions companions;
        readSumoCompanion(file.path(), companions);
        const int routes = static_cast<int>(companions.routes.size());
        fuzzing::require(std::all_of(companions.vehicles.begin(), companions.vehicles.end(),
                                     [routes](const SumoVehicle &vehicle) { return vehicle.route < routes; }),
                         "a vehicle's route is in the list");
    } catch (const Failure &failure) {
        fuzzing::require(failure.message().startsWith(file.path()), "a failure names the file");
    }
    return 0;
}
