#pragma once

#include <QFile>

namespace commands {

/// A file that a command reads from.
class PatchFile {
public:
    /// Throws `Failure` when it cannot be read.
    explicit PatchFile(const QString &path);

    QIODevice &device() const { return mFile; }
    QString name() const { return mFile.fileName(); }

private:
    mutable QFile mFile;
};

} // namespace commands
