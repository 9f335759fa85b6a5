#pragma once

#include "host/store/StoreAddress.h"
#include "host/store/StoreFile.h"

#include <QString>

/// The store that a command works on: opened through the library for the life of this object, as the current
/// connection gDB. One at a time.
class OpenStore {
public:
    /// Opens the store. Throws `Failure`.
    OpenStore(const StoreAddress &address, Access access);
    /// Hands what the library recorded as failed to its log and closes the store; gNet no longer holds a
    /// network.
    ~OpenStore();

    int generation() const;
    bool hasSeveralNetworks() const { return generation() >= 6; }

private:
    Q_DISABLE_COPY(OpenStore)
};

/// What the library recorded as failed since the store was opened, but for the one record that the first
/// opening of a store of several networks leaves by design.
int unexpectedFailures();
/// The engine's text of the first of them; empty without any.
QString firstFailureText();
/// Hands the records to the library's log.
void logFailures();

/// Throws `Failure` when the server of the open store is gone; what was not committed is gone with it.
void requireServerAlive();
