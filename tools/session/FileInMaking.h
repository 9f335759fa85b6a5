#pragma once

#include "tools/session/Leftover.h"

#include <QString>

#include <optional>

namespace moratools {

/// A new file under a name that nobody else has, in the folder of the file that it is to become. It is
/// removed again, with what SQLite keeps beside it, unless it was published.
class FileInMaking {
public:
    /// Makes the file, empty. Throws `Failure` when it cannot be made, when there is a file `wanted`, and
    /// when a journal of such a name lies there, which SQLite would take for the new file's.
    explicit FileInMaking(const QString &wanted);
    ~FileInMaking();

    const QString &path() const { return mPath; }
    /// Gives the file the name that was wanted. Throws `Failure` when another program has taken the name
    /// meanwhile; what it made is not touched.
    void publish();

private:
    Q_DISABLE_COPY(FileInMaking)

    QString mWanted;
    QString mPath;
    std::optional<Leftover> mLeftover;
};

} // namespace moratools
