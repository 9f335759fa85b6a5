#include "tools/reports/OutputFile.h"

#include "tools/reports/Failure.h"

#include <QFileInfo>
#include <QSaveFile>

#include <type_traits>

namespace moratools {

namespace {

/// The file that `path` leads to by links, whether it exists or not.
QFileInfo behindLinks(const QString &path) {
    constexpr int mostLinks = 40;
    QFileInfo info(path);
    for (int i = 0; i < mostLinks && info.isSymLink(); ++i)
        info.setFile(info.symLinkTarget());
    if (info.isSymLink())
        throw Failure(QStringLiteral("%1: a link that leads to itself; remove it").arg(path));
    return info;
}

template <class File>
void write(File &file, const QByteArray &bytes, const QString &path) {
    const auto finish = [&file] {
        if constexpr (std::is_same_v<File, QSaveFile>)
            return file.commit();
        else
            return file.flush();
    };
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && finish())
        return;
    // A disk that takes only a part of the bytes reports no error of its own.
    const bool isKnown =
        file.error() != QFileDevice::NoError && file.error() != QFileDevice::UnspecifiedError;
    throw Failure(QStringLiteral("%1: cannot be written (%2)")
                      .arg(path, isKnown ? file.errorString() : QStringLiteral("no room left on the disk")));
}

} // namespace

void requireOutputPath(const QString &path, const QString &what) {
    if (path.isEmpty())
        throw Failure(QStringLiteral("the name of the %1 is empty; give the path of a file").arg(what));
    const QFileInfo info = behindLinks(path);
    if (info.isDir())
        throw Failure(QStringLiteral("%1: this is a folder; give the path of a %2").arg(path, what));
    QFile present(info.filePath());
    if (info.isFile() && present.open(QIODevice::ReadOnly) && present.read(15) == "SQLite format 3")
        throw Failure(QStringLiteral("%1: this is a store; give another path for the %2").arg(path, what));
}

void writeOutputFile(const QString &path, const QByteArray &bytes) {
    const QFileInfo info = behindLinks(path);
    if (info.exists() && !info.isFile()) {
        // A device or a pipe takes the bytes as they are: put in its place, a file would be in its way.
        QFile device(info.filePath());
        write(device, bytes, path);
    } else {
        QSaveFile file(info.filePath());
        write(file, bytes, path);
    }
}

} // namespace moratools
