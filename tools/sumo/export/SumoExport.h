#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"

#include <QString>
#include <QStringList>

namespace moratools {

class StoreSession;

struct ExportOptions {
    bool plainOnly = false; ///< the plain form of the network alone
    bool rebuild = false;   ///< the network file is made by netconvert, whatever was kept of an imported one
    bool flows = false;     ///< demand as flows and routes, whatever vehicles were kept of an imported one
};

/// What an export has to say.
struct SumoExport {
    QString network;     ///< the network's name
    QString networkFile; ///< its path; empty where there is none
    /// Why there is no network file, or what netconvert had to do for it; empty where there is nothing to say.
    QString note;
    bool isWhole =
        true; ///< false: the network file is missing, though it was asked for, or something was left out
    QStringList
        leftOut; ///< a line for each kind of what SUMO has no word for, and one for each that is named
    QString leftOutCount; ///< "3 signal lamps, 1 bus line"; empty without any
};

/// Writes network `netId` of a store (0: its first) as a scenario for SUMO into the new folder `folder`: docs/export.md
/// says what is in it. The folder comes into being as a whole; one that is there must be empty.
///
/// Reads the store alone; runs `netconvert` where it is installed and needed.
///
/// Throws `Failure` when there is no such network, it has no roads, or the folder cannot be written.
MORATOOLS_EXPORT SumoExport exportNetwork(const StoreSession &store, long netId, const QString &folder,
                                          const ExportOptions &options = {}, const Progress &progress = {});

} // namespace moratools
