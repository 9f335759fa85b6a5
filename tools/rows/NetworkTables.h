#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>
#include <QVariant>

#include <vector>

namespace moratools {

/// A column whose values are identifiers of another table.
struct Reference {
    const char *column;
    /// The table whose identifiers the column holds. None for a road, which is a link or a connector: most
    /// often only one of the two has the identifier, and where both have, the row tells by one of the signs
    /// below.
    const char *table = nullptr;
    /// The column that says what the road is: words that begin with l for a link.
    const char *roadType = nullptr;
    /// Lane numbers of which one is at least `firstOfConnector` on a connector and none is on a link.
    std::vector<const char *> lanes = {};
    int firstOfConnector = 0;
};

/// A value for a column that generation 6 asks for and older stores need not have.
struct Filling {
    const char *column;
    QVariant value;
};

/// What is to be known about a table of a network's rows.
struct NetworkTable {
    const char *name;
    /// The column of the rows' own identifiers, which must not be shared by networks of one store. None for
    /// tables that go without, and for catalogues: their numbers (vehicle types, link types, driver models)
    /// are the same in every network by design.
    const char *id = nullptr;
    /// Integer columns by which rows are ordered, as far as that goes: same content, same order.
    std::vector<const char *> order = {};
    std::vector<Reference> references = {};
    /// Columns with words of the fixed vocabulary, stored in the store's language.
    std::vector<const char *> words = {};
    std::vector<Filling> fillings = {};
};

/// The tables that make up a network, as generation 6 has them, referred tables before those that refer to
/// them. Not among them are the store's own bookkeeping (`DbVersion`, `IDGenerater`), the tables of finished
/// runs, which belong to no network, and what plug-ins add.
MORATOOLS_EXPORT const std::vector<NetworkTable> &networkTables();

/// The entry of a table; null without one. Upper and lower case are the same.
MORATOOLS_EXPORT const NetworkTable *networkTable(const QString &name);

} // namespace moratools
