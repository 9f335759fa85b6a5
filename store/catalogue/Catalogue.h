#pragma once

#include "model/MoraStoreExport.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

/// What is to be known about the tables of a store and about the kinds of objects in them, once.
///
/// Statements are spelled out where they run; here is what they cannot say to others: what numbers rows, what
/// refers to what, in which order tables are filled and emptied.
namespace catalogue {

/// What becomes of a row when what one of its columns refers to is removed.
enum class Bond {
    Part,      ///< it belongs to that, and goes with it
    Object,    ///< it is an object of its own, or a pair, that cannot be without that, and goes
    Owner,     ///< nor can the object that it belongs to: a route with a hole is another route
    Entry,     ///< it goes as an entry of a list, and the object that it belongs to stays
    Named,     ///< it stays, and the column becomes 0, which names none
    Carried,   ///< the other way round: that is there for those that refer to it, and goes after the last
    HostNumber ///< nothing: the number is the host's
};

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
    Bond bond = Bond::Object;
    bool mayBeNone = false; ///< 0 names none; elsewhere a row names one

    /// Whether a row that may stand on a link or a connector says that it is a connector. `valueOf` gives the
    /// row's value of a column.
    MORASTORE_EXPORT bool saysConnector(const std::function<QVariant(const char *)> &valueOf) const;
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
    /// The columns that tell the rows of a network apart in every generation, where these are neither the
    /// identifier nor the whole `key`.
    std::vector<const char *> identity = {};
    std::vector<Reference> references = {};
    /// Columns with words of the fixed vocabulary, stored in the store's language.
    std::vector<const char *> words = {};
    std::vector<Filling> fillings = {};
    /// No object of the model holds the rows of its owner: changing that leaves them alone.
    bool isAside = false;
    /// The rows of one owner have no order but that in which they were written.
    bool isAsWritten = false;

    /// The column of the identifier of what a row belongs to; null for what belongs to nothing.
    MORASTORE_EXPORT const Reference *owner() const;
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

/// Whether rows of the table are there for those that carry them, and may be shared.
MORASTORE_EXPORT bool isCarried(const Table &table);

/// What a row of a table is called in a sentence: "link", "lane", "signal lamp".
MORASTORE_EXPORT QString wordFor(const QString &table);

/// The kind whose objects stand in a table; null without one.
MORASTORE_EXPORT const Kind *kindIn(const QString &table);

/// Tables that are emptied back to back.
using Group = std::vector<const char *>;

/// The tables of objects in the order in which removing a network empties them, in groups: when the last
/// statement of one fails, none follows.
const std::vector<Group> &removalOrder(bool hasSeveralNets);

} // namespace catalogue
