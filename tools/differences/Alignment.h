#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/rows/Renumbering.h"
#include "tools/rows/StoreReader.h"

#include <QStringList>

#include <map>

namespace moratools {

/// By what rows are matched.
enum class Matching {
    Names,
    NamesThenGeometry, ///< links that no name matches by where they begin and end
};

/// How rows of two networks that were made independently correspond: by what people call them, not by their
/// numbers.
struct MORATOOLS_EXPORT Alignment {
    /// Objects of a table.
    struct Count {
        qint64 matched = 0;
        qint64 onlyFirst = 0;
        qint64 onlySecond = 0;
        qint64 ambiguous =
            0; ///< of `onlyFirst` and `onlySecond` together: several have what tells others apart
    };

    /// The first network's identifiers for rows of the second, new ones for rows that the first has not.
    Renumbering ids;
    std::map<QString, Count> counts; ///< by table, of those that were compared

    QStringList byGeometry; ///< a line for each link that was matched by where it lies

    /// `byGeometry`, and what was not matched since several are called the same, a line for each table.
    QStringList remarks() const;
};

/// Matches the rows of two networks: links, nodes, signal groups and whatever has a name by that (what stands
/// on a link, by link and name), lanes by link and serial number, connectors by their links, lane connectors by
/// their lanes, vertices by what has them, parts by what they belong to and their order in it. Rows that
/// nothing tells apart correspond in the order of their identifiers where both networks have equally many, and
/// not at all elsewhere. Throws `Failure` where a store cannot be read.
MORATOOLS_EXPORT Alignment align(const StoreReader &one, const NamedNetwork &first, const StoreReader &other,
                                 const NamedNetwork &second, Matching matching = Matching::Names);

} // namespace moratools
