#pragma once

#include "store/core/Store.h"

/// Keeps the failure of a statement from ending the transaction around it.
///
/// PostgreSQL takes no further statement in a transaction once one has failed; SQLite goes on by itself. With
/// a savepoint around each statement that may fail, both end with the same rows. Query sets one around every
/// statement that writes. Does nothing on SQLite and outside a transaction.
class Savepoint {
public:
    explicit Savepoint(const Store &store, bool wanted = true);
    /// Undoes what was not ended.
    ~Savepoint() { end(false); }
    Savepoint(const Savepoint &) = delete;
    Savepoint &operator=(const Savepoint &) = delete;

    /// Whether a transaction is open on the connection, be it one that takes no further statement.
    static bool isInsideTransaction(const Store &store);

    /// Keeps what was written since when @p written is true, undoes it otherwise. @return @p written.
    bool end(bool written);

private:
    const Store &mStore;
    bool mSet = false;
};
