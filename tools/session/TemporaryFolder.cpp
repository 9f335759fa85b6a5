#include "tools/session/TemporaryFolder.h"

#include "tools/reports/Failure.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace moratools {

namespace {

const QString kPrefix = QStringLiteral("morastore-");
const QString kLock = QStringLiteral("in-use.lock");

/// In a folder that all users share, one that another has made is none of ours.
bool isOwn(const QFileInfo &folder) {
#ifdef Q_OS_UNIX
    return folder.ownerId() == geteuid();
#else
    Q_UNUSED(folder)
    return true;
#endif
}

} // namespace

TemporaryFolder::TemporaryFolder()
    : mFolder(QDir::tempPath() + QLatin1Char('/') + kPrefix + QStringLiteral("XXXXXX")),
      mLock(mFolder.filePath(kLock)),
      mLeftFolder(mFolder.path()),
      mLeftLock(mFolder.filePath(kLock)) {
    // However long it takes, it is in use while the process lives.
    mLock.setStaleLockTime(0);
    if (!mFolder.isValid() || !mLock.tryLock(0))
        throw Failure(QStringLiteral("%1: no temporary folder can be made (%2); make room there or name "
                                     "another folder in TMPDIR")
                          .arg(QDir::tempPath(), mFolder.errorString()));
}

QString TemporaryFolder::newFile(const QString &name) {
    const QString path = mFolder.filePath(name);
    mLeftFile.reset();
    mLeftFile.emplace(path);
    return path;
}

void TemporaryFolder::removeAbandoned() {
    const QFileInfoList folders = QDir(QDir::tempPath())
                                      .entryInfoList({kPrefix + QLatin1Char('*')},
                                                     QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        QDir dir(folder.absoluteFilePath());
        // One without a lock is being made at this moment, or is not this program's.
        if (!isOwn(folder) || !dir.exists(kLock))
            continue;
        QLockFile lock(dir.filePath(kLock));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0))
            continue;
        lock.unlock();
        dir.removeRecursively();
    }
}

} // namespace moratools
