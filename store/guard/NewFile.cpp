#include "store/guard/NewFile.h"

#include "store/core/NativePath.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>

namespace {

constexpr const char *kBesides[] = {"-journal", "-wal", "-shm"};

QString existsAlready(const QString &path) {
    return QStringLiteral("%1: exists already; give the path of a new file").arg(path);
}

} // namespace

bool NewFile::refuse(const QString &sentence) {
    mRefusal = sentence;
    return false;
}

bool NewFile::cannotBeMade(const QString &reason) {
    return refuse(
        QStringLiteral("%1: cannot be made (%2); check that the folder is writable").arg(mWanted, reason));
}

NewFile::NewFile(const QString &wanted) : mWanted(wanted) {
    const QFileInfo info(wanted);
    if (info.exists() || info.isSymLink()) {
        refuse(existsAlready(wanted));
        return;
    }
    for (const char *suffix : kBesides) {
        const QString beside = wanted + QLatin1String(suffix);
        if (!QFileInfo::exists(beside))
            continue;
        refuse(QStringLiteral("%1: belongs to a store that is gone, and a new one would be damaged by it; "
                              "move it away first")
                   .arg(beside));
        return;
    }
    const quint64 number = QRandomGenerator::system()->generate64();
    const QString path =
        QStringLiteral("%1/morastore-%2.new")
            .arg(info.absolutePath(), QString::number(number, 16).rightJustified(16, QLatin1Char('0')));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        mPath = path;
    else
        cannotBeMade(file.errorString());
}

NewFile::~NewFile() {
    if (mPath.isEmpty())
        return;
    QFile::remove(mPath);
    for (const char *suffix : kBesides)
        QFile::remove(mPath + QLatin1String(suffix));
}

bool NewFile::publish() {
    // Of all who want the name one makes a file of it. It is empty, and ours to be replaced.
    QFile place(mWanted);
    if (!place.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return QFileInfo::exists(mWanted) ? refuse(existsAlready(mWanted))
                                          : cannotBeMade(place.errorString());
    place.close();
    std::error_code error;
    std::filesystem::rename(nativePath(mPath), nativePath(mWanted), error);
    if (error) {
        place.remove();
        return cannotBeMade(QString::fromLocal8Bit(error.message().c_str()));
    }
    mPath.clear();
    return true;
}
