#include "tools/sumo/export/FolderInMaking.h"

#include "tools/reports/Failure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace moratools {

namespace {

/// The path without a separator at its end, so that it has a name and a place.
QString cleaned(const QString &path) {
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

FolderInMaking::FolderInMaking(const QString &wanted) : mWanted(cleaned(wanted)) {
    const QFileInfo info(mWanted);
    if (info.exists() && !info.isDir())
        throw Failure(QStringLiteral("%1 is a file; name a folder").arg(wanted));
    if (info.isDir() &&
        !QDir(mWanted).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System))
        throw Failure(QStringLiteral("%1 is not empty; name a new folder, or empty it").arg(wanted));
    mFolder = std::make_unique<QTemporaryDir>(mWanted + QStringLiteral(".making-XXXXXX"));
    if (!mFolder->isValid())
        throw Failure(QStringLiteral("%1 cannot be made (%2); choose another folder")
                          .arg(wanted, mFolder->errorString()));
}

void FolderInMaking::publish() {
    const QFileInfo info(mWanted);
    QDir beside = info.dir();
    // An empty folder gives way; one that is not empty stays, and so does a file.
    if (info.isDir())
        beside.rmdir(info.fileName());
    // A temporary folder is for its owner alone.
    QFile::setPermissions(mFolder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                               QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                               QFile::ExeOther);
    if (!beside.rename(mFolder->path(), mWanted))
        throw Failure(
            QStringLiteral("%1 cannot be given its name; empty it, or name another folder").arg(mWanted));
    mFolder->setAutoRemove(false);
}

} // namespace moratools
