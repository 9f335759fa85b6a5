#pragma once

#include "tools/rows/StoreReader.h"

#include <QFile>

#include <string>

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

/// The network that an option --net names; where it was not given, the store's first.
moratools::NamedNetwork networkOf(const moratools::StoreReader &store, const std::string &wanted);

} // namespace commands
