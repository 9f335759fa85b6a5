#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/rows/RowValue.h"

#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QVector>

namespace moratools {

/// A column as the engine has it.
struct StoreColumn {
    QString name; ///< as the engine spells it
    QString key;  ///< the format's name in lower case: misspellings of first-generation stores are undone
    ColumnKind kind = ColumnKind::Any;
};

/// A table as the engine has it.
struct StoreTable {
    QString name;
    QVector<StoreColumn> columns;

    /// The column of that name, upper and lower case alike; null without one.
    const StoreColumn *column(const QString &named) const;
    bool isNetworkScoped() const { return column(QStringLiteral("netid")) != nullptr; }
};

/// The tables of an open store, by name in lower case. Throws `Failure` when the engine does not tell them.
MORATOOLS_EXPORT QHash<QString, StoreTable> storeTables(const QSqlDatabase &db);

/// A name of a table or column as SQL text, on either engine.
MORATOOLS_EXPORT QString quotedName(const QString &name);

} // namespace moratools
