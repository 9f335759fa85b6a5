#pragma once

#include "model/CallDbResult.h"
#include "tools/MoraToolsExport.h"
#include "tools/session/StoreAddress.h"
#include "tools/session/StoreFile.h"

#include <QString>

namespace moratools {

/// The store that a command works on: opened through the library for the life of this object, as the current
/// connection gDB. One at a time.
class MORATOOLS_EXPORT StoreSession {
public:
    /// Opens the store. For reading, nothing of it changes. For writing, an SQLite store that is not current
    /// is brought forward; one of the first generation is not written to, but by an upgrade. Throws
    /// `Failure`.
    StoreSession(const StoreAddress &address, Access access);
    /// Throws `Failure` when the store cannot be had for `access`; nothing of it changes. What else may keep
    /// a command from its work is found out before the store is opened for writing, which brings it forward.
    static void require(const StoreAddress &address, Access access);
    /// Hands what the library recorded as failed to its log and closes the store; gNet no longer holds a
    /// network.
    ~StoreSession();

    int generation() const;
    bool hasSeveralNetworks() const { return generation() >= 6; }

private:
    Q_DISABLE_COPY(StoreSession)
};

/// What the library recorded as failed since the store was opened, but for the one record that the first
/// opening of a store of several networks leaves by design.
MORATOOLS_EXPORT int unexpectedFailures();
/// The engine's text of the first of them; empty without any.
MORATOOLS_EXPORT QString firstFailureText();
/// Hands the records to the library's log.
MORATOOLS_EXPORT void logFailures();

/// Throws `Failure` when the server of the open store is gone; what was not committed is gone with it.
MORATOOLS_EXPORT void requireServerAlive();
/// Throws `Failure`: @p what cannot be read, since the server is gone, a statement failed for @p reason, or
/// the rows are not what they must be.
[[noreturn]] MORATOOLS_EXPORT void refuseReading(const QString &what,
                                                 const QString &reason = firstFailureText());

} // namespace moratools
