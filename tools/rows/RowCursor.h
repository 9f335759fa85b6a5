#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/rows/StoreTables.h"

#include <QByteArray>
#include <QSqlDatabase>
#include <QVariant>

#include <memory>

namespace moratools {

/// The rows that a statement gives, pulled one by one: what is held does not grow with their number, on
/// either engine. On a server no other statement may run on the connection meanwhile, unless all are pulled.
class MORATOOLS_EXPORT RowCursor {
public:
    /// How rows of a server come.
    enum class Pull {
        Single, ///< one by one
        All     ///< at once, so that other statements may run meanwhile
    };

    /// `sql` selects the columns of `table` in their order. `store` is what messages call the store. Throws
    /// `Failure` when the store refuses the statement.
    RowCursor(const QSqlDatabase &db, const QString &store, const StoreTable &table, const QString &sql,
              Pull pull = Pull::Single);
    RowCursor(RowCursor &&other) noexcept;
    ~RowCursor();

    /// False after the last row. Throws `Failure` when the rows cannot be read.
    bool next();

    /// @{ Of the current row, by the place of the column. Throws `Failure` for a text that is not valid, or
    /// longer than texts are; it names the column and the row.
    bool isNull(int column) const;
    QVariant value(int column) const;
    /// Appends rowvalue::appendCanonical() of the value; false, and nothing, for NULL.
    bool appendCanonical(QByteArray &bytes, int column) const;
    /// @}

    /// Where rows come from.
    class Source;

private:
    std::unique_ptr<Source> mSource;
};

} // namespace moratools
