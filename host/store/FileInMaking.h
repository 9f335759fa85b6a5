#pragma once

#include <QFile>
#include <QString>

/// A file that is removed again, with what SQLite keeps beside it, unless it was renamed.
class FileInMaking {
public:
    explicit FileInMaking(const QString &path) : mPath(path) {}
    ~FileInMaking() {
        for (const char *suffix : {"", "-journal", "-wal", "-shm"})
            QFile::remove(mPath + QLatin1String(suffix));
    }
    const QString &path() const { return mPath; }

private:
    Q_DISABLE_COPY(FileInMaking)

    QString mPath;
};
