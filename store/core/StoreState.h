#pragma once

#include "model/LinkType.h"
#include "model/Net.h"
#include "model/SpecialWords.h"
#include "model/StoreSettings.h"
#include "model/VehicleComposition.h"
#include "model/VehicleType.h"
#include "store/core/Failures.h"
#include "store/core/RowRecording.h"

#include <QHash>
#include <QList>
#include <QPointer>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>

/// What a class of operations tells of an open store; DBTools and DBTools_V6 each have one.
struct StoreFacts {
    StoreSettings settings;
    int version = 2; ///< when the store was opened
    bool isInternational = false;
    FailureList failures;
    QStringList tableNames;
    QHash<QString, QString> keyColumns; ///< by table
};

/// A network that reads find their way in: its tables, through which they resolve ids, and its registries.
struct NetScope {
    Net net;
    QHash<long, VehicleType> vehicleTypes;        ///< by code
    QHash<long, VehicleComposition> compositions; ///< by code
    QList<LinkType> linkTypes;
};

/// A store that is open: its connection, and all that a process knows of it beside the rows. The
/// scope is that of the current network.
struct StoreState : StoreFacts, NetScope {
    StoreState() { net.mConnection = &db; }
    StoreState(const StoreState &) = delete;
    StoreState &operator=(const StoreState &) = delete;

    /// The failures of both classes whose numbers are above @p number, in the order in which they were recorded;
    /// for 0 with those that the host has recorded itself.
    FailureList failuresAfter(quint64 number) const;

    /// Another store counts its identifiers by itself.
    void forgetIdentifiers() {
        reservedIds.clear();
        highestIds.clear();
        sequences.clear();
    }

    /// What must outlive the connection: the private copy of a file that is read from one.
    std::shared_ptr<void> fileCopy;
    QSqlDatabase db;
    QString path; ///< of the SQLite file; empty while none is open
    /// Where operations of DBTools_V6 record.
    FailureList *severalNetsFailures = &failures;
    bool isReadOnly = false; ///< opened for reading
    /// What keeps the rows that statements write, while somebody records them on a server.
    QPointer<const RowRecording> recording;
    /// Whether table Link of a store of one network has a column for road ids.
    bool linkHasRoadId = true;
    /// Network id to table name to the identifiers reserved and not yet used, ascending.
    QHash<long, QHash<QString, QList<long>>> reservedIds;
    /// Network id (0 in stores of one network) to table name to the highest identifier that was reserved or
    /// handed out.
    QHash<long, QHash<QString, long>> highestIds;
    /// On a server: table in lower case to the sequence that its identifiers come from, once it was looked for.
    QHash<QString, QString> sequences;

    SpecialWords words; ///< in the store's language
};
