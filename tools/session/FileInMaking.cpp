#include "tools/session/FileInMaking.h"

#include "tools/reports/Failure.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>

namespace moratools {

namespace {

constexpr const char *kBesides[] = {"-journal", "-wal", "-shm"};

/// For std::filesystem, which renames over an existing file in one go. QFile::rename() does not, and where
/// the name is taken at the last moment it writes into what is there.
std::filesystem::path native(const QString &path) {
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

Failure existsAlready(const QString &path) {
    return Failure(QStringLiteral("%1: exists already; give the path of a new file").arg(path));
}

Failure cannotBeMade(const QString &path, const QString &reason) {
    return Failure(
        QStringLiteral("%1: cannot be made (%2); check that the folder is writable").arg(path, reason));
}

} // namespace

FileInMaking::FileInMaking(const QString &wanted) : mWanted(wanted) {
    const QFileInfo info(wanted);
    if (info.exists() || info.isSymLink())
        throw existsAlready(wanted);
    for (const char *suffix : kBesides) {
        const QString beside = wanted + QLatin1String(suffix);
        if (QFileInfo::exists(beside))
            throw Failure(QStringLiteral("%1: belongs to a store that is gone, and a new one would be "
                                         "damaged by it; move it away first")
                              .arg(beside));
    }
    const quint64 number = QRandomGenerator::system()->generate64();
    mPath = QStringLiteral("%1/morastore-%2.new")
                .arg(info.absolutePath(), QString::number(number, 16).rightJustified(16, QLatin1Char('0')));
    QFile file(mPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw cannotBeMade(wanted, file.errorString());
    mLeftover.emplace(mPath);
}

FileInMaking::~FileInMaking() {
    if (mPath.isEmpty())
        return;
    QFile::remove(mPath);
    for (const char *suffix : kBesides)
        QFile::remove(mPath + QLatin1String(suffix));
}

void FileInMaking::publish() {
    // Of all who want the name one makes a file of it. It is empty, and ours to be replaced.
    QFile place(mWanted);
    if (!place.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw QFileInfo::exists(mWanted) ? existsAlready(mWanted)
                                         : cannotBeMade(mWanted, place.errorString());
    place.close();
    std::error_code error;
    std::filesystem::rename(native(mPath), native(mWanted), error);
    if (error) {
        place.remove();
        throw cannotBeMade(mWanted, QString::fromLocal8Bit(error.message().c_str()));
    }
    mLeftover.reset();
    mPath.clear();
}

} // namespace moratools
