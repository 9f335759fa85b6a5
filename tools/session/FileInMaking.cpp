#include "tools/session/FileInMaking.h"

#include "tools/reports/Failure.h"

namespace moratools {

FileInMaking::FileInMaking(const QString &wanted) : mFile(wanted) {
    if (!mFile.refusal().isEmpty())
        throw Failure(mFile.refusal());
    mLeftover.emplace(path());
}

void FileInMaking::publish() {
    if (!mFile.publish())
        throw Failure(mFile.refusal());
    mLeftover.reset();
}

} // namespace moratools
