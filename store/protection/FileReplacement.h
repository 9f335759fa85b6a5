#pragma once

#include "store/protection/SealedFormat.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryFile>

#include <memory>

/// Replaces a file by what is written beside it, as a whole or not at all. Throws Refusal.
class FileReplacement {
public:
    /// Opens @p path, following links, and a new empty file in its folder, which nobody else can open:
    /// without a name where the system makes such files (Linux), readable for its owner alone elsewhere.
    ///
    /// An SQLite file is settled first: what a journal or a write-ahead log holds goes into it. One that is
    /// open in this process, or that another program is using, is refused.
    explicit FileReplacement(const QString &path);
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;

    QFile &source() { return mSource; }
    QFile &target() { return *mTarget; }
    /// What it takes is written into the target.
    sealedformat::Sink sink();
    /// The target is complete: goes back to the start of both files, to read them again.
    void finishWriting();

    /// Gives the new file the permissions of the old one, brings it to the disk, renames it over the old one
    /// and brings the folder to the disk. Refuses when the old one has changed since it was opened.
    void commit();

private:
    /// Refuses unless the old file is as it was when it was opened.
    void requireUnchanged() const;

    QString mPath;
    QFile mSource;
    std::unique_ptr<QTemporaryFile> mTarget; ///< goes with this object, but for a committed one
    QDateTime mChanged;
    qint64 mSize = 0;
};
