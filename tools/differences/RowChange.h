#pragma once

#include "store/catalogue/Catalogue.h"

#include <QMap>
#include <QString>
#include <QVariant>

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

    /// @{ For people, and no part of the change: the identifier of what the row is a part of, and the name of
    /// the object.
    QVariant owner = {};
    QString name = {};
    /// @}
};

/// The columns that tell the rows of a table apart, as the catalogue spells them. `hasId`: the stores in
/// question have the column of identifiers, which lane connectors of older ones lack.
std::vector<const char *> identityColumns(const catalogue::Table &table, bool hasId);

} // namespace moratools
