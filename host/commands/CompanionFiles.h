#pragma once

#include "model/NetContents.h"
#include "tools/sumo/import/CompanionPlan.h"
#include "tools/sumo/reader/ScenarioReader.h"

#include <CLI/CLI.hpp>

#include <QString>

#include <string>
#include <vector>

namespace commands {

/// The options of a command that imports a network with files of demand and additional objects.
struct CompanionFiles {
    std::string network;
    std::string sumocfg; ///< either of the two is given
    std::vector<std::string> routes;
    std::vector<std::string> additional;
    bool strict = false;
    bool route = false;

    /// Adds the options to a command; this object must outlive it.
    void addTo(CLI::App &command);

    /// The files that are meant: those of the configuration first.
    moratools::SumoScenario scenario() const;
    /// Reads the files of `scenario` and plans their import into `net`, which must outlive the plan. Tells the
    /// user what has to be left out; throws `Failure` when that is anything and `strict` is set.
    moratools::CompanionPlan plan(const moratools::SumoScenario &scenario,
                                  const moratools::SumoNet &net) const;
};

/// Throws `Incomplete` when something was left out.
void reportLeftOut(const moratools::CompanionPlan &plan);

/// "13 signal groups, 576 signal lamps": the objects of each kind, where there are any.
QString countsOf(const TrafficObjects &traffic);
/// How the vehicles of the files are accounted for; empty without any.
QString vehicleAccountOf(const moratools::CompanionPlan &plan);

} // namespace commands
