#pragma once

#include "store/core/Store.h"

/// The transaction of one operation, begun only when the caller asked for one.
///
/// Finished once, by the function that names how it ends; the result of the operation is what that function
/// returns. Without the caller's wish nothing is begun and the finishing functions only hand the verdict on.
/// One that is dropped unfinished rolls back. When the begin fails (the caller has a transaction open
/// already, or the engine refuses) the failure is recorded and the store given up: nothing of the operation
/// runs, and a transaction of the caller stays as it is.
class OperationTransaction {
public:
    /// When a file's write lock is taken: what reads before it writes is refused where another program has taken it
    /// in between, however long it would wait. Does not matter on a server.
    enum class Lock { WithTheFirstRow, AtOnce };

    OperationTransaction(const Store &store, bool wanted, Lock lock = Lock::WithTheFirstRow);
    ~OperationTransaction();
    OperationTransaction(const OperationTransaction &) = delete;
    OperationTransaction &operator=(const OperationTransaction &) = delete;

    /// Commits and checks the connection; when the check fails, rolls back and returns false. Commits also
    /// when
    /// @p verdict is false: rows that were written stay.
    bool commit(bool verdict);
    /// commit() for a good verdict, a roll back for a bad one.
    bool commitIfGood(bool verdict) { return verdict ? commit(true) : rollBack(); }
    /// Commits; when the driver then reports an error, rolls back, records its text and returns false. The
    /// driver is asked also when the transaction is the caller's.
    bool commitOrRecord(bool verdict);
    /// Commits and, when the driver then reports an error, records its text and returns false; the
    /// transaction stays open then, for the caller to end.
    bool commitOrLeaveOpen(bool verdict);
    /// Rolls back on purpose and checks the connection: a trial run whose rows do not stay.
    bool discard(bool verdict);
    /// Rolls back; false.
    bool rollBack();

private:
    /// The transaction is no longer the operation's.
    void close();

    const Store &mStore;
    bool mOpen = false;
};
