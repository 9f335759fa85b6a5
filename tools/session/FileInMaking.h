#pragma once

#include "store/guard/NewFile.h"
#include "tools/session/Leftover.h"

#include <QString>

#include <optional>

namespace moratools {

/// A new file (NewFile) that is not left behind by a run which is interrupted either.
class FileInMaking {
public:
    /// Makes the file, empty. Throws `Failure` when it is refused.
    explicit FileInMaking(const QString &wanted);

    const QString &path() const { return mFile.path(); }
    /// Gives the file the name that was wanted. Throws `Failure` when another program has taken the name
    /// meanwhile; what it made is not touched.
    void publish();

private:
    Q_DISABLE_COPY(FileInMaking)

    std::optional<Leftover> mLeftover; ///< outlives the file
    NewFile mFile;
};

} // namespace moratools
