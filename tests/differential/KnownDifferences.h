#pragma once

#include "model/NetContents.h"
#include "tests/differential/StoredRows.h"

/// Where single and whole operations differ on purpose. Each function takes away from the richer side what
/// the other one cannot have, and nothing else: a difference that is gone, or has spread, shows.
namespace differential {

/// The operations that give false although everything else of their object is written: in generation 6 a link
/// with a lane that has attributes, a detector with vehicle types, and the settings of a simulation, which
/// stay at the standard row. The format's statements for them are refused by every engine; hosts know these
/// objects by that verdict.
QStringList refusedSingly(const NetContents &net, bool severalNets);

/// Takes away what the statements of single inserts have no place for. Generation 6: attributes of lanes,
/// restrictions of lanes and connectors, the geometry of lane connectors, detectors' vehicle types, the
/// settings of a simulation. Stores of one network: attributes of lane connectors.
void dropWhatSingleInsertsLeaveOut(QMap<QString, TableRows> &rows, bool severalNets);

/// What an English store has for a word of RandomNet that a host shows in Chinese. Whole saves write it; single
/// inserts of such a host write what it shows.
QString wordOfTheStore(const QString &shown);
/// Puts the words of the store into the columns that a whole save translates.
void translateWords(QMap<QString, TableRows> &rows);
/// Restrictions of lanes give the names of vehicle types as they are stored.
void translateNamesOfRestrictions(NetContents &net);

/// Takes away what no single read gives: restrictions of connectors, and in generation 6 those of lanes.
void dropWhatSingleReadsLeaveOut(NetContents &net, bool severalNets);

/// Takes away what single reads give of a damaged network, and a load leaves out with a report because it
/// could not be saved again: decision points whose link is gone, with the lanes of their routes; arrows and
/// lamps on a lane that belongs to no link (of the network: a single read takes a lane of any); in stores of
/// one network devices on a connector that lacks a link.
void dropWhatLoadsLeaveOut(NetContents &net, bool severalNets);

/// Takes away the break points that links have of their own: a save writes those of their outer lanes.
void dropBreakPointsOfLinks(NetContents &net);

/// Takes away types that detectors list more than once: unknown types read as the default one, and a row
/// stands for each code.
void dropRepeatedDetectorTypes(NetContents &net);

/// Takes away the order in which children without a number of their own were written. A file keeps it. A
/// server puts a row wherever a page has room for it, and gives the rows in the order of their places.
void dropOrderOfPlaces(NetContents &net);

/// Takes away the edges of lane connectors, for which upgraded stores have no columns.
void dropEdgesOfLaneConnectors(NetContents &net);

} // namespace differential
