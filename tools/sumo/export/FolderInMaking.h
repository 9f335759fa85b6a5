#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace moratools {

/// A folder that comes into being with all that is in it, or not at all: it is filled under another name beside the
/// wanted one.
class FolderInMaking {
public:
    /// Throws `Failure` when the wanted name is taken by anything but an empty folder, or nothing can be made there.
    explicit FolderInMaking(const QString &wanted);

    /// Where to put what is to be in it; goes with this object unless it is published.
    QString path() const { return mFolder->path(); }
    /// Gives the folder its name. Throws `Failure` when somebody has put something there meanwhile.
    void publish();

private:
    QString mWanted;
    std::unique_ptr<QTemporaryDir> mFolder;
};

} // namespace moratools
