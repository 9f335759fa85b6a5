#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace moratools {

/// What a SUMO configuration (.sumocfg) runs: files, by paths that can be opened from here, and options.
struct SumoScenario {
    QString network;
    QStringList additional; ///< read before the routes
    QStringList routes;
    std::optional<double> begin; ///< seconds, as the next two
    std::optional<double> end;
    std::optional<double> stepLength;
    std::optional<int> seed;
    /// All options but the files above as they stand, by their full names.
    std::vector<std::pair<QString, QString>> options;
    /// Options that name further files, which a store does not take.
    QStringList furtherFiles;
};

/// Reads a SUMO configuration. Options may stand in groups or by themselves, and give their value as an attribute
/// or as text; lists are separated by commas; files are looked for beside the configuration. Throws `Failure` with
/// file and line when the file is missing, cut off or not XML, is a network or holds demand, names no network, or
/// has an option twice or with a value that cannot be read.
MORATOOLS_EXPORT SumoScenario readScenario(const QString &sumocfg);

} // namespace moratools
