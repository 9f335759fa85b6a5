#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/reports/Progress.h"
#include "tools/rows/NetworkRows.h"
#include "tools/rows/StoreReader.h"

namespace moratools {

class RowsTakenBack;
class Translation;

/// What a digest covers.
enum class Covered {
    AllOfIt,
    Content, ///< without what says where the network came from and when: its name, source and save date
};

/// A digest (SHA-256, hexadecimal) of all rows of a network in the tables of catalogue::tables(): equal for equal
/// content on either engine and under whatever number the network has in its store. A column that is NULL
/// counts like one that the store does not have; the number of the network and whether the store opens it by
/// default do not count, for these are the store's. `covered` leaves out more: `Net.name`, `Net.sourceType` and
/// `Net.sourceUrl` and `Configuration.saveDate`.
MORATOOLS_EXPORT QString digestOf(const StoreReader &store, const StoreReader::Network &network,
                                  Covered covered = Covered::AllOfIt, const Progress &progress = {});
/// The same, of rows as any connection sees them, once `words` has put the words of the fixed vocabulary into
/// another language.
QString digestOf(const NetworkRows &rows, Translation &words);

/// The digests of a network as it is, and as it was before changes.
struct TwoDigests {
    QString before;
    QString now;
};
/// Both in one pass over the rows as they are.
TwoDigests digestsOf(const NetworkRows &rows, Translation &words, const RowsTakenBack &changes,
                     const Progress &progress);

} // namespace moratools
