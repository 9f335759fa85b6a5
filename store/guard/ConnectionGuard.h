#pragma once

#include "model/MoraStoreExport.h"

#include <QtGlobal>

class QSqlDatabase;
struct sqlite3;

/// What an SQLite connection to a store that may come from anybody is told before its first question. Other
/// engines are left alone, and so is what has no statement of its own (defensive mode, limits, triggers)
/// where the library does not have the engine's handle (store/core/EngineHandle.h).
namespace connectionguard {

/// Opens @p db and hardens it, and has a server watched (store/server/ServerWatch.h); false where it cannot be
/// opened. All that opens a store does it here.
MORASTORE_EXPORT bool open(QSqlDatabase &db);

/// What a file brings along may call harmless functions only; its pages are looked at with care; neither
/// values nor statements of any size are taken. For a connection that somebody else has opened.
MORASTORE_EXPORT void harden(const QSqlDatabase &db);

/// From here on no trigger runs: for statements on the tables of plug-ins, which may have some.
MORASTORE_EXPORT void runNoTriggers(const QSqlDatabase &db);

/// While it lives, statements fail ("interrupted") that take longer than questions about a store ever do.
class MORASTORE_EXPORT QuickQuestions {
public:
    explicit QuickQuestions(const QSqlDatabase &db);
    ~QuickQuestions();

private:
    Q_DISABLE_COPY(QuickQuestions)

    static int step(void *questions);

    sqlite3 *mEngine;
    int mStepsLeft;
};

} // namespace connectionguard
