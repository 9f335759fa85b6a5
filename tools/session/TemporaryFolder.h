#pragma once

#include "tools/MoraToolsExport.h"
#include "tools/session/Leftover.h"

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace moratools {

/// A folder for a file that nobody is to keep. It goes with the object, or when a signal ends the process;
/// where the process is killed outright, it goes with the next run of the program.
class MORATOOLS_EXPORT TemporaryFolder {
public:
    /// Throws `Failure` when it cannot be made.
    TemporaryFolder();

    QString path() const { return mFolder.path(); }
    /// For one file at a time.
    QString newFile(const QString &name);

    /// Removes the folders of processes of this user that have ended without doing so.
    static void removeAbandoned();

private:
    Q_DISABLE_COPY(TemporaryFolder)

    QTemporaryDir mFolder;
    QLockFile mLock; ///< says that the process lives
    Leftover mLeftFolder;
    Leftover mLeftLock;
    std::optional<Leftover> mLeftFile;
};

} // namespace moratools
