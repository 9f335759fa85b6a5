#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/differences/Recorder.h"

#include <QString>

#include <vector>

namespace moratools {

/// The steps of an editing session, to be taken back and done again, whatever the operations were:
///
///     UndoList steps(session, netId);
///     steps.begin();
///     ... operations of DBTools, StoredNet, Transaction ...
///     steps.end("Widen Via Marconi");
///     steps.undo();
///
/// It changes rows. Objects in memory stay as they are, and with them the current network's tables and the
/// registries: what a step has touched (undo() and redo() say what) is to be read anew, a NetContents to be
/// loaded anew before it is saved again. Counters of identifiers are never taken back.
class MORATOOLS_EXPORT UndoList {
public:
    /// As for a Recorder, of which the list has one.
    UndoList(const StoreSession &store, long netId);

    /// @{ What is written from begin() to end() is one step; see Recorder. end() gives false, and makes no step,
    /// when nothing changed; else there is nothing to be done again any more. cancel() ends without a step; what
    /// was written stays.
    void begin() { mRecorder.begin(); }
    bool end(const QString &name);
    void cancel() { mRecorder.cancel(); }
    /// @}

    bool canUndo() const { return mDone > 0; }
    bool canRedo() const { return mDone < mSteps.size(); }
    /// @{ What the step is called that would be taken back, or done again; empty without one.
    QString undoName() const { return canUndo() ? mSteps[mDone - 1].name : QString(); }
    QString redoName() const { return canRedo() ? mSteps[mDone].name : QString(); }
    /// @}

    /// @{ Takes the last step back, or does the next one again, as a whole, and gives the changes that made. On
    /// a `Failure` nothing was changed: without a step, while one is recorded or a transaction is open, when
    /// another program is writing, and when a row is no longer what the step left, because another program or a
    /// statement outside of begin() and end() has changed it.
    std::vector<RowChange> undo();
    std::vector<RowChange> redo();
    /// @}

    /// Forgets all steps.
    void clear();

private:
    struct Step {
        QString name;
        Recording recording;
    };

    void require(bool hasStep, const char *what) const;

    const StoreSession &mStore;
    long mNetId;
    Recorder mRecorder;
    std::vector<Step> mSteps;
    std::size_t mDone = 0; ///< so many of them are in the store
};

} // namespace moratools
