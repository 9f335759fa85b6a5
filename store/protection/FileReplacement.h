#pragma once

#include "store/protection/SealedFormat.h"

#include <QDateTime>
#include <QFile>

#include <future>

/// Replaces a file by what is written beside it, as a whole or not at all. Throws Refusal.
class FileReplacement {
public:
    /// Opens @p path, following links, and a new empty file of the owner's beside it.
    ///
    /// An SQLite file is settled first: what a journal or a write-ahead log holds goes into it. One that is
    /// open in this process, or that another program is using, is refused.
    explicit FileReplacement(const QString &path);
    /// Removes the new file unless it was committed.
    ~FileReplacement();
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;

    QFile &source() { return mSource; }
    QFile &target() { return mTarget; }
    /// What it takes is written into the target.
    sealedformat::Sink sink();
    /// The target is complete: goes back to the start of both files, to read them again. The target is on its
    /// way to the disk meanwhile.
    void finishWriting();

    /// Waits until the new file is on the disk, gives it the permissions of the old one and renames it over
    /// it. Refuses when the old one has changed since it was opened.
    void commit();

private:
    QString mPath;
    QFile mSource;
    QFile mTarget;
    QDateTime mChanged;
    qint64 mSize = 0;
    bool mHasTarget = false;
    std::future<bool> mOnDisk;
};
