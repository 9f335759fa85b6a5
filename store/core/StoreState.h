#pragma once

#include <QHash>
#include <QList>
#include <QString>

/// What a process knows of the store that it has open, beside the rows. Hosts see it as members of DBTools.
struct StoreState {
    /// Whether table Link of a store of one network has a column for road ids.
    bool linkHasRoadId = true;
    /// Network id to table name to the identifiers reserved and not yet used, ascending.
    QHash<long, QHash<QString, QList<long>>> reservedIds;
    /// Network id (0 in stores of one network) to table name to the highest identifier that was reserved or
    /// handed out.
    QHash<long, QHash<QString, long>> highestIds;
};
