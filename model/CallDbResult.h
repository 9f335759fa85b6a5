#pragma once

#include <QList>
#include <QString>

/// What went wrong in a failed call, alike for all engines.
enum class FailureKind {
    None,         ///< nothing: what FailureScope gives where there is no failure
    NotFound,     ///< what the call names is not there: an object, a network, a file
    Constraint,   ///< the store's keys, or what it holds already, forbid it
    Busy,         ///< another program is in the way: try again
    Lost,         ///< the connection, the server or the disk is gone: open the store again
    Damaged,      ///< what the store holds cannot be used
    RefusedValue, ///< a value or an object that no store would give back; nothing of it was written
    Other
};

/// The record of one call on a store that failed.
struct CallDbResult {
    QString sql; ///< the statement as last run; empty for a failure that is none of a statement
    long id = 0; ///< of a statement: the last insert id where the driver reports one; else that of the object
    QString error; ///< the driver's text, or a sentence of the library's

    FailureKind kind = FailureKind::Other;
    QString code = {};      ///< SQLite's extended result code, or the SQLSTATE of a server; empty without one
    QString operation = {}; ///< the function that the host called; empty for a host's own records
    QString table = {};     ///< the one that the statement or the object is about, as far as that is known
    long objectId = 0;      ///< of the object or the row that the call is about; 0 where none is known
    quint64 number = 0;     ///< counts the failures of a process from 1; 0 for a host's own records
};

/// The failed calls of one operation class since the last opening. It only grows; opening empties it.
using FailureList = QList<CallDbResult>;
