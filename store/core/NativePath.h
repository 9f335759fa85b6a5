#pragma once

#include <QFile>
#include <QString>

#include <filesystem>

/// For std::filesystem, which renames over an existing file in one go. QFile::rename() does not, and where the name
/// is taken at the last moment it writes into what is there.
inline std::filesystem::path nativePath(const QString &path) {
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}
