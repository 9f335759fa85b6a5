#pragma once

#include "model/NetProgress.h"
#include "tools/reports/Progress.h"

#include <algorithm>
#include <cstring>

namespace moratools {

/// Shows the load or save of a network as a part of a longer step. Its tables differ in size by far, and
/// which ones come is not known before: the bar moves on by a part of what is left with each.
class ShareOfSteps {
public:
    /// The part goes from `from` to `to`, both 0 to 1. `progress` must outlive this.
    ShareOfSteps(const Progress &progress, double from, double to)
        : mProgress(progress), mAt(from), mTo(to) {}

    bool operator()(const NetStep &step) const {
        constexpr double part = 0.25;
        if (!mTable || std::strcmp(mTable, step.table) != 0) {
            mAt = mTable ? mAt + part * (mTo - mAt) : mAt;
            mTable = step.table;
        }
        const double done = step.total > 0 ? std::min(1.0, double(step.done) / double(step.total)) : 1;
        reportShare(mProgress, mAt + done * part * (mTo - mAt));
        return true;
    }

private:
    const Progress &mProgress;
    mutable double mAt;
    mutable const char *mTable = nullptr;
    double mTo;
};

} // namespace moratools
