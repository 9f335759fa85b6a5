#pragma once

#include "store/catalogue/Catalogue.h"

#include <QMap>
#include <QString>
#include <QVariant>

#include <utility>

namespace moratools {

/// Values of a row by column, as the format spells it: whole numbers (qint64), reals, texts and bytes that
/// are no text, as CanonicalRows has them; invalid for NULL.
using RowValues = QMap<QString, QVariant>;

/// One row of a network that differs.
struct RowChange {
    enum class Kind { Added, Removed, Changed };

    const catalogue::Table *table = nullptr;
    Kind kind = Kind::Changed;
    /// What tells the row from the others of its table.
    RowValues key;
    /// Of a removed row all that is not NULL; of a changed one what differs.
    RowValues before;
    /// Of an added row all that is not NULL; of a changed one the same columns as `before`.
    RowValues after;

    /// @{ No part of the change: the identifier of what the row is a part of, the name of the object, and whether the
    /// roads that the row names are links or connectors, as far as known.
    QVariant owner = {};
    QString name = {};
    QMap<qint64, const catalogue::Table *> roads = {};
    /// @}
};

/// Where a row of a file stands, by its row number, in a table that has no order but that in which rows were
/// written (`catalogue::Table::isAsWritten`).
struct RowPlace {
    const catalogue::Table *table = nullptr;
    RowValues key;     ///< tells the row from the others
    qint64 before = 0; ///< 0 of a row that was not there
    qint64 after = 0;  ///< 0 of one that is not there any more
};

/// The change that takes this one back.
inline RowChange inverted(RowChange change) {
    std::swap(change.before, change.after);
    if (change.kind != RowChange::Kind::Changed)
        change.kind =
            change.kind == RowChange::Kind::Added ? RowChange::Kind::Removed : RowChange::Kind::Added;
    return change;
}

/// The columns that tell the rows of a table apart, as the catalogue spells them. `hasId`: the stores in
/// question have the column of identifiers, which lane connectors of older ones lack.
std::vector<const char *> identityColumns(const catalogue::Table &table, bool hasId);

} // namespace moratools
