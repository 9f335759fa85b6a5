#pragma once

#include "model/NetProgress.h"

/// Tells a NetProgress, now and then, how far a pass over a table has come, and keeps its answer.
class ProgressMeter {
public:
    explicit ProgressMeter(const NetProgress &progress) : mProgress(progress) {}

    bool isWanted() const { return bool(mProgress); }
    bool isCancelled() const { return mCancelled; }
    /// A pass over @p total rows of @p table begins.
    void begin(const char *table, qint64 total) {
        mTable = table;
        mTotal = total;
        mDone = 0;
        report();
    }
    /// One row more; false once the work is cancelled.
    bool step() {
        if (++mDone % kInterval == 0)
            report();
        return !mCancelled;
    }
    void end() {
        if (mDone % kInterval != 0)
            report();
    }

private:
    static constexpr qint64 kInterval = 1024;

    void report() {
        if (mProgress && !mCancelled)
            mCancelled = !mProgress({mTable, mDone, mTotal});
    }

    const NetProgress &mProgress;
    const char *mTable = "";
    qint64 mTotal = 0;
    qint64 mDone = 0;
    bool mCancelled = false;
};
