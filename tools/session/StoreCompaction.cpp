#include "tools/session/StoreCompaction.h"

#include "tools/reports/Failure.h"
#include "tools/session/SqliteConnection.h"
#include "tools/session/StoreFile.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

namespace moratools {

namespace {

void requireRoom(const QString &path, qint64 size) {
    // What is changed is kept beside the store until the end.
    const qint64 left = QStorageInfo(QFileInfo(path).absolutePath()).bytesAvailable();
    if (left >= 0 && left < size)
        throw Failure(
            QStringLiteral("%1: the disk has %2 bytes left, and compacting needs %3 for a while; make room")
                .arg(path, QString::number(left), QString::number(size)));
}

} // namespace

Compaction compactStore(const QString &path) {
    requireStore(path, Access::Upgrade);
    const QString file = QFileInfo(path).canonicalFilePath();
    Compaction sizes;
    sizes.before = QFileInfo(file).size();
    requireRoom(path, sizes.before);
    try {
        const SqliteConnection store(file);
        store.requireIntegrity();
        store.runPatiently(QStringLiteral("vacuum"));
        store.requireIntegrity();
    } catch (const Failure &failure) {
        throw Failure(
            QStringLiteral("%1: the store cannot be compacted (%2); nothing was changed. Close it in "
                           "other programs, check the disk, or restore it from a copy")
                .arg(path, failure.message()));
    }
    sizes.after = QFileInfo(file).size();
    return sizes;
}

} // namespace moratools
