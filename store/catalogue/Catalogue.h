#pragma once

#include "model/MoraStoreExport.h"

#include <QString>
#include <QVariant>

#include <vector>

/// What is to be known about the tables of a store and about the kinds of objects in them, once.
///
/// Statements are spelled out where they run; here is what they cannot say to others: what numbers rows, what
/// refers to what, in which order tables are filled and emptied.
namespace catalogue {

/// A column whose values are identifiers of another table.
struct Reference {
    const char *column = nullptr;
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
    const char *column = nullptr;
    QVariant value;
};

/// A table of a network's rows.
struct Table {
    const char *name = nullptr;
    /// The column of the numbers that a counter gives to rows; none for tables that go without.
    const char *id = nullptr;
    /// The numbers are the same in every network by design (vehicle types, compositions). Others must not be
    /// shared by networks of one store.
    bool hasSharedIds = false;
    /// Hosts are told the column (DBTools::getIDName()). The list of those that are is older than some
    /// tables, and hosts rely on the empty answer for the others.
    bool isIdTold = false;
    /// Integer columns by which rows are ordered, as far as that goes: same content, same order.
    std::vector<const char *> key = {};
    std::vector<Reference> references = {};
    /// Columns with words of the fixed vocabulary, stored in the store's language.
    std::vector<const char *> words = {};
    std::vector<Filling> fillings = {};

    /// The column of identifiers that are unique in the whole store; null without one.
    const char *uniqueId() const { return hasSharedIds ? nullptr : id; }
};

/// The tables that make up a network, as generation 6 has them, referred tables before those that refer to
/// them. Not among them are the store's own bookkeeping (`DbVersion`, `IDGenerater`), the tables of finished
/// runs, which belong to no network, and what plug-ins add.
MORASTORE_EXPORT const std::vector<Table> &tables();

/// The entry of a table; null without one. Upper and lower case are the same.
MORASTORE_EXPORT const Table *find(const QString &name);

/// Objects of a table, as programs call them.
struct Kind {
    const char *plural = nullptr; ///< "links"
    const char *table = nullptr;
    const char *word = nullptr; ///< "link"; none for what is only a part of other objects
    const char *name = "name";  ///< the column of the objects' names, or an expression
};

/// The kinds of objects, in the order in which a network is loaded.
MORASTORE_EXPORT const std::vector<Kind> &kinds();

/// The kind whose objects stand in a table; null without one.
MORASTORE_EXPORT const Kind *kindIn(const QString &table);

/// Tables that are emptied back to back.
using Group = std::vector<const char *>;

/// The tables of objects in the order in which removing a network empties them, in groups: when the last
/// statement of one fails, none follows.
const std::vector<Group> &removalOrder(bool hasSeveralNets);

} // namespace catalogue
