#pragma once

#include "tools/MoraToolsExport.h"

#include <QString>
#include <QStringList>

namespace moratools {

/// What an upgrade did to a store.
struct StoreUpgrade {
    bool wasCurrent = false;     ///< there was nothing to do
    QString copy;                ///< the file that keeps the store as it was; empty without one
    QStringList tables;          ///< added
    QStringList columns;         ///< added to tables that were there, as TABLE.COLUMN
    QStringList respelled;       ///< columns that got the spelling of later versions, as TABLE.COLUMN
    bool hasNewCounters = false; ///< one identifier counter became one for each table
    QString refused; ///< the engine's text of the first statement that was refused; empty without any
};

/// Brings the SQLite store `path`, however old, to the current schema. With `keepsCopy`, what it was stays
/// beside it in a checked copy, made before anything changes. Where statements were
/// refused, the rest was done. Throws `Failure`, and nothing was changed then.
MORATOOLS_EXPORT StoreUpgrade upgradeStore(const QString &path, bool keepsCopy);

} // namespace moratools
