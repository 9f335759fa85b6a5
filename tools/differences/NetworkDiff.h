#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/RowChange.h"
#include "tools/reports/Progress.h"
#include "tools/rows/StoreReader.h"

#include <functional>

namespace moratools {

/// What two networks are, beside what differs.
struct ComparedNetworks {
    QString before; ///< digestOf() the first
    QString after;  ///< digestOf() the second, in the words of the first
    Language words; ///< the language of the first
};

/// How RowChange::roads is found out.
enum class Roads {
    AsSaid,  ///< as the rows say, which the numbers of roads need not bear out
    LookedUp ///< in the numbers of both networks, of which each takes eight bytes meanwhile
};

/// Compares two networks of any stores row by row, in one pass over both whose memory does not grow with
/// them, and calls `use` with what differs: by table in the order of the catalogue, and by key. Rows are the
/// same by their identifiers, and those without by `catalogue::Table::identity` or `key`. Rows that these do
/// not tell apart are added and removed as wholes. What differs is what makes digests differ: neither the
/// number of a network nor whether a store opens it by default. Words of the second are put into the language
/// of the first. Throws `Failure` where a store cannot be read.
MORATOOLS_EXPORT ComparedNetworks diffNetworks(const StoreReader &one, const NamedNetwork &first,
                                               const StoreReader &other, const NamedNetwork &second,
                                               const std::function<void(const RowChange &)> &use,
                                               const Progress &progress = {}, Roads roads = Roads::AsSaid);

/// The same of rows on any connection, be it of one and the same; words stay as they are.
void diffRows(const NetworkRows &before, const NetworkRows &after,
              const std::function<void(const RowChange &)> &use);

} // namespace moratools
