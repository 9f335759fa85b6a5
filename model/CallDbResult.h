#pragma once

#include <QList>
#include <QString>

/// The record of one call on a store that failed.
struct CallDbResult {
    QString sql;   ///< the statement as last run; empty when the connection itself failed
    long id = 0;   ///< the query's last insert id where the driver reports one
    QString error; ///< the driver's text
};

/// The failed calls of one operation class since the last opening. It only grows; opening empties it.
using FailureList = QList<CallDbResult>;
