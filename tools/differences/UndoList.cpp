#include "tools/differences/UndoList.h"

#include "tools/differences/PatchApplication.h"
#include "tools/reports/Failure.h"

#include <utility>

namespace moratools {

UndoList::UndoList(const StoreSession &store, long netId)
    : mStore(store), mNetId(netId), mRecorder(store, netId) {}

bool UndoList::end(const QString &name) {
    Recording recording = mRecorder.end();
    if (recording.isEmpty())
        return false;
    mSteps.resize(mDone);
    mSteps.push_back({name, std::move(recording)});
    ++mDone;
    return true;
}

std::vector<RowChange> UndoList::undo() {
    require(canUndo(), "taken back");
    Recording back;
    for (const RowChange &change : mSteps[mDone - 1].recording.changes)
        back.changes.push_back(inverted(change));
    for (const RowPlace &place : mSteps[mDone - 1].recording.places)
        back.places.push_back({place.table, place.key, place.after, place.before});
    applyChanges(mStore, mNetId, back.changes, back.places);
    --mDone;
    return back.changes;
}

std::vector<RowChange> UndoList::redo() {
    require(canRedo(), "done again");
    const Recording &step = mSteps[mDone].recording;
    applyChanges(mStore, mNetId, step.changes, step.places);
    ++mDone;
    return step.changes;
}

void UndoList::require(bool hasStep, const char *what) const {
    if (!hasStep)
        throw Failure(QStringLiteral("there is no step to be %1").arg(QLatin1String(what)));
    if (mRecorder.isRecording())
        throw Failure(QStringLiteral("no step is %1 while one is being recorded; end that first")
                          .arg(QLatin1String(what)));
}

void UndoList::clear() {
    mSteps.clear();
    mDone = 0;
}

} // namespace moratools
