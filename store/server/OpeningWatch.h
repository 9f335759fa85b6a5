#pragma once

#include "model/MoraStoreExport.h"

#include <QtGlobal>

#include <memory>

class QSqlDatabase;

/// Keeps Qt's driver from waiting for ever while it opens a connection to a PostgreSQL server: once libpq has
/// connected, which has a limit of its own, the driver asks a few questions. A server that gives no answer
/// to them is shut off after the limit of store/server/ServerWatch.h. For the life of this object; does nothing for
/// other engines.
class OpeningWatch {
public:
    /// @param db one that has its names and is not open yet.
    explicit OpeningWatch(const QSqlDatabase &db);
    ~OpeningWatch();

private:
    Q_DISABLE_COPY(OpeningWatch)

    class Thread;

    std::unique_ptr<Thread> mThread; ///< null where there is nothing to watch
};
