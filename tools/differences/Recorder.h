#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/RowChange.h"
#include "tools/rows/StoreTables.h"

#include <QHash>

#include <vector>

namespace moratools {

class StoreSession;

/// What has changed.
struct Recording {
    std::vector<RowChange> changes;
    /// In a file, of rows that came, went or were moved; no part of a patch.
    std::vector<RowPlace> places;

    bool isEmpty() const { return changes.empty() && places.empty(); }
};

/// What the operations of a session change in a network, while they do it: operations of DBTools, StoredNet and
/// Transaction, single or whole. What is rolled back is no change, be it by the library, by the host or by the
/// engine.
///
/// The rows are kept by the engine, in temporary tables of the connection: they cost what is written, not what
/// the network has, no other session sees them, and they go with the connection. In a file, triggers of the
/// connection write them, so that a host's own statements count, too. On a server only what operations write
/// counts, row by row and without streams; the role must be allowed to make temporary tables.
class MORATOOLS_EXPORT Recorder {
public:
    /// `store` is open for writing, and outlives this; a connection has one recorder at a time. Throws `Failure`
    /// where the temporary tables cannot be made.
    Recorder(const StoreSession &store, long netId);
    /// Ends without a result, and leaves nothing behind.
    ~Recorder();

    /// Begins. Throws `Failure` when a transaction is open: a roll back would take the beginning along.
    void begin();
    /// What has changed since begin(), row by row as `diffNetworks()` tells it: a row that was changed twice
    /// changed once, and one that is as it was did not.
    /// Throws `Failure` when a transaction is open, since nobody knows what becomes of it (the recording goes
    /// on then), and where the connection is gone.
    Recording end();
    /// Ends, and forgets what was recorded.
    void cancel();
    bool isRecording() const { return mIsRecording; }

private:
    Q_DISABLE_COPY(Recorder)

    void prepare();
    void prepareTriggers(const StoreTable &table, const StoreTable &kept) const;
    void requireNoTransaction() const;
    /// The tables with rows, by their names in lower case.
    QHash<QString, StoreTable> written() const;
    void forget() const;
    void stop();
    void drop() const;
    void run(const QString &sql) const;
    [[noreturn]] void refuse(const QString &reason) const;

    const StoreSession &mStore;
    long mNetId;
    bool mIsSqlite;
    QString mTemporary; ///< how the engine calls the schema of temporary tables, with its dot
    /// What is kept of the store's tables, by their names in lower case.
    QHash<QString, StoreTable> mKept;
    bool mIsRecording = false;
};

} // namespace moratools
